# SPDX-License-Identifier: MIT
# Sanitizers and coverage apply to the whole build, not to single targets: a half-instrumented process reports nonsense.
if(KOINTERACTION_SANITIZE)
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
endif()

if(KOINTERACTION_COVERAGE)
    add_compile_options(--coverage -fprofile-abs-path)
    add_link_options(--coverage)
endif()
