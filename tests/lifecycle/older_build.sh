#!/bin/bash
# Runs a program that was linked with an older build of the library: older_build.sh <program> <folder of the library>
set -euo pipefail
export LC_ALL=C

program=$1
folder=$2

fail()
{
    printf '%s: %s\n' "$program" "$*" >&2
    exit 1
}

# Without the folder, there is no library for it: that is what the test is about.
! "$program" --gtest_list_tests >/dev/null 2>&1 || fail 'runs without LD_LIBRARY_PATH'

export LD_LIBRARY_PATH=$folder LD_BIND_NOW=1
loaded=$(ldd "$program" | awk '$1 == "libhueline.so.0.2" { print $3 }')
[ "$loaded" = "$folder/libhueline.so.0.2" ] || fail "runs with '$loaded'"
errors=$("$program" 2>&1 >/dev/null) || fail "fails: $errors"
[ -z "$errors" ] || fail "says: $errors"
