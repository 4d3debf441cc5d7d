#!/bin/sh
# What is seen of a box from outside: exit statuses, signals, leftovers, other boxes.
# usage: outside.sh PATH_OF_GWBOX
# Prints one line per check and fails if any check failed.
set -u
gwbox=$(readlink -f "$1")
# A box sees gwbox's own directory under the same name, but not /tmp.
dir=$(mktemp -d "$(dirname "$gwbox")/outside.XXXXXX")
chmod 777 "$dir"
# A directory that is neither below the current one nor beside gwbox.
foreign=$(mktemp -d "${HOME:-/root}/gwbox-foreign.XXXXXX") || exit 1
chmod 777 "$foreign"
trap 'rm -rf "$dir" "$foreign"' EXIT
failures=0

passed() { echo "ok: $1"; }
failed() {
  echo "FAILED: $1"
  failures=$((failures + 1))
}

# check NAME COMMAND...: the command must succeed.
check() {
  name=$1
  shift
  if "$@"; then passed "$name"; else failed "$name ($*)"; fi
}

# ends_with STATUS COMMAND...: the command must end with that exit status.
ends_with() {
  expected=$1
  shift
  "$@" >"$dir/out" 2>"$dir/err" </dev/null
  actual=$?
  [ $actual -eq "$expected" ] && return 0
  echo "  exit status $actual instead of $expected: $(cat "$dir/err")"
  return 1
}

# within SECONDS COMMAND...: the command must succeed in that time.
within() {
  tries=$(($1 * 100))
  shift
  while ! "$@" >/dev/null 2>&1; do
    tries=$((tries - 1))
    [ $tries -gt 0 ] || return 1
    sleep 0.01
  done
}

none_left() { ! pgrep -f "$1" >/dev/null; }
said() { grep -q "$1" "$dir/err"; }

# Exit statuses. A plain box is enough.
plain="$gwbox run --no-portmap --"
check "status 0 passes" ends_with 0 $plain true
check "status 7 passes" ends_with 7 $plain sh -c 'exit 7'
check "signal 9 becomes 137" ends_with 137 $plain sh -c 'kill -9 $$'
check "signal 15 becomes 143" ends_with 143 $plain sh -c 'kill -15 $$'
check "a command that is not there: 127" ends_with 127 $plain /no/such/command
check "which is reported" said "cannot run /no/such/command"
check "a command that cannot be executed: 126" ends_with 126 $plain /etc/passwd
check "unknown board: 2" ends_with 2 "$gwbox" run --board mt9999 -- true
check "which names the boards" said "mt7603+mt7612"
check "unknown option: 2" ends_with 2 "$gwbox" run --nonsense -- true
check "no subcommand: 2" ends_with 2 "$gwbox"
check "help: 0" ends_with 0 "$gwbox" --help
check "version: 0" ends_with 0 "$gwbox" --version
check "which it prints" grep -qx 'gwbox [0-9][0-9.]*' "$dir/out"

# Wrong command lines: the status is 2, and the message names the mistake.
while IFS='|' read -r words message; do
  eval "set -- $words"
  check "gwbox $words: 2" ends_with 2 "$gwbox" "$@"
  check "says: $message" said "^gwbox: $message"
done <<'WRONG'
nosuch|there is no command 'nosuch'; "gwbox --help" tells how
nosuch --help|there is no command 'nosuch';
--nosuch|unknown option '--nosuch';
run true|put -- before the command: -- true;
status x|unexpected 'x';
status -- x|only "gwbox run" and "gwbox plan" take a COMMAND after "--";
set|KIND is required; "gwbox set --help" tells how
scenario|scenario takes list, show or check;
scenario nosuch|scenario has no command 'nosuch';
scenario check /etc|/etc is a directory, not a scenario
scenario check /no/such|cannot read the scenario /no/such: No such file
--box "" status|--box: takes a name, not an empty text;
run --name "" -- true|--name: takes a name, not an empty text;
run --name "a b/../c" -- true|'a b/../c' is not a valid name for a box: expected 1 to 64 letters
run --speed x -- true|--speed: takes a number from 0 to 100000, not 'x';
fail clear now|clear takes no further arguments
fail set@ra99 delay=200|"ra99" is not a radio interface: expected ra0 to ra15
WRONG

# Help fits in 79 columns and shows what each command takes.
for command in "" run status set fail advance pause resume log scenario completion; do
  check "gwbox $command --help: 0" ends_with 0 "$gwbox" $command --help
  check "it is not wider than 79 columns" sh -c "! grep -E '.{80}' '$dir/out'"
  check "it begins with the usage" grep -q "^usage: gwbox .*$command" "$dir/out"
