#!/usr/bin/env python3
"""uilayer-sim run as a user runs it: help, version, wrong command lines,
unreadable files, lint output forms, scenario mistakes with their "did you
mean", the "no record" answer, signals and aborts.

Usage: command_line_test.py SIM EXAMPLES_DIR
"""
import json
import os
import pty
import re
import signal
import subprocess
import sys
import tempfile
import time

import jsonschema

SIM, EXAMPLES = sys.argv[1], sys.argv[2]
LINT_SCHEMA = os.path.join(os.path.dirname(EXAMPLES), "docs", "lint.schema.json")
DIFF_SCHEMA = os.path.join(os.path.dirname(EXAMPLES), "docs", "diff.schema.json")
SWEEP_SCHEMA = os.path.join(os.path.dirname(EXAMPLES), "docs", "sweep.schema.json")
EXPLAIN_SCHEMA = os.path.join(os.path.dirname(EXAMPLES), "docs", "explain.schema.json")
REPORT_SCHEMA = os.path.join(os.path.dirname(EXAMPLES), "docs", "report.schema.json")
PHOTO = os.path.join(EXAMPLES, "photo.yaml")
CONF = os.path.join(EXAMPLES, "device.conf")

# A one-camera scenario; {format}, {steps} and {repeat} are filled per case.
SCENARIO = """\
device:
  cameras:
    - {{framework_id: 0, logical_id: 0, sensor: lmw50}}
sessions:
  - camera: 0
    operation_mode: 0x8005
    streams:
      - {{name: preview, width: 1920, height: 1080, format: {format}}}
    steps:
      - request: {{frame: 1, buffers: [preview]}}
{steps}
"""
BOKEH_ONE_PREVIEW = """\
device: {devices}/phone.yaml
sessions:
  - camera: 6
    operation_mode: 0x8010
    streams:
      - {{name: preview, width: 1920, height: 1080, format: IMPLEMENTATION_DEFINED}}
      - {{name: wide, width: 1920, height: 1080, format: YCbCr_420_888, physical_camera_id: "0"}}
"""

HEALTHY_AFTER = """\
  - name: after
    camera: 0
    streams:
      - {name: preview, width: 1920, height: 1080, format: IMPLEMENTATION_DEFINED, usage: HW_TEXTURE}
"""

failures = []
checks = [0]


def run(args, **kwargs):
    return subprocess.run([SIM, *args], capture_output=True, text=True, check=False, **kwargs)


def check(name, condition, detail=""):
    checks[0] += 1
    if not condition:
        failures.append(f"{name}: {detail}")


def scenario(directory, steps="", fmt="IMPLEMENTATION_DEFINED"):
    path = os.path.join(directory, "case.yaml")
    with open(path, "w", encoding="utf-8") as stream:
        stream.write(SCENARIO.format(format=fmt, steps=steps))
    return path


def expect(name, args, status, out=None, err=None, **kwargs):
    result = run(args, **kwargs)
    check(name, result.returncode == status, f"exit {result.returncode}, expected {status}")
    if out is not None:
        check(name, re.search(out, result.stdout, re.M), f"stdout {result.stdout[:300]!r}")
    if err is not None:
        check(name, re.search(err, result.stderr, re.M), f"stderr {result.stderr[:300]!r}")
    if status == 0:
        check(name, result.stderr == "", f"stderr {result.stderr[:300]!r}")
    return result


def schema_valid(name, schema_path, document):
    with open(schema_path, encoding="utf-8") as stream:
        errors = list(jsonschema.Draft202012Validator(json.load(stream)).iter_errors(document))
    check(name, not errors, errors[:1])


def completions(words):
    """What the completion script offers for the last of `words`."""
    script = run(["completion", "bash"]).stdout
    line = " ".join(f"'{w}'" for w in words)
    result = subprocess.run(["bash", "-c", script + f'\nCOMP_WORDS=({line}); COMP_CWORD={len(words) - 1}; '
                             '_uilayer_sim; printf "%s\\n" "${COMPREPLY[@]}"'],
                            capture_output=True, text=True, check=False, cwd=os.path.join(EXAMPLES, "golden"))
    return result.stdout.split()


