#!/usr/bin/env bash
# Rewrites the seed corpora under fuzz/corpus/ from the bundled examples (the
# scenarios and device configuration in examples/). Inputs kept for findings
# stay as they are.
set -euo pipefail
cd "$(dirname "$0")/.."
cmake --preset fuzz
cmake --build --preset fuzz --target uilayer_fuzz_seeds
mkdir -p fuzz/corpus/fuzz_config_loader fuzz/corpus/fuzz_session fuzz/corpus/fuzz_request_result
build-fuzz/fuzz/uilayer_fuzz_seeds examples fuzz/corpus
