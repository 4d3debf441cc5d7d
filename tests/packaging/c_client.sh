#!/bin/sh
# The client in docs/c-client.md: builds it with the document's code and commands, and calls
# the daemon with it in a simulated gateway.
# usage: c_client.sh BUILD SOURCE
. "$(dirname "$0")/checks.sh"
build=$1
source=$2
scratch "$build"
document=$source/docs/c-client.md

# block LANGUAGE: the document's only code block in that language.
block() {
  awk -v start="\`\`\`$1" '$0 == start { on = 1; next } /^```/ { on = 0 } on' "$document"
}
blocks() { grep -c -x "\`\`\`$1" "$document"; }
check "one program and one way to build it" same "1 1" "$(blocks c) $(blocks sh)"
block c >"$dir/rename.c"
lines=$(wc -l <"$dir/rename.c")
check "the program is short: $lines lines" test "$lines" -gt 10 -a "$lines" -le 35

check "installs what clients need" cmake --install "$build" --component wificonf --prefix "$dir/here"
in_directory() { (cd "$dir" && "$@"); }
block sh >"$dir/build.sh"
export PKG_CONFIG_PATH="$dir/here/share/pkgconfig"
check "the document's commands build it" in_directory sh -eu build.sh
# Only our own code: what rpcgen generates has warnings.
check "without warnings" in_directory cc -std=c99 -D_DEFAULT_SOURCE -Wall -Wextra -Wpedantic \
  -Wshadow -Werror -fsyntax-only -isystem /usr/include/tirpc rename.c
all_passed || exit 1

# The recipe for readers without a gateway prints what the document shows.
block bash >"$dir/recipe"
shown=$(sed -n 's/^    \(stations of BSS .*\)/\1/p' "$document")
check "the recipe is there" same 1 "$(grep -c '^./rename' "$dir/recipe")"
check "it runs" in_directory timeout 60 "$build/gwbox" run -- bash -eu recipe
check "it prints what the document shows" same "$shown" "$(tail -n 1 "$dir/said")"

cat >"$dir/calls.sh" <<'CALLS'
rename=$1
"$rename"; echo "usage: $?"
"$rename" 1 "Too early"; echo "no daemon: $?"
wificonfd &
until wificonf --timeout 0.1 ping; do sleep 0.02; done >/dev/null 2>&1
"$rename" 1 "Living room"; echo "radio down: $?"
ip link set ra0 up
"$rename" 1 "Kitchen"; echo "radio up: $?"
"$rename" 17 "Nowhere"; echo "no such BSS: $?"
grep ^SSID1= /tmp/mt76xx_24.dat
kill $!
CALLS
run_calls() { "$build/gwbox" run -- sh "$dir/calls.sh" "$dir/rename" >"$dir/out" 2>"$dir/err"; }
check "it runs in a gateway" run_calls
expected="usage: 2
no daemon: 1
radio down: 1
stations of BSS 1: 1
radio up: 0
no such BSS: 1
SSID1=Kitchen"
check "it does what it says" same "$expected" "$(cat "$dir/out")"
for message in "usage: rename BSS SSID" "rename: RPC: Program not registered" \
  "wlan_get_assoc_devices_num: status -1" "wlan_set_ssid: status -1"; do
  check "says \"$message\"" holds "$(cat "$dir/err")" "$message"
done
all_passed
