#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
#
# Builds and runs all tests.
#
#   scripts/test.sh            everything: gcc 12, clang 14, both sanitizers over the whole suite, checked containers,
#                              coverage, the Debian packages
#   scripts/test.sh PRESET...  only these presets of CMakePresets.json (dev, qt6, ci, ci-clang, asan, debug-containers)
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
scripts/setup.sh

presets=("$@")
all=false
if [ ${#presets[@]} -eq 0 ]; then
    presets=(ci ci-clang asan debug-containers)
    all=true
fi

for preset in "${presets[@]}"; do
    echo "test.sh: preset $preset"
    cmake --preset "$preset" >/dev/null
    cmake --build --preset "$preset"
    ctest --preset "$preset" -j "$(nproc)"
    echo "test.sh: preset $preset passed after $SECONDS seconds"
done
if $all; then
    scripts/coverage.sh
    scripts/check-package.sh
fi
echo "test.sh: all tests passed (${presets[*]})"
