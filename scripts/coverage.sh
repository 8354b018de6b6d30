#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
#
# Builds with coverage counters, runs the tests of the library, the scene graph and the host services, and fails where
# less is covered than Tests/Coverage/Check.py asks for. A page for each source goes to build/coverage/Report.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
scripts/setup.sh

build=build/coverage
echo "coverage.sh: building"
cmake --preset coverage >/dev/null
cmake --build --preset coverage -- --quiet
# What older builds left would be counted as never run.
ninja -C "$build" -t cleandead >/dev/null
find "$build" -name '*.gcda' -delete
find "$build" -name '*.gcno' | while read -r notes; do
    [ -e "${notes%.gcno}.o" ] || rm "$notes"
done
ctest --preset coverage -j "$(nproc)" --quiet

# Throwing is no branch of the source, and neither is what the compiler adds for it.
report() {
    gcovr --root . --gcov-executable gcov-12 --exclude-throw-branches --exclude-unreachable-branches -j "$(nproc)" "$@"
}
mkdir -p "$build/Report"
# Of a header line in several programs gcovr knows only one: the library is looked at as it is built into itself.
report --filter 'Libs/Interaction/' --json "$build/Report/Interaction.json" "$build/Libs"
report --filter 'Libs/(SceneGraph|Host)/' --json "$build/Report/Others.json" "$build/Libs" "$build/Tests"
report --filter 'Libs/(Interaction|SceneGraph|Host)/' --html-details "$build/Report/index.html" "$build/Libs" "$build/Tests"
python3 Tests/Coverage/Check.py "$build/Report/Interaction.json" "$build/Report/Others.json"
