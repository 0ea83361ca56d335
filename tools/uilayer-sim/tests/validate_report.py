#!/usr/bin/env python3
"""Replays every scenario given with --json (and with --json --log) and
validates each report against the report schema; then checks that the schema
refuses reports with the old shapes (text where numbers belong, labels as
keys), so that it stays strict enough to catch a regression.

Usage: validate_report.py SIM SCHEMA SCENARIO...
"""
import copy
import json
import subprocess
import sys

import jsonschema


def main():
    sim, schema_path, scenarios = sys.argv[1], sys.argv[2], sys.argv[3:]
    with open(schema_path, encoding="utf-8") as stream:
        schema = json.load(stream)
    jsonschema.Draft202012Validator.check_schema(schema)
    validator = jsonschema.Draft202012Validator(schema)
    failures = 0
    first = None
    for scenario in scenarios:
        for extra in ([], ["--log"]):
            run = subprocess.run([sim, scenario, "--json", *extra], capture_output=True,
                                 text=True, check=False)
            if run.returncode != 0:
                print(f"{scenario} {extra}: exit {run.returncode}: {run.stderr}")
                failures += 1
                continue
            report = json.loads(run.stdout)
            first = first or report
            for error in validator.iter_errors(report):
                print(f"{scenario} {extra}: {'/'.join(map(str, error.path))}: {error.message}")
                failures += 1

    # Old shapes the schema must refuse.
    session = first["sessions"][0]
    regressions = {
        "operation mode as text": ("operation_mode", "0x8005"),
        "caps by name only": ("logical_caps", ["CapsStreamPreview"]),
        "cameras keyed by label": ("physical_caps", {"camera 0": []}),
        "key with a space": ("camera mode", "photo_mode"),
    }
    for name, (key, value) in regressions.items():
        broken = copy.deepcopy(first)
        broken["sessions"][0] = dict(session, **{key: value})
        if validator.is_valid(broken):
            print(f"the schema accepts a report with {name}")
            failures += 1
    passed = len(scenarios) * 2 + len(regressions) - failures
    print(f"{passed} passed, {failures} failed")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
