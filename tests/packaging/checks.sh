# Read by the tests beside it: checks that say a line each, and what they share.
# A test ends with "all_passed".
set -u
failures=0

# check NAME COMMAND...: the command must succeed.
check() {
  name=$1
  shift
  if "$@" >"$dir/said" 2>&1; then
    echo "ok: $name"
  else
    echo "FAILED: $name ($*)"
    sed 's/^/  /' "$dir/said"
    failures=$((failures + 1))
  fi
}

all_passed() { [ "$failures" -eq 0 ]; }

not() { ! "$@"; }

# same EXPECTED ACTUAL
same() {
  [ "$1" = "$2" ] && return 0
  printf 'expected: %s\nactual:   %s\n' "$1" "$2"
  return 1
}

# holds TEXT PART
holds() {
  case $1 in *"$2"*) return 0 ;; esac
  printf 'not in it: %s\n%s\n' "$2" "$1"
  return 1
}

# ends_with STATUS COMMAND...: the command must end with that exit status.
ends_with() {
  expected=$1
  shift
  "$@"
  same "$expected" $?
}

# within SECONDS COMMAND...: the command must succeed at last.
within() {
  tries=$(($1 * 50))
  shift
  while ! "$@" >/dev/null 2>&1; do
    tries=$((tries - 1))
    [ "$tries" -gt 0 ] || return 1
    sleep 0.02
  done
}

# What a unit's file, or an init system's, sets a key to; an empty value is no value.
unit_value() { sed -n "s/^$2=\(..*\)/\1/p" "$1"; }

# scratch BUILD: a directory in $dir, which a box shows too, until the test ends.
scratch() {
  mkdir -p "$1/tests"
  dir=$(mktemp -d "$1/tests/packaging.XXXXXX") || exit 1
  trap 'rm -rf "$dir"' EXIT
}
