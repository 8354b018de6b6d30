#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
#
# Builds the viewer and shows it on a real mechanical assembly.
#
#   scripts/demo.sh [MODEL] [--headless]
#
# Opens the window where there is a display. Without one, or with --headless, it writes pictures into build/demo/.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
headless=no
model=
for argument in "$@"; do
    case "$argument" in
        --headless) headless=yes ;;
        -h | --help) sed -n '3,9s/^# \{0,1\}//p' "$0"; exit 0 ;;
        -*) echo "demo.sh: unknown option $argument; see demo.sh --help" >&2; exit 2 ;;
        *)
            [ -z "$model" ] || { echo "demo.sh: more than one model: $model and $argument" >&2; exit 2; }
            model=$(realpath -m -- "$argument")
            ;;
    esac
done

"$here/scripts/setup.sh"
cd "$here"

if [ -z "$model" ]; then
    model=$(dpkg -L assimp-testmodels | sed -n '\,/2CylinderEngine\.glb$,p' | sort | tail -n 1)
    [ -n "$model" ] || { echo "demo.sh: assimp-testmodels does not hold 2CylinderEngine.glb; name a model" >&2; exit 1; }
fi

echo "demo.sh: building the viewer"
cmake --preset release >/dev/null
cmake --build --preset release --target koviewer
viewer=build/release/bin/koviewer

if [ "$headless" = no ] && [ -z "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    echo "demo.sh: no display, writing pictures instead"
    headless=yes
fi
if [ "$headless" = no ]; then
    exec "$viewer" "$model"
fi

rm -rf build/demo
"$viewer" --headless --script Apps/Viewer/Scripts/demo.txt --out build/demo "$model"
echo "demo.sh: pictures of $(basename "$model") in build/demo:"
for picture in build/demo/*.png; do
    echo "  $picture"
done