def command_line_cases():
    usage_out = r"^usage: uilayer-sim SCENARIO"
    expect("help help", ["help", "help"], 0, out=r"^usage: uilayer-sim help \[SUBCOMMAND\]")
    for args, name in ((["--help"], "--help"), (["-h"], "-h"), (["help"], "help")):
        expect(name, args, 0, out=usage_out)
    for sub in ("replay", "lint", "names"):
        expect(f"{sub} --help", [sub, "--help"], 0, out=r"^usage: uilayer-sim " + sub + "|^usage: uilayer-sim SCENARIO")
        expect(f"help {sub}", ["help", sub], 0, out=r"^usage: ")
    expect("version", ["--version"], 0, out=r"^uilayer-sim \d+\.\d+\S*\n\Z")
    expect("no arguments", [], 2, err=r"^uilayer-sim: no SCENARIO given\nusage: ")
    expect("lint alone", ["lint"], 2, err=r"^uilayer-sim: no CONFIG given\nusage: uilayer-sim lint")
    expect("option typo", ["--jsn", PHOTO], 2,
           err=r"^uilayer-sim: unknown option '--jsn' \(did you mean '--json'\?\)")
    expect("subcommand typo", ["lnt", CONF], 2, err=r"unknown subcommand 'lnt' \(did you mean 'lint'\?\)")
    expect("two scenarios", [PHOTO, PHOTO], 2, err=r"unexpected argument")
    expect("format value", ["lint", "--format", "xml", CONF], 2, err=r"--format is text or json")
    expect("lint a directory", ["lint", "/"], 2, err=r"^uilayer-sim: /: Is a directory$")
    expect("replay a directory", [EXAMPLES], 2, err=r"^uilayer-sim: " + re.escape(EXAMPLES) + ": Is a directory$")
    expect("missing file", ["nothing.yaml"], 2, err=r"^uilayer-sim: nothing.yaml: No such file or directory$")
    expect("lint missing and clean", ["lint", "nothing.conf", CONF], 2, err=r"nothing.conf: No such file")
    expect("lint json missing", ["lint", "--format", "json", "nothing.conf"], 2,
           out=r'"file": "nothing.conf", "line": 0, .*"rule": "unreadable", "message": "cannot read: No such')
    expect("names caps", ["names", "caps"], 0, out=r"^49\tCapsVideoEIS$(.|\n)*^81\tCaps4x4Izoom$")
    expect("names roles", ["names", "roles"], 0, out=r"^1\tPreview$")
    expect("names formats", ["names", "formats"], 0, out=r"^33\tBLOB$")
    expect("names tags", ["names", "tags"], 0,
           out=r"^0x[0-9A-F]+\tANDROID_CONTROL_ZOOM_RATIO\tfloat$(.|\n)*^vendor 160\tCameraMode\tbytes$")
    expect("names typo", ["names", "cap"], 2, err=r"no list named 'cap' \(did you mean 'caps'\?\)")
    tags = json.loads(expect("names json", ["names", "tags", "--json"], 0).stdout)
    check("names json", {"id": 85, "vendor": True, "name": "WarmStartLux", "type": "float"} in tags, tags[-3:])
    # '-' is standard input, once; --json is the lint's --format json.
    with open(CONF, encoding="utf-8") as stream:
        expect("lint stdin", ["lint", "--json", "-"], 0, out=r"^\[\]$", input=stream.read())
    with open(PHOTO, encoding="utf-8") as stream:
        expect("replay stdin", ["-", "--no-lint"], 0, out=r"^  - session: photo$", input=stream.read(), cwd=EXAMPLES)
    expect("stdin twice", ["diff", "-", "-", PHOTO], 2, err=r"standard input \('-'\) can be given only once")
    # Completion from the command table: subcommands, options, choices of values and operands.
    for words, offered in ((["uilayer-sim", "li"], ["lint"]), (["uilayer-sim", "sweep", "--le"], ["--level"]),
                           (["uilayer-sim", "sweep", "x", "--level", ""], ["legacy", "limited", "full", "3"]),
                           (["uilayer-sim", "names", "f"], ["formats"]), (["uilayer-sim", "x.yaml", "--no"], ["--no-lint"]),
                           (["uilayer-sim", "sweep", "x", "--fail-on", "ab"], ["aborted"]),
                           (["uilayer-sim", "sweep", "x", "--camera", ""], [])):
        check("completion " + " ".join(words), completions(words) == offered, completions(words))
    expect("completion of another shell", ["completion", "zsh"], 2)
    expect("help completion", ["help", "completion"], 0, out=r"^usage: uilayer-sim completion bash$")


