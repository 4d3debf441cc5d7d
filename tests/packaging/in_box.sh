#!/bin/sh
# Installs the packages in a simulated gateway without a portmapper and starts what the
# units start there, confined as the unit says.
# usage: in_box.sh BUILD PACKAGES
# Inside the gateway it calls itself: in_box.sh inside PACKAGES DIRECTORY AS_ROOT
. "$(dirname "$0")/checks.sh"
tests=$(cd "$(dirname "$0")" && pwd)

# An ordinary user's box has no writable package database, so only the files are installed.
install_files() {
  for package in wificonfd wificonf; do dpkg-deb -x "$packages"/${package}_*.deb "$dir/files"; done
  cp -a "$dir"/files/usr/sbin/* /usr/sbin
  cp -a "$dir"/files/usr/bin/* /usr/bin
  cp -a "$dir"/files/usr/lib/wificonfd /usr/lib
  units=$dir/files/usr/lib/systemd/system
}

# Records the maintainer scripts' calls of systemctl, because systemd does not run here.
# Calls that change only files (--root) are carried out.
note_systemctl() {
  rm -f /usr/sbin/policy-rc.d
  mkdir -p /run/systemd/system
  cat >/usr/sbin/systemctl.noted <<'SYSTEMCTL'
#!/bin/sh
case $1 in --root=*) exec /usr/bin/systemctl "$@" ;; esac
echo "$*" >>/tmp/systemctl
[ "$1 $2" != "--system is-enabled" ] || echo enabled
SYSTEMCTL
  chmod +x /usr/sbin/systemctl.noted
  mkdir -p /usr/local/sbin
  ln -s /usr/sbin/systemctl.noted /usr/local/sbin/systemctl
}
# asked: the calls since the last time, except for queries.
asked() {
  grep -v 'is-enabled\|is-active' /tmp/systemctl | sed 's/--quiet //; s/--system //' | tr '\n' ','
  rm -f /tmp/systemctl
}
wanted=/etc/systemd/system/multi-user.target.wants/wificonfd.service

install_packages() {
  units=/usr/lib/systemd/system
  note_systemctl
  check "installs" dpkg -i "$packages"/wificonfd_*.deb "$packages"/wificonf_*.deb
  check "is enabled" test -L $wanted
  check "the portmapper gets its name, the daemon is started" same \
    "daemon-reload,try-restart rpcbind.service,restart wificonfd.service," "$(asked)"
}

answers() { /usr/bin/wificonf --timeout 0.1 ping; }
on_air() { gwbox status | grep -q '^ra0 *on' && gwbox status | grep -q '^ra8 *on'; }
stop() {
  kill -TERM "$1"
  wait "$1"
}

the_daemon_works() {
  unit=$units/wificonfd.service
  start="$tests/confined.sh $unit $(unit_value "$unit" ExecStart)"
  check "what the unit forbids is forbidden" ends_with 1 \
    "$tests/confined.sh" "$unit" touch /etc/forbidden
  touch /tmp/wlandbg
  check "without a portmapper a start is refused with status 0" ends_with 0 $start
  check "which a trace reports" holds "$($start)" "portmapper has not been setup"
  rm /tmp/wlandbg

  portmap=$(unit_value "$units/rpcbind.service.d/wificonfd.conf" ExecStart)
  OPTIONS='' sh -c "exec $portmap" &
  check "the portmapper is there under its other name" within 4 pgrep -x portmap
  within 4 rpcinfo -p

  $start 2>/tmp/err &
  daemon=$!
  check "the daemon answers" within 4 answers
  check "it is the package's" same /usr/sbin/wificonfd "$(readlink /proc/$daemon/exe)"
  check "with the unit's privileges" grep -q 'NoNewPrivs:.1' /proc/$daemon/status
  check "it is registered" holds "$(rpcinfo -p)" "538121015    1   udp  60001"

  check "loads the drivers" wificonf wlan_load 1
  check "brings the radios up" wificonf wlan_init
  check "both are on air" within 5 on_air
  check "with a companion" within 4 pgrep -x mtk_ctrl
  check "the calibration is kept" test -s /nvram/MT7603_EEPROM.bin
  check "changes a profile" wificonf wlan_set_ssid 1 "Packaged"
  check "which is on disk" grep -qx SSID1=Packaged /tmp/mt76xx_24.dat
  check "nothing failed" same "" "$(grep -E 'ERROR|denied|Read-only|not permitted' /tmp/err |
    grep -v 'HNC Process is not running')"
}

it_comes_back() {
  check "TERM ends it with status 0" ends_with 0 stop "$daemon"
  check "its companion goes on" pgrep -x mtk_ctrl
  $start 2>/tmp/err &
  daemon=$!
  check "it starts again" within 4 answers

  # The child keeps the port, so every later start would fail.
  kill -KILL $daemon
  wait $daemon 2>/dev/null
  check "the child of a killed supervisor serves on" answers
  check "what the unit does after a stop" "$tests/confined.sh" "$unit" \
    $(unit_value "$unit" ExecStopPost | sed 's/^-//')
  check "ends it" within 4 not pgrep -x wificonfd
  check "and nothing else" pgrep -x mtk_ctrl
  $start 2>/tmp/err &
  daemon=$!
  check "then a start succeeds" within 4 answers
  check "at once" not grep -q "bind:" /tmp/err
}

remove_packages() {
  rm -f /tmp/systemctl
  check "installs once more" dpkg -i "$packages"/wificonfd_*.deb
  check "which leaves the portmapper alone" same "daemon-reload,restart wificonfd.service," "$(asked)"
  check "is removed" dpkg -r wificonfd
  check "stopped before" same "stop wificonfd.service,daemon-reload," "$(asked)"
  check "with all its files" not test -e /usr/sbin/wificonfd -o -e $units/wificonfd.service
  check "is purged" dpkg -P wificonfd
  check "without a trace" not test -L $wanted
}

if [ "$1" = inside ]; then
  packages=$2
  dir=$3
  as_root=$4
  if [ "$as_root" = yes ]; then install_packages; else install_files; fi
  the_daemon_works
  it_comes_back
  [ "$as_root" != yes ] || remove_packages
  kill -TERM "$daemon"
  all_passed
else
  build=$1
  packages=$2
  scratch "$build"
  as_root=no
  [ "$(id -u)" -ne 0 ] || as_root=yes
  "$build/gwbox" run --no-portmap --cold --companions -- \
    "$tests/in_box.sh" inside "$packages" "$dir" $as_root
fi
