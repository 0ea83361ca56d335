#!/usr/bin/env python3
"""The fault sweep's command line as a user meets it: help and version on
standard output with status 0, a wrong command line on standard error with
status 2, a fault that never happened with status 1."""
import subprocess
import sys

sweep, scenario = sys.argv[1], sys.argv[2]
CASES = [
    # arguments, status, stream that must hold the text, text
    (["--help"], 0, "out", "usage: uilayer_fault_sweep"),
    (["--version"], 0, "out", "uilayer_fault_sweep "),
    (["--fail", "ConfigCount", "abc", scenario], 2, "err", "not 'abc'"),
    (["--fail", "ConfigCount", "-1", scenario], 2, "err", "not '-1'"),
    (["--fail", "ConfigCount", "0", scenario], 2, "err", "not '0'"),
    (["--fail", "NoSuchKind", "1", scenario], 2, "err", "no fault kind 'NoSuchKind' (kinds: Config"),
    (["--fail", "ConfigCount", "1"], 2, "err", "--fail takes KIND N SCENARIO.yaml"),
    (["--fail", "ConfigCount", "99999", scenario], 1, "err", "no fault was injected"),
    (["--fail", "ConfigCount", "1", scenario], 0, "out", "scenario: "),
    (["--jobs", "0"], 2, "err", "--jobs takes a whole number from 1 to 64"),
    (["--jobs", "65"], 2, "err", "--jobs takes a whole number from 1 to 64"),
    (["--limit", "x"], 2, "err", "--limit takes a whole number (0 for every call)"),
    (["--limit"], 2, "err", "--limit takes"),
    (["--verbos"], 2, "err", "unknown option '--verbos'"),
    (["--no-log", "--fail", "ConfigCount", "1", scenario], 2, "err", "--fail comes first"),
    # One fault per kind: the last call of each.
    (["--limit", "1", "--no-log", scenario], 0, "out", " passed, 0 failed"),
]
failures = 0
for args, status, stream, text in CASES:
    run = subprocess.run([sweep] + args, capture_output=True, text=True, timeout=60)
    seen = run.stdout if stream == "out" else run.stderr
    if run.returncode != status or text not in seen:
        failures += 1
        print(f"FAIL {args}: status {run.returncode} (want {status}); {stream}: {seen[:300]!r}")
print(f"{len(CASES) - failures} passed, {failures} failed")
sys.exit(1 if failures else 0)
