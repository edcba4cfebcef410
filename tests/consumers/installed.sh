#!/bin/bash
# Installs the library into an empty folder and uses what is there, then moves the folder and does so again:
# installed.sh <use> <build folder> <configuration> <libdir> <generator> [<compiler>]
set -euo pipefail
. "$(dirname "$0")/lib.sh"

use=$1
build=$2
configuration=$3
libdir=$4
generator=$5
compiler=${6-}

files="bin/hueline-demo
include/kestry/hueline_classic.hpp
include/kestry/hueline_stream.hpp
$(cd "$here/../../kit" && find include -name '*.hpp' | sort)
$libdir/cmake/Hueline/HuelineConfig.cmake
$libdir/cmake/Hueline/HuelineConfigVersion.cmake
$libdir/cmake/Hueline/HuelineTargets-${configuration,,}.cmake
$libdir/cmake/Hueline/HuelineTargets.cmake
$libdir/libhueline-kit.so
$libdir/libhueline-kit.so.0.2
$libdir/libhueline-kit.so.0.2.2
$libdir/libhueline.so
$libdir/libhueline.so.0.2
$libdir/libhueline.so.0.2.2
$libdir/pkgconfig/hueline-kit.pc
$libdir/pkgconfig/hueline.pc
share/man/man1/hueline-demo.1
share/man/man7/hueline.7"

tool_in()
{
    local demo=$1/bin/hueline-demo page=$1/share/man/man1/hueline-demo.1 name option
    expect "the tool in $1" 'Hueline ver. 0.2.2-r0' "$("$demo" --version)"
    # Its manual page has every demonstration and every option.
    for name in $("$demo" --list | awk '{ print $1 }'); do
        grep -x ".B $name" "$page" >/dev/null || fail "The manual page leaves out '$name'."
    done
    for option in $("$demo" --help | grep -o -- '--[a-z-]*'); do
        grep -F -- "${option//-/\\-}" "$page" >/dev/null || fail "The manual page leaves out '$option'."
    done
}

use_in()
{
    case $use in
    # The manual pages of section 3 are there once they have been built.
    files) expect "files in $1" "$files" "$(cd "$1" && find . ! -type d ! -path '*/man3/*' -printf '%P\n' | sort)" ;;
    tool) tool_in "$1" ;;
    versions) quietly cmake -S "$here/versions" -B "$work/versions" -G "$generator" -DPREFIX="$1" ;;
    find-package) find_package_in "$1" ;;
    pkg-config) pkg_config_in "$1" ;;
    *) fail "no such use: $use" ;;
    esac
}

first=$work/first
second=$work/second/place

quietly cmake --install "$build" --config "$configuration" --prefix "$first"
use_in "$first"
mkdir "$work/second"
mv "$first" "$second"
use_in "$second"