done

# An output that cannot be written is an error.
for words in --help --version "scenario list" "scenario show schema" "scenario check mesh"; do
  check "gwbox $words >/dev/full: 1" sh -c "'$gwbox' $words >/dev/full 2>'$dir/err'; test \$? -eq 1"
  check "which is reported" said '^gwbox: cannot write the output: No space left on device$'
done
check "the same of status and log" ends_with 0 $plain sh -c \
  "iwpriv ra0 set A=1; for command in status 'status --json' log; do $gwbox \$command >/dev/full; [ \$? -eq 1 ] || exit 3; done"

check "gwbox set without a box: 1" ends_with 1 "$gwbox" set station 02:00:5e:00:00:01 gone
check "gwbox fail without a box: 1" ends_with 1 "$gwbox" fail 0x8BE2 EIO
check "gwbox log without a box: 1" ends_with 1 "$gwbox" log
check "no box in a box: 125" ends_with 125 $plain "$gwbox" run -- true
check "standard input reaches the command" sh -c "echo through | $plain grep -q through"

# Boards.
check "mt7603 has 8 interfaces" ends_with 0 "$gwbox" run --no-portmap --board mt7603 -- \
  sh -c 'ip link show ra7 && ! ip link show ra8 && test ! -e /tmp/mt76xx_5.dat'
check "mt7615 has 16 interfaces and its card" ends_with 0 "$gwbox" run --no-portmap \
  --board mt7615 -- sh -c 'ip link show ra15 && grep -q 14c37615 /proc/bus/pci/devices'

# The host stays unchanged.
check "changes to the system stay inside" ends_with 0 $plain \
  sh -c 'touch /etc/gwbox-was-here /usr/gwbox-was-here /var/gwbox-was-here /tmp/gwbox-was-here'
check "none of them is outside" sh -c '! ls /etc/gwbox-was-here /usr/gwbox-was-here \
  /var/gwbox-was-here /tmp/gwbox-was-here 2>/dev/null'
check "the build directory is written through" ends_with 0 $plain touch "$dir/written"
check "and so the file is outside" test -e "$dir/written"
check "a foreign directory is not written" ends_with 0 $plain \
  sh -c "touch '$foreign/reached' 2>/dev/null; true"
check "and so nothing is in it outside" test ! -e "$foreign/reached"
# Writes the current value, so that nothing changes even if the check fails.
for file in kernel/core_pattern vm/swappiness; do
  check "/proc/sys/$file cannot be written" ends_with 1 $plain \
    sh -c "value=\$(cat /proc/sys/$file); echo \"\$value\" >/proc/sys/$file || exit 1"
done
check "the box's own network settings can be written" ends_with 0 $plain \
  sh -c 'echo 1 >/proc/sys/net/ipv4/ip_forward'
check "devices are the box's own" ends_with 0 $plain \
  sh -c 'touch /dev/gwbox-was-here && echo >/dev/null && ! ls /dev/vda /dev/sda /dev/kmsg /dev/mem'
check "none of them is outside" test ! -e /dev/gwbox-was-here
check "the clock cannot be set" ends_with 1 $plain date -s "$(date +%FT%T)"
check "the current directory is kept" sh -c "cd '$dir' && $plain test -e written"

# A journal outside the box.
check "--log: the command runs" ends_with 0 "$gwbox" run --no-portmap --log "$dir/journal" -- \
  iwpriv ra0 set LEDEnable=1
check "--log: the request is in the file" grep -q '"text":"LEDEnable=1","result":0}' "$dir/journal"
check "--log: a file that cannot be opened: 125" ends_with 125 "$gwbox" run --log /no/such/file \
  -- true

# The end of a box. The length of the sleep identifies its processes.
start_marked() {
  marker="sleep 86$1.$$"
  $plain sh -c "trap '' TERM; $marker & touch $dir/up; wait" </dev/null 2>"$dir/err" &
  box=$!
  within 3 pgrep -fx "$marker"
}

check "a box for kill -9" start_marked 1
kill -9 $box
wait $box 2>/dev/null
check "kill -9 leaves no process" within 2 none_left "$marker"
check "a box for SIGTERM" start_marked 2
kill -TERM $box
wait $box
check "SIGTERM ends with 143" test $? -eq 143
check "SIGTERM leaves no process, even of those that ignore it" none_left "$marker"
check "no mount is left" sh -c '! grep -q layers /proc/self/mounts'
check "no directory is left" sh -c '! ls -d /tmp/.layers 2>/dev/null'

