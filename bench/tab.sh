#!/bin/bash
# tab.sh WORD...: microseconds that a Tab after "wificonf WORD..." takes, a few times,
# each in a shell that has to load the completion first.
set -eu
wificonf completion bash >/tmp/completion

first_tab() {
  source /tmp/completion
  COMP_WORDS=(wificonf "$@") COMP_CWORD=$#
  _wificonf
  [ "${#COMPREPLY[@]}" -gt 0 ]
}

for _ in 1 2 3 4 5; do
  (
    start=${EPOCHREALTIME/./}
    # As part of ||, so that set -e does not apply: compopt fails outside a real Tab.
    first_tab "$@" || exit 1
    echo $((${EPOCHREALTIME/./} - start))
  )
done
