#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
#
# Builds and runs the benchmarks and sets the figures beside the budgets of Benchmarks/Budgets.json.
#
#   scripts/bench.sh                         everything, three processes for each family: let the machine alone meanwhile
#   scripts/bench.sh --quick                 one short run, at most 100,000 nodes
#   scripts/bench.sh --filter REGEX          only benchmarks with such names
#   scripts/bench.sh --compare A.json B.json ratios of two results; builds and runs nothing
#   scripts/bench.sh --counted               only what no other program disturbs: allocations and memory
#   scripts/bench.sh --help                  the other options
#
# Ends with 3 when a budget is missed.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
for argument in "$@"; do
    case "$argument" in
        --compare* | -h | --help) exec python3 "$here/Benchmarks/Benchmarks.py" "$@" ;;
    esac
done

"$here/scripts/setup.sh"
echo "bench.sh: building"
(cd "$here" && cmake --preset bench >/dev/null && cmake --build --preset bench -- --quiet)
exec python3 "$here/Benchmarks/Benchmarks.py" "$@"
