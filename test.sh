#!/usr/bin/env bash
# Checks the tree, then builds and runs every test, once plain and once under the sanitizers.
set -euo pipefail
cd "$(dirname "$0")"

tools/setup
tools/check
for preset in dev asan; do
    cmake --preset $preset >/dev/null
    cmake --build --preset $preset
    [ $preset = dev ] && tools/check --tidy # reads the compile commands of build/dev
    ctest --preset $preset
done
