#!/usr/bin/env bash
# Builds the release preset and prints every benchmark figure in one run
# (medians of five repetitions).
set -euo pipefail
cd "$(dirname "$0")/.."
cmake --preset release >/dev/null
cmake --build --preset release --target uilayer_bench
./build-release/bench/uilayer_bench --benchmark_repetitions=5 \
    --benchmark_report_aggregates_only=true "$@"
