#!/bin/sh
# The commands in the documents work when pasted, and print what the documents show.
# usage: documents.sh BUILD SOURCE
. "$(dirname "$0")/checks.sh"
build=$1
source=$2
scratch "$build"

# paste: runs standard input in a shell, which reads it line by line like a shell on a
# terminal. A command that starts a shell leaves the remaining lines to it.
paste() { (cd "$source" && SHELL=/bin/bash timeout 60 bash) >"$dir/out" 2>"$dir/err"; }
here() { sed "s,build/release/gwbox,$build/gwbox,"; }

# README.md: the indented lines after "A gateway of your own".
awk '/^A gateway of your own/ { on = 1 } on && /^    / { print; seen = 1; next }
  seen { exit }' "$source/README.md" | here >"$dir/readme"
check "the README has commands" test "$(wc -l <"$dir/readme")" -ge 6
paste <"$dir/readme"
ended=$?
check "they end in success: $(tail -n 1 "$dir/err")" test "$ended" -eq 0
status=$(cat "$dir/out")
check "with two requests done at once and two in turn" same 4 "$(grep -cx ok "$dir/out")"
check "and the new name on air" holds "$status" "ra0  on    On air  "

# The page's commands build for too long to be pasted here; adding.sh runs them.
page=docs/adding-a-procedure.md
sed -n '/^```diff/,/^```$/{/^```/!p}' "$source/$page" >"$dir/edits"
check "the edits of $page apply" patch --dry-run -F0 -d "$source" -p1 -i "$dir/edits"

# paste_example DOCUMENT: pastes the session of its worked example.
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

# docs/steering.md: compares where the stations are, but not for how long.
paste_example steering.md
station_lines() { sed -n 's/^ *\(02:00:5e:.*\)/\1/p' "$1" | sed 's/ [0-9]* s / . s /'; }
check "the example shows four lines of stations" same 4 "$(station_lines "$dir/session" | wc -l)"
check "the stations are where it shows them" same "$(station_lines "$dir/session")" \
  "$(station_lines "$dir/out")"
check "each of its calls is answered ok" same 10 "$(grep -cx ok "$dir/out")"

# docs/gwbox.md: pastes the session and compares its lines of ra0, except for the stations,
# which may be elsewhere at the moment.
paste_example gwbox.md
radio_lines() { sed -n 's/^ *\(ra0  on .*AES\) .*/\1/p' "$1"; }
check "with what it shows of ra0" same "$(radio_lines "$dir/session")" "$(radio_lines "$dir/out")"

# The scenario's counts in that document.
shown=$(sed -n 's/.*--scenario apartment  *# //p' "$source/docs/gwbox.md")
check "the apartment has what it says" holds "$("$build/gwbox" scenario check apartment)" "good: $shown,"

# The document's scenario with events.
sed -n '/^    { "stations"/,/^      \] }/p' "$source/docs/gwbox.md" >"$dir/events.json"
check "the scenario with events is good" holds \
  "$("$build/gwbox" scenario check "$dir/events.json")" "good: 1 stations, 0 neighbours, 4 events"
all_passed
