#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
#
# Makes the Debian packages and tries them as somebody would who gets them: lintian, a clean Debian 12, installing, the
# viewer, a first context built with CMake and with pkg-config, removing.
#
#   scripts/check-package.sh            in a fresh Debian root, which needs root and debootstrap
#   scripts/check-package.sh --here     unpacked into an empty folder of this machine: no apt, no removing
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
mode=root
case "${1:-}" in
    "") ;;
    --here) mode=here ;;
    -h | --help) sed -n '3,9s/^# \{0,1\}//p' "$0"; exit 0 ;;
    *) echo "check-package.sh: unknown option $1; see check-package.sh --help" >&2; exit 2 ;;
esac
if [ "$mode" = root ] && [ "$(id -u)" -ne 0 ]; then
    echo "check-package.sh: a fresh Debian root needs root rights; use --here without" >&2
    exit 1
fi

"$here/scripts/setup.sh"
cd "$here"
say() { echo "check-package.sh: $*"; }

say "building the packages"
cmake --preset package >/dev/null
cmake --build --preset package
rm -f build/package/*.deb
(cd build/package && cpack >cpack.log) || { tail -n 20 build/package/cpack.log >&2; exit 1; }
ls -l build/package/*.deb

if command -v lintian >/dev/null; then
    say "lintian"
    lintian --fail-on error,warning --tag-display-limit 0 build/package/*.deb
fi

example=Examples/FirstContext
work=$(mktemp -d)
cleanup() {
    mountpoint -q "$work/root/proc" && umount "$work/root/proc"
    rm -rf "$work"
}
trap cleanup EXIT

if [ "$mode" = here ]; then
    for package in build/package/*.deb; do
        dpkg-deb -x "$package" "$work/prefix"
    done
    cp -r "$example" "$work/first"
    library=$(dirname "$(find "$work/prefix" -name 'libkoInteraction.so.1')")
    export LD_LIBRARY_PATH="$library" QT_QPA_PLATFORM=offscreen
    "$work/prefix/usr/bin/koviewer" --version
    cmake -S "$work/first" -B "$work/build" -DCMAKE_PREFIX_PATH="$work/prefix/usr" >/dev/null
    cmake --build "$work/build"
    "$work/build/FirstContext"
    say "the packages work"
    exit 0
fi

say "a fresh Debian root"
mirror=$(apt-get indextargets --format '$(REPO_URI) $(RELEASE)' | sed -n 's/ bookworm$//p' | head -n 1)
debootstrap --variant=minbase --include=ca-certificates bookworm "$work/root" "${mirror:-http://deb.debian.org/debian}" >"$work/debootstrap.log" ||
    { tail -n 20 "$work/debootstrap.log" >&2; exit 1; }
# As this machine reaches its packages.
cp -r /etc/apt/apt.conf.d /etc/apt/sources.list.d "$work/root/etc/apt/"
[ ! -e /etc/apt/sources.list ] || cp /etc/apt/sources.list "$work/root/etc/apt/"
cp /etc/resolv.conf "$work/root/etc/" 2>/dev/null || true
mount -t proc proc "$work/root/proc"
inside() { chroot "$work/root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8 "$@"; }
inside apt-get update -qq
inside apt-get install -y -qq --no-install-recommends g++ cmake make pkgconf >"$work/tools.log" 2>&1
files() { (cd "$work/root" && find etc usr opt srv -xdev | grep -v -E '^usr/share/(doc|man|info|locale)/|^etc/(ld.so.cache|mailcap)|/__pycache__' | sort); }
inside apt-get clean

mkdir "$work/root/packages"
cp build/package/*.deb "$work/root/packages/"
cp -r "$example" "$work/root/first"

say "installing, until a first context runs"
start=$(date +%s.%N)
inside sh -c 'apt-get install -y -qq --no-install-recommends /packages/*.deb' >"$work/install.log" 2>&1 ||
    { tail -n 20 "$work/install.log" >&2; exit 1; }
installed=$(date +%s.%N)
inside cmake -S /first -B /build >/dev/null
inside cmake --build /build >/dev/null
inside /build/FirstContext
end=$(date +%s.%N)
awk -v a="$start" -v b="$installed" -v c="$end" \
    'BEGIN { printf "check-package.sh: %.1f s to install, %.1f s to configure, build and run\n", b - a, c - b }'

say "the same with pkg-config"
inside sh -c 'g++ -std=c++17 -fPIC /first/*.cpp -o /first/program $(pkg-config --cflags --libs koInteraction koInteractionHost) && /first/program'

say "the viewer"
inside koviewer --version
# What a machine with a display has anyway.
inside apt-get install -y -qq --no-install-recommends libegl1 libegl-mesa0 libgl1-mesa-dri >"$work/drivers.log" 2>&1
inside sh -c 'printf "fit\ncommand select-all\nshot all\n" >/script && koviewer --headless --script /script --out /pictures --generate 100 && ls -l /pictures'

say "removing"
inside apt-get purge -y -qq koviewer libkointeraction-dev libkointeraction1 >"$work/purge.log" 2>&1
left=$(files | grep -i -E 'kointeraction|koviewer|libkoHost|libkoSceneGraph' || true)
if [ -n "$left" ]; then
    echo "check-package.sh: left behind after removing:" >&2
    echo "$left" >&2
    exit 1
fi
say "the packages work, and leave nothing behind"
