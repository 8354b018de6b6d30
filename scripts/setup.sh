#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
#
# Installs from Debian's packages what building, testing and showing this project needs and this machine lacks.
#
#   scripts/setup.sh          says what it installs; does nothing when all is there
#   scripts/setup.sh --list   prints the packages and exits
#
# Works as root and through sudo.
set -euo pipefail

packages=(
    # compilers and build tools
    g++ g++-12 clang-14 libclang-rt-14-dev cmake ninja-build ccache binutils
    # the library: Qt Core and Gui; the viewer: Widgets, icons, translations, OpenGL, EGL, models and ray queries
    qtbase5-dev qttools5-dev qttools5-dev-tools qttranslations5-l10n libqt5svg5-dev
    # the same with Qt 6, for the preset qt6
    qt6-base-dev libqt6opengl6-dev qt6-tools-dev qt6-svg-dev qt6-translations-l10n
    libgl-dev libopengl-dev libegl-dev libassimp-dev libembree-dev
    # named in the link line of libassimp-dev, which does not depend on it
    zlib1g-dev
    # drawing without a display (Mesa's software renderer), a virtual display, fonts for the notifications
    libegl1 libegl-mesa0 libgl1-mesa-dri xvfb xauth fonts-dejavu-core
    # tests and the model of the demonstration
    libgtest-dev libgmock-dev librapidcheck-dev assimp-testmodels
    # how the package is found, and what its binary interface is
    pkgconf abigail-tools
    # the Debian packages, and a clean Debian to try them in
    dpkg-dev file lintian debootstrap groff-base desktop-file-utils
    # benchmarks, counts of instructions, coverage
    libbenchmark-dev valgrind python3 gcovr
    # what looks at the sources
    clang-tidy-14 cppcheck clazy
    # the manual
    doxygen graphviz
)

if [ "${1:-}" = "--list" ]; then
    printf '%s\n' "${packages[@]}"
    exit 0
fi

if ! command -v apt-get >/dev/null || ! command -v dpkg-query >/dev/null; then
    echo "setup.sh: this is not a Debian system (no apt-get); install by hand: ${packages[*]}" >&2
    exit 1
fi

missing=()
for package in "${packages[@]}"; do
    status=$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null || true)
    [ "$status" = "installed" ] || missing+=("$package")
done
if [ ${#missing[@]} -eq 0 ]; then
    exit 0
fi

if [ "$(id -u)" -eq 0 ]; then
    as_root=()
elif command -v sudo >/dev/null && { sudo -n true 2>/dev/null || [ -t 0 ]; }; then
    as_root=(sudo)
else
    echo "setup.sh: these packages are missing and installing them needs root or sudo: ${missing[*]}" >&2
    exit 1
fi

echo "setup.sh: installing ${missing[*]}"
install=(env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}")
log=$(mktemp)
trap 'rm -f "$log"' EXIT
if ! { "${as_root[@]}" apt-get update -qq && "${as_root[@]}" "${install[@]}"; } >"$log" 2>&1; then
    tail -n 20 "$log" >&2
    echo "setup.sh: installing failed, the lines above are apt's" >&2
    exit 1
fi
echo "setup.sh: done"
