# Shared by the tests in this directory. Each check prints a line.
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

# within SECONDS COMMAND...: the command must succeed in that time.
within() {
  tries=$(($1 * 50))
  shift
  while ! "$@" >/dev/null 2>&1; do
    tries=$((tries - 1))
    [ "$tries" -gt 0 ] || return 1
    sleep 0.02
  done
}

# unit_value FILE KEY: the values of a unit's key that are not empty.
unit_value() { sed -n "s/^$2=\(..*\)/\1/p" "$1"; }

# scratch BUILD: makes a directory $dir, which a box shows too. It lasts until the test ends.
scratch() {
  mkdir -p "$1/tests"
  dir=$(mktemp -d "$1/tests/packaging.XXXXXX") || exit 1
  trap 'rm -rf "$dir"' EXIT
}
