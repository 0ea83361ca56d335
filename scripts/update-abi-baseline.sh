#!/usr/bin/env bash
# Regenerates the committed baseline of the shared library's exported interface
# from the default (g++) build.
set -euo pipefail
cd "$(dirname "$0")/.."
cmake --preset default >/dev/null
cmake --build --preset default --target camera.lumora.uilayer
abidw --no-corpus-path --no-comp-dir-path --out-file abi/camera.lumora.uilayer.abi \
    build/libcamera.lumora.uilayer.so
echo "abi/camera.lumora.uilayer.abi updated"
