#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
#
# Works with koviewer as a user does, at random, and looks whether it holds more and more.
#
#   scripts/endure.sh [SECONDS] [SEED]   a minute unless said otherwise, with a new seed, which is told
#
# First the library alone selects and deselects a whole model 10,000 times. Prints what the viewer holds: containers of the
# scene graph, heap, memory, files. Ends with 1 at a finding; what was done until then is in
# build/PRESET/Endurance/script.txt, all rows of the table are in reports.csv beside it. Built with PRESET (release unless
# set; asan has the sanitizers).
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."

usage() {
    sed -n '4,12s/^# \{0,1\}//p' "${BASH_SOURCE[0]}" >&2
    exit 2
}

seconds=${1:-60}
seed=${2:-$(date +%s)}
if [ $# -gt 2 ] || ! [[ $seconds =~ ^[0-9]+$ && $seed =~ ^[0-9]+$ ]]; then
    usage
fi
preset=${PRESET:-release}

scripts/setup.sh
echo "endure.sh: building"
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset" --target koviewer SelectionEnduranceTest -- --quiet

# Qt's offscreen platform leaks its screen.
export LSAN_OPTIONS=suppressions=$PWD/Tests/Support/lsan.supp:print_suppressions=0
export UBSAN_OPTIONS=print_stacktrace=1
echo "endure.sh: 10,000 selections of a whole model"
KOINTERACTION_ENDURANCE_ROUNDS=10000 "build/$preset/bin/SelectionEnduranceTest" --gtest_brief=1

echo "endure.sh: seed $seed, $seconds seconds"
mkdir -p "build/$preset/Endurance"
exec python3 Tests/Endurance/Endure.py --viewer "build/$preset/bin/koviewer" --seconds "$seconds" --seed "$seed" \
    --script "build/$preset/Endurance/script.txt" --reports "build/$preset/Endurance/reports.csv"
