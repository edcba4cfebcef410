#!/bin/bash
# Installs the packages on this machine, uses what they bring, and removes them: installed.sh <folder of the packages>
set -euo pipefail
. "$(dirname "$0")/../consumers/lib.sh"

packages=("$(cd "$1" && pwd)"/*.deb)
names=(libhueline0.2 libhueline-dev hueline-tools)
generator=Ninja
compiler=g++
libdir=lib/$(dpkg-architecture -qDEB_HOST_MULTIARCH)

skip()
{
    echo "$1: the packages were not tried on this machine." >&2
    exit 0
}

# dpkg knows a package that was removed, too, until it is purged.
known() { dpkg-query --show "${names[@]}" 2>/dev/null; }

[ "$(id -u)" = 0 ] || skip 'Only root may install packages'
[ -z "$(known)" ] || skip "They are known already, and removing them is not ours to do: $(known)"

# apt-get waits for whoever installs something else at the moment.
apt() { quietly env DEBIAN_FRONTEND=noninteractive apt-get --yes -o DPkg::Lock::Timeout=300 "$@" </dev/null; }

# Every path of the packages that is on this machine.
present()
{
    local package path
    for package in "${packages[@]}"; do
        dpkg-deb --fsys-tarfile "$package" | tar --list
    done | sort --unique | while read -r path; do
        [ ! -e "/$path" ] && [ ! -L "/$path" ] || echo "$path"
    done
}

loadable() { ldconfig --print-cache | grep -F libhueline || true; }

before=$(present)
expect 'in the cache of the loader before' '' "$(loadable)"
trap 'apt purge $(known | cut -f 1) && rm -rf "$work"' EXIT # whatever fails in between
apt install --no-install-recommends "${packages[@]}"

# A program is built as anywhere else, and says nothing about where the library is.
find_package_in ''
pkg_config_in /usr
loaded=$(ldd "$work/build/consumer" | awk '$1 ~ /hueline/ { print $1, $3 }')
expect 'loaded' "libhueline.so.0.2 /$libdir/libhueline.so.0.2" "${loaded/\/usr/}"

# A package of that program would need this one, since the release that has all of its symbols.
mkdir -p "$work/package/debian"
touch "$work/package/debian/control"
needed=$(cd "$work/package" && dpkg-shlibdeps -O -e"$work/build/consumer" 2>&1 | tr , '\n' | grep -o 'libhueline.*')
expect 'needed by a package' 'libhueline0.2 (>= 0.2.2)' "$needed"

# The tool says of the rights what the packages say.
expect 'the tool' 'Hueline ver. 0.2.2-r0' "$(/usr/bin/hueline-demo --version)"
rights=$(/usr/bin/hueline-demo | grep Copyright)
for name in "${names[@]}"; do
    expect "copyright of $name" "$rights" "$(grep Copyright "/usr/share/doc/$name/copyright")"
done
! readelf --dynamic /usr/bin/hueline-demo | grep -E 'RPATH|RUNPATH' || fail 'The tool carries a run path.'

apt purge "${names[@]}"
expect 'left behind' "$before" "$(present)"
expect 'known afterwards' '' "$(known)"
expect 'in the cache of the loader afterwards' '' "$(loadable)"
