#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
#
# Runs the tests of the library, the scene graph and the host services under valgrind's memcheck, which sees what the
# sanitizers do not: values that are used before anything is written to them.
#
#   scripts/memcheck.sh           all of them, in some ten minutes of a processor
#   scripts/memcheck.sh REGEX     only tests with such names
#
# Ends with 1 at a finding; build/memcheck/Testing/Temporary/MemoryChecker.*.log has what was found.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
if [ $# -gt 1 ]; then
    sed -n '4,10s/^# \{0,1\}//p' "${BASH_SOURCE[0]}" >&2
    exit 2
fi
scripts/setup.sh

build=$PWD/build/memcheck
echo "memcheck.sh: building"
cmake --preset memcheck >/dev/null
cmake --build --preset memcheck -- --quiet

# A processor is imitated here, fifty times slower: the models do a fiftieth.
export KOINTERACTION_MODEL_OPERATIONS=20000
ctest -S "Tests/Memcheck/Memcheck.cmake,$build,${1:-.}" -V || exit 1
