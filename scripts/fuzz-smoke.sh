#!/usr/bin/env bash
# Builds the fuzz preset and runs each fuzzer for a short while (30 seconds, or
# FUZZ_SECONDS) on the seeds the build writes under build-fuzz/fuzz/seeds/. New
# inputs go to a scratch directory; a crash fails the script, and its input is
# kept under build-fuzz/fuzz-findings/ (a fixed finding stays as a scenario under
# tests/hardening/findings/).
set -euo pipefail
cd "$(dirname "$0")/.."

seconds=${FUZZ_SECONDS:-30}
cmake --preset fuzz
cmake --build --preset fuzz

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
findings=build-fuzz/fuzz-findings
status=0
seeds=build-fuzz/fuzz/seeds
for run in fuzz_config_loader:config fuzz_session:scenarios fuzz_request_result:scenarios; do
    fuzzer=${run%%:*}
    mkdir -p "$scratch/$fuzzer/corpus" "$scratch/$fuzzer/artifacts"
    echo "== $fuzzer: ${seconds} s"
    # The scenario seeds are a few bytes (a scenario's name): inputs may hold
    # their edits from the start rather than grow slowly from that length.
    if build-fuzz/fuzz/"$fuzzer" -max_total_time="$seconds" -rss_limit_mb=2048 -len_control=0 \
        -print_final_stats=1 -artifact_prefix="$scratch/$fuzzer/artifacts/" \
        "$scratch/$fuzzer/corpus" "$seeds/${run#*:}" >"$scratch/$fuzzer/log" 2>&1; then
        grep -E '^#[0-9]+[[:space:]]+DONE|^stat::(number_of_executed_units|average_exec_per_sec)' \
            "$scratch/$fuzzer/log" || true
    else
        status=1
        tail -n 80 "$scratch/$fuzzer/log"
        mkdir -p "$findings/$fuzzer"
        cp "$scratch/$fuzzer/artifacts/"* "$findings/$fuzzer/" 2>/dev/null || true
        echo "$fuzzer failed; its input is under $findings/$fuzzer"
    fi
done
exit $status
