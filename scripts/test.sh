#!/usr/bin/env bash
# Checks that Android.bp is as bpfmt writes it; builds the project with g++ and
# clang++ (warnings are errors) and runs every test with both builds; builds and
# tests the library against the platform's own properties, log and graphics
# headers; then valgrind over the unit tests, the whole suite under
# AddressSanitizer/UndefinedBehaviorSanitizer and under ThreadSanitizer, a short
# run of each fuzzer, and the suite cross-built for 64-bit Arm under user-mode
# emulation. Each stage reports how long it took.
set -euo pipefail
cd "$(dirname "$0")/.."

stage() {
    local name=$1
    shift
    local start=$SECONDS
    echo "=== $name"
    "$@"
    echo "=== $name: $((SECONDS - start)) s"
}

build_and_test() {
    cmake --preset "$1"
    cmake --build --preset "$1"
    ctest --preset "$1"
}

# Android.bp as bpfmt writes it: any difference fails.
bp_formatted() {
    local diff
    diff=$(bpfmt -d Android.bp)
    if [ -n "$diff" ]; then
        printf '%s\n' "$diff"
        echo "Android.bp differs from its bpfmt form: run bpfmt -w Android.bp"
        return 1
    fi
}

stage "bpfmt" bp_formatted
stage "g++" build_and_test default
stage "fault sweep (figures)" build/faults/uilayer_fault_sweep
stage "valgrind" ctest --preset valgrind
stage "clang++" build_and_test clang
stage "platform-headers" build_and_test platform-headers
stage "asan+ubsan" build_and_test asan
stage "tsan" build_and_test tsan
stage "fuzz smoke" bash scripts/fuzz-smoke.sh
stage "arm64 (qemu-aarch64)" build_and_test arm64
# Last, the whole host suite once more, so that the log ends on its summary.
stage "summary" ctest --preset default
