#!/bin/bash
# Checks one property of a shared object: shared_object.sh <property> <lib....so.0.2.2>
set -euo pipefail
export LC_ALL=C

property=$1
library=$2
here=$(dirname "$0")
file=$(basename "$library")

fail()
{
    printf '%s: %s\n' "$library" "$*" >&2
    exit 1
}

[ -r "$library" ] || fail 'is not there'

exported() { nm --dynamic --defined-only "$library"; }

dynamic() { readelf --dynamic --wide "$library"; }

case $property in
exports)
    list=exports.txt
    [[ $file != libhueline-kit.* ]] || list=exports_kit.txt
    diff --unified=0 --label "$list" --label "$library" "$here/$list" <(bash "$here/exports.sh" "$library") ||
        fail "exports other symbols than tests/api/$list has (-: missing, +: not listed)"
    ;;
clear-is-clr)
    addresses=$(exported | awk '$3 ~ /^_ZN6kestry7Hueline3csi(5clear|3clr)ERSo$/ { print $1 }')
    [ "$(wc -l <<<"$addresses")" = 2 ] || fail 'csi::clear and csi::clr are not both exported'
    [ "$(uniq <<<"$addresses" | wc -l)" = 1 ] || fail "csi::clear and csi::clr have two addresses:" $addresses
    ;;
soname)
    soname=$(dynamic | sed -n 's/.*(SONAME).*\[\(.*\)\]/\1/p')
    [ "$soname" = "${file%.*}" ] || fail "is called '$soname', not ${file%.*}"
    ;;
links)
    cd "$(dirname "$library")"
    [ -f "$file" ] && [ ! -L "$file" ] && [[ $file == *.so.0.2.2 ]] || fail 'is not a file called .so.0.2.2'
    for link in "${file%.*}" "${file%.so.*}.so"; do
        [ -L "$link" ] || fail "has no link $link"
        [ "$(readlink --canonicalize "$link")" = "$PWD/$file" ] || fail "is not where $link leads"
    done
    ;;
needed)
    needed=$(dynamic | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p')
    grep -x 'libc\.so\.6' <<<"$needed" >/dev/null || fail "needs no C library, but:" $needed
    allowed='libstdc\+\+\.so\.6|libm\.so\.6|libgcc_s\.so\.1|libc\.so\.6'
    [[ $file != libhueline-kit.* ]] || allowed+='|libhueline\.so\.0\.2|libutf8proc\.so\.[0-9]+|ld-linux.*\.so\.[0-9]+' # the loader has its threads' variables
    others=$(grep -vxE "$allowed" <<<"$needed" || true)
    [ -z "$others" ] || fail 'needs more than the C and C++ runtime:' $others
    ;;
immediate-binding)
    dynamic | grep 'BIND_NOW' >/dev/null || fail 'is bound lazily'
    ;;
relro)
    readelf --program-headers --wide "$library" | grep 'GNU_RELRO' >/dev/null || fail 'has no read-only relocations'
    ;;
stack)
    flags=$(readelf --program-headers --wide "$library" | awk '$1 == "GNU_STACK" { print $(NF - 1) }')
    [ "$flags" = RW ] || fail "asks for a stack with the rights '$flags', not RW"
    ;;
stack-protector)
    nm --dynamic --undefined-only "$library" | grep '__stack_chk_fail' >/dev/null || fail 'does not check its stack frames'
    ;;
run-path)
    ! dynamic | grep -E 'RPATH|RUNPATH' || fail 'carries a run path'
    ;;
*)
    fail "no such property: $property"
    ;;
esac