def sweep_cases(directory):
    phone = os.path.join(EXAMPLES, "devices", "phone.yaml")
    # A sweep needs only a device: a scenario without sessions; a camera without record has no size.
    for name, text, args, status, err in (
            ("device-only.yaml", f"device: {phone}\n", ["--level", "legacy"], 0, None),
            ("no-record.yaml", "cameras: [{framework_id: 1, no_record: true}]\n", [], 2,
             r"^uilayer-sim sweep: camera 1 has no record")):
        with open(os.path.join(directory, name), "w", encoding="utf-8") as stream:
            stream.write(text)
        expect("sweep " + name, ["sweep", os.path.join(directory, name), *args], status, err=err)
    result = expect("sweep by numbers and names",
                    ["sweep", phone, "--camera", "0x4", "--operation-mode",
                     "CAMERA3_STREAM_CONFIGURATION_NORMAL_MODE", "--level", "legacy", "--json"], 0)
    for text in ('"camera": 4,', '"level": "legacy"', '"preview": "1600x1200"'):
        check("sweep json", text in result.stdout, text)
    wrong = ([], ["--raw"], [phone, "--level", "5"], [phone, "--camera"], [phone, "--camera", "-1"],
             [phone, "--operation-mode", "FAST"], [phone, "--bogus"], [phone, phone],
             [phone, "--camera", "9"], [phone + ".missing"], [phone, "--config", phone + ".missing"],
             [phone, "--config", phone])  # the last: not a configuration the store takes
    for args in wrong:
        expect("sweep " + " ".join(os.path.basename(a) for a in args), ["sweep", *args], 2)
    # A bokeh session without physical preview streams: the library aborts
    # each combination's child, and only that one.
    bokeh = ["sweep", phone, "--camera", "6", "--operation-mode", "0x8010", "--level", "legacy"]
    expect("sweep fail on aborts", [*bokeh, "--fail-on", "unclassified,aborted"], 1)
    expect("sweep fail on other results", [*bokeh, "--fail-on", "failed,unclassified"], 0)
    expect("sweep fail on typo", [*bokeh, "--fail-on", "abortd"], 2, err=r"did you mean 'aborted'")
    schema_valid("sweep schema of aborts", SWEEP_SCHEMA, json.loads(run([*bokeh, "--json"]).stdout))
    result = expect("sweep aborts", bokeh, 0)
    check("sweep aborts", result.stdout.count("result: aborted") == 8 and
          result.stdout.count("during ParseStaticCapabilities") == 8 and
          result.stdout.count("E Unsupport num of physical preview stream 0") == 8, result.stdout[:400])
    check("sweep sizes of the primary sensor", "max: 8192x6144" in result.stdout)
    # High speed: its own two combinations at 120 fps or more, with the client and parameters given.
    high = ["sweep", phone, "--config", CONF, "--operation-mode", "CONSTRAINED_HIGH_SPEED", "--system-camera",
            "--param", "vendor:160=video_mode", "--json"]
    report = json.loads(expect("sweep high speed", high, 0).stdout)
    schema_valid("sweep schema", SWEEP_SCHEMA, report)
    check("sweep high speed", (report["tables"], report["package"], len(report["combinations"]),
                               report["session_parameters"]) ==
          (["high speed"], "com.lumora.camera", 2, ["ANDROID_CONTROL_AE_TARGET_FPS_RANGE=120,120",
                                                     "vendor:160=video_mode"]), report)
    for args in (["--fps", "30,60"], ["--fps", "240"], ["--param", "ANDROID_CONTROL_ZOOM_RATIOS=1"],
                 ["--param", "vendor:85=fast"], ["--param", "vendor:9999=1"]):
        expect("sweep high speed " + " ".join(args), [*high, *args], 2)
    expect("sweep system camera without one", ["sweep", phone, "--system-camera"], 2, err=r"names no system camera")
    # Each level adds its tables to the ones below it.
    for args, count in ((["--level", "limited"], 14), (["--level", "full"], 20),
                        (["--level", "full", "--raw"], 28), (["--level", "legacy", "--raw"], 16),
                        (["--level", "3"], 30), (["--level", "3", "--ten-bit", "--use-cases"], 60)):
        result = expect("sweep " + " ".join(args), ["sweep", phone, *args], 0)
        check("sweep " + " ".join(args), result.stdout.count("\n  - combination: ") == count,
              result.stdout.count("\n  - combination: "))