background="sh -c 'trap \"touch $dir/told; exit 0\" TERM; touch $dir/ready; while :; do sleep 0.01; done' &"
check "the end waits for background processes" ends_with 5 $plain \
  sh -c "$background while [ ! -e $dir/ready ]; do sleep 0.01; done; exit 5"
check "which are told with SIGTERM" test -e "$dir/told"

orphan='sh -c "sleep 0.05 & echo \$! >'$dir'/orphan"; pid=$(cat '$dir'/orphan)
  for i in $(seq 200); do [ -d /proc/$pid ] || exit 0; sleep 0.01; done; exit 1'
check "orphans are collected" ends_with 0 $plain sh -c "$orphan"

# Two boxes: each sets something while the other is up.
neighbour() {
  "$gwbox" run -- sh -c "iwpriv ra0 set Owner=$1; touch $dir/$1.up
    for i in \$(seq 300); do [ -e $dir/$2.up ] && break; sleep 0.01; done
    rpcinfo -p >/dev/null && iwpriv ra0 set Owner=$1 && gwbox log >$dir/$1.log" </dev/null
}
neighbour A B &
first=$!
neighbour B A &
second=$!
wait $first
check "first of two boxes" test $? -eq 0
wait $second
check "second of two boxes" test $? -eq 0
check "the first saw its own requests only" sh -c \
  "[ \$(grep -c Owner=A $dir/A.log) -eq 2 ] && ! grep -q Owner=B $dir/A.log"
check "the second saw its own requests only" sh -c \
  "[ \$(grep -c Owner=B $dir/B.log) -eq 2 ] && ! grep -q Owner=A $dir/B.log"

# Eight side by side, each counting its own requests while all are up.
crowd() {
  "$gwbox" run --no-portmap -- sh -c "touch $dir/crowd$1.up
    for i in \$(seq 1000); do [ \$(ls $dir/crowd*.up | wc -l) -eq 8 ] && break; sleep 0.01; done
    iwpriv ra0 set Crowd=$1 && gwbox log >$dir/crowd$1.log" </dev/null
}
crowd_ids=
for i in 1 2 3 4 5 6 7 8; do
  crowd $i &
  crowd_ids="$crowd_ids $!"
done
i=0
for id in $crowd_ids; do
  i=$((i + 1))
  wait $id
  check "box $i of eight" test $? -eq 0
  check "it saw its own request only" sh -c \
    "[ \$(grep -c Crowd= $dir/crowd$i.log) -eq 1 ] && grep -q Crowd=$i $dir/crowd$i.log"
done

# The median of five starts in milliseconds. The limit is far above the usual time.
start_times() {
  for i in 1 2 3 4 5; do
    begin=$(date +%s%N)
    $plain true </dev/null
    echo $((($(date +%s%N) - begin) / 1000000))
  done
}
median=$(start_times | sort -n | sed -n 3p)
check "start and end take $median ms, below 500" test "$median" -lt 500

# Scenarios and commands from outside.
cat >"$dir/event.json" <<EOF
{ "name": "event", "speed": 1000,
  "stations": [{ "mac": "02:00:5e:00:00:01", "bss": 1 }],
  "events": [{ "at": 20, "set": "station 02:00:5e:00:00:02 bss=1" }] }
EOF
sed 's/"bss": 1/"bss": 99/' "$dir/event.json" >"$dir/wrong.json"
check "a wrong scenario: 2" ends_with 2 "$gwbox" run --scenario "$dir/wrong.json" -- true
check "with its line" said 'wrong.json:2: stations\[0\].bss: expected a whole number from 1 to 16'
sed -i 's/"at": 20/"at": -1/' "$dir/wrong.json"
check "all mistakes are reported" ends_with 2 "$gwbox" scenario check "$dir/wrong.json"
check "one per line" test "$(wc -l <"$dir/err")" -eq 2
check "a scenario that is not there: 2" ends_with 2 "$gwbox" run --scenario nowhere -- true
check "events take place" ends_with 0 "$gwbox" run --no-portmap --scenario "$dir/event.json" -- \
  sh -c 'for i in $(seq 500); do grep -q 00:00:02 /run/gwbox/scenario.json && gwbox status |
    grep -q 00:00:02 && exit 0; sleep 0.01; done; exit 1'
