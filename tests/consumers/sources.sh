#!/bin/bash
# Builds a program that has the library's sources among its own: sources.sh <how> <sources> <generator> <compiler>
set -euo pipefail
. "$(dirname "$0")/lib.sh"

how=$1
sources=$2
generator=$3
compiler=$4
libdir=lib

installed() { find "$1" ! -type d -printf '%P\n' 2>/dev/null | sort; }

# Whoever says nothing gets a static library, as CMake has it, and nothing is installed.
add_subdirectory()
{
    configure add_subdirectory -DHUELINE_SOURCE_DIR="$sources"
    build_and_run 'built with the program'
    quietly cmake --install "$work/build" --prefix "$work/nothing"
    expect 'installed with the program' '' "$(installed "$work/nothing")"

    # The program's programs are linked as they would be without the library.
    [ "$generator" != Ninja ] || expect 'link flags' '' "$(sed -n 's/^ *LINK_FLAGS = //p' "$work/build/build.ninja")"
}

# Unless it is asked for: the static library, found as the shared one is.
install_static()
{
    quietly cmake -DHUELINE_INSTALL=ON -DCMAKE_INSTALL_LIBDIR=$libdir "$work/build"
    quietly cmake --install "$work/build" --prefix "$work/first"
    expect 'installed with the library' "include/kestry/hueline_classic.hpp
include/kestry/hueline_stream.hpp
lib/cmake/Hueline/HuelineConfig.cmake
lib/cmake/Hueline/HuelineConfigVersion.cmake
lib/cmake/Hueline/HuelineTargets-noconfig.cmake
lib/cmake/Hueline/HuelineTargets.cmake
lib/libhueline.a
lib/pkgconfig/hueline.pc" "$(installed "$work/first")"

    pkg_config_in "$work/first" --static
    mv "$work/first" "$work/second"
    pkg_config_in "$work/second" --static
    find_package_in "$work/second"
}

case $how in
add_subdirectory)
    add_subdirectory
    install_static
    ;;
fetch_content)
    configure fetch_content -DHUELINE_SOURCE_DIR="$sources" -DBUILD_SHARED_LIBS=ON
    build_and_run 'built with the program'
    [ -e "$work/build/_deps/hueline-build/libhueline.so.0.2.2" ] || fail 'the library is no shared object'
    ;;
*)
    fail "no such way: $how"
    ;;
esac
