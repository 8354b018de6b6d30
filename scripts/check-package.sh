#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
#
# Makes the Debian packages and tries them as somebody would who gets them: lintian, a clean Debian 12, installing, the
# viewer, a first context built with CMake and with pkg-config, removing.
#
#   scripts/check-package.sh            in a fresh Debian root where that is possible, otherwise as with --here
#   scripts/check-package.sh --root     in a fresh Debian root, or fail; needs root rights and a mirror of Debian
#   scripts/check-package.sh --here     unpacked into an empty folder of this machine: no apt, no removing
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
mode=auto
case "${1:-}" in
    "") ;;
    --root) mode=root ;;
    --here) mode=here ;;
    -h | --help) sed -n '3,10s/^# \{0,1\}//p' "$0"; exit 0 ;;
    *) echo "check-package.sh: unknown option $1; see check-package.sh --help" >&2; exit 2 ;;
esac
say() { echo "check-package.sh: $*"; }
# Ends a mode that cannot be: the check with it, unless there is another one to try.
not_possible() {
    if [ "$mode" = root ]; then
        echo "check-package.sh: $*" >&2
        exit 1
    fi
    say "$*; unpacking here instead"
    mode=here
}

if [ "$mode" != here ] && [ "$(id -u)" -ne 0 ]; then
    not_possible "a fresh Debian root needs root rights"
fi

"$here/scripts/setup.sh"
cd "$here"

say "building the packages"
cmake --preset package >/dev/null
cmake --build --preset package
rm -f build/package/*.deb
(cd build/package && cpack >cpack.log) || { tail -n 20 build/package/cpack.log >&2; exit 1; }
ls -l build/package/*.deb

say "lintian"
user=()
[ "$(id -u)" -ne 0 ] || user=(--allow-root)
lintian "${user[@]}" --fail-on error,warning --tag-display-limit 0 build/package/*.deb

work=$(mktemp -d)
cleanup() {
    mountpoint -q "$work/root/proc" && umount "$work/root/proc"
    rm -rf "$work"
}
trap cleanup EXIT

say "hardening"
for package in build/package/*.deb; do
    dpkg-deb -x "$package" "$work/unpacked"
done
cmake -DPREFIX="$work/unpacked/usr" -DREADELF=readelf -DVIEWER=ON -P Tests/Package/CheckHardening.cmake

example=Examples/FirstContext
inside() { chroot "$work/root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8 "$@"; }

# A minimal Debian with what a developer has, reaching its packages as this machine does.
create_root() {
    local mirror
    mirror=$(apt-get indextargets --format '$(REPO_URI) $(RELEASE)' | sed -n 's/ bookworm$//p' | head -n 1)
    debootstrap --variant=minbase --include=ca-certificates bookworm "$work/root" "${mirror:-http://deb.debian.org/debian}" &&
        rm -f "$work/root/etc/apt/sources.list" &&
        cp -r /etc/apt/apt.conf.d /etc/apt/sources.list* "$work/root/etc/apt/" &&
        { cp /etc/resolv.conf "$work/root/etc/" || true; } &&
        { mount -t proc proc "$work/root/proc" || true; } &&
        inside apt-get update -qq &&
        inside apt-get install -y -qq --no-install-recommends g++ cmake make pkgconf &&
        inside apt-get clean
}

if [ "$mode" != here ]; then
    say "a fresh Debian root"
    if ! create_root >"$work/root.log" 2>&1; then
        tail -n 5 "$work/root.log" >&2
        not_possible "no Debian can be installed into a folder here"
    fi
fi

printf 'fit\ncommand select-all\nshot all\n' >"$work/script"
rm -rf build/package/pictures

if [ "$mode" = here ]; then
    mv "$work/unpacked" "$work/prefix"
    cp -r "$example" "$work/first"
    library=$(dirname "$(find "$work/prefix" -name 'libkoInteraction.so.1')")
    export LD_LIBRARY_PATH="$library" QT_QPA_PLATFORM=offscreen
    say "a first context"
    cmake -S "$work/first" -B "$work/build" -DCMAKE_PREFIX_PATH="$work/prefix/usr" >/dev/null
    cmake --build "$work/build" >/dev/null
    "$work/build/FirstContext"
    say "the viewer"
    "$work/prefix/usr/bin/koviewer" --version
    "$work/prefix/usr/bin/koviewer" --headless --script "$work/script" --out build/package/pictures --generate 100
    say "the packages work; see build/package/pictures"
    exit 0
fi

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
cp "$work/script" "$work/root/script"
inside koviewer --headless --script /script --out /pictures --generate 100
cp -r "$work/root/pictures" build/package/

say "removing"
inside apt-get purge -y -qq koviewer libkointeraction-dev libkointeraction1 >"$work/purge.log" 2>&1
left=$(cd "$work/root" && find etc usr opt srv var -xdev | grep -i -E 'kointeraction|koviewer|libkoHost|libkoSceneGraph' || true)
if [ -n "$left" ]; then
    echo "check-package.sh: left behind after removing:" >&2
    echo "$left" >&2
    exit 1
fi
say "the packages work, and leave nothing behind; see build/package/pictures"
