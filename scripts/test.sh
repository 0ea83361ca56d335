#!/usr/bin/env bash
# Builds the project with g++ and clang++ (warnings are errors) and runs every
# test with both builds.
set -euo pipefail
cd "$(dirname "$0")/.."

cmake --preset default
cmake --build --preset default
ctest --preset default

cmake --preset clang
cmake --build --preset clang
ctest --preset clang
