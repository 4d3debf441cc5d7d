#!/bin/sh
# Runs a command in a box as the unit would: with its capabilities, no new privileges, and
# only its writable paths writable.
# usage: confined.sh UNIT COMMAND...
set -eu
unit=$1
shift
if [ "${CONFINED_MOUNTS:-}" != separate ]; then
  CONFINED_MOUNTS=separate exec unshare --mount "$0" "$unit" "$@"
fi
value() { sed -n "s/^$1=//p" "$unit"; }

writable=$(value ReadWritePaths)
for path in $writable; do mount --rbind "$path" "$path"; done
below() {
  case $1/ in "$2"/*) return 0 ;; esac
  return 1
}
# Like ProtectSystem=strict, this leaves /dev, /proc and /sys alone.
awk '{ print $5 }' /proc/self/mountinfo | sort -u | while read -r mounted; do
  for path in /dev /proc /sys $writable; do
    if below "$mounted" "$path"; then continue 2; fi
  done
  mount -o remount,bind,ro "$mounted"
done

capabilities=-all
for name in $(value CapabilityBoundingSet); do
  capabilities=$capabilities,+$(echo "${name#CAP_}" | tr 'A-Z' 'a-z')
done
[ "$(value NoNewPrivileges)" = yes ]
exec setpriv --no-new-privs --bounding-set "$capabilities" -- "$@"
