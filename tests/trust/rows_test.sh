#!/bin/sh
# rows_test.sh FAILURE_SWEEP TRUST_ROWS PAGE: checks that TRUST_ROWS puts missing rows back
# in their places, replaces existing ones and renews the sums.
set -eu
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
"$1" --list procedures in-place >"$dir/list"
sed -n '/^###/p; /^| wlan_set_ssid[ ,]/p; /^| wlan_get_wps_uuid /p' "$3" >"$dir/swept"
[ "$(grep -c '^|' "$dir/swept")" -gt 6 ]
sed '/^| wlan_set_ssid[ ,]/d; s/^\(| wlan_get_wps_uuid |\).*\( 0 |\)$/\1 1 | | | | | | | | | | | | | | | 1 | | | | |\2/
  s/^\(- failure .*:\) [0-9]* failures in [0-9]*/\1 1 failures in 1/
  s/^| all | [0-9]* |/| all | 1 |/' "$3" >"$dir/page"
"$2" "$dir/page" "$dir/list" "$dir/swept"
sed '/^### .*\(start-up\|sequences\|kills\)/,/^| all/s/^| all .*/| all/' "$3" >"$dir/expected"
sed -i '/^### .*\(start-up\|sequences\|kills\)/,/^| all/s/^| all .*/| all/' "$dir/page"
diff "$dir/expected" "$dir/page"