def lint_cases(directory):
    # A YAML file read as a configuration: one finding per line, collapsed.
    result = expect("lint collapse", ["lint", PHOTO], 1)
    lines = result.stdout.splitlines()
    check("lint path as given", all(line.startswith(PHOTO + ":") for line in lines), lines[:2])
    outside = [line for line in lines if "text outside a group" in line]
    more = [line for line in lines if re.fullmatch(re.escape(PHOTO) + r":\d+: \.\.\. and \d+ more like it", line)]
    check("lint collapse", len(outside) == 3 and len(more) >= 1, lines[:6])
    conf = os.path.join(directory, "range.conf")
    with open(conf, "w", encoding="utf-8") as stream:
        stream.write("[StarMode]\nAEMode = 99999999999999999999\nsensitiviy = x1\n")
    expect("lint out of range", ["lint", conf], 1,
           out=r':2: \[StarMode\] AEMode: value 1 "99999999999999999999" is out of range for a 32-bit integer$')
    result = expect("lint json", ["lint", "--format=json", conf, PHOTO], 1)
    findings = json.loads(result.stdout)
    with open(LINT_SCHEMA, encoding="utf-8") as stream:
        errors = list(jsonschema.Draft202012Validator(json.load(stream)).iter_errors(findings))
    check("lint json schema", not errors, errors[:1])
    check("lint json all findings", len(findings) == 2 + len(outside) + sum(
        int(re.search(r"and (\d+) more", line).group(1)) for line in more), len(findings))
    first, second = findings[0], findings[1]
    check("lint json values", (first["file"], first["line"], first["group"], first["key"], first["rule"]) ==
          (conf, 2, "StarMode", "AEMode", "out-of-range"), first)
    check("lint json rule", second["rule"] == "not-an-integer", second)
    check("lint json null group", findings[-1]["group"] is None and findings[-1]["key"] is None, findings[-1])
    expect("lint json clean", ["lint", "--format", "json", CONF], 0, out=r"^\[\]$")
    # Before a replay: the photo device has one camera of the phone's
    # configuration (counted); a sensor name two letters off is shown.
    result = run([PHOTO])
    check("replay device findings", result.returncode == 0 and re.fullmatch(
        r"warning: device\.conf: \d+ values name cameras or sensors the scenario's device does not "
        r"have \(uilayer-sim lint \S+device\.conf --device \S+photo\.yaml lists them\)\n", result.stderr),
        result.stderr)
    typo = os.path.join(directory, "typo.conf")
    with open(CONF, encoding="utf-8") as source, open(typo, "w", encoding="utf-8") as target:
        target.write(source.read().replace("\nlmt64 = 0x8009", "\nlmt46 = 0x8009"))
    with open(os.path.join(EXAMPLES, "speed.yaml"), encoding="utf-8") as source, \
            open(os.path.join(directory, "typo.yaml"), "w", encoding="utf-8") as target:
        target.write(source.read().replace("config: device.conf", "config: " + typo)
                     .replace("device: devices/", "device: " + EXAMPLES + "/devices/"))
    result = run([os.path.join(directory, "typo.yaml")])
    check("replay device typo", re.search(r'lmt46: "lmt46" is no sensor of the device; did you mean "lmt64"\?',
                                          result.stderr), result.stderr)
    # Against a device: a misspelt sensor in a row, also in the lint before a replay.
    conf = os.path.join(directory, "sensor.conf")
    with open(conf, "w", encoding="utf-8") as stream:
        stream.write("[EnableSensorDCGVS]\nlmw05 = 0x8009\n")
    phone = os.path.join(EXAMPLES, "devices", "phone.yaml")
    expect("lint device", ["lint", conf, "--device", phone], 1,
           out=r':2: \[EnableSensorDCGVS\] lmw05: "lmw05" is no sensor of the device; did you mean "lmw50"\?$')
    findings = json.loads(expect("lint device json", ["lint", conf, "--device", phone, "--json"], 1).stdout)
    schema_valid("lint device json", LINT_SCHEMA, findings)
    expect("lint without device", ["lint", conf], 0)
    expect("lint device missing", ["lint", conf, "--device", conf + ".yaml"], 2)
    replay = os.path.join(directory, "sensor.yaml")
    with open(PHOTO, encoding="utf-8") as source, open(replay, "w", encoding="utf-8") as target:
        target.write(source.read().replace("config: device.conf", "config: sensor.conf"))
    result = run([replay])
    check("lint before replay", result.returncode == 0 and re.fullmatch(
        r'warning: sensor.conf:2: \[EnableSensorDCGVS\] lmw05: .*did you mean "lmw50"\?\n', result.stderr), result)


