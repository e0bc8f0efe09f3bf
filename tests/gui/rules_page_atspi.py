#!/usr/bin/python3
"""The Rules page as assistive technology sees it.

Run inside its own session bus (dbus-run-session): starts Xvfb, trayer, the
accessibility bus and velmora on a sandboxed home with one account and one
rule, opens the Rules page through its main button and reads the page over
AT-SPI. Each input must be reachable by the name of its label (its own name
or the label it is labelled by), each list, option button and check box by
its role and caption.
"""
import os
import shutil
import subprocess
import sys
import tempfile
import time

# (role, name) pairs a screen reader must find on the page.
EXPECTED = [
    ("list", "Rules"),
    ("text", "Rule Name"),
    ("combo box", "Account"),
    ("combo box", "Join"),
    ("combo box", "Field"),
    ("combo box", "Condition"),
    ("check box", "NOT"),
    ("text", "Criteria"),
    ("text", "Rule Description"),
    ("radio button", "Delete from Server"),
    ("radio button", "Mark as Spam   (Delete Later)"),
    ("radio button", "Ignore"),
    ("check box", "Show Rule Report Summary"),
    ("check box", "New Messages Only"),
    ("text", "Show for seconds"),
    ("push button", "Update Description"),
    ("push button", "Undo"),
    ("push button", "Add Rule"),
    ("push button", "Rename Rules File"),
]

RULES = ("[Rules]\r\nRuleCount=1\r\n[Rule1]\r\nName=Spam words\r\nDescCount=1\r\n"
         "Description1=Subject Contains FLORIDA\r\n")


def fail(message):
    print(f"FAIL: {message}", flush=True)
    sys.exit(1)


def wait_for(what, test, seconds=15):
    deadline = time.monotonic() + seconds
    while time.monotonic() < deadline:
        value = test()
        if value:
            return value
        time.sleep(0.2)
    fail(f"timed out waiting for {what}")


def velmora_app(pyatspi):
    desktop = pyatspi.Registry.getDesktop(0)
    for app in (desktop.getChildAtIndex(i) for i in range(desktop.childCount)):
        if app is not None and app.name.lower() == "velmora":
            return app
    return None


def nodes(root, pyatspi=None):
    """Every (role, name, node) under root; with pyatspi also each node under
    the names of the labels it is labelled by, as a combo box on this
    desktop is named."""
    found = []

    def walk(node, depth=0):
        if node is None or depth > 40:
            return
        found.append((node.getRoleName(), (node.name or "").strip(), node))
        if pyatspi:
            for relation in node.getRelationSet():
                if relation.getRelationType() != pyatspi.RELATION_LABELLED_BY:
                    continue
                for t in range(relation.getNTargets()):
                    label = (relation.getTarget(t).name or "").strip().rstrip(":")
                    found.append((node.getRoleName(), label, node))
        for i in range(node.childCount):
            walk(node.getChildAtIndex(i), depth + 1)

    walk(root)
    return found


def main():
    velmora = os.path.join(os.environ["VELMORA_BIN_DIR"], "velmora")
    launcher = "/usr/libexec/at-spi-bus-launcher"
    for tool in ("Xvfb", "trayer", launcher):
        if not shutil.which(tool):
            fail(f"{tool} is missing: scripts/install-deps installs it")
    work = tempfile.mkdtemp(prefix="vrules")
    children = []
    try:
        # Xvfb picks a free display itself and says which: no race with
        # other sessions of the machine.
        read_end, write_end = os.pipe()
        children.append(subprocess.Popen(["Xvfb", "-displayfd", str(write_end), "-screen", "0",
                                          "1024x768x24", "-nolisten", "tcp"],
                                         pass_fds=(write_end,), stderr=subprocess.DEVNULL))
        os.close(write_end)
        with os.fdopen(read_end) as answer:
            number = answer.readline().strip()
        if not number:
            fail("Xvfb did not start")
        env = dict(os.environ, DISPLAY=f":{number}", QT_QPA_PLATFORM="xcb",
                   QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1", HOME=work)
        for sub in ("config", "data", "runtime", "tmp"):
            os.makedirs(os.path.join(work, sub), mode=0o700)
        env.update(XDG_CONFIG_HOME=f"{work}/config", XDG_DATA_HOME=f"{work}/data",
                   XDG_RUNTIME_DIR=f"{work}/runtime", TMPDIR=f"{work}/tmp")
        os.makedirs(f"{work}/config/Kestrum")
        with open(f"{work}/config/Kestrum/Velmora.conf", "w") as f:
            f.write("[Settings]\nFirstUse=1\nAcntNum=1\nAcntName1=Home\n"
                    "AcntServer1=pop.example\nAcntEnabled1=1\nOptions\\RunStartUp=0\n")
        os.makedirs(f"{work}/data/Kestrum/Velmora")
        with open(f"{work}/data/Kestrum/Velmora/Rules.ini", "w", newline="") as f:
            f.write(RULES)
        os.environ["DISPLAY"] = env["DISPLAY"]

        children.append(subprocess.Popen([launcher, "--launch-immediately"], env=env,
                                         stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL))
        children.append(subprocess.Popen(["trayer", "--edge", "bottom", "--align", "right",
                                          "--widthtype", "pixel", "--width", "120",
                                          "--heighttype", "pixel", "--height", "32"],
                                         env=env, stderr=subprocess.DEVNULL))
        time.sleep(1)
        import pyatspi
        children.append(subprocess.Popen([velmora], env=env, cwd=work))

        def rules_button():
            app = velmora_app(pyatspi)
            if app is None:
                return None
            for role, name, node in nodes(app):
                if role == "push button" and name == "Rules":
                    return node
            return None

        wait_for("the Rules button", rules_button).queryAction().doAction(0)

        def page_found():
            app = velmora_app(pyatspi)
            seen = {(role, name) for role, name, _ in nodes(app, pyatspi)} if app else set()
            return seen if ("text", "Rule Name") in seen else None

        seen = wait_for("the Rules page", page_found)
        missing = [pair for pair in EXPECTED if pair not in seen]
        if missing:
            fail(f"not reachable over AT-SPI: {missing}; found {sorted(seen)}")
        print(f"PASS: {len(EXPECTED)} controls of the Rules page reachable by name", flush=True)
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
