#!/bin/bash
# Installs the library into an empty folder, builds and runs a program against what is there, then moves the folder and
# builds and runs it again: installed_package.sh <build folder> <configuration> <compiler> <libdir> <generator>
set -euo pipefail
export LC_ALL=C

build=$1
configuration=$2
compiler=$3
libdir=$4
generator=$5
here=$(cd "$(dirname "$0")" && pwd)

work=$(mktemp --directory)
trap 'rm -rf "$work"' EXIT

fail()
{
    printf '%s\n' "$*" >&2
    exit 1
}

# Runs a command whose output matters only when it fails.
quietly()
{
    "$@" >"$work/log" 2>&1 || fail "$* failed:" "$(cat "$work/log")"
}

expect()
{
    [ "$2" = "$3" ] || fail "$1: expected '$2', got '$3'"
}

# Expected on a pipe: the stream interface is plain there, the string interface as its caller has switched it.
text=$'failed\n\e[31mfailed\e[0m'

build_and_run_in()
{
    local prefix=$1
    rm -rf "$work/consumer"

    quietly cmake -S "$here/consumer" -B "$work/consumer" -G "$generator" \
        -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_PREFIX_PATH="$prefix"
    quietly cmake --build "$work/consumer"
    expect "found by CMake in $prefix" "$text" "$("$work/consumer/consumer")"

    local flags
    flags=$(PKG_CONFIG_PATH=$prefix/$libdir/pkgconfig pkg-config --cflags --libs hueline)
    quietly "$compiler" "$here"/consumer/*.cpp $flags -o "$work/consumer/linked"
    expect "found by pkg-config in $prefix" "$text" "$(LD_LIBRARY_PATH=$prefix/$libdir "$work/consumer/linked")"
    expect 'version by pkg-config' 0.2.2 "$(PKG_CONFIG_PATH=$prefix/$libdir/pkgconfig pkg-config --modversion hueline)"

    expect "the tool in $prefix" 'Hueline ver. 0.2.2-r0' "$("$prefix/bin/hueline-demo" --version)"
}

first=$work/first
second=$work/second/place

quietly cmake --install "$build" --config "$configuration" --prefix "$first"

expect 'installed files' "bin/hueline-demo
include/kestry/hueline_classic.hpp
include/kestry/hueline_stream.hpp
$libdir/cmake/Hueline/HuelineConfig.cmake
$libdir/cmake/Hueline/HuelineConfigVersion.cmake
$libdir/cmake/Hueline/HuelineTargets-${configuration,,}.cmake
$libdir/cmake/Hueline/HuelineTargets.cmake
$libdir/libhueline.so
$libdir/libhueline.so.0.2
$libdir/libhueline.so.0.2.2
$libdir/pkgconfig/hueline.pc" "$(cd "$first" && find . ! -type d -printf '%P\n' | sort)"

build_and_run_in "$first"
mkdir "$work/second"
mv "$first" "$second"
build_and_run_in "$second"
