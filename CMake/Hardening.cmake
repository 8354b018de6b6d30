# SPDX-License-Identifier: MIT
#
# What makes a mistake end the program instead of handing it to somebody else, in the libraries and programs that are
# installed; see ko_harden(). Nothing of it is said to those who link them, and the tests are compiled without it.
#
#   compiler   checked buffers (_FORTIFY_SOURCE), stack protector, stacks that grow page by page, marked targets of jumps
#              where the system looks at them
#   linker     addresses of functions read-only (full RELRO), programs anywhere in memory (PIE)
#
# It takes 6 percent more instructions in the middle of what InstructionGuardTest counts, 14 at most: all of it the stack
# protector. Packages take what dpkg-buildflags says on top. _GLIBCXX_ASSERTIONS is no part of it: it takes up to 13
# percent, and is left to the presets that test.
include(CheckCXXCompilerFlag)
include(CheckCXXSourceCompiles)
include(CheckPIESupported)

set(koHardenByDefault OFF)
if(CMAKE_BUILD_TYPE MATCHES "^(Release|RelWithDebInfo)$" AND CMAKE_CXX_COMPILER_ID MATCHES "^(GNU|Clang)$"
        AND CMAKE_SYSTEM_NAME STREQUAL "Linux" AND NOT KOINTERACTION_SANITIZE AND NOT KOINTERACTION_SANITIZE_THREADS)
    set(koHardenByDefault ON)
endif()
option(KOINTERACTION_HARDENING "Compile and link what is installed so that mistakes cannot be exploited" ${koHardenByDefault})

if(NOT KOINTERACTION_HARDENING)
    # ko_harden(<target>)
    function(ko_harden target)
    endfunction()
    return()
endif()

# The third level asks the compiler for the sizes of buffers that it knows while the program runs only. The header of the
# C library says which level it has become.
set(CMAKE_REQUIRED_FLAGS "-O2 -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3")
check_cxx_source_compiles("
    #include <cstring>
    #if __USE_FORTIFY_LEVEL < 3
    #error no third level
    #endif
    int main() { return 0; }" KO_HAS_FORTIFY_3)
unset(CMAKE_REQUIRED_FLAGS)
set(koFortifyLevel 2)
if(KO_HAS_FORTIFY_3)
    set(koFortifyLevel 3)
endif()

# Checked buffers need an optimising build, and the level that a distribution's compiler sets by itself gives way.
set(koHardeningOptions "$<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=${koFortifyLevel}>")
foreach(flag stack-protector-strong stack-clash-protection)
    string(MAKE_C_IDENTIFIER "KO_HAS_${flag}" known)
    check_cxx_compiler_flag("-f${flag}" ${known})
    if(${known})
        list(APPEND koHardeningOptions "-f${flag}")
    endif()
endforeach()
# Marked targets of jumps are of no use where what the C library adds to each program has none: the processor is asked to
# look only where all of a program has them.
set(CMAKE_REQUIRED_FLAGS "-fcf-protection=full")
set(CMAKE_REQUIRED_LINK_OPTIONS "LINKER:-z,cet-report=error")
check_cxx_source_compiles("int main() { return 0; }" KO_HAS_CF_PROTECTION)
unset(CMAKE_REQUIRED_FLAGS)
unset(CMAKE_REQUIRED_LINK_OPTIONS)
if(KO_HAS_CF_PROTECTION)
    list(APPEND koHardeningOptions -fcf-protection=full)
endif()
set(koHardeningLinkOptions "LINKER:-z,relro" "LINKER:-z,now")
check_pie_supported(LANGUAGES CXX)

if(KOINTERACTION_PACKAGES)
    # In the folder of the sources, which it leaves out of what is written into the programs.
    foreach(flags CPPFLAGS CXXFLAGS LDFLAGS)
        execute_process(
            COMMAND "${CMAKE_COMMAND}" -E env DEB_BUILD_MAINT_OPTIONS=hardening=+all dpkg-buildflags --get ${flags}
            WORKING_DIRECTORY "${PROJECT_SOURCE_DIR}"
            OUTPUT_VARIABLE koDebian${flags} OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
        separate_arguments(koDebian${flags} UNIX_COMMAND "${koDebian${flags}}")
    endforeach()
    # How much it is optimised is said by the build type.
    list(REMOVE_ITEM koDebianCXXFLAGS -g -O2)
    list(PREPEND koHardeningOptions ${koDebianCPPFLAGS} ${koDebianCXXFLAGS})
    list(PREPEND koHardeningLinkOptions ${koDebianLDFLAGS})
endif()

# ko_harden(<target>)
#
# For a library or a program that is installed, and for those that are linked into one.
function(ko_harden target)
    target_compile_options(${target} PRIVATE ${koHardeningOptions})
    target_link_options(${target} PRIVATE ${koHardeningLinkOptions})
    set_target_properties(${target} PROPERTIES POSITION_INDEPENDENT_CODE ON)
endfunction()
