#!/bin/sh
# What the documents tell to paste works when it is pasted, and prints what they show.
# usage: documents.sh BUILD SOURCE
. "$(dirname "$0")/checks.sh"
build=$1
source=$2
scratch "$build"

# paste: runs standard input in a shell, which reads it line by line as a terminal's
# would: a line that starts a shell leaves the others to that one.
paste() { (cd "$source" && SHELL=/bin/bash timeout 60 bash) >"$dir/out" 2>"$dir/err"; }
here() { sed "s,build/release/gwbox,$build/gwbox,"; }

# README.md, the indented lines after "A gateway of your own".
awk '/^A gateway of your own/ { on = 1 } on && /^    / { print; seen = 1; next }
  seen { exit }' "$source/README.md" | here >"$dir/readme"
check "the README has commands" test "$(wc -l <"$dir/readme")" -ge 6
paste <"$dir/readme"
ended=$?
check "they end in success: $(tail -n 1 "$dir/err")" test "$ended" -eq 0
status=$(cat "$dir/out")
check "with two requests done at once and two in turn" same 4 "$(grep -cx ok "$dir/out")"
check "and the new name on air" holds "$status" "ra0  on    On air  "

# Its commands build too long to be typed here: adding.sh does.
page=docs/adding-a-procedure.md
sed -n '/^```diff/,/^```$/{/^```/!p}' "$source/$page" >"$dir/edits"
check "the edits of $page apply" patch --dry-run -F0 -d "$source" -p1 -i "$dir/edits"

# paste_example DOCUMENT: types the session of its worked example.
paste_example() {
  awk '/^## A worked example/ { on = 1; next } /^## / { on = 0 } on' "$source/docs/$1" >"$dir/session"
  {
    sed -n 's/^    \$ //p' "$dir/session" | here
    sed -n 's/^    (gateway) # //p' "$dir/session"
  } >"$dir/commands"
  check "the worked example of $1 has commands" test "$(wc -l <"$dir/commands")" -ge 8
  paste <"$dir/commands"
  ended=$?
  check "they end in success: $(tail -n 1 "$dir/err")" test "$ended" -eq 0
}

# docs/steering.md: where the stations are before and after, but for how long.
paste_example steering.md
station_lines() { sed -n 's/^ *\(02:00:5e:.*\)/\1/p' "$1" | sed 's/ [0-9]* s / . s /'; }
check "the example shows four lines of stations" same 4 "$(station_lines "$dir/session" | wc -l)"
check "the stations are where it shows them" same "$(station_lines "$dir/session")" \
  "$(station_lines "$dir/out")"
check "each of its calls is answered ok" same 10 "$(grep -cx ok "$dir/out")"

# docs/gwbox.md: the session, and its lines of ra0 as it shows them, but for the stations,
# which may be elsewhere for the moment.
paste_example gwbox.md
radio_lines() { sed -n 's/^ *\(ra0  on .*AES\) .*/\1/p' "$1"; }
check "with what it shows of ra0" same "$(radio_lines "$dir/session")" "$(radio_lines "$dir/out")"

# The counts that it has of a scenario.
shown=$(sed -n 's/.*--scenario apartment  *# //p' "$source/docs/gwbox.md")
check "the apartment has what it says" holds "$("$build/gwbox" scenario check apartment)" "good: $shown,"

# Its scenario with events.
sed -n '/^    { "stations"/,/^      \] }/p' "$source/docs/gwbox.md" >"$dir/events.json"
check "the scenario with events is good" holds \
  "$("$build/gwbox" scenario check "$dir/events.json")" "good: 1 stations, 0 neighbours, 4 events"
all_passed
