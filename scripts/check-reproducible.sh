#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
#
# Makes the packages of a commit twice, as differently as may be, and compares them byte by byte.
#
#   scripts/check-reproducible.sh [COMMIT]   HEAD unless said otherwise; changes that are not committed take no part
#
# The second time it is another folder, another time and time zone, another language, another umask and another number of
# jobs. Both are told when the commit was made, by SOURCE_DATE_EPOCH. Ends with 1 where something differs, and says what.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."

if [ $# -gt 1 ] || [ "${1:-}" = -h ] || [ "${1:-}" = --help ]; then
    sed -n '4,9s/^# \{0,1\}//p' "${BASH_SOURCE[0]}" >&2
    exit 2
fi
commit=$(git rev-parse --verify --quiet "${1:-HEAD}^{commit}") || { echo "check-reproducible.sh: there is no commit ${1:-HEAD}" >&2; exit 2; }
scripts/setup.sh

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
say() { echo "check-reproducible.sh: $*"; }

SOURCE_DATE_EPOCH=$(git log -1 --format=%ct "$commit")
export SOURCE_DATE_EPOCH
# What was compiled in one folder would be taken for the other.
export CCACHE_DISABLE=1

# make_packages FOLDER UMASK JOBS: the packages of the commit, below FOLDER/build/package
make_packages() (
    umask "$2"
    mkdir -p "$1"
    git archive "$commit" | tar -x -C "$1"
    find "$1" -exec touch -d "${4:-now}" {} +
    cd "$1"
    {
        cmake --preset package
        cmake --build --preset package -- "-j$3"
        cd build/package
        cpack -G 'DEB;TGZ'
    } >"$work/log" 2>&1 || { tail -n 20 "$work/log" >&2; exit 1; }
)

first=$work/first
second=$work/a-folder-of-another-name/and-deeper/second
say "making the packages of $(git log -1 --format='%h, %s' "$commit")"
LC_ALL=C.UTF-8 TZ=UTC make_packages "$first" 022 2
say "making them again"
LC_ALL=C TZ=Asia/Kathmandu make_packages "$second" 077 3 2001-02-03

# unpack PACKAGE FOLDER: everything that is in it, control files included
unpack() {
    mkdir -p "$2"
    case "$1" in
        *.deb) dpkg-deb -R "$1" "$2" ;;
        *) tar -xf "$1" -C "$2" ;;
    esac
}

differ=0
count=0
shopt -s nullglob
for package in "$first"/build/package/*.deb "$first"/build/package/*.tar.gz; do
    name=$(basename "$package")
    other=$second/build/package/$name
    count=$((count + 1))
    if [ ! -f "$other" ]; then
        say "$name was made only once" >&2
        differ=1
    elif cmp -s "$package" "$other"; then
        say "the same: $(sha256sum "$package" | cut -c 1-16)... $name"
    else
        say "differs: $name" >&2
        differ=1
        unpack "$package" "$work/unpacked/first/$name"
        unpack "$other" "$work/unpacked/second/$name"
        (cd "$work/unpacked" && diff -rq --no-dereference "first/$name" "second/$name" | sed 's/^/    /' >&2) || true
        case "$name" in
            *.deb) list=(dpkg-deb -c) ;;
            *) list=(tar -tvf) ;;
        esac
        # Owners, modes, times and the order.
        diff <("${list[@]}" "$package") <("${list[@]}" "$other") | head -n 10 | sed 's/^/    /' >&2 || true
    fi
done
if [ "$count" -eq 0 ]; then
    say "no package was made" >&2
    exit 1
fi
[ "$differ" -eq 0 ] || exit 1
say "$count packages are the same, byte by byte"
