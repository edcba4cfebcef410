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

library=libhueline.so.0.2
loaded() { ldd "$program" | awk -v name="$library" '$1 == name { print $3 }'; }

# An installed one, or none at all: that the program does not know the folder is what the test is about.
[ "$(loaded)" != "$folder/$library" ] || fail 'finds the library without LD_LIBRARY_PATH'

export LD_LIBRARY_PATH=$folder LD_BIND_NOW=1
[ "$(loaded)" = "$folder/$library" ] || fail "runs with '$(loaded)'"
errors=$("$program" 2>&1 >/dev/null) || fail "fails: $errors"
[ -z "$errors" ] || fail "says: $errors"
