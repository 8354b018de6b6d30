#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
#
# Runs the fuzzers, one after the other, from their corpora in Fuzzers/Corpus.
#
#   scripts/fuzz.sh                       each for a minute
#   scripts/fuzz.sh SECONDS               each for that long
#   scripts/fuzz.sh SECONDS NAME...       only these, for example InteractionFuzzer
#   scripts/fuzz.sh --merge NAME...       put what build/fuzz/Found adds into the corpora, kept small
#
# New inputs go to build/fuzz/Found/NAME, findings to build/fuzz/Findings. Ends with 1 when there is one.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."

usage() {
    sed -n '4,11s/^# \{0,1\}//p' "${BASH_SOURCE[0]}" >&2
    exit 2
}

seconds=60
merge=false
if [ "${1:-}" = --merge ]; then
    merge=true
    shift
elif [ $# -gt 0 ]; then
    [[ $1 =~ ^[0-9]+$ ]] || usage
    seconds=$1
    shift
fi

names=("$@")
if [ ${#names[@]} -eq 0 ]; then
    for source in Fuzzers/*Fuzzer.cpp; do
        names+=("$(basename "$source" .cpp)")
    done
fi
for name in "${names[@]}"; do
    if [ ! -f "Fuzzers/$name.cpp" ]; then
        echo "fuzz.sh: there is no fuzzer called $name" >&2
        exit 2
    fi
done

scripts/setup.sh
echo "fuzz.sh: building"
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz --target "${names[@]}" -- --quiet

export QT_QPA_PLATFORM=offscreen
findings=build/fuzz/Findings
failed=()
for name in "${names[@]}"; do
    found=build/fuzz/Found/$name
    mkdir -p "$found" "$findings"
    options=(-max_len=1024)
    if [ -f "Fuzzers/$name.dict" ]; then
        options+=("-dict=Fuzzers/$name.dict")
    fi
    if $merge; then
        # The fewest inputs that reach every edge that any of them reaches.
        rm -rf "$found.merged"
        mkdir "$found.merged"
        "build/fuzz/bin/$name" -set_cover_merge=1 -use_counters=0 "${options[@]}" "$found.merged" "Fuzzers/Corpus/$name" "$found" 2>/dev/null
        rm -rf "Fuzzers/Corpus/$name"
        mv "$found.merged" "Fuzzers/Corpus/$name"
        echo "fuzz.sh: $name has $(find "Fuzzers/Corpus/$name" -type f | wc -l) inputs"
        continue
    fi
    echo "fuzz.sh: $name for $seconds seconds"
    # What the code under test writes to standard error by the thousand stays out; see the input again for it.
    if ! "build/fuzz/bin/$name" "${options[@]}" -len_control=0 -close_fd_mask=2 -max_total_time="$seconds" -timeout=30 \
        -rss_limit_mb=4096 -print_final_stats=1 -artifact_prefix="$findings/$name-" "$found" "Fuzzers/Corpus/$name" \
        2>&1 | grep --line-buffered -vE '^#[0-9]+\s+(NEW|REDUCE|RELOAD)|^"|Recommended dictionary'; then
        failed+=("$name")
    fi
done
if [ ${#failed[@]} -ne 0 ]; then
    echo "fuzz.sh: these found something: ${failed[*]}; build/fuzz/bin/NAME $findings/FILE shows it again" >&2
    exit 1
fi
if ! $merge; then
    echo "fuzz.sh: ${#names[@]} fuzzers found nothing in $seconds seconds each"
fi
