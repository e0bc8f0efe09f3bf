"""A desktop session of its own for the accessibility tests: Xvfb, the
accessibility bus, a tray host and velmora on a sandboxed home, and what the
tests read of velmora over AT-SPI. Run inside dbus-run-session."""
import os
import shutil
import subprocess
import sys
import tempfile
import time

LAUNCHER = "/usr/libexec/at-spi-bus-launcher"


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

    if root is not None:
        walk(root)
    return found


class Session:
    """Starts the session on entry, ends every process of it on exit.
    `settings` is the settings file's text; `files` maps paths under the
    sandboxed home to their text."""

    def __init__(self, settings, files=None, tools=()):
        for tool in ("Xvfb", "trayer", LAUNCHER) + tuple(tools):
            if not shutil.which(tool):
                fail(f"{tool} is missing: scripts/install-deps installs it")
        self.settings = settings
        self.files = files or {}
        self.children = []
        self.work = tempfile.mkdtemp(prefix="vatspi")
        self.env = None

    def __enter__(self):
        try:
            self._start()
        except BaseException:
            self.__exit__(None, None, None)
            raise
        return self

    def _start(self):
        work = self.work
        # Xvfb picks a free display itself and says which: no race with
        # other sessions of the machine.
        read_end, write_end = os.pipe()
        self.children.append(subprocess.Popen(
            ["Xvfb", "-displayfd", str(write_end), "-screen", "0", "1024x768x24", "-nolisten",
             "tcp"], pass_fds=(write_end,), stderr=subprocess.DEVNULL))
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
        files = dict(self.files)
        files["config/Kestrum/Velmora.conf"] = self.settings
        for path, text in files.items():
            os.makedirs(os.path.dirname(os.path.join(work, path)), exist_ok=True)
            with open(os.path.join(work, path), "w", newline="") as f:
                f.write(text)
        os.environ["DISPLAY"] = env["DISPLAY"]
        self.env = env
        self.children.append(subprocess.Popen([LAUNCHER, "--launch-immediately"], env=env,
                                              stdout=subprocess.DEVNULL,
                                              stderr=subprocess.DEVNULL))
        self.children.append(subprocess.Popen(
            ["trayer", "--edge", "bottom", "--align", "right", "--widthtype", "pixel", "--width",
             "120", "--heighttype", "pixel", "--height", "32"], env=env,
            stderr=subprocess.DEVNULL))
        time.sleep(1)

    def start_velmora(self):
        velmora = os.path.join(os.environ["VELMORA_BIN_DIR"], "velmora")
        self.children.append(subprocess.Popen([velmora], env=self.env, cwd=self.work))

    def __exit__(self, *exc):
        for child in reversed(self.children):
            if child.poll() is None:
                child.terminate()
                try:
                    child.wait(5)
                except subprocess.TimeoutExpired:
                    child.kill()
        shutil.rmtree(self.work, ignore_errors=True)
        return False
