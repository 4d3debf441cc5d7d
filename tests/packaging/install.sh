#!/bin/sh
# Where an installation puts its files, and that the units name these places.
# usage: install.sh BUILD SOURCE
. "$(dirname "$0")/checks.sh"
build=$1
source=$2
scratch "$build"

install_to() { cmake --install "$build" "$@"; }
check "installs below a prefix" install_to --prefix "$dir/here"

for program in sbin/wificonfd bin/wificonf bin/gwbox bin/gwbox-companion; do
  check "$program can be run" test -x "$dir/here/$program"
done
for file in share/wificonfd/wlan_config.x share/pkgconfig/wificonfd.pc \
  lib/systemd/system/wificonfd.service lib/systemd/system/rpcbind.service.d/wificonfd.conf \
  share/doc/wificonfd/README.md share/doc/wificonfd/packaging.md \
  share/doc/wificonfd/security.md \
  share/doc/wificonfd/DESIGN.md share/doc/wificonf/c-client.md share/doc/wificonf/procedures.md \
  share/doc/gwbox/gwbox.md share/wificonfd/wlan_config.lua share/wificonfd/wlan_config_tables.lua \
  share/man/man1/gwbox-companion.1 \
  share/bash-completion/completions/wificonf share/zsh/vendor-completions/_wificonf \
  share/bash-completion/completions/gwbox share/zsh/vendor-completions/_gwbox; do
  check "$file is there" test -s "$dir/here/$file"
done
# links DOCUMENT: its links to documents. broken_links: those that lead nowhere.
links() { grep -oE '\]\([^)#:]*[.]md\)' "$1" | sed 's/^](//; s/)$//'; }
broken_links() {
  for document in "$dir"/here/share/doc/*/*.md; do
    for link in $(links "$document"); do
      [ -s "${document%/*}/$link" ] || echo "${document##*/}: $link"
    done
  done
}
check "the README has links" test "$(links "$dir/here/share/doc/wificonfd/README.md" | wc -l)" -ge 8
check "links of documents lead somewhere" same "" "$(broken_links)"
# Every line of each document is installed, whatever characters it has.
same_size() { [ "$(tr -dc '\n' <"$1" | wc -c)" = "$(tr -dc '\n' <"$2" | wc -c)" ] && ! grep -q '](docs/' "$2"; }
for name in README DESIGN CONTRIBUTING; do
  check "$name.md is whole" same_size "$source/$name.md" "$dir/here/share/doc/wificonfd/$name.md"
done
check "the contract is the daemon's own" \
  cmp "$source/src/rpc/wlan_config.x" "$dir/here/share/wificonfd/wlan_config.x"
# The dissector works from its path and, with its tables, in Wireshark's directory of
# plugins, where each file runs on its own.
dissects() {
  home=$1
  shift
  HOME=$home tshark -G fields "$@" >"$dir/fields" 2>"$dir/errors"
  grep -i lua "$dir/errors"
  grep -q 'wlan_config[.]procedure' "$dir/fields" && ! grep -qi lua "$dir/errors"
}
mkdir -p "$dir/home/.local/lib/wireshark/plugins"
check "the dissector finds its tables" dissects "$dir/home" \
  -X "lua_script:$dir/here/share/wificonfd/wlan_config.lua"
cp "$dir"/here/share/wificonfd/wlan_config*.lua "$dir/home/.local/lib/wireshark/plugins"
check "and among plugins" dissects "$dir/home"
check "the portmapper has its other name" same /sbin/rpcbind \
  "$(readlink "$dir/here/lib/wificonfd/portmap")"
check "without its init script for OpenWrt" not test -e "$dir/here/etc"
check "the client runs from there" "$dir/here/bin/wificonf" --version
check "gwbox runs from there, with its companions" env -C "$dir" "$dir/here/bin/gwbox" run \
  --companions --no-portmap -- true

# completed LINE: what bash offers at the end of the line.
completed() {
  PATH=$dir/here/bin:$PATH bash -c '. "$0"; COMP_LINE=$1 COMP_POINT=${#1}; _gwbox gwbox
    echo "${COMPREPLY[@]}"' "$dir/here/share/bash-completion/completions/gwbox" "$1"
}
check "gwbox's words are completed" same "status set scenario" "$(completed "gwbox s")"
check "and those that it takes" same "minimal mesh" "$(completed "gwbox scenario show m")"

unit=$dir/here/lib/systemd/system/wificonfd.service
check "the unit starts this daemon" same "$dir/here/sbin/wificonfd" "$(unit_value "$unit" ExecStart)"
check "and names this documentation" same \
  "man:wificonfd(8) file://$dir/here/share/doc/wificonfd/README.md" \
  "$(unit_value "$unit" Documentation)"
check "the portmapper's unit starts this name" same "$dir/here/lib/wificonfd/portmap -f \$OPTIONS" \
  "$(unit_value "$dir/here/lib/systemd/system/rpcbind.service.d/wificonfd.conf" ExecStart)"
check "no placeholder is left" not grep -rq '@[A-Z_]*@' "$dir/here/lib/systemd" "$dir/here/share/pkgconfig"

# As for a package: into a directory other than the final one.
check "installs for /usr elsewhere" env DESTDIR="$dir/root" cmake --install "$build" --prefix /usr
unit=$dir/root/usr/lib/systemd/system/wificonfd.service
check "the unit starts the daemon in /usr" same /usr/sbin/wificonfd "$(unit_value "$unit" ExecStart)"

check "installs the init script when asked" env DESTDIR="$dir/openwrt" \
  cmake --install "$build" --component openwrt
check "where OpenWrt looks for it" test -x "$dir/openwrt/etc/init.d/wificonfd"
check "and nothing else" same 1 "$(find "$dir/openwrt" -type f | wc -l)"

contract=$(PKG_CONFIG_PATH=$dir/here/share/pkgconfig pkg-config --variable=contract wificonfd)
check "pkg-config finds the contract" test -s "$contract"
version=$(sed -n 's/^project(wificonfd VERSION \([0-9.]*\).*/\1/p' "$source/CMakeLists.txt")
check "pkg-config knows the version" same "$version" \
  "$(PKG_CONFIG_PATH=$dir/here/share/pkgconfig pkg-config --modversion wificonfd)"
check "pkg-config links libtirpc" holds \
  "$(PKG_CONFIG_PATH=$dir/here/share/pkgconfig pkg-config --cflags --libs wificonfd)" -ltirpc
all_passed
