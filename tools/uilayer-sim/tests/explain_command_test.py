#!/usr/bin/env python3
"""uilayer-sim explain and the lint before a replay, run as a user runs them:
exit statuses, refused questions, the JSON form, warnings on standard error
that leave the replay's output alone, and --no-lint.

Usage: explain_command_test.py SIM DATA_DIR
"""
import json
import os
import subprocess
import sys

SIM, DATA = sys.argv[1], sys.argv[2]
SCENARIO = os.path.join(DATA, "explain.yaml")
WARNING = "warning: inline:10: [FlowControll]: not a group the library reads; " \
          "did you mean [FlowControl]?\n"
failures = []


def run(*args):
    return subprocess.run([SIM, *args], capture_output=True, text=True, timeout=60)


def check(name, condition, result):
    if not condition:
        failures.append(f"{name}: status {result.returncode}\n{result.stdout}{result.stderr}")


# (arguments, status, text on stdout, text on stderr)
CASES = [
    (["CapsSystemCameraClient", "--session", "1"], 0, "set by step ParseSessionParams", WARNING),
    (["CapsCameraModeProVideoLog", "--session", "2", "--no-lint"], 1,
     '\n  session parameter CameraMode (vendor 160) = "pro_video_log_mode"\n', ""),
    (["CapsStreamPreview", "--session", "1", "--frame", "1"], 0,
     "added by a buffer of stream preview (role Preview)", WARNING),
    (["CapsVideoEISS"], 2, "", 'did you mean "CapsVideoEIS"'),
    (["4x4"], 2, "", "no capability named '4x4'"),
    (["100"], 2, "", "out of range: the bits are 0..99"),
    (["0", "--frame", "9"], 2, "", "no record for the frame 9"),
    (["0", "--camera", "7"], 2, "", "not 'logical' or a physical camera"),
]
for args, status, out, err in CASES:
    result = run("explain", SCENARIO, *args)
    check(" ".join(args), result.returncode == status and out in result.stdout and
          err in result.stderr, result)

result = run("explain", SCENARIO, "Caps3DLut", "--session", "pro video", "--json")
answer = json.loads(result.stdout) if result.returncode == 1 else {}
check("--json", answer.get("bit") == 94 and answer.get("set") is False and
      {"kind": "property", "target": "persist.vendor.camera.3dlut.enable", "value": "1",
       "effect": "sets", "verified": True} in
      [{k: c[k] for k in ("kind", "target", "value", "effect", "verified")}
       for c in answer["changes"]], result)

# The lint before a replay warns on standard error only; --no-lint is silent.
linted = run(SCENARIO)
quiet = run("replay", SCENARIO, "--no-lint")
check("replay warns", linted.returncode == 0 and linted.stderr == WARNING, linted)
check("--no-lint", quiet.returncode == 0 and quiet.stderr == "" and
      quiet.stdout == linted.stdout, quiet)

if failures:
    print("\n\n".join(failures))
    sys.exit(1)
print(f"{len(CASES) + 3} passed")
