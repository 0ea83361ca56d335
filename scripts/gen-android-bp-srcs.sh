#!/usr/bin/env bash
# Prints the srcs list of the library module for Android.bp.
set -euo pipefail
cd "$(dirname "$0")/.."
find uilayer -name '*.cpp' | LC_ALL=C sort | sed 's/.*/        "&",/'
