# What the scripts here share. Each works in an empty folder of its own, far from the library's.
export LC_ALL=C
unset CXXFLAGS LDFLAGS CMAKE_PREFIX_PATH CMAKE_INSTALL_PREFIX DESTDIR LD_LIBRARY_PATH

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
work=$(mktemp --directory)
trap 'rm -rf "$work"' EXIT

fail()
{
    printf '%s\n' "$*" >&2
    exit 1
}

# Runs a command whose output matters only when it fails.
quietly() { "$@" >"$work/log" 2>&1 || fail "$* failed:" "$(cat "$work/log")"; }

expect() { [ "$2" = "$3" ] || fail "$1: expected '$2', got '$3'"; }

# What the program writes. In a pipe the stream interface is plain, the string interface as its caller has switched it.
text=$'failed\n\e[31mfailed\e[0m'
kit_text='256 colours'

# configure <project> <option of cmake>...
configure()
{
    rm -rf "$work/build"
    quietly cmake -S "$here/$1" -B "$work/build" -G "$generator" -DCMAKE_CXX_COMPILER="$compiler" "${@:2}"
}

build_and_run()
{
    quietly cmake --build "$work/build" --target consumer kit_consumer --parallel 1
    expect "$1" "$text" "$("$work/build/consumer")"
    expect "$1" "$kit_text" "$("$work/build/kit_consumer")"
}

find_package_in()
{
    configure find_package -DCMAKE_PREFIX_PATH="$1"
    build_and_run "found by CMake in $1"
}

# pkg_config_in <prefix> [--static]
pkg_config_in()
{
    local flags module
    export PKG_CONFIG_PATH=$1/$libdir/pkgconfig
    for module in hueline hueline-kit; do
        expect "version of $module by pkg-config in $1" 0.2.2 "$(pkg-config --modversion $module)"
    done

    flags=$(pkg-config "${@:2}" --cflags --libs hueline)
    quietly "$compiler" -std=c++17 "$here"/program/{stream,classic}.cpp $flags -o "$work/consumer"
    expect "found by pkg-config in $1" "$text" "$(LD_LIBRARY_PATH=$1/$libdir "$work/consumer")"

    flags=$(pkg-config "${@:2}" --cflags --libs hueline-kit)
    quietly "$compiler" -std=c++20 "$here/program/kit.cpp" $flags -o "$work/kit_consumer"
    expect "found by pkg-config in $1" "$kit_text" "$(LD_LIBRARY_PATH=$1/$libdir "$work/kit_consumer")"
}
