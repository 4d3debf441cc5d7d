#!/bin/sh
# How the programs are protected, and the daemon's libraries and size. A program built
# without protection shows that the checks can fail.
# usage: hardening.sh BUILD
. "$(dirname "$0")/checks.sh"
build=$1
scratch "$build"

# seen FILE READELF-OPTIONS PATTERN: a line of readelf's output matches.
seen() {
  readelf -W "$2" "$1" >"$dir/elf" && grep -E "$3" "$dir/elf"
}

# The argument of each is a program.
at_any_address() { seen "$1" -h 'Type: +DYN' && seen "$1" -d 'FLAGS_1.* PIE'; }
read_only_relocations() { seen "$1" -l GNU_RELRO; }
bound_at_the_start() { seen "$1" -d 'FLAGS_1.* NOW'; }
no_stack_to_run() { seen "$1" -l 'GNU_STACK.* RW ' && not seen "$1" -l 'GNU_STACK.* RWE'; }
no_text_to_write() { not seen "$1" -l 'LOAD.* RWE' && not seen "$1" -d TEXTREL; }
canaries() { seen "$1" --dyn-syms '__stack_chk_fail'; }
checked_calls() { seen "$1" --dyn-syms "$checked"; }
no_path_of_its_own() { not seen "$1" -d 'RPATH|RUNPATH'; }
# code FILE: writes its instructions to $dir/code.
code() { objdump -d --no-show-raw-insn "$1" >"$dir/code"; }
probed_frames() { code "$1" && grep -E -m 1 'or[bwlq]? +\$0x0,(0x[0-9a-f]+)?\(%rsp' "$dir/code"; }
checked_jumps() { code "$1" && grep -A 1 '<main>:' "$dir/code" | grep endbr64; }

properties='at_any_address read_only_relocations bound_at_the_start no_stack_to_run canaries
  checked_calls no_path_of_its_own'
# These look at x86_64 instructions. Other processors have others or none.
[ "$(uname -m)" != x86_64 ] || properties="$properties probed_frames checked_jumps"

for program in wificonfd wificonf gwbox gwbox-companion; do
  checked='__(sn|vsn|f|vf)printf_chk|__memcpy_chk|__strcpy_chk|__read_chk'
  for property in $properties no_text_to_write; do
    check "$program: $property" $property "$build/$program"
  done
done

# The daemon's own calls that write to a buffer of known size.
for call in snprintf memcpy; do
  checked=__${call}_chk
  check "the daemon's $call is checked" checked_calls "$build/wificonfd"
done
# The programs do not show the level of their checks, so the compiler's commands are
# checked. The tests' filters and the generator of the reference pages are not installed.
commands_of_programs() {
  jq -r '.[].command | select(test("-o (src|client|box)/")) |
    select(test("/(wire|wificonf-reference)[.]dir/") | not)' "$build/compile_commands.json"
}
below_level_3() { commands_of_programs | grep -v -e '-D_FORTIFY_SOURCE=3'; }
check "there are commands of the compiler" test "$(commands_of_programs | wc -l)" -gt 100
check "each asks for checks of level 3" not below_level_3

check "the daemon needs no C++ library" not seen "$build/wificonfd" -d 'NEEDED.*libstdc'
check "nor the compiler's library" not seen "$build/wificonfd" -d 'NEEDED.*libgcc'
check "but it needs the C library, so the check works" seen "$build/wificonfd" -d 'NEEDED.*libc\.so'

check "the daemon can be stripped" strip -o "$dir/stripped" "$build/wificonfd"
size=$(wc -c <"$dir/stripped")
echo "the stripped daemon has $size bytes"
check "which is below 300 kB" test "$size" -lt 300000

# The checks can fail: a program built without protection.
cat >"$dir/plain.c" <<'SOURCE'
#include <stdio.h>
#include <string.h>
int main(int argc, char** argv) {
  char text[20000];
  memcpy(text, argv[0], (size_t)argc);
  return printf("%s\n", text) < 0;
}
SOURCE
plain="-O2 -U_FORTIFY_SOURCE -fno-stack-protector -fno-pie -no-pie -Wl,-z,norelro,-z,lazy
  -Wl,-z,execstack -Wl,-rpath,/tmp"
# shellcheck disable=SC2086 # a list of words
check "a program without protection is built" cc $plain -o "$dir/plain" "$dir/plain.c"
for property in $properties; do
  check "$property is missing there" not $property "$dir/plain"
done
all_passed