def scenario_cases(directory):
    mistakes = [
        ("unknown capability", "      - session_caps: {caps: [CapsVideoEis]}", "IMPLEMENTATION_DEFINED",
         r'unknown capability "CapsVideoEis" \(did you mean "CapsVideoEIS"\?\)'),
        ("unknown format", "", "BLBO", r'unknown pixel format "BLBO" \(did you mean "BLOB"\?\)'),
        ("unknown role", "      - streams: {role: Preveiw}", "BLOB",
         r'unknown stream role "Preveiw" \(did you mean "Preview"\?\)'),
        ("unknown tag", "      - request: {frame: 2, settings: [{tag: ANDROID_CONTROL_ZOOM_RATIOS, float: 1.0}]}",
         "BLOB", r'unknown standard tag "ANDROID_CONTROL_ZOOM_RATIOS" \(did you mean "ANDROID_CONTROL_ZOOM_RATIO"\?\)'),
        ("query camera", "      - session_caps: {camera: 5, caps: [CapsSHDR]}", "BLOB",
         r"^\S+case.yaml:\d+: sessions\[0\]\.steps\[1\]\.session_caps\.camera: no camera 5 in the device$"),
        ("warm start camera", "      - warm_start: {camera: 200}", "BLOB",
         r"warm_start\.camera: no camera 200 in the device$"),
        ("out of range", "      - request: {frame: 99999999999999999999}", "BLOB",
         r"frame: 99999999999999999999 is out of range \(0\.\.4294967295\)$"),
    ]
    for name, steps, fmt, err in mistakes:
        expect(name, [scenario(directory, steps, fmt)], 2, err=err)
    steps = ("      - request_caps: {frame: 9, camera: 0}\n      - streams: {role: Preview, frame: 9}\n"
             "      - tuning_mode: {frame: 9, table: feature1}\n      - sensor_mode: {camera: 0, request: 9}")
    result = expect("no record", [scenario(directory, steps)], 0)
    check("no record", len(re.findall(r": no record for the frame$", result.stdout, re.M)) == 4, result.stdout)


def diff_cases(directory):
    # Three keys changed: one the bundled scenarios never feel, one that zoom-video
    # feels alone, and one that photo feels only together with it.
    new = os.path.join(directory, "new.conf")
    with open(CONF, encoding="utf-8") as source, open(new, "w", encoding="utf-8") as target:
        target.write(source.read().replace("Enable3DLut = true", "Enable3DLut = false")
                     .replace("SupportSnaphotLockMaster = true\n", "")
                     .replace("isEnableMIPMAP = true", "isEnableMIPMAP = false"))
    zoom = os.path.join(EXAMPLES, "zoom-video.yaml")
    # Session caps and request caps, each against the explain schema.
    for args, status in (([zoom, "CapsSHDR", "--frame", "1"], 1), ([PHOTO, "CapsVideoEIS", "--no-lint"], 0)):
        explained = json.loads(expect("explain json", ["explain", *args, "--json"], status).stdout)
        schema_valid("explain schema " + args[1], EXPLAIN_SCHEMA, explained)
    result = expect("diff", ["diff", CONF, new, PHOTO, zoom, "--json"], 1)
    report = json.loads(result.stdout)
    with open(DIFF_SCHEMA, encoding="utf-8") as stream:
        jsonschema.validate(report, json.load(stream))
    found = [(d["kind"], d["key"], d["old_line"] is None, d["new_line"] is None)
             for d in report["differences"]]
    check("diff differences", found == [("changed", "Enable3DLut", False, False),
                                        ("removed", "SupportSnaphotLockMaster", False, True),
                                        ("changed", "isEnableMIPMAP", False, False)], found)
    causes = [[(c["decision"], c["causes"], c["search"]) for c in each["changes"]]
              for each in report["scenarios"]]
    check("diff causes", causes == [[("logical caps", [1, 2], "found")],
                                    [("logical caps", [1], "found")]], causes)
    expect("diff text", ["diff", CONF, new, zoom], 1,
           out=r"^  logical caps: -CapsSnapshotLockMaster\n    causes: #2 OemCamSettings/")
    expect("diff same", ["diff", CONF, CONF, PHOTO], 0, out="no decision changed")
    expect("diff missing", ["diff", CONF, "missing.conf", PHOTO], 2, err="missing.conf: No such")
    expect("diff no scenario", ["diff", CONF, new], 2, err="no SCENARIO")


