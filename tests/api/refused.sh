#!/bin/bash
# What a public header refuses, with one error that says what to do:
#     refused.sh <compiler> <include folder> together <first> <second>
#     refused.sh <compiler> <include folder> old-strings <header>
set -euo pipefail
export LC_ALL=C

compiler=$1
include=$2
shift 2

case $1 in
together)
    options=()
    source=$(printf '#include <kestry/%s.hpp>\n' "$2" "$3")
    expected="$3.hpp and $2.hpp are never included together: use one of them in another source file"
    ;;
old-strings)
    options=(-D_GLIBCXX_USE_CXX11_ABI=0)
    source="#include <kestry/$2.hpp>"
    expected='libhueline passes strings of the C++11 layout: compile without _GLIBCXX_USE_CXX11_ABI=0'
    ;;
*)
    echo "no such case: $1" >&2
    exit 1
    ;;
esac

if output=$("$compiler" -std=c++17 "${options[@]}" -fsyntax-only -I "$include" -x c++ - 2>&1 <<<"$source"); then
    echo 'It was accepted.' >&2
    exit 1
fi

# "#error" in g++'s own words; clang++ leaves it out.
errors=$(sed -n 's/.*: \(fatal \)\?error: \(#error \)\?//p' <<<"$output")
if [ "${errors//\"/}" != "$expected" ]; then
    printf 'Expected one error:\n%s\nGot:\n%s\n' "$expected" "$output" >&2
    exit 1
fi
