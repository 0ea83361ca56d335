#!/usr/bin/env python3
"""Reports of small cases against the files committed beside them: the lint
findings of every lint/*.conf (lint/findings.txt and .json), the replay with its log
lines of every scenarios/*.yaml (scenarios/NAME.txt), and what the simulator
says of each scenario with a mistake in mistakes/scenarios.txt
(mistakes/errors.txt; <NUL> there stands for a NUL byte; a case named
warning-... replays, with its warnings). With --update the
files are written from this build instead, after a deliberate change.

Usage: golden_test.py SIM [--update]
"""
import glob
import os
import subprocess
import sys
import tempfile

SIM = os.path.abspath(sys.argv[1])
UPDATE = "--update" in sys.argv[2:]
HERE = os.path.dirname(os.path.abspath(__file__))


def run(folder, args, status):
    # A private TMPDIR: the device root of a run must be gone when it ends.
    with tempfile.TemporaryDirectory() as tmp:
        done = subprocess.run([SIM] + args, cwd=folder, stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, text=True, timeout=60,
                              env=dict(os.environ, TMPDIR=tmp))
        left = os.listdir(tmp)
    if left:
        print(f"{' '.join(args)}: left {left} behind")
        return None
    if done.returncode != status:
        print(f"{' '.join(args)}: exit status {done.returncode}, {status} expected\n"
              f"{done.stderr}")
        return None
    return done


def compare(text, golden):
    if UPDATE:
        with open(golden, "w", encoding="utf-8") as fh:
            fh.write(text)
        return True
    with open(golden, encoding="utf-8") as fh:
        expected = fh.read()
    if text != expected:
        print(f"{os.path.relpath(golden, HERE)} differs; this build writes:\n{text}")
        return False
    return True


def check(folder, args, status, golden):
    done = run(folder, args, status)
    return done is not None and compare(done.stdout, golden)


def check_mistakes(folder):
    with open(os.path.join(folder, "scenarios.txt"), encoding="utf-8") as fh:
        cases = fh.read().split("\n### ")[1:]
    said = ""
    ok = True
    with tempfile.TemporaryDirectory() as tmp:
        for case in cases:
            name, text = case.split("\n", 1)
            with open(os.path.join(tmp, name + ".yaml"), "w", encoding="utf-8") as fh:
                fh.write(text.replace("<NUL>", "\0"))
            done = run(tmp, [name + ".yaml"], 0 if name.startswith("warning-") else 2)
            ok = ok and done is not None
            said += done.stderr.replace(tmp, "<dir>") if done is not None else ""
    return compare(said, os.path.join(folder, "errors.txt")) and ok


lint = os.path.join(HERE, "lint")
confs = sorted(os.path.basename(p) for p in glob.glob(os.path.join(lint, "*.conf")))
ok = check(lint, ["lint"] + confs, 1, os.path.join(lint, "findings.txt"))
ok = check(lint, ["lint"] + confs + ["--format", "json"], 1,
           os.path.join(lint, "findings.json")) and ok
replays = os.path.join(HERE, "scenarios")
for scenario in sorted(glob.glob(os.path.join(replays, "*.yaml"))):
    base = os.path.basename(scenario)
    ok = check(replays, [base, "--log"], 0, os.path.join(replays, base[:-5] + ".txt")) and ok
ok = check_mistakes(os.path.join(HERE, "mistakes")) and ok
sys.exit(0 if ok else 1)
