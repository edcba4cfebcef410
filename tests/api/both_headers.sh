#!/bin/bash
# Two public headers in one translation unit: both_headers.sh <compiler> <include folder> <first> <second>
# One error and no more, and it says what to do.
set -euo pipefail
export LC_ALL=C

compiler=$1
include=$2
first=$3
second=$4

if output=$("$compiler" -std=c++17 -fsyntax-only -I "$include" -x c++ - 2>&1 <<<"
#include <kestry/$first.hpp>
#include <kestry/$second.hpp>
"); then
    echo "The two headers were accepted together." >&2
    exit 1
fi

expected="$second.hpp and $first.hpp are never included together: use one of them in another source file"
# "#error" in g++'s own words; clang++ leaves it out.
errors=$(sed -n 's/.*: \(fatal \)\?error: \(#error \)\?//p' <<<"$output")
if [ "${errors//\"/}" != "$expected" ]; then
    printf 'Expected one error:\n%s\nGot:\n%s\n' "$expected" "$output" >&2
    exit 1
fi
