#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
#
# Drives the library and its reference models through long random sequences of operations.
#
#   scripts/model-run.sh OPERATIONS [MODEL...]
#
#   scripts/model-run.sh 1000000000                    every model, a billion operations each
#   scripts/model-run.sh 10000000 QtEventMapper        one of them; MODEL is the name of a test without ModelTest
#
# The seed of each run is told at its start; RC_PARAMS=seed=N carries it out again. Built with PRESET (ci unless set).
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."

usage() {
    sed -n '4,11s/^# \{0,1\}//p' "${BASH_SOURCE[0]}" >&2
    exit 2
}

if ! [[ ${1:-} =~ ^[0-9]+$ ]]; then
    usage
fi
operations=$1
shift
preset=${PRESET:-ci}

models=("$@")
if [ ${#models[@]} -eq 0 ]; then
    for source in Tests/Models/*ModelTest.cpp; do
        model=$(basename "$source" ModelTest.cpp)
        models+=("$model")
    done
fi
for model in "${models[@]}"; do
    if [ ! -f "Tests/Models/${model}ModelTest.cpp" ]; then
        echo "model-run.sh: there is no model called $model" >&2
        exit 2
    fi
done

scripts/setup.sh
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset" --target "${models[@]/%/ModelTest}"

failed=()
for model in "${models[@]}"; do
    echo "model-run.sh: $model"
    if ! KOINTERACTION_MODEL_OPERATIONS=$operations KOINTERACTION_MODEL_PROGRESS=1 QT_QPA_PLATFORM=offscreen \
        "build/$preset/bin/${model}ModelTest"; then
        failed+=("$model")
    fi
done
if [ ${#failed[@]} -ne 0 ]; then
    echo "model-run.sh: the library and these models differ: ${failed[*]}" >&2
    exit 1
fi
echo "model-run.sh: the library and ${#models[@]} models agree after $operations operations each"
