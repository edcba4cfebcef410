#!/bin/bash
# Installs the packages on this machine, uses what they bring, and removes them: installed.sh <folder of the packages>
set -euo pipefail
. "$(dirname "$0")/../consumers/lib.sh"

names=(libhueline0.2 libhueline-kit0.2 libhueline-dev hueline-tools)
packages=()
for name in "${names[@]}"; do
    packages+=("$(cd "$1" && pwd)/${name}"_*.deb)
done

generator=Ninja
compiler=g++
architecture=$(dpkg-deb --field "${packages[0]}" Architecture)
libdir=lib/$(dpkg-architecture -a"$architecture" -qDEB_HOST_MULTIARCH 2>/dev/null)

skip()
{
    echo "$1: the packages were not tried on this machine." >&2
    exit 0
}

# dpkg knows a package that was removed, too, until it is purged.
known() { dpkg-query --show "${names[@]}" 2>/dev/null; }

[ "$architecture" = "$(dpkg --print-architecture)" ] || skip "They are for $architecture"
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

# Programs are built as anywhere else, and load what was installed.
find_package_in ''
pkg_config_in /usr
loaded=$(ldd "$work/build/consumer" "$work/build/kit_consumer" | awk '$1 ~ /hueline/ { print $3 }' | sort --unique)
expect 'loaded' "/$libdir/libhueline-kit.so.0.2 /$libdir/libhueline.so.0.2" "$(tr '\n' ' ' <<<"${loaded//\/usr/}" | sed 's/ $//')"

# A package of those programs would need these, since the release that has all of their symbols.
mkdir -p "$work/package/debian"
touch "$work/package/debian/control"
needed=$(cd "$work/package" && dpkg-shlibdeps -O -e"$work/build/consumer" -e"$work/build/kit_consumer" 2>&1 | tr , '\n' | grep -o 'libhueline.*' | sort)
expect 'needed by a package' $'libhueline-kit0.2 (>= 0.2.2)\nlibhueline0.2 (>= 0.2.2)' "$needed"

# The tool says of the rights what the packages say.
expect 'the tool' 'Hueline ver. 0.2.2-r0' "$(/usr/bin/hueline-demo --version)"
rights=$(/usr/bin/hueline-demo | grep Copyright)
for name in "${names[@]}"; do
    grep -F "$rights" "/usr/share/doc/$name/copyright" >/dev/null || fail "The copyright of $name is not '$rights'."
done
! readelf --dynamic /usr/bin/hueline-demo | grep -E 'RPATH|RUNPATH' || fail 'The tool carries a run path.'

apt purge "${names[@]}"
expect 'left behind' "$before" "$(present)"
expect 'known afterwards' '' "$(known)"
expect 'in the cache of the loader afterwards' '' "$(loadable)"
