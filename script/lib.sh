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

# Configures and builds a preset: build <preset> [<option of cmake>...]. Warnings are errors.
build()
{
    cd "$top"
    # Once more from nothing where a build folder was moved, or has the cache of another compiler.
    quietly configure --preset "$@"
    quietly cmake --build --preset "$1" --parallel "$(nproc)"
}

configure() { cmake "$@" || cmake --fresh "$@"; }
