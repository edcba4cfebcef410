#!/bin/bash
# csi::clear and csi::clr have one address in every program: one_address.sh <compiler> <include folder> <libhueline.so>
set -euo pipefail

compiler=$1
include=$2
library=$3
here=$(dirname "$0")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

for position in "-fPIE -pie" "-fno-pie -no-pie"; do
    for level in -O0 -O2; do
        # shellcheck disable=SC2086 # two options each
        "$compiler" -std=c++17 $level $position -I "$include" "$here/one_address.cpp" "$library" \
            -Wl,-rpath,"$(dirname "$library")" -o "$work/program"
        "$work/program" || { echo "Two addresses with $compiler $level $position" >&2; exit 1; }
    done
done
