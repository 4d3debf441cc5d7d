#!/bin/sh
# docs/adding-a-procedure.md works: its edits apply, its commands succeed, and both are few.
# A mount namespace shows a copy of the tree and the build directory in place of the
# originals, so that only what the edits change is built again.
# usage: adding.sh BUILD SOURCE
. "$(dirname "$0")/checks.sh"
build=$1
source=$2
page=docs/adding-a-procedure.md
most_files=6
most_seconds=600

if [ "${3:-}" != copied ]; then
  place=${build#"$source"/}
  [ "$place" != "$build" ] || { echo "the build directory must be in the tree" >&2 && exit 2; }
  dir=$(mktemp -d "$source/build/adding.XXXXXX") || exit 1
  trap 'rm -rf "$dir"' EXIT
  (cd "$source" && tar -cf - --exclude=./build --exclude=./.git .) | tar -xf - -C "$dir"
  mkdir -p "$dir/$place"
  cp -a "$build/." "$dir/$place"
  unshare --map-root-user --mount sh -c 'mount --bind "$1" "$2" && exec "$3" "$4" "$2" copied' \
    sh "$dir" "$source" "$source/tests/packaging/adding.sh" "$build"
  exit
fi

cd "$source" || exit 1
dir=$source/build
here() { sed "s,build/release,$build,g"; }
block() { sed -n "/^\`\`\`$1\$/,/^\`\`\`\$/{/^\`\`\`/!p}" "$page"; }
begun=$(date +%s)

block diff >"$dir/edits"
check "the edits apply" patch -F0 -p1 -i "$dir/edits"
files=$(grep -c '^+++ ' "$dir/edits")
check "to $files files" test "$files" -ge 2 -a "$files" -le "$most_files"
block sh | here >"$dir/commands"
check "the page has commands" test "$(wc -l <"$dir/commands")" -ge 4
while read -r command; do
  started=$(date +%s)
  check "$command" sh -c "$command" </dev/null
  echo "  $(($(date +%s) - started)) seconds"
done <"$dir/commands"
shown=$(sed -n 's/^build.*wificonf .*  # //p' "$page")
check "the last prints what the page shows" same "$shown" "$(cat "$dir/said")"
seconds=$(($(date +%s) - begun))
check "all within $most_seconds seconds: $seconds" test "$seconds" -le "$most_seconds"
all_passed
