#!/usr/bin/env python3
"""The measurements of bench/run, once its Dovecot is up: check time against
mpop, a resident check's time, Velmora's peak memory and the cost of its
rules. Prints the table and writes it, with every single run, to the results
folder.

Each program runs under GNU time for its peak memory; the wall time is taken
here around the whole run, the same way for both programs. A resident check
is timed by when each pass's summary arrives on the pipe.
"""

import argparse
import datetime
import json
import os
import platform
import re
import shutil
import signal
import statistics
import subprocess
import sys
import time

MB = 1_000_000
COMPARED = ["mixed200", "mixed2000"]
RESIDENT = "mixed2000"
RULES_MAILBOX = "rules2000"
MODES = ["plain", "tls"]
# Whole-process check time against mpop's, and the rules' added wall time.
RATIO_TARGET = 1.15
RULES_TARGET = 15


class Failure(Exception):
    pass


class Bench:
    def __init__(self, args):
        self.args = args
        self.work = args.work
        with open(os.path.join(args.work, "mail", "manifest.json")) as f:
            self.manifest = json.load(f)
        self.deliver = os.path.join(args.shm, "maildir")
        self.uidls = os.path.join(args.shm, "uidls")
        self.empty_data = self.folder("velmora", "data-none")
        self.tmp = self.folder("velmora", "tmp")
        self.runs = []  # every run, for the JSON file

    def folder(self, *parts):
        path = os.path.join(self.work, *parts)
        os.makedirs(path, exist_ok=True)
        return path

    def port(self, mode):
        return self.args.plain_port if mode == "plain" else self.args.tls_port

    # -- the two programs ------------------------------------------------

    def velmora(self, user, mode, rules=False):
        """The command and environment of one Velmora check, settings made
        afresh so no state of an earlier run carries over."""
        home = self.folder("velmora", f"{user}-{mode}")
        settings = os.path.join(home, "Kestrum", "Velmora.conf")
        os.makedirs(os.path.dirname(settings), exist_ok=True)
        with open(os.open(settings, os.O_WRONLY | os.O_CREAT | os.O_TRUNC, 0o600), "w") as f:
            f.write("[Settings]\nAcntNum=1\nAcntName1=Bench\nAcntServer1=127.0.0.1\n"
                    f"AcntPort1={self.port(mode)}\nAcntSecure1={int(mode == 'tls')}\n"
                    f"AcntLoginID1={user}\nAcntPassword1={self.args.password}\n"
                    "Options\\ConnectTimeOut=120\nOptions\\QuickCheck=0\nFirstUse=1\n")
        env = dict(clean_env(), XDG_CONFIG_HOME=home, TMPDIR=self.tmp,
                   XDG_DATA_HOME=self.args.rules_home if rules else self.empty_data,
                   VELMORA_CA_FILE=self.args.ca)
        return [self.args.cli, "check"], env

    def mpop(self, user, mode):
        """mpop set to fetch everything on every run into a tmpfs maildir."""
        for sub in ("new", "cur", "tmp"):
            shutil.rmtree(os.path.join(self.deliver, sub), ignore_errors=True)
            os.makedirs(os.path.join(self.deliver, sub))
        if os.path.exists(self.uidls):
            os.remove(self.uidls)
        config = os.path.join(self.folder("mpop"), f"{user}-{mode}.conf")
        tls = "on\ntls_starttls off" if mode == "tls" else "off"
        # mpop insists on a private file when it holds a password.
        with open(os.open(config, os.O_WRONLY | os.O_CREAT | os.O_TRUNC, 0o600), "w") as f:
            f.write(f"account bench\nhost 127.0.0.1\nport {self.port(mode)}\n"
                    f"user {user}\npassword {self.args.password}\nauth user\n"
                    f"tls {tls}\ntls_trust_file {self.args.ca}\n"
                    "keep on\nonly_new off\npipelining auto\ntimeout 120\n"
                    f"uidls_file {self.uidls}\ndelivery maildir {self.deliver}\n")
        return ["mpop", "-C", config, "-q", "bench"], clean_env()

    # -- one run ---------------------------------------------------------

    def timed(self, what, command, env, output=subprocess.DEVNULL):
        measures = os.path.join(self.work, "time.out")
        start = time.perf_counter()
        # A session of its own, so that an interrupted run ends with the
        # program under GNU time, not just GNU time.
        process = subprocess.Popen(["/usr/bin/time", "-f", "%U %S %M", "-o", measures] + command,
                                   env=env, stdin=subprocess.DEVNULL, stdout=output,
                                   stderr=subprocess.PIPE, cwd=self.work, start_new_session=True)
        try:
            _, errors = process.communicate()
        except BaseException:
            os.killpg(process.pid, signal.SIGKILL)
            process.wait()
            raise
        wall = time.perf_counter() - start
        if process.returncode != 0:
            raise Failure(f"{what}: {' '.join(command)} ended with status {process.returncode}\n"
                          + errors.decode(errors="replace")[-2000:])
        with open(measures) as f:
            user, system, rss = f.read().split()[-3:]
        run = {"what": what, "wall": wall, "cpu": float(user) + float(system), "rss_kb": int(rss)}
        self.runs.append(run)
        return run

    def resident(self, user, mode, passes):
        """One velmora-cli check --repeat passes; the wall time of each pass
        after the first, from the arrival of one pass's summary to the
        next's (each pass flushes its summary when it ends)."""
        command, env = self.velmora(user, mode)
        command += ["--repeat", str(passes)]
        measures = os.path.join(self.work, "time.out")
        errors_path = os.path.join(self.work, "resident.err")
        want = self.manifest[user]["messages"]
        ends = []
        listed = []  # the message lines of each pass
        with open(errors_path, "wb") as errors:
            process = subprocess.Popen(
                ["/usr/bin/time", "-f", "%U %S %M", "-o", measures] + command, env=env,
                stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=errors, cwd=self.work,
                start_new_session=True)
            try:
                for line in process.stdout:
                    if line.startswith(b"Pass "):
                        ends.append(time.perf_counter())
                        listed.append(0)
                    elif listed and re.match(rb"     [N-][S-][D-][A-] ", line):
                        listed[-1] += 1
                process.wait()
            except BaseException:
                os.killpg(process.pid, signal.SIGKILL)
                process.wait()
                raise
        if any(n != want for n in listed):
            raise Failure(f"resident check on {user} ({mode}) listed {listed} messages a pass, "
                          f"not {want}")
        if process.returncode != 0 or len(ends) != passes:
            with open(errors_path, errors="replace") as f:
                raise Failure(f"resident check on {user} ({mode}) ended with status "
                              f"{process.returncode} after {len(ends)} of {passes} passes\n"
                              + f.read()[-2000:])
        with open(measures) as f:
            rss = int(f.read().split()[-1])
        walls = [b - a for a, b in zip(ends, ends[1:])]
        self.runs.append({"what": f"velmora resident {user} {mode}", "passes": walls,
                          "rss_kb": rss})
        return {"passes": walls, "rss_kb": rss}

    def warm_velmora(self, user, mode, rules=False):
        """The warm-up run, its summary read: the whole mailbox and, with
        rules, the planted spam must be there."""
        command, env = self.velmora(user, mode, rules)
        summary = os.path.join(self.work, "summary.txt")
        with open(summary, "wb") as out:
            self.timed(f"warm-up velmora {user} {mode}", command, env, output=out)
        with open(summary, encoding="utf-8", errors="replace") as f:
            text = f.read()
        want = self.manifest[user]["messages"]
        found = re.search(r"^Pass 1: (\d+) messages", text, re.M)
        marks = re.search(r"^  1\. .*  (\d+) new, (\d+) spam, (\d+) to delete$", text, re.M)
        if not found or int(found.group(1)) != want or not marks:
            raise Failure(f"velmora-cli check on {user} ({mode}) did not list {want} messages:\n"
                          + text[:1500])
        return {"spam": int(marks.group(2)), "delete": int(marks.group(3))}

    def warm_mpop(self, user, mode):
        command, env = self.mpop(user, mode)
        self.timed(f"warm-up mpop {user} {mode}", command, env)
        got = sum(len(os.listdir(os.path.join(self.deliver, s))) for s in ("new", "cur"))
        want = self.manifest[user]["messages"]
        if got != want:
            raise Failure(f"mpop delivered {got} of the {want} messages of {user} ({mode})")

    def alternate(self, name, first, second):
        """Warm-ups done: first and second in turn, each median of --runs."""
        results = {"first": [], "second": []}
        for i in range(self.args.runs):
            for key, (what, make) in (("first", first), ("second", second)):
                command, env = make()
                results[key].append(self.timed(f"{what} {name} {i + 1}", command, env))
        return results

    # -- the figures -----------------------------------------------------

    def compare(self):
        rows = []
        for user in COMPARED:
            for mode in MODES:
                progress(f"velmora-cli check against mpop: {user}, {mode}")
                self.warm_velmora(user, mode)
                self.warm_mpop(user, mode)
                got = self.alternate(f"{user} {mode}",
                                     ("velmora", lambda: self.velmora(user, mode)),
                                     ("mpop", lambda: self.mpop(user, mode)))
                rows.append({"mailbox": user, "mode": mode, "velmora": got["first"],
                             "mpop": got["second"]})
        return rows

    def residents(self):
        rows = []
        for mode in MODES:
            progress(f"resident check: {RESIDENT}, {mode}, {self.args.runs + 1} passes")
            rows.append({"mode": mode, **self.resident(RESIDENT, mode, self.args.runs + 1)})
        return rows

    def rules(self):
        progress(f"rules: {RULES_MAILBOX}, plain, without and with the Rules file")
        self.warm_velmora(RULES_MAILBOX, "plain")
        marks = self.warm_velmora(RULES_MAILBOX, "plain", rules=True)
        got = self.alternate(f"{RULES_MAILBOX} rules",
                             ("velmora no rules", lambda: self.velmora(RULES_MAILBOX, "plain")),
                             ("velmora rules",
                              lambda: self.velmora(RULES_MAILBOX, "plain", rules=True)))
        return {"none": got["first"], "rules": got["second"], "marks": marks}


