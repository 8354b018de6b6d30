#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
#
# Builds and runs all tests.
#
#   scripts/test.sh            everything: gcc 12, clang 14, and both sanitizers over the whole suite
#   scripts/test.sh PRESET...  only these presets of CMakePresets.json (dev, qt6, ci, ci-clang, asan)
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
scripts/setup.sh

presets=("$@")
[ ${#presets[@]} -gt 0 ] || presets=(ci ci-clang asan)

for preset in "${presets[@]}"; do
    echo "test.sh: preset $preset"
    cmake --preset "$preset" >/dev/null
    cmake --build --preset "$preset"
    ctest --preset "$preset" -j "$(nproc)"
done
echo "test.sh: all tests passed (${presets[*]})"