def on_terminal(args):
    """Runs uilayer-sim with standard error on a pseudo terminal; gives its status and what it wrote there."""
    master, slave = pty.openpty()
    process = subprocess.Popen([SIM, *args], stdout=subprocess.DEVNULL, stderr=slave)
    os.close(slave)
    written = b""
    while True:
        try:
            chunk = os.read(master, 4096)
        except OSError:
            break
        if not chunk:
            break
        written += chunk
    os.close(master)
    return process.wait(timeout=60), written.decode("utf-8", "replace")


def terminal_cases(directory):
    # A scenario of a megabyte says it is being read, on a terminal only, and
    # clears the line; a replay shorter than a second shows no progress line.
    path = scenario(directory, "      - request: {frame: 1, buffers: [preview]}\n" + ("#" * 80 + "\n") * 13200)
    status, written = on_terminal([path, "--no-lint"])
    check("reading line", status == 0 and written == f"uilayer-sim: reading {path}\x1b[K\r\x1b[K", repr(written))
    expect("reading line not on a pipe", [path, "--no-lint"], 0)


def signal_cases(directory):
    steps = "      - repeat: {count: 10000000, request: {buffers: [preview]}}"
    path = scenario(directory, steps)
    for number in (signal.SIGINT, signal.SIGTERM):
        tmp = tempfile.mkdtemp(dir=directory)
        process = subprocess.Popen([SIM, path], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                   env=dict(os.environ, TMPDIR=tmp))
        deadline = time.monotonic() + 20
        while not os.listdir(tmp) and time.monotonic() < deadline:
            time.sleep(0.01)
        time.sleep(0.2)
        process.send_signal(number)
        status = process.wait(timeout=20)
        check(f"signal {number.name}", status == -number, f"status {status}")
        check(f"signal {number.name} clean-up", os.listdir(tmp) == [], os.listdir(tmp))
    devices = os.path.join(directory, "phone")
    os.makedirs(devices, exist_ok=True)
    with open(os.path.join(EXAMPLES, "devices", "phone.yaml"), encoding="utf-8") as source:
        with open(os.path.join(devices, "phone.yaml"), "w", encoding="utf-8") as target:
            target.write(source.read())
    bokeh = os.path.join(directory, "bokeh.yaml")
    with open(bokeh, "w", encoding="utf-8") as stream:
        stream.write(BOKEH_ONE_PREVIEW.format(devices=devices))
    # The abort ends its session's report; the session after it still reports.
    with open(bokeh, "a", encoding="utf-8") as stream:
        stream.write(HEALTHY_AFTER)
    tmp = tempfile.mkdtemp(dir=directory)
    result = run([bokeh, "--log"], env=dict(os.environ, TMPDIR=tmp))
    check("abort", result.returncode == 4, result.returncode)
    check("abort clean-up", os.listdir(tmp) == [], os.listdir(tmp))
    check("abort report", re.search(r"aborted: the library aborted the process during "
                                    r"ParseStaticCapabilities(.|\n)*- E Unsupport num of physical preview"
                                    r"(.|\n)*session: after(.|\n)*logical caps: CapsStreamPreview",
                                    result.stdout), result.stdout[-600:])
    check("abort message", "the library aborted the process during" in result.stderr, result.stderr)
    report = json.loads(run([bokeh, "--json"]).stdout)
    schema_valid("abort schema", REPORT_SCHEMA, report)
    check("abort json", [("aborted" in s) for s in report["sessions"]] == [True, False], report["sessions"])
    expect("explain beside an abort", ["explain", bokeh, "CapsStreamPreview", "--session", "after", "--no-lint"], 0)
    expect("explain of an abort", ["explain", bokeh, "0", "--session", "1", "--no-lint"], 4,
           err="aborted the process during ParseStaticCapabilities")
    expect("diff abort", ["diff", CONF, CONF, bokeh], 0, out="no decision changed")


def main():
    with tempfile.TemporaryDirectory() as directory:
        command_line_cases()
        sweep_cases(directory)
        lint_cases(directory)
        scenario_cases(directory)
        diff_cases(directory)
        signal_cases(directory)
        terminal_cases(directory)
    for failure in failures:
        print(failure)
    print(f"{checks[0] - len(failures)} passed, {len(failures)} failed")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