def clean_env():
    """The environment of both programs: each trusts the bench's CA through
    its own setting, as where neither variable is set."""
    return {k: v for k, v in os.environ.items() if k not in ("SSL_CERT_FILE", "SSL_CERT_DIR")}


def median(runs, key="wall"):
    return statistics.median(r[key] for r in runs)


def progress(text):
    print(f"bench: {text}", file=sys.stderr, flush=True)


def verdict(ok):
    return "met" if ok else "MISSED"


def version(command):
    try:
        out = subprocess.run(command, capture_output=True, text=True).stdout
        return out.splitlines()[0].strip() if out else "?"
    except OSError:
        return "?"


def table(bench, compared, residents, rules, started, load_before):
    args, manifest = bench.args, bench.manifest
    missed = 0
    repo = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
    commit = version(["git", "-C", repo, "describe", "--always", "--dirty"])
    lines = [
        "Velmora benchmark",
        f"  date        {started:%Y-%m-%d %H:%M %Z}",
        f"  machine     {os.cpu_count()} CPUs, {platform.machine()}, Linux {platform.release()}, "
        f"load {load_before:.2f} before / {os.getloadavg()[0]:.2f} after",
        f"  programs    {args.cli} ({commit}); {version(['mpop', '--version'])}; "
        f"Dovecot {version(['dovecot', '--version'])}",
        f"  runs        {args.runs} timed runs per program and case, alternating, "
        "after one warm-up each",
        "",
        "Mailboxes (generated, CRLF; bytes as the server counts them)",
        f"  {'mailbox':<11}{'messages':>9}{'bytes':>13}{'largest':>11}",
    ]
    for user in COMPARED + [RULES_MAILBOX]:
        m = manifest[user]
        lines.append(f"  {user:<11}{m['messages']:>9}{m['bytes']:>13,}{m['largest']:>11,}")

    lines += ["", "Check time: velmora-cli check (summary to /dev/null) against mpop "
              "(median wall seconds; CPU = user+sys of the client alone)",
              f"  {'mailbox':<11}{'mode':<6}{'velmora':>9}{'mpop':>8}{'ratio':>7}"
              f"{'cpu v':>8}{'cpu m':>8}   target ratio <= {RATIO_TARGET}"]
    for row in compared:
        v, m = median(row["velmora"]), median(row["mpop"])
        ok = v / m <= RATIO_TARGET
        missed += not ok
        lines.append(f"  {row['mailbox']:<11}{row['mode']:<6}{v:>9.3f}{m:>8.3f}{v / m:>7.2f}"
                     f"{median(row['velmora'], 'cpu'):>8.3f}{median(row['mpop'], 'cpu'):>8.3f}"
                     f"   {verdict(ok)}")

    lines += ["", f"Resident check: velmora-cli check --repeat {args.runs + 1} on {RESIDENT}, "
              "passes 2 on (median wall seconds a pass) against mpop's whole process",
              f"  {'mode':<6}{'pass':>8}{'fastest':>9}{'slowest':>9}{'mpop':>8}{'ratio':>7}"
              "   target ratio <= 1.0"]
    for row in residents:
        m = median(next(c for c in compared if c["mailbox"] == RESIDENT
                        and c["mode"] == row["mode"])["mpop"])
        v = statistics.median(row["passes"])
        ok = v <= m
        missed += not ok
        lines.append(f"  {row['mode']:<6}{v:>8.3f}{min(row['passes']):>9.3f}"
                     f"{max(row['passes']):>9.3f}{m:>8.3f}{v / m:>7.2f}   {verdict(ok)}")

    lines += ["", "Peak memory of velmora-cli check (max RSS over all its timed runs, the "
              "resident ones included) against the mailbox",
              f"  {'mailbox':<11}{'mailbox MB':>11}{'peak MB':>9}{'limit MB':>10}"
              "   target peak <= 3 x mailbox + 60 MB"]
    peaks = {}
    for row in compared:
        peaks[row["mailbox"]] = max([peaks.get(row["mailbox"], 0)] +
                                    [r["rss_kb"] for r in row["velmora"]])
    for row in residents:
        peaks[RESIDENT] = max(peaks[RESIDENT], row["rss_kb"])
    peaks[RULES_MAILBOX] = max(r["rss_kb"] for r in rules["none"] + rules["rules"])
    for user, peak_kb in peaks.items():
        size = manifest[user]["bytes"]
        limit = 3 * size + 60 * MB
        ok = peak_kb * 1024 <= limit
        missed += not ok
        lines.append(f"  {user:<11}{size / MB:>11.1f}{peak_kb * 1024 / MB:>9.1f}"
                     f"{limit / MB:>10.1f}   {verdict(ok)}")

    none, with_rules = median(rules["none"]), median(rules["rules"])
    overhead = (with_rules / none - 1) * 100
    cpu_overhead = (median(rules["rules"], "cpu") / median(rules["none"], "cpu") - 1) * 100
    missed += overhead >= RULES_TARGET
    r = manifest["rules"]
    planted = manifest[RULES_MAILBOX]["spam"]
    # Anything else means the Rules file went unread or a rule fits more than
    # the planted spam; either way the figure would not be what it claims.
    as_planted = rules["marks"] == {"spam": planted, "delete": 0}
    lines += ["", f"Rules: velmora-cli check on {RULES_MAILBOX} (plain bodies of ~20 KB), plain "
              f"POP3, no Rules file against {r['count']} rules of "
              f"{r['entries'] // r['count']} entries",
              f"  {'':<11}{'median wall s':>14}{'median cpu s':>14}",
              f"  {'no rules':<11}{none:>14.3f}{median(rules['none'], 'cpu'):>14.3f}",
              f"  {'rules':<11}{with_rules:>14.3f}{median(rules['rules'], 'cpu'):>14.3f}",
              f"  overhead   {overhead:>13.1f}%{cpu_overhead:>13.1f}%   target < {RULES_TARGET} %: "
              f"{verdict(overhead < RULES_TARGET)}",
              f"  marked by the rules: {rules['marks']['spam']} spam, "
              f"{rules['marks']['delete']} to delete; planted: {planted} spam messages, "
              f"which rule {r['planted_rule']} alone fits"
              + ("" if as_planted else "  -- NOT AS PLANTED, the figure is suspect")]
    lines += ["", f"Targets missed: {missed}" if missed else "All targets met."]
    return "\n".join(lines) + "\n", missed


