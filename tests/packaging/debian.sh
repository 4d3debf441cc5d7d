#!/bin/sh
# Builds the Debian packages and checks their contents.
# usage: debian.sh BUILD SOURCE PACKAGES (the directory for the packages)
. "$(dirname "$0")/checks.sh"
build=$1
source=$2
packages=$3
scratch "$build"
rm -rf "$packages"

# A strict umask must not change the modes in the packages.
pack() { (umask 077 && cpack -G DEB --config "$build/CPackConfig.cmake" -B "$packages"); }
check "packs" pack
rm -rf "$packages/_CPack_Packages"
version=$(sed -n 's/^project(wificonfd VERSION \([0-9.]*\).*/\1/p' "$source/CMakeLists.txt")
arch=$(dpkg --print-architecture)
check "three packages" same \
  "gwbox_${version}_$arch.deb wificonf_${version}_$arch.deb wificonfd_${version}_$arch.deb " \
  "$(cd "$packages" && ls | tr '\n' ' ')"

field() { dpkg-deb -f "$packages/$1_${version}_$arch.deb" "$2"; }
for package in wificonfd wificonf gwbox; do
  check "$package has its name" same "$package $version" "$(field $package Package) $(field $package Version)"
  check "$package needs what it is linked with" holds "$(field $package Depends)" "libc6 (>="
  check "$package unpacks" dpkg-deb -x "$packages/${package}_${version}_$arch.deb" "$dir/$package"
  for file in copyright changelog.gz; do
    check "$package has its $file" test -s "$dir/$package/usr/share/doc/$package/$file"
  done
  odd=$(dpkg-deb -c "$packages/${package}_${version}_$arch.deb" |
    grep -vE '^(-rw-r--r--|-rwxr-xr-x|drwxr-xr-x|lrwxrwxrwx) root/root ')
  check "$package has plain modes and owners" same "" "$odd"
done
check "the daemon links libtirpc" holds "$(field wificonfd Depends)" "libtirpc3"
for program in rpcbind netbase procps psmisc wireless-tools kmod; do
  check "the daemon needs $program" holds "$(field wificonfd Depends)" "$program"
done
check "the simulated gateway needs a portmapper" holds "$(field gwbox Depends)" "rpcbind, netbase"
check "the client needs no daemon" not holds "$(field wificonf Depends)" wificonfd

for file in wlan_config.x wlan_config.lua wlan_config_tables.lua; do
  check "the client's package has $file" test -s "$dir/wificonf/usr/share/wificonfd/$file"
done
for page in wificonfd/usr/share/man/man8/wificonfd.8.gz wificonf/usr/share/man/man1/wificonf.1.gz \
  gwbox/usr/share/man/man1/gwbox.1.gz wificonfd/usr/share/man/man5/wlan_config.5.gz; do
  check "$page is compressed" gzip -t "$dir/$page"
done
for program in wificonfd/usr/sbin/wificonfd wificonf/usr/bin/wificonf \
  gwbox/usr/bin/gwbox gwbox/usr/bin/gwbox-companion; do
  check "$program is there" test -x "$dir/$program"
  check "$program is stripped" not grep -qE '\.(symtab|debug_)' <<SECTIONS
$(readelf -SW "$dir/$program")
SECTIONS
done

# An install() without a COMPONENT would install a file that is in no package.
check "installs all components" env DESTDIR="$dir/all" cmake --install "$build" --prefix /usr
files() {
  # Only the packages compress the manual pages.
  for top; do (cd "$dir/$top" && find . ! -type d); done | sed '/[/]man[/]/s/[.]gz$//' | sort
}
check "the packages have all that is installed" same "$(files all)" "$(files wificonfd wificonf gwbox)"

as_root=
[ "$(id -u)" -ne 0 ] || as_root=--allow-root
# The packages have no overrides, and lintian would ignore any.
check "lintian finds no errors" lintian $as_root --no-override --fail-on error "$packages"/*.deb
cat "$dir/said"
all_passed
