#!/bin/sh
# What gwbox plan says of calls. Every plan takes the seconds in which a gateway comes up, so this
# takes longer than other tests.
# usage: plan.sh PATH_OF_GWBOX
. "$(dirname "$0")/../packaging/checks.sh"
gwbox=$(readlink -f "$1")
scratch "$(dirname "$gwbox")"

# plan STATUS OPTION... -- COMMAND...: in $dir/plan.json, with that exit status.
plan() {
  expected=$1
  shift
  status=0
  "$gwbox" plan --json "$@" >"$dir/plan.json" 2>"$dir/errors" || status=$?
  test "$status" = "$expected" || {
    echo "status $status, expected $expected" >&2
    cat "$dir/errors" >&2
    return 1
  }
}
# says EXPRESSION: of the plan p.
says() { python3 -c "import json; p = json.load(open('$dir/plan.json')); assert $1, p"; }

within_time() { timeout 30 "$@"; }

check "a name is stored" plan 0 -- wificonf wlan_set_ssid 1 Attic
check "one setting" says "len(p['settings']) == 1"
check "with its values" says "[p['settings'][0][k] for k in ('key', 'before', 'after')] == ['SSID1', 'HomeGateway', 'Attic']"
check "which waits for a restart" says "p['settings'][0]['in_effect'] == 'after a restart' and p['settings'][0]['radio'] == 'ra0'"
check "nobody loses air" says "not p['loses_air'] and not p['off_air'] and not p['stations']"

check "with a restart somebody does" plan 10 --scenario apartment -- \
  sh -c 'wificonf wlan_set_ssid 1 Attic; wificonf wlan_restart 1'
check "the setting is in effect" says "p['settings'][0]['in_effect'] == 'now'"
check "only the radio's BSSs are off air" says "p['off_air'] and all(o['interface'] < 'ra8' and len(o['interface']) == 3 for o in p['off_air'])"
check "for as long as the radio needs" says "all(1.4 < o['seconds'] < 10 for o in p['off_air'])"
check "only its stations are thrown off" says "p['stations'] and all(s['interface'] in ('ra0', 'ra1') for s in p['stations'])"
check "and come back" says "all(s['back_on'] for s in p['stations'])"
check "the new name is on air" says "'Attic' in [o['ssid'] for o in p['off_air']]"
check "the marker is told" says "any('wifi_restart made' in f['what'] for f in p['files'])"

check "an outage may be allowed" plan 0 --allow-outage --board mt7603 -- wificonf wlan_restart 1
check "and is told all the same" says "p['loses_air'] and p['board'] == 'mt7603'"

check "a driver's setting" plan 0 -- wificonf wlan_set_led_enable 1
check "is two requests" says "[r['what'] for r in p['requests']] == ['ra0 set LEDEnable=1', 'ra8 set LEDEnable=1']"
check "and nothing else" says "not p['settings'] and not p['commands']"

check "a wrong index fails" plan 11 -- wificonf --force wlan_set_ssid 99 Attic
check "stores nothing" says "not p['settings'] and p['status'] == 1"
check "and the daemon says why" says "any('failed to update' in e for e in p['errors'])"

check "an inert call" plan 0 -- wificonf --inert-ok wlan_get_channel 1
check "does nothing" says "not any(p[k] for k in ('settings', 'requests', 'commands', 'files', 'off_air'))"

sed 's/^SSID1=.*/SSID1=Cellar/' "$(dirname "$0")/../../box/share/profile_24.dat" >"$dir/24.dat"
check "a plan of one's own profile" plan 0 --profile24 "$dir/24.dat" -- wificonf wlan_set_ssid 1 Attic
check "starts from it" says "p['settings'][0]['before'] == 'Cellar'"

check "a page" "$gwbox" plan --html "$dir/page.html" -- wificonf wlan_set_ssid 1 '<b>&"'
check "has no markup of others" holds "$(cat "$dir/page.html")" '&lt;b&gt;&amp;&quot;'
check "and nothing from elsewhere" not grep -q http "$dir/page.html"

check "a name that is not ASCII fits in the table" within_time "$gwbox" plan -- wificonf wlan_set_ssid 1 'Café'
check "no command is wrong usage" ends_with 2 "$gwbox" plan
check "a missing profile is, too" ends_with 2 "$gwbox" plan --profile24 /nowhere -- true
all_passed
