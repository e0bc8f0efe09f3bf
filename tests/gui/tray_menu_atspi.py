#!/usr/bin/python3
"""The tray menu and the main window as assistive technology sees them.

Run inside its own session bus (dbus-run-session): starts Xvfb, trayer, the
accessibility bus and velmora on a sandboxed home, opens the tray menu with
a right click and reads the menu's entries over AT-SPI. Each entry must be
reachable by its caption as shown: no "|#key" suffix, no "&" marker. Then
the window: its buttons by caption, the message list as a table with its
headers, and the Accounts page's inputs by their labels.
"""
import subprocess
import threading

from atspi_session import Session, fail, nodes, velmora_app, wait_for

EXPECTED = ["Show Velmora...", "Check All", "New Message", "Start Email Client",
            "Auto Check - On", "Sounds - On", "Options...", "Menu Colours...", "Updates",
            "About...", "Help", "Quit Application"]

# Main buttons, the page's buttons, the tab of an empty strip and a status
# panel, by what they show.
WINDOW_NAMES = ["Email", "Accounts", "Rules", "Options", "Quit", "Size", "Help", "Close",
                "Check All", "Start Email Client", "No account",
                "No Accounts have been created..."]
# The Accounts page's inputs, by their buddy labels.
ACCOUNT_INPUTS = ["Account", "Server", "Port", "Login ID", "Password", "Email Client", "Sound"]
LIST_HEADERS = ["From", "To", "Subject", "Date", "Size"]


def window_names(pyatspi):
    """The names of everything showing in velmora's frames; None until the
    main window is there."""
    names = {name for _, name, _ in nodes(velmora_app(pyatspi)) if name}
    return names if "Check All" in names else None


def check_list_and_inputs(pyatspi):
    found = nodes(velmora_app(pyatspi))
    tables = [node for role, name, node in found if role == "table" and name == "Messages"]
    if not tables:
        fail("the message list is not a table named Messages")
    table = tables[0].queryTable()
    headers = [table.getColumnDescription(c) for c in range(table.nColumns)]
    if headers != LIST_HEADERS:
        fail(f"the list's column headers over AT-SPI: {headers}")
    print("PASS: the message list is a table with its headers", flush=True)

    button = next((node for role, name, node in found
                   if name == "Accounts" and role == "push button"), None)
    if button is None:
        fail("no Accounts button")
    button.queryAction().doAction(0)

    def inputs():
        named = {name for role, name, _ in nodes(velmora_app(pyatspi))
                 if role in ("text", "password text", "entry")}
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
    settings = ("[Settings]\nFirstUse=1\nOptions\\MinimizeStartUp=1\nOptions\\UseInterval=1\n"
                "Options\\RunStartUp=0\n")
    with Session(settings, tools=("xdotool", "xwininfo")) as session:
        env = session.env
        # Only now: the library finds the accessibility bus when it loads.
        import pyatspi
        session.start_velmora()
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


if __name__ == "__main__":
    main()
