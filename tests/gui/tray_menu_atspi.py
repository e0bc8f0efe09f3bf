#!/usr/bin/python3
"""The tray menu and the main window as assistive technology sees them.

Run inside its own session bus (dbus-run-session): starts Xvfb, trayer, the
accessibility bus and velmora on a sandboxed home, opens the tray menu with
a right click and reads the menu's entries over AT-SPI. Each entry must be
reachable by its caption as shown: no "|#key" suffix, no "&" marker. Then
the window: its buttons by caption, the message list as a table with its
headers, and the Accounts page's inputs by their labels.
"""
import os
import shutil
import subprocess
import sys
import tempfile
import threading
import time

EXPECTED = ["Show Velmora...", "Check All", "New Message", "Start Email Client",
            "Auto Check - On", "Sounds - On", "Options...", "Menu Colours...", "Updates",
            "About...", "Help", "Quit Application"]


def fail(message):
    print(f"FAIL: {message}", flush=True)
    sys.exit(1)


def wait_for(what, test, seconds=15):
    deadline = time.monotonic() + seconds
    while time.monotonic() < deadline:
        value = test()
        if value:
            return value
        time.sleep(0.1)
    fail(f"timed out waiting for {what}")


# Main buttons, the page's buttons, the tab of an empty strip and a status
# panel, by what they show.
WINDOW_NAMES = ["Email", "Accounts", "Rules", "Options", "Quit", "Size", "Help", "Close",
                "Check All", "Start Email Client", "No account",
                "No Accounts have been created..."]


def window_names(pyatspi):
    """The names of everything showing in velmora's frames; None until the
    main window is there."""
    desktop = pyatspi.Registry.getDesktop(0)
    for app in (desktop.getChildAtIndex(i) for i in range(desktop.childCount)):
        if app is None or app.name.lower() != "velmora":
            continue
        names = set()

        def walk(node, depth=0):
            if node is None or depth > 40:
                return
            if node.name:
                names.add(node.name.strip())
            for i in range(node.childCount):
                walk(node.getChildAtIndex(i), depth + 1)

        walk(app)
        return names if "Check All" in names else None
    return None


def velmora_nodes(pyatspi):
    """Every accessible of velmora's, with its role name."""
    desktop = pyatspi.Registry.getDesktop(0)
    found = []
    for app in (desktop.getChildAtIndex(i) for i in range(desktop.childCount)):
        if app is None or app.name.lower() != "velmora":
            continue

        def walk(node, depth=0):
            if node is None or depth > 40:
                return
            found.append(node)
            for i in range(node.childCount):
                walk(node.getChildAtIndex(i), depth + 1)

        walk(app)
    return found


# The Accounts page's inputs, by their buddy labels.
ACCOUNT_INPUTS = ["Account", "Server", "Port", "Login ID", "Password", "Email Client", "Sound"]
LIST_HEADERS = ["From", "To", "Subject", "Date", "Size"]


def check_list_and_inputs(pyatspi):
    nodes = velmora_nodes(pyatspi)
    tables = [n for n in nodes if n.getRoleName() == "table" and n.name == "Messages"]
    if not tables:
        fail("the message list is not a table named Messages")
    table = tables[0].queryTable()
    headers = [table.getColumnDescription(c) for c in range(table.nColumns)]
    if headers != LIST_HEADERS:
        fail(f"the list's column headers over AT-SPI: {headers}")
    print("PASS: the message list is a table with its headers", flush=True)

    button = next((n for n in nodes if n.name == "Accounts" and n.getRoleName() == "push button"),
                  None)
    if button is None:
        fail("no Accounts button")
    button.queryAction().doAction(0)

    def inputs():
        named = {n.name for n in velmora_nodes(pyatspi)
                 if n.getRoleName() in ("text", "password text", "entry")}
        return named if all(i in named for i in ACCOUNT_INPUTS) else None

    wait_for(f"the Accounts page's inputs {ACCOUNT_INPUTS} by their labels", inputs)
    print(f"PASS: {len(ACCOUNT_INPUTS)} account inputs named by their labels", flush=True)


def tray_entry(env):
    tree = subprocess.run(["xwininfo", "-root", "-tree"], env=env, capture_output=True,
                          text=True).stdout.splitlines()
    in_panel = False
    for line in tree:
        if '("panel" "trayer")' in line:
            in_panel = True
        elif in_panel and '("velmora" "Velmora")' in line:
            return line.split()[0]
    return None


