#!/bin/sh
# The init script for OpenWrt: its syntax, and its calls of procd.
# usage: openwrt.sh SOURCE [SHELLCHECK]
. "$(dirname "$0")/checks.sh"
script=$1/packaging/openwrt/wificonfd.init
shellcheck=${2:-}
dir=$(mktemp -d) || exit 1
trap 'rm -rf "$dir"' EXIT

check "sh reads it" sh -n "$script"
[ -z "$shellcheck" ] || check "shellcheck accepts it" "$shellcheck" "$script"
check "rc.common runs it" same "#!/bin/sh /etc/rc.common" "$(head -n 1 "$script")"

# Does what rc.common does: reads the script, with procd's functions defined, and starts.
cat >"$dir/rc.common" <<'COMMON'
procd_open_instance() { echo "open $*"; }
procd_set_param() { echo "set $*"; }
procd_close_instance() { echo "close $*"; }
. "$1"
echo "settings USE_PROCD=$USE_PROCD START=$START STOP=$STOP"
start_service
COMMON
expected="settings USE_PROCD=1 START=95 STOP=10
open 
set command /usr/sbin/wificonfd
set respawn 3600 1 0
set stdout 1
set stderr 1
set limits nofile=16384 16384
set term_timeout 5
close "
check "asks procd for one instance that is always restarted" same "$expected" \
  "$(sh -eu "$dir/rc.common" "$script")"
all_passed
