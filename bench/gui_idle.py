#!/usr/bin/env python3
"""GUI idle: the desktop program hidden in the tray with Auto Check on.

Starts velmora on a private Xvfb display with a tray host (trayer), a
private home and two accounts, waits for it to settle, then for --seconds
reads its CPU time from /proc/PID/stat and counts the tray pictures it
draws (VELMORA_TRACE_DRAWS). Prints one table row and, with --results,
writes it beside the other results. Exit status 3 with --strict when a
target is missed, 1 when it cannot measure.
"""
import argparse
import json
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import time

CPU_TARGET = 0.2  # % of one core
SETTLE = 8.0  # seconds before the measured span


def die(message):
    print(f"gui_idle: {message}", file=sys.stderr)
    sys.exit(1)


def free_display():
    for n in range(90, 190):
        if not os.path.exists(f"/tmp/.X11-unix/X{n}") and not os.path.exists(f"/tmp/.X{n}-lock"):
            return n
    die("no free X display number")


def cpu_ticks(pid):
    with open(f"/proc/{pid}/stat") as f:
        fields = f.read().rsplit(")", 1)[1].split()
    # utime and stime are fields 14 and 15; fields[0] here is field 3.
    return int(fields[11]) + int(fields[12])


def write_settings(config):
    folder = os.path.join(config, "Kestrum")
    os.makedirs(folder, mode=0o700)
    lines = ["[Settings]", "FirstUse=1", "AcntNum=2"]
    for n, name in ((1, "Home"), (2, "Work")):
        # Port 9 on loopback: no check is due during the span anyway.
        lines += [f"AcntName{n}={name}", f"AcntServer{n}=127.0.0.1", f"AcntPort{n}=9",
                  f"AcntLoginID{n}={name.lower()}", f"AcntPassword{n}=x"]
    lines += ["Options\\MinimizeStartUp=1", "Options\\UseInterval=1", "Options\\Hours=0",
              "Options\\Minutes=30", "Options\\EmailCheckStartUp=0", "Options\\RunStartUp=0"]
    with open(os.path.join(folder, "Velmora.conf"), "w") as f:
        f.write("\n".join(lines) + "\n")


def main():
    here = os.path.dirname(os.path.abspath(__file__))
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--gui", default=os.path.join(os.path.dirname(here), "build", "bin", "velmora"))
    parser.add_argument("--seconds", type=float, default=60.0)
    parser.add_argument("--results", help="folder for gui-idle-<date>.json")
    parser.add_argument("--strict", action="store_true")
    args = parser.parse_args()
    for tool in ("Xvfb", "trayer"):
        if not shutil.which(tool):
            die(f"{tool} not found; scripts/install-deps installs it")
    if not os.access(args.gui, os.X_OK):
        die(f"{args.gui} not found or not executable; build it first (make build)")

    work = tempfile.mkdtemp(prefix="vgui")
    children = []
    try:
        home = {k: os.path.join(work, k) for k in ("config", "data", "runtime", "tmp", "home")}
        for path in home.values():
            os.makedirs(path, mode=0o700, exist_ok=True)
        write_settings(home["config"])
        display = free_display()
        env = {k: v for k, v in os.environ.items()
               if k not in ("DBUS_SESSION_BUS_ADDRESS", "QT_QPA_PLATFORM", "SESSION_MANAGER")}
        env.update(DISPLAY=f":{display}", HOME=home["home"], XDG_CONFIG_HOME=home["config"],
                   XDG_DATA_HOME=home["data"], XDG_RUNTIME_DIR=home["runtime"], TMPDIR=home["tmp"],
                   VELMORA_TRACE_DRAWS="1")
        xvfb = subprocess.Popen(["Xvfb", f":{display}", "-screen", "0", "1024x768x24", "-nolisten", "tcp"],
                                stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        children.append(xvfb)
        deadline = time.monotonic() + 10
        while not os.path.exists(f"/tmp/.X11-unix/X{display}"):
            if time.monotonic() > deadline or xvfb.poll() is not None:
                die("Xvfb did not start")
            time.sleep(0.05)
        tray = subprocess.Popen(["trayer", "--edge", "bottom", "--align", "right", "--widthtype", "pixel",
                                 "--width", "120", "--heighttype", "pixel", "--height", "32"],
                                env=env, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        children.append(tray)
        time.sleep(1.0)
        log_path = os.path.join(work, "velmora.err")
        with open(log_path, "w") as log:
            gui = subprocess.Popen([args.gui], env=env, stdout=subprocess.DEVNULL, stderr=log, cwd=work)
        children.append(gui)
        time.sleep(SETTLE)
        if gui.poll() is not None:
            die(f"velmora ended early with status {gui.returncode}")
        with open(log_path) as f:
            before = f.read().count("\n")
        ticks0, t0 = cpu_ticks(gui.pid), time.monotonic()
        time.sleep(args.seconds)
        ticks1, t1 = cpu_ticks(gui.pid), time.monotonic()
        with open(log_path) as f:
            lines = f.read().splitlines()
        drawn = [line for line in lines if "tray picture drawn:" in line]
        stacks = [line.split(":", 2)[2].strip() for line in drawn]
        in_span = len([line for line in lines[before:] if "tray picture drawn:" in line])
        redrawn = len(stacks) - len(set(stacks))
        cpu = 100.0 * (ticks1 - ticks0) / os.sysconf("SC_CLK_TCK") / (t1 - t0)
    finally:
        for child in reversed(children):
            if child.poll() is None:
                child.send_signal(signal.SIGTERM)
                try:
                    child.wait(5)
                except subprocess.TimeoutExpired:
                    child.kill()
                    child.wait()
        shutil.rmtree(work, ignore_errors=True)

    met = cpu <= CPU_TARGET and redrawn == 0
    print(f"GUI idle: velmora hidden in the tray, Auto Check on, 2 accounts, {t1 - t0:.0f} s")
    print("  cpu % of one core  pictures drawn in span  redrawn unchanged   target cpu <= "
          f"{CPU_TARGET} %, 0 redrawn")
    print(f"  {cpu:17.3f}  {in_span:22d}  {redrawn:17d}   {'met' if met else 'MISSED'}")
    if args.results:
        os.makedirs(args.results, exist_ok=True)
        name = time.strftime("gui-idle-%Y%m%d-%H%M%S.json")
        with open(os.path.join(args.results, name), "w") as f:
            json.dump({"seconds": t1 - t0, "cpu_ticks": ticks1 - ticks0, "cpu_percent": cpu,
                       "drawn_in_span": in_span, "redrawn": redrawn, "stacks": stacks}, f, indent=1)
    if args.strict and not met:
        sys.exit(3)


if __name__ == "__main__":
    main()