def main():
    parser = argparse.ArgumentParser()
    for name in ("--work", "--shm", "--cli", "--password", "--ca", "--rules-home", "--results"):
        parser.add_argument(name, required=True)
    for name in ("--runs", "--plain-port", "--tls-port"):
        parser.add_argument(name, type=int, required=True)
    parser.add_argument("--strict", action="store_true")
    args = parser.parse_args()
    # Ended from bench/run's trap: the exception makes subprocess end the
    # program being timed too.
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(143))

    started = datetime.datetime.now().astimezone()
    load_before = os.getloadavg()[0]
    bench = Bench(args)
    try:
        compared = bench.compare()
        residents = bench.residents()
        rules = bench.rules()
    except Failure as failure:
        print(f"bench: {failure}", file=sys.stderr)
        return 1
    text, missed = table(bench, compared, residents, rules, started, load_before)
    print()
    print(text, end="")

    os.makedirs(args.results, exist_ok=True)
    stem = os.path.join(args.results, started.strftime("%Y%m%d-%H%M%S"))
    with open(stem + ".txt", "w") as f:
        f.write(text)
    with open(stem + ".json", "w") as f:
        json.dump({"manifest": bench.manifest, "runs": bench.runs}, f, indent=1)
    print(f"\nWritten to {stem}.txt (every run in {stem}.json)")
    return 3 if args.strict and missed else 0


if __name__ == "__main__":
    sys.exit(main())
