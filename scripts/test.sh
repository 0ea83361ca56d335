#!/usr/bin/env bash
# Builds the project with g++ and clang++ (warnings are errors) and runs every
# test with both builds; then valgrind over the unit tests, the whole suite
# under AddressSanitizer/UndefinedBehaviorSanitizer and under ThreadSanitizer,
# a short run of each fuzzer, and the suite cross-built for 64-bit Arm under
# user-mode emulation. Each stage reports how long it took.
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

stage "g++" build_and_test default
stage "fault sweep (figures)" build/faults/uilayer_fault_sweep
stage "valgrind" ctest --preset valgrind
stage "clang++" build_and_test clang
stage "asan+ubsan" build_and_test asan
stage "tsan" build_and_test tsan
stage "fuzz smoke" bash scripts/fuzz-smoke.sh
stage "arm64 (qemu-aarch64)" build_and_test arm64
# Last, the whole host suite once more, so that the log ends on its summary.
stage "summary" ctest --preset default
