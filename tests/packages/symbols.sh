#!/bin/bash
# The packaged list of symbols names every exported symbol, and no other: symbols.sh <exports.txt> <list of symbols>
set -euo pipefail
export LC_ALL=C

diff --unified=0 --label "$1" --label "$2" \
    <(grep -v '^#' "$1" | awk '{ print $1 }' | sort) <(sed -n 's/^ \(.*\)@Base .*/\1/p' "$2" | sort) || {
    echo 'They do not name the same symbols (-: missing in the second, +: in the second alone).' >&2
    exit 1
}
