#!/usr/bin/env bash
# Installs what building and testing the project needs on a Debian machine.
set -euo pipefail

packages=(cmake ninja-build g++ clang libclang-rt-14-dev libfuzzer-14-dev valgrind libgtest-dev libgmock-dev
          googletest libbenchmark-dev libyaml-cpp-dev abigail-tools g++-aarch64-linux-gnu qemu-user
          android-libcutils-dev android-liblog-dev android-platform-system-core-headers blueprint-tools
          python3 python3-jsonschema)
missing=()
for package in "${packages[@]}"; do
    dpkg -s "$package" >/dev/null 2>&1 || missing+=("$package")
done
if ((${#missing[@]})); then
    echo "Installing: ${missing[*]}"
    sudo_cmd=()
    [ "$(id -u)" -ne 0 ] && sudo_cmd=(sudo)
    "${sudo_cmd[@]}" apt-get update -q
    DEBIAN_FRONTEND=noninteractive "${sudo_cmd[@]}" apt-get install -y -q --no-install-recommends "${missing[@]}"
fi