# Events that inject failures, in a box whose time only moves with "gwbox advance".
cat >"$dir/fails.json" <<EOF
{ "speed": 0, "events": [{ "at": 10, "fail": "set@ra0 EIO" }, { "at": 20, "fail": "set delay=600000" },
  { "at": 30, "fail": "clear" }] }
EOF
check "requests fail as events tell" ends_with 0 "$gwbox" run --no-portmap --scenario "$dir/fails.json" -- \
  sh -c 'iwpriv ra0 set A=1 && gwbox advance 10 && gwbox fail list | grep -q "set@ra0 *EIO *0 *1" &&
    ! iwpriv ra0 set A=1 2>/dev/null && iwpriv ra0 set A=1'
check "and no more, delays under way included" ends_with 0 "$gwbox" run --no-portmap \
  --scenario "$dir/fails.json" -- sh -c 'gwbox advance 25; iwpriv ra1 set A=1 &
    until gwbox fail list | grep -q "delay=.* 1$"; do sleep 0.01; done; gwbox advance 5 && wait $! &&
    gwbox fail list | grep -q "no failures"'
check "a command outside a box needs --box" ends_with 1 "$gwbox" status
check "a box that is not there" ends_with 1 "$gwbox" --box nobody status
"$gwbox" run --no-portmap --name "named-$$" -- \
  sh -c "ip link set ra0 up; touch $dir/named; while [ ! -e $dir/enough ]; do sleep 0.01; done" &
named=$!
check "a named box starts" within 5 test -e "$dir/named"
check "status by name" sh -c "$gwbox --box named-$$ status | grep -q 'ra0 *on *HomeGateway'"
check "status by process id" sh -c "$gwbox --box $named status --json | grep -q '\"beacons\": true'"
check "set from outside" ends_with 0 "$gwbox" --box "named-$$" set station 02:00:5e:00:00:33 bss=1
check "what was set is there" sh -c "$gwbox --box named-$$ status | grep -q '00:00:33 ra0'"
check "its name is completed" test "$("$gwbox" complete -- --box "named-$$")" = "named-$$"
check "and so are its stations" sh -c "$gwbox complete -- --box=named-$$ set station '' | grep -qx 02:00:5e:00:00:33"
check "fail from outside" ends_with 0 "$gwbox" --box "named-$$" fail set EIO
check "log from outside" ends_with 0 "$gwbox" --box "named-$$" log
check "a name is taken once" ends_with 2 "$gwbox" run --name "named-$$" -- true
touch "$dir/enough"
wait $named
check "a named box ends" test $? -eq 0
check "and its name with it" ends_with 1 "$gwbox" --box "named-$$" status

# On a terminal the shell has job control, and its prompt names the box.
if command -v script >/dev/null; then
  printf 'set -o | grep monitor\nsleep 50 & jobs -l; kill %%1; exit 9\n' |
    SHELL=/bin/bash script -qec "$gwbox run --no-portmap" /dev/null >"$dir/terminal" 2>&1
  check "a shell passes its status on" test $? -eq 9
  check "a shell has job control" grep -q 'monitor.*on' "$dir/terminal"
  check "a shell knows its jobs" grep -q 'Running.*sleep 50' "$dir/terminal"
  script -qec "stty cols 40; $gwbox fail nosuch EIO" /dev/null </dev/null | tr -d '\r' >"$dir/folded"
  check "messages are folded between words" sh -c \
    "! grep -E '.{41}' '$dir/folded' && grep -q '^       .*get_mode' '$dir/folded'"
  check "a shell's prompt shows the box" grep -q '(gateway) [#$] ' "$dir/terminal"
fi

# As an ordinary user, if the kernel allows it and this test is run by root.
ordinary="setpriv --reuid=65534 --regid=65534 --clear-groups env HOME=/"
if [ "$(id -u)" -eq 0 ] && $ordinary test -x "$gwbox" 2>/dev/null; then
  if ends_with 125 $ordinary $plain true >/dev/null && said "takes a user namespace"; then
    echo "skipped: ordinary user ($(cat "$dir/err"))"
  else
    check "an ordinary user's box" ends_with 0 $ordinary "$gwbox" run -- \
      sh -c 'iwpriv ra0 set LEDEnable=1 && pgrep portmap && rpcinfo -p && touch /etc/x'
    check "an ordinary user's status" ends_with 7 $ordinary $plain sh -c 'exit 7'
  fi
fi

echo "$failures failed"
[ $failures -eq 0 ]
