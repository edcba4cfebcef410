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

shared()
{
    [ -e "$1/libhueline.so.0.2.2" ] && [ -e "$1/kit/libhueline-kit.so.0.2.2" ] || fail "There are no shared objects in $1."
}

# Whoever says nothing gets shared objects, and nothing is installed.
add_subdirectory()
{
    configure add_subdirectory -DHUELINE_SOURCE_DIR="$sources"
    build_and_run 'built with the program'
    shared "$work/build/hueline"
    quietly cmake --install "$work/build" --prefix "$work/nothing"
    expect 'installed with the program' '' "$(installed "$work/nothing")"

    # The program's programs are linked as they would be without the library.
    [ "$generator" != Ninja ] || expect 'link flags' '' \
        "$(sed -n '/^build consumer:/,/^$/ s/^ *LINK_FLAGS = //p' "$work/build/build.ninja")"
}

# Unless it is asked for: the static libraries, found as the shared ones are.
install_static()
{
    quietly cmake -DBUILD_SHARED_LIBS=OFF -DHUELINE_INSTALL=ON -DCMAKE_INSTALL_LIBDIR=$libdir "$work/build"
    quietly cmake --build "$work/build" --parallel 1
    quietly cmake --install "$work/build" --prefix "$work/first"
    expect 'installed with the library' "include/kestry/hueline_classic.hpp
include/kestry/hueline_stream.hpp
$(cd "$sources/kit" && find include -name '*.hpp' | sort)
lib/cmake/Hueline/HuelineConfig.cmake
lib/cmake/Hueline/HuelineConfigVersion.cmake
lib/cmake/Hueline/HuelineTargets-noconfig.cmake
lib/cmake/Hueline/HuelineTargets.cmake
lib/cmake/Hueline/Utf8proc.cmake
lib/libhueline-kit.a
lib/libhueline.a
lib/pkgconfig/hueline-kit.pc
lib/pkgconfig/hueline.pc" "$(installed "$work/first")"

    pkg_config_in "$work/first" --static
    mv "$work/first" "$work/second"
    pkg_config_in "$work/second" --static
    find_package_in "$work/second"
}

# A comma ends an option of the linker, and the shell replaces what follows a $.
odd_path()
{
    local copy="$work/a, \$b"
    mkdir "$copy"
    cp -r "$sources"/{CMakeLists.txt,cmake,docs,include,kit,src,tests,tools} "$copy"
    quietly cmake -S "$copy" -B "$copy/build" -G "$generator" -DCMAKE_CXX_COMPILER="$compiler" \
        -DCMAKE_BUILD_TYPE=Debug -DBUILD_TESTING=OFF
    quietly cmake --build "$copy/build" --parallel 1
    expect 'built in an odd folder' 'Hueline ver. 0.2.2-r0' "$("$copy/build/hueline-demo" --version)"

    mv "$copy" "$work/#"
    ! cmake -S "$work/#" -B "$work/#/new" >"$work/log" 2>&1 || fail 'A folder with # was accepted.'
    grep 'CMake cannot build in a folder with #' "$work/log" >/dev/null || fail "It does not say why: $(cat "$work/log")"
}

case $how in
add_subdirectory)
    add_subdirectory
    install_static
    ;;
fetch_content)
    # A program that unites its sources unites the library's too.
    configure fetch_content -DHUELINE_SOURCE_DIR="$sources" -DBUILD_SHARED_LIBS=ON -DCMAKE_UNITY_BUILD=ON
    build_and_run 'built with the program'
    shared "$work/build/_deps/hueline-build"
    ;;
odd_path)
    odd_path
    ;;
*)
    fail "no such way: $how"
    ;;
esac
