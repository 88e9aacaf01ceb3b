#!/usr/bin/env bash
# Builds the Debian packages of a build, checks them, and installs, runs and removes them in a root directory of their own.
# The dependencies are those of this machine, whose list of installed packages is copied.
#
#     test_packages.sh <build folder> <source folder>
set -euo pipefail
# dpkg needs to be root, if only in a namespace.
[ "$(id -u)" -eq 0 ] || exec unshare --map-root-user bash "$0" "$@"
build=$1 source=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cpack --config "$build/CPackConfig.cmake" -B "$work/packages" >"$work/log" 2>&1 || { cat "$work/log"; exit 1; }
cd "$work/packages"
lintian --allow-root --fail-on error ./*.deb
version=$(sed -n '1s/.*(\(.*\)).*/\1/p' "$source/Packaging/changelog")
[ "$(printf '%s\n' ./*.deb | sort)" = "$(printf "./orv-action-manager%s_${version}_$(dpkg --print-architecture).deb\n" -dbgsym -dev "")" ]
dpkg-deb -f orv-action-manager_*.deb Depends | grep -F libstdc++6 | grep -F libpugixml | grep -F tzdata

root=$work/root
mkdir -p "$root/var/lib/dpkg/updates" "$root/var/lib/dpkg/info" "$root/etc" "$work/bin"
cp /var/lib/dpkg/status "$root/var/lib/dpkg/"
# The maintainer scripts run outside the root directory, so their ldconfig must be told about it.
printf '#!/bin/sh\nexec /sbin/ldconfig -r "$DPKG_ROOT"\n' >"$work/bin/ldconfig"
chmod +x "$work/bin/ldconfig"
scratch_dpkg() {
    PATH=$work/bin:$PATH dpkg --root="$root" --force-script-chrootless "$@" >"$work/log" 2>&1 || { cat "$work/log"; exit 1; }
}
scratch_dpkg --install ./*.deb
# The packages contain what cmake --install installs, the debug symbols, and settings for the administrator.
cmake --install "$build" --prefix "$work/installed" >/dev/null
diff <(cd "$work/installed" && find . -not -type d | sort) \
    <(cd "$root/usr" && find . -not -type d -not -path '*-dbgsym/*' -not -path './lib/debug/*' \
        -not -name OrvActionManager.ini | sort)

# As the loader would find them with the packages on a system.
export LD_LIBRARY_PATH=$root/usr/lib
[ "$("$root/usr/bin/ActionHost" --version)" = "ActionHost $version" ]
# The link beside the module leads out of the root directory, so it is made to lead into it.
settings=etc/orv-action-manager/OrvActionManager.ini
link=$root/usr/lib/OrvActionManager/OrvActionManager.ini
[ "$(readlink "$link")" = /$settings ]
ln -sf "$root/$settings" "$link"
"$root/usr/bin/ActionHost" settings | tee "$work/settings"
grep -E "^Logger +Path +/var/log/orv-action-manager +.*OrvActionManager.ini" "$work/settings"
grep -E "^Logger +MaxSeverity +WARN +.*OrvActionManager.ini" "$work/settings"
[ -d "$root/var/log/orv-action-manager" ]
# As an administrator changes them.
sed -i "s|^Path=.*|Path=$work/Logs|; s|^MaxSeverity=.*|MaxSeverity=DBG|" "$root/$settings"
"$root/usr/bin/ActionHost" --every 100ms --duration 300ms
[ -s "$work/Logs/OrvActionManager.log" ]
scratch_dpkg --force-confold --install ./orv-action-manager_*.deb
grep -F "Path=$work/Logs" "$root/$settings"
for binary in "$root"/usr/bin/* "$root"/usr/lib/*.so "$root"/usr/lib/*/*.so; do
    readelf -d "$binary" | grep -E 'RPATH|RUNPATH' && { echo "$binary searches its libraries itself" >&2; exit 1; }
    id=$(readelf -n "$binary" | sed -n 's/.*Build ID: //p')
    readelf -S "$root/usr/lib/debug/.build-id/${id:0:2}/${id:2}.debug" | grep -F .debug_info >/dev/null
done
gzip -dc "$root/usr/share/man/man1/ActionHost.1.gz" | grep -F "OrvActionManager $version"
grep -q -F "No license has been chosen" "$root/usr/share/doc/orv-action-manager/copyright"

# A purge also removes what the module wrote.
touch "$root/var/log/orv-action-manager/OrvActionManager.log"
scratch_dpkg --purge orv-action-manager-dbgsym orv-action-manager-dev orv-action-manager
left=$([ ! -d "$root/usr" ] || find "$root/usr" -not -type d; find "$root" -path '*orv-action-manager*')
[ -z "$left" ] || { echo "left after the removal: $left" >&2; exit 1; }
