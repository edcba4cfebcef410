# What the scripts share. Nothing here writes to standard output, which belongs to the programs that the scripts run.

top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

for_build=(g++ cmake ninja-build libutf8proc-dev)
for_tests=("${for_build[@]}" clang libclang-rt-dev pkgconf binutils qemu-user libgtest-dev libvterm-dev librapidcheck-dev
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

# What the longer commands say is kept here.
logs=$top/build/log

# Stops with one line where nothing can be built.
prepare_logs()
{
    { mkdir -p "$logs" && : >"$logs/.writable"; } 2>/dev/null ||
        die "Nothing can be built in $top: it is read-only, or its disk is full. Copy it to where there is room."
    rm -f "$logs/.writable"
}

# Stops with one line if a disk is full.
blame_disks()
{
    local folder
    for folder in "$top" "${TMPDIR:-/tmp}"; do
        [ "$(df --output=avail -k "$folder" | tail -n 1)" -ge 4096 ] || die "The disk of $folder is full."
    done
}

# Stops with one line if a disk was full, or if a log says so: what could not be written may be gone by now.
blame_the_machine()
{
    blame_disks
    ! grep -q 'No space left on device' "$@" || die 'A disk is full.'
}

# Runs a command whose output matters only when it fails.
quietly()
{
    local log
    prepare_logs
    log=$(mktemp -p "$logs")
    if ! "$@" >"$log" 2>&1 </dev/null; then
        blame_the_machine "$log"
        cat "$log" >&2
        rm -f "$log"
        die "Failed: $*"
    fi
    rm -f "$log"
}

# Runs a command with its output in build/log/<name>. If it takes longer than ten seconds, a line says now and then how far
# it is, by the counters of ninja and ctest and by the packages of apt-get: logged <name> <command>...
logged()
{
    local log=$logs/$1 line next=$((SECONDS + 10))
    local counter='^[[ ]*([0-9]+/[0-9]+)(\]| Test)' package='^(Get:[0-9]+|Unpacking [^ ]+|Setting up [^ ]+)'
    prepare_logs
    "${@:2}" </dev/null 2>&1 | while IFS= read -r line; do
        printf '%s\n' "$line" 2>/dev/null || true
        if ((SECONDS >= next)) && [[ $line =~ $counter || $line =~ $package ]]; then
            next=$((SECONDS + 10))
            say "    ${BASH_REMATCH[1]}"
        fi
    done >"$log"
}

# How long the script has taken, in words.
time_taken() { printf '%d min %02d s' $((SECONDS / 60)) $((SECONDS % 60)); }

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

apt_get() { as_root env DEBIAN_FRONTEND=noninteractive apt-get --yes --quiet -o DPkg::Lock::Timeout=300 "$@"; }

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
    say "Installing ${missing[*]}: a minute or two"
    # An update that fails for one of several sources need not stand in the way.
    logged update apt_get update || say 'The lists of packages could not all be brought up to date.'
    logged install apt_get install --no-install-recommends "${missing[@]}" || {
        blame_the_machine "$logs/install"
        ! grep -qE 'Temporary failure resolving|(Could not|Unable to) connect' "$logs/update" "$logs/install" ||
            die "There is no network to get these packages from: ${missing[*]}"
        grep '^E: ' "$logs/install" >&2 || tail -n 20 "$logs/install" >&2
        die 'These packages could not be installed. All that was said is in build/log/install'
    }
}

# Configures and builds a preset: build <preset> [<option of cmake>...]. Warnings are errors.
build()
{
    cd "$top"
    # Once more from nothing where a build folder was moved, or has the cache of another compiler.
    quietly configure --preset "$@"
    logged "build-$1" cmake --build --preset "$1" --parallel "$(nproc)" || {
        blame_the_machine "$logs/build-$1"
        grep -E -m 1 -A 50 'FAILED:|error:' "$logs/build-$1" >&2 || tail -n 50 "$logs/build-$1" >&2
        die "Failed: building $1. All that was said is in build/log/build-$1"
    }
}

configure() { cmake "$@" || cmake --fresh "$@"; }

# Tests that failed beside others, and passed when they ran alone: the last line of a run names them.
passed_alone=

# Runs the tests of a preset, and says how many passed: run_tests <preset> [<option of ctest>...]. A few that fail run once
# more, one at a time: a machine may have been busy. What they write comes last, since of a long log only the end may be
# kept.
run_tests()
{
    local log=$logs/test-$1 few=20 failed
    cd "$top"
    rm -f "build/$1/Testing/Temporary/LastTestsFailed.log"
    if logged "test-$1" ctest --preset "$1" --parallel "$(nproc)" "${@:2}"; then
        sed -n 's/^100% tests passed, 0 tests failed out of \([0-9]*\)$/    \1 tests passed/p' "$log" >&2
        return
    fi
    failed=$(sed -n '/^The following tests FAILED/,$s/^\t *[0-9]* - /    /p' "$log")
    say "Failed under $1, of $(sed -n 's/^.* failed out of //p' "$log") tests:"
    say "$(head -n "$few" <<<"$failed")"
    blame_disks
    if [ -n "$failed" ] && [ "$(wc -l <<<"$failed")" -le "$few" ]; then
        say 'Running them again, one at a time:'
        if ctest --preset "$1" --rerun-failed --output-on-failure --parallel 1 </dev/null >&2; then
            passed_alone+=$failed$'\n'
            return
        fi
    fi
    die "All that was said is in build/log/test-$1"
}