def main():
    velmora = os.path.join(os.environ["VELMORA_BIN_DIR"], "velmora")
    launcher = "/usr/libexec/at-spi-bus-launcher"
    for tool in ("Xvfb", "trayer", "xdotool", "xwininfo", launcher):
        if not shutil.which(tool):
            fail(f"{tool} is missing: scripts/install-deps installs it")
    work = tempfile.mkdtemp(prefix="vatspi")
    children = []
    try:
        number = next(n for n in range(160, 260) if not os.path.exists(f"/tmp/.X11-unix/X{n}")
                      and not os.path.exists(f"/tmp/.X{n}-lock"))
        env = dict(os.environ, DISPLAY=f":{number}", QT_QPA_PLATFORM="xcb",
                   QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1", HOME=work)
        for sub in ("config", "data", "runtime", "tmp"):
            os.makedirs(os.path.join(work, sub), mode=0o700)
        env.update(XDG_CONFIG_HOME=f"{work}/config", XDG_DATA_HOME=f"{work}/data",
                   XDG_RUNTIME_DIR=f"{work}/runtime", TMPDIR=f"{work}/tmp")
        os.makedirs(f"{work}/config/Kestrum")
        with open(f"{work}/config/Kestrum/Velmora.conf", "w") as f:
            f.write("[Settings]\nFirstUse=1\nOptions\\MinimizeStartUp=1\nOptions\\UseInterval=1\n"
                    "Options\\RunStartUp=0\n")
        os.environ["DISPLAY"] = env["DISPLAY"]

        children.append(subprocess.Popen(["Xvfb", env["DISPLAY"], "-screen", "0", "1024x768x24",
                                          "-nolisten", "tcp"], stderr=subprocess.DEVNULL))
        wait_for("Xvfb", lambda: os.path.exists(f"/tmp/.X11-unix/X{number}"))
        children.append(subprocess.Popen([launcher, "--launch-immediately"], env=env,
                                         stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL))
        children.append(subprocess.Popen(["trayer", "--edge", "bottom", "--align", "right",
                                          "--widthtype", "pixel", "--width", "120",
                                          "--heighttype", "pixel", "--height", "32"],
                                         env=env, stderr=subprocess.DEVNULL))
        time.sleep(1)
        # Only now: the library finds the accessibility bus when it loads.
        import pyatspi
        app = subprocess.Popen([velmora], env=env, cwd=work)
        children.append(app)
        entry = wait_for("the tray entry in trayer's panel", lambda: tray_entry(env))

        seen = []
        shown = []

        def on_showing(event):
            source = event.source
            if source.getRoleName() != "popup menu" or not event.detail1:
                return
            items = [source.getChildAtIndex(i) for i in range(source.childCount)]
            items = [item for item in items if item.getRoleName() == "menu item"]
            seen.extend(item.name for item in items)
            shown.extend(items)
            pyatspi.Registry.stop()

        pyatspi.Registry.registerEventListener(on_showing, "object:state-changed:showing")
        click = ["xdotool", "mousemove", "--window", entry, "8", "8", "click", "3"]
        # On a loaded machine the first click may come before the menu is
        # ready; the clicks repeat until it shows.
        timers = [threading.Timer(at, lambda: subprocess.run(click, env=env))
                  for at in (1.0, 6.0, 11.0, 16.0)]
        timers.append(threading.Timer(25.0, pyatspi.Registry.stop))
        for timer in timers:
            timer.daemon = True
            timer.start()
        pyatspi.Registry.start()
        for timer in timers:
            timer.cancel()

        if seen != EXPECTED:
            fail(f"menu entries over AT-SPI: {seen}")
        print(f"PASS: {len(seen)} tray menu entries reachable by caption", flush=True)

        # Show the window through the menu's first entry, then find its
        # controls by the names a screen reader would speak.
        shown[0].queryAction().doAction(0)
        names = wait_for("the main window's controls", lambda: window_names(pyatspi))
        missing = [n for n in WINDOW_NAMES if n not in names]
        if missing:
            fail(f"not reachable by name over AT-SPI: {missing}; found {sorted(names)}")
        print(f"PASS: {len(WINDOW_NAMES)} window controls reachable by caption", flush=True)
        check_list_and_inputs(pyatspi)
    finally:
        for child in reversed(children):
            if child.poll() is None:
                child.terminate()
                try:
                    child.wait(5)
                except subprocess.TimeoutExpired:
                    child.kill()
        shutil.rmtree(work, ignore_errors=True)


if __name__ == "__main__":
    main()
