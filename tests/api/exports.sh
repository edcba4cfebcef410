#!/bin/bash
# Lists what a shared object exports, as tests/api/exports.txt and exports_kit.txt have it: exports.sh <lib....so.0.2.2>
set -euo pipefail
export LC_ALL=C

echo '# The binary interface: every symbol that the shared object exports, by its mangled name, and what it is.'
echo '# A change of this file is a change of the binary interface. script/abi --update writes it.'

nm --dynamic --defined-only "$1" | awk '{ print $NF }' | sort | while read -r symbol; do
    kind=
    [[ $symbol =~ ([CD][0-2])E ]] && [[ $symbol != _ZT* ]] && case ${BASH_REMATCH[1]} in
    D0) kind=' [deleting]' ;;
    ?1) kind=' [complete object]' ;;
    ?2) kind=' [base object]' ;;
    esac
    printf '%s  %s%s\n' "$symbol" "$(c++filt "$symbol")" "$kind"
done | sed -E '
    s/std::basic_string_view<char, std::char_traits<char> >/std::string_view/g
    s/std::__cxx11::basic_string<char, std::char_traits<char>, std::allocator<char> >/std::string/g
    s/std::vector<([a-z ]+), std::allocator<[a-z ]+> >/std::vector<\1>/g
    s/\[abi:cxx11\]//
    s/std::basic_ostream<char, std::char_traits<char> >/std::ostream/g'
