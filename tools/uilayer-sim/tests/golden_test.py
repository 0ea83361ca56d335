#!/usr/bin/env python3
"""Reports of small cases against the files committed beside them: the lint
findings of every lint/*.conf (lint/findings.txt) and the replay with its log
lines of every scenarios/*.yaml (scenarios/NAME.txt). With --update the files
are written from this build instead, after a deliberate change.

Usage: golden_test.py SIM [--update]
"""
import glob
import os
import subprocess
import sys

SIM = os.path.abspath(sys.argv[1])
UPDATE = "--update" in sys.argv[2:]
HERE = os.path.dirname(os.path.abspath(__file__))


def check(folder, args, status, golden):
    run = subprocess.run([SIM] + args, cwd=folder, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                         text=True, timeout=60)
    name = os.path.relpath(golden, HERE)
    if run.returncode != status:
        print(f"{name}: exit status {run.returncode}, {status} expected\n{run.stderr}")
        return False
    path = os.path.join(folder, golden)
    if UPDATE:
        with open(path, "w", encoding="utf-8") as fh:
            fh.write(run.stdout)
        return True
    with open(path, encoding="utf-8") as fh:
        expected = fh.read()
    if run.stdout != expected:
        print(f"{name} differs; this build writes:\n{run.stdout}")
        return False
    return True


lint = os.path.join(HERE, "lint")
confs = sorted(os.path.basename(p) for p in glob.glob(os.path.join(lint, "*.conf")))
ok = check(lint, ["lint"] + confs, 1, os.path.join(lint, "findings.txt"))
replays = os.path.join(HERE, "scenarios")
for scenario in sorted(glob.glob(os.path.join(replays, "*.yaml"))):
    base = os.path.basename(scenario)
    ok = check(replays, [base, "--log"], 0, os.path.join(replays, base[:-5] + ".txt")) and ok
sys.exit(0 if ok else 1)
