#!/bin/sh
# The units, checked with systemd's own tools.
# usage: unit.sh BUILD
. "$(dirname "$0")/checks.sh"
build=$1
scratch "$build"
check "installs" cmake --install "$build" --component wificonfd --prefix "$dir/here"
units=$dir/here/lib/systemd/system
unit=$units/wificonfd.service

# The colon at the end adds this system's units, such as rpcbind.service.
verify() { SYSTEMD_UNIT_PATH="$units:" systemd-analyze verify --man=no "$@" 2>&1; }
silent() {
  text=$("$@") || return 1
  same "" "$text"
}
check "systemd takes the unit" silent verify wificonfd.service
check "and the portmapper's under its other name" silent verify rpcbind.service
echo "Surprise=yes" >>"$units/rpcbind.service.d/wificonfd.conf"
check "which it would not with a mistake" not silent verify rpcbind.service

# 10 means no protection; the needs of companions, drivers and /tmp allow 4.7.
check "exposure below 5" systemd-analyze security --offline=yes --threshold=49 "$unit"
check "which is measured" not systemd-analyze security --offline=yes --threshold=20 "$unit"

# The daemon is always restarted, and companions survive that.
for setting in Restart=always RestartSec=1 StartLimitIntervalSec=0 KillMode=process \
  OOMPolicy=continue PrivateTmp=no WantedBy=multi-user.target; do
  check "$setting" grep -qx "$setting" "$unit"
done
# The daemon and its companions need these: they load modules, write to interrupts and PCI
# slots, replace other users' profiles and send raw frames.
for capability in NET_ADMIN NET_RAW NET_BIND_SERVICE SYS_MODULE KILL CHOWN DAC_OVERRIDE FOWNER; do
  check "keeps CAP_$capability" holds "$(unit_value "$unit" CapabilityBoundingSet) " "CAP_$capability "
done
for family in AF_INET AF_INET6 AF_UNIX AF_NETLINK AF_PACKET; do
  check "keeps $family" holds "$(unit_value "$unit" RestrictAddressFamilies) " "$family "
done
for path in /tmp /run /nvram; do
  check "may write $path" holds " $(unit_value "$unit" ReadWritePaths) " " $path "
done
for setting in ProtectKernelModules=no ProtectKernelTunables=no PrivateDevices=no; do
  check "$setting" grep -qx "$setting" "$unit"
done
for calls in @module @privileged @network-io @system-service; do
  check "$calls is not filtered" not holds "$(unit_value "$unit" SystemCallFilter) " "$calls "
done
check "portmapper and network come first" same \
  "rpcbind.service network-online.target" "$(unit_value "$unit" After)"
check "none of them is required" not grep -qE '^(Requires|BindsTo|Requisite|PartOf)' "$unit"
all_passed
