#!/usr/bin/env bash
# debian.sh BUILD: makes the Debian packages and puts them into an empty root: installed, upgraded, removed. Status 77
# where the tools for that are missing.
set -euo pipefail
build=$1
for tool in cpack dpkg dpkg-deb dpkg-shlibdeps file; do
  command -v "$tool" > /dev/null || { echo "debian: $tool is missing, the packages are not tested" >&2; exit 77; }
done
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
root=$folder/root

fail() {
  echo "debian: $1" >&2
  exit 1
}

package() {
  SOURCE_DATE_EPOCH=1700000000 cpack --config "$build/CPackConfig.cmake" -B "$1" > "$folder/log" 2>&1 || { cat "$folder/log"; exit 1; }
}
umask 022
package "$folder/first"
package "$folder/second"
(cd "$folder/first" && sha256sum ./*.deb) > "$folder/sums"
(cd "$folder/second" && sha256sum --quiet -c "$folder/sums") || fail "two packages of one build differ"
[[ $(wc -l < "$folder/sums") == 3 ]] || fail "three packages are expected"
if command -v lintian > /dev/null; then
  lintian --fail-on error,warning "$folder"/first/*.deb 2> /dev/null || fail "findings of lintian"
else
  echo "debian: lintian is missing, the packages are not looked at by it"
fi

# Scripts of packages run on this machine, since the root has no shell; what the packages need is not there either.
mkdir -p "$root"/var/lib/dpkg/{info,updates,triggers}
touch "$root"/var/lib/dpkg/{status,available}
inRoot() { dpkg --root="$root" --force-not-root --force-script-chrootless --force-depends --force-bad-path --log=/dev/null "$@" > "$folder/log" 2>&1 || { cat "$folder/log"; fail "dpkg $1"; }; }
inRoot -i "$folder"/first/*.deb
[[ $("$root/usr/bin/ondrel" --version) == "ondrel 1.0.0" ]] || fail "the program does not run where it was installed"
"$root/usr/bin/ondrel" db create "Driver=Embedded;Database=$folder/shop.db" > /dev/null
grep -q -- "--if-missing" "$root/usr/lib/systemd/system/ondrel.service" || fail "no service"

dpkg-deb -R "$folder/first/"ondrel_*.deb "$folder/next"
sed -i 's/^Version: .*/Version: 1.0.1/' "$folder/next/DEBIAN/control"
dpkg-deb --root-owner-group -b "$folder/next" "$folder/next.deb" > /dev/null
inRoot -i "$folder/next.deb"
[[ $(dpkg-query --admindir="$root/var/lib/dpkg" -W -f '${Version}' ondrel) == 1.0.1 ]] || fail "the upgrade"
"$root/usr/bin/ondrel" db check "Driver=Embedded;Database=$folder/shop.db" > /dev/null || fail "the database after the upgrade"

inRoot --purge ondrel libondrelcorpcomponents-dev libondrelcorpcomponents1
left=$(find "$root/usr" -type f -o -type l 2> /dev/null) || true
[[ -z $left ]] || fail "left behind: $left"
