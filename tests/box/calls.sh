#!/bin/sh
# Commands that call a box from outside: any number of them, and none waits forever.
# usage: calls.sh PATH_OF_GWBOX
. "$(dirname "$0")/../packaging/checks.sh"
gwbox=$(readlink -f "$1")
scratch "$(dirname "$gwbox")"
called=calls-$$

"$gwbox" run --no-portmap --name $called -- \
  sh -c "touch $dir/up; while [ ! -e $dir/enough ]; do sleep 0.01; done" </dev/null &
box=$!
check "a named box starts" within 5 test -e "$dir/up"

status() { timeout 20 "$gwbox" --box $called status --json >/dev/null; }
# in_turn COUNT COMMAND...
in_turn() {
  count=$1
  shift
  for _ in $(seq "$count"); do "$@" || return; done
}
# at_once COUNT COMMAND...: in that many processes.
at_once() {
  count=$1
  shift
  ids=
  for _ in $(seq "$count"); do
    "$@" &
    ids="$ids $!"
  done
  for id in $ids; do wait "$id" || return; done
}
check "a hundred calls" in_turn 100 status
check "four callers at once" at_once 4 in_turn 25 status
check "a hundred callers at once" at_once 100 status
first=$(tr -d " " <"/proc/$box/task/$box/children")
# The box also has a few for the processes in it, which come and go.
descriptors() { find /proc/"$first"/fd -type l | wc -l; }
before=$(descriptors)
few_more() { test "$(descriptors)" -lt $((before + 10)); }
check "fifty more callers" at_once 50 status
check "leave no descriptor behind" few_more

# More callers than a stopped box's queues can hold.
unanswered() {
  said=$(status 2>&1)
  result=$?
  silent="gwbox: the box did not answer within 5 seconds"
  case $said in
  "$silent; it may still carry the command out" | "$silent; the command was not sent") ;;
  *) return 1 ;;
  esac
  [ $result = 1 ]
}
kill -STOP "$first"
slow=$("$gwbox" --box "$first" pause 2>&1)
check "a stopped box does not answer" same \
  "gwbox: the box did not answer within 5 seconds; it may still carry the command out" "$slow"
check "nor does it answer many" at_once 100 unanswered
kill -CONT "$first"
check "a continued box answers" status

"$gwbox" --box $called log --follow >/dev/null 2>"$dir/followed" &
follower=$!
follows() { ls -l /proc/$follower/fd 2>/dev/null | grep -q inotify; }
check "a command follows its journal" within 5 follows
touch "$dir/enough"
check "the box ends" wait $box
check "and so does its follower" wait $follower
check "and says why" same "gwbox: the box has ended" "$(cat "$dir/followed")"
check "and its name is free" not status
all_passed
