#!/bin/sh
# The effects of the options of "gwbox run": boards, a cold start, companions, times.
# usage: boards.sh PATH_OF_GWBOX
# Prints one line per check and fails if any check failed.
set -u
gwbox=$(readlink -f "$1")
failures=0

# inside "OPTIONS" NAME COMMAND: the shell command must succeed in a box with these options.
inside() {
  # shellcheck disable=SC2086 # options are words
  if output=$("$gwbox" run $1 -- sh -c "$3" 2>&1 </dev/null); then
    echo "ok: $2"
  else
    echo "FAILED: $2: $output"
    failures=$((failures + 1))
  fi
}

modules=/lib/modules/wifi
inside "--no-portmap --board mt7603" "mt7603: one module is loaded" \
  '[ "$(ls /sys/module)" = mt7603e_ap ] && rmmod mt7603e_ap.ko && ! ip link show ra0'
inside "--no-portmap --board mt7603" "mt7603: the other radio's module finds no card" \
  "insmod $modules/mt7612e_ap.ko 2>&1 | grep 'No such device'"
inside "--no-portmap --board mt7615" "mt7615: one module has both radios" \
  '[ "$(ls /sys/module)" = mt7615_ap ] && rmmod mt7615_ap.ko && ! ip link show ra0 &&
   ! ip link show ra15'
inside "--no-portmap --board mt7615" "mt7615: both come back" \
  "rmmod mt7615_ap && insmod $modules/mt7615_ap.ko && ip link show ra0 && ip link show ra15"
inside "--no-portmap --cold" "cold: no driver is loaded" \
  '[ -z "$(ls /sys/module)" ] && ! ip link show ra0 && ! ip link show ra8'
inside "--no-portmap --cold" "cold: modules can be loaded" \
  "insmod $modules/mt7612e_ap.ko && ip link show ra8 && ! ip link show ra0 &&
   insmod $modules/mt7603e_ap.ko && iwpriv ra0 set A=1"
inside "--no-portmap" "without the option no companion runs" '! pgrep -x "HncInit|hnc-listener"'
inside "--no-portmap --companions" "companions: they are ready from the start" \
  'killall -USR1 HncInit && pgrep -x hnc-listener && ss -Huln sport = 4567 | grep 192.168.254.254 &&
   for i in $(seq 300); do grep USR1 /run/gwbox/hncinit.jsonl && exit 0; sleep 0.01; done; exit 1'
inside "--companions" "companions: beside the portmapper" 'rpcinfo -p && pgrep -x HncInit'

# As an ordinary user, if the kernel allows it and this test is run by root.
ordinary="setpriv --reuid=65534 --regid=65534 --clear-groups env HOME=/"
if [ "$(id -u)" -eq 0 ] && $ordinary test -x "$gwbox" 2>/dev/null &&
  $ordinary "$gwbox" run --no-portmap -- true 2>/dev/null; then
  root=$gwbox
  gwbox_user() { $ordinary "$root" "$@"; }
  gwbox=gwbox_user
  inside "--companions" "an ordinary user's modules" \
    "rmmod mt7603e_ap && ! ip link show ra0 && insmod $modules/mt7603e_ap.ko && ip link show ra0"
  inside "--no-portmap" "an ordinary user's hardware" \
    'echo 1 >/sys/bus/pci/rescan && echo 2 >/proc/irq/31/smp_affinity && iwpriv ra0 set A=1 &&
     gwbox log --json | grep rescan'
  gwbox=$root
fi

echo "$failures failed"
[ $failures -eq 0 ]
