#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
#
# Changes the library in one place at a time and looks whether a test notices; takes an hour and a half on two cores.
#
#   scripts/mutate.sh                          all of Libs/Interaction
#   scripts/mutate.sh --file LazyPicker.cpp    one source
#   scripts/mutate.sh --again                  only what survived the last time
#   scripts/mutate.sh --help                   the other options
#
# Works on a copy under build/mutation. Ends with 3 when a mutant survives that Tests/Mutation/Explained.txt does not name.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
scripts/setup.sh
exec python3 Tests/Mutation/Mutate.py "$@"
