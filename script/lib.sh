# What the scripts share. Nothing here writes to standard output, which belongs to the programs that the scripts run.

top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

for_build=(g++ cmake ninja-build libutf8proc-dev)
for_tests=("${for_build[@]}" clang libclang-rt-dev pkgconf binutils strace libgtest-dev libvterm-dev librapidcheck-dev
    libfmt-dev unicode-data xxd bsdextrautils)

# What was compiled once is not compiled again, where ccache is there: in another folder too.
if command -v ccache >/dev/null; then
    export CMAKE_CXX_COMPILER_LAUNCHER=ccache CCACHE_BASEDIR=$top CCACHE_NOHASHDIR=1
    export CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
fi

say() { printf '%s\n' "$*" >&2; }

die()
{
    say "$*"
    exit 1
}

# Runs a command whose output matters only when it fails.
quietly()
{
    local log
    log=$(mktemp)
    if ! "$@" >"$log" 2>&1 </dev/null; then
        cat "$log" >&2
        rm -f "$log"
        die "Failed: $*"
    fi
    rm -f "$log"
}

is_installed() { dpkg-query --show --showformat='${db:Status-Status}\n' "$1" 2>/dev/null | grep -x installed >/dev/null; }

# Runs a command that only root may run.
as_root()
{
    if [ "$(id -u)" = 0 ]; then
        "$@"
    else
        sudo -n "$@"
    fi
}

apt_get()
{
    as_root env DEBIAN_FRONTEND=noninteractive \
        apt-get --yes --quiet -o DPkg::Lock::Timeout=300 "$@" >&2 </dev/null
}

# Installs those of the Debian packages named that are missing.
require()
{
    if ! command -v dpkg-query >/dev/null; then
        say "This is no Debian system: the packages $* have to be there, whatever they are called here."
        return
    fi

    local package missing=()
    for package in "$@"; do
        is_installed "$package" || missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0

    as_root true 2>/dev/null </dev/null ||
        die "Missing packages, which only root may install: ${missing[*]} (apt-get install ${missing[*]})"
    say "Installing ${missing[*]}"
    # An update that fails for one of several sources need not stand in the way.
    apt_get update || say 'The lists of packages could not all be brought up to date.'
    apt_get install --no-install-recommends "${missing[@]}" || die "These packages could not be installed: ${missing[*]}"
}

# What the longer commands say is kept here.
logs=$top/build/log

# Runs a command with its output in build/log/<name>. If it takes longer than ten seconds, its counter is shown now and then:
# logged <name> <command>...
logged()
{
    local log=$logs/$1 line next=$((SECONDS + 10)) counter='^[[ ]*([0-9]+/[0-9]+)(\]| Test)'
    mkdir -p "$logs"
    "${@:2}" </dev/null 2>&1 | while IFS= read -r line; do
        printf '%s\n' "$line"
        if ((SECONDS >= next)) && [[ $line =~ $counter ]]; then
            next=$((SECONDS + 10))
            say "    ${BASH_REMATCH[1]}"
        fi
    done >"$log"
}

# Configures and builds a preset: build <preset> [<option of cmake>...]. Warnings are errors.
build()
{
    cd "$top"
    # Once more from nothing where a build folder was moved, or has the cache of another compiler.
    quietly configure --preset "$@"
    logged "build-$1" cmake --build --preset "$1" --parallel "$(nproc)" || {
        grep -E -m 1 -A 50 'FAILED:|error:' "$logs/build-$1" >&2 || tail -n 50 "$logs/build-$1" >&2
        die "Failed: building $1. All that was said is in build/log/build-$1"
    }
}

configure() { cmake "$@" || cmake --fresh "$@"; }

# Runs the tests of a preset: run_tests <preset> [<option of ctest>...]. What failed comes last, since of a long log only the
# end may be kept: as much of each output as fits on a page, and then the names.
run_tests()
{
    local log=$logs/test-$1 results=$top/build/$1/Testing/Temporary shown=20
    cd "$top"
    rm -f "$results/LastTestsFailed.log"
    if logged "test-$1" ctest --preset "$1" --parallel "$(nproc)" "${@:2}"; then
        grep -E '^[0-9]+% tests passed' "$log" >&2
        return
    fi
    if [ -e "$results/LastTestsFailed.log" ]; then
        failed_output "$results/LastTestsFailed.log" "$results/LastTest.log" >&2
        say "Failed under $1: $(wc -l <"$results/LastTestsFailed.log") tests"
        sed -n '/^The following tests FAILED/,$s/^\t *[0-9]* - /    /p' "$log" | head -n "$shown" >&2
    else
        tail -n "$shown" "$log" >&2
    fi
    die "All that was said is in build/log/test-$1, and in $results/LastTest.log"
}

# Of each of the first failed tests, the first and last lines that it wrote, without what GoogleTest writes of any test:
# failed_output <list of ctest> <log of ctest>
failed_output()
{
    awk -F '[:/]' '
        function show(    i, head, tail) {
            head = lines > room ? int(room * 2 / 3) : lines
            tail = lines > room ? room - head : 0
            for (i = 1; i <= head; ++i) print text[i]
            if (tail > 0) print "    ... " lines - room " lines more ..."
            for (i = lines - tail + 1; i <= lines; ++i) print text[i]
            print ""
            lines = 0
        }
        FNR == NR { if (count < 6) { failed[$1] = 1; room = int(42 / ++count) } next }
        /^[0-9]+\/[0-9]+ Testing: / { inside = $1 in failed; if (inside) print; next }
        !inside { next }
        /^".*time elapsed: / { show(); inside = 0; next }
        /^[0-9]+\/[0-9]+ Test: |^Command: |^Directory: |^Output:$|^-----|^<end of output>$|^".*(start|end) time: / { next }
        /^Test (time =|Failed|Passed)|^Running main|^Note: Google Test filter|^\[(==|--| RUN|  PASSED|  FAILED)/ { next }
        /^$| FAILED TEST/ { next }
        { text[++lines] = $0 }
    ' "$1" "$2"
}
