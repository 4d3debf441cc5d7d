#!/bin/sh
# matrix_rows.sh FAILURE_SWEEP PAGE: checks that each part of the page has a row for every
# operation of the sweep and no other rows.
set -eu
sweep=$1
page=$2
rows=$(mktemp)
trap 'rm -f "$rows" "$rows.diff"' EXIT
for part in procedures in-place sequences; do
  awk -v title="### mt7603+mt7612: $part" -F ' *[|] *' '
    /^###/ { inside = $0 == title }
    inside && /^[|] / && $2 != "operation" && $2 != "all" && $2 != "those that only answer" { print $2 }
  ' "$page" >"$rows"
  "$sweep" --list "$part" | diff "$rows" - >"$rows.diff" || {
    cat "$rows.diff"
    echo "$page: part $part is stale; renew it with:" >&2
    sed -n 's,^[<>] \([a-z0-9_]*\).*,  scripts/trust-sweep --only \1 --write,p' "$rows.diff" |
      sort -u >&2
    exit 1
  }
done
