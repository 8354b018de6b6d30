#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
#
# Looks at the sources of the library, the scene graph and the host services with clang-tidy, cppcheck and clazy, and
# fails where one of them has something to say.
#
#   scripts/lint.sh           all of Libs
#   scripts/lint.sh FILE...   only these sources
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
scripts/setup.sh
cmake --preset tidy >/dev/null

files=("$@")
if [ ${#files[@]} -eq 0 ]; then
    mapfile -t files < <(git ls-files 'Libs/*.cpp' | grep -v '/System/')
fi
failed=false

echo "lint.sh: cppcheck"
# The classes of the scene graph have each a static _type and _desc, as OpenSG's macros want it; what is assigned in a
# constructor's body is assigned there because its order counts. A container that does not take an element leaves it to
# whoever passed it, and a base is moved apart from its members; the owner of a notification is kept beside its pointer.
cppcheck --quiet --std=c++17 --library=qt --enable=warning,performance,portability --inline-suppr --error-exitcode=1 \
    --suppress=duplInheritedMember --suppress=useInitializationList --suppress=missingIncludeSystem \
    --suppress=accessMoved:Libs/Interaction/SpareNodes.h --suppress=accessMoved:Libs/SceneGraph/OpenSG/OSGMField.h \
    --suppress=danglingLifetime:Libs/Host/Notification/NotificationManager.cpp \
    -ILibs -ILibs/SceneGraph -ILibs/Host -ILibs/Host/Extensions/Embedded "${files[@]}" || failed=true

echo "lint.sh: clang-tidy"
printf '%s\0' "${files[@]}" | xargs -0 -n 1 -P "$(nproc)" clang-tidy-14 -p build/tidy --quiet --warnings-as-errors='*' \
    2> >(grep -vE '^[0-9]+ warnings? generated|^Suppressed|^Use -header-filter' >&2) || failed=true

echo "lint.sh: clazy"
# Off: the scene graph's handles go by const reference as OpenSG's do, and have no members to destroy; interfaces that
# are copied with the object that has them.
qt=$(printf '%s\n' "${files[@]}" | xargs grep -lE '#include <Q' || true)
if [ -n "$qt" ]; then
    # shellcheck disable=SC2086
    clazy-standalone -p build/tidy --checks=level0,level1,level2,no-function-args-by-value,no-rule-of-three,no-copyable-polymorphic $qt 2>&1 | tee build/tidy/clazy.txt | grep -E 'warning:|error:' && failed=true
fi

if $failed; then
    echo "lint.sh: the lines above need a look" >&2
    exit 1
fi
echo "lint.sh: nothing found in ${#files[@]} sources"
