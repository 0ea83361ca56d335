#!/bin/sh
# Regenerates the golden reports under examples/golden from the bundled
# scenarios. Usage: tools/uilayer-sim/update-golden.sh [path/to/uilayer-sim]
# (default: build/uilayer-sim of the checkout; the build target
# uilayer-sim-update-golden passes the one it just built).
set -eu
here=$(cd "$(dirname "$0")" && pwd)
top=$(cd "$here/../.." && pwd)
sim=${1:-"$top/build/uilayer-sim"}
if [ ! -x "$sim" ]; then
    echo "update-golden.sh: no simulator at $sim; build it or pass its path" >&2
    exit 2
fi
mkdir -p "$top/examples/golden"
for scenario in "$top"/examples/*.yaml; do
    name=$(basename "$scenario" .yaml)
    "$sim" "$scenario" > "$top/examples/golden/$name.txt"
    echo "examples/golden/$name.txt"
done
"$sim" "$top/examples/photo.yaml" --json > "$top/examples/golden/photo.json"
echo "examples/golden/photo.json"
"$sim" sweep "$top/examples/devices/phone.yaml" --config "$top/examples/device.conf" \
    --level full --raw --ten-bit --use-cases > "$top/examples/golden/sweep-phone.txt"
echo "examples/golden/sweep-phone.txt"
