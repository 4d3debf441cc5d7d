"""The table: what is measured, against what, and the budget.

A row is measured by the function that `measure` names, with `arguments`, in the simulated
gateway of its group (bench.py). `judge` says what is held against the budget:

  ratio   ours / bare, at most the budget
  least   ours / bare, at least the budget
  extra   ours - bare, at most the budget
  value   ours, at most the budget
  bend    how much steeper the upper half of the growth is, at most the budget
  report  nothing
"""

from collections import namedtuple

Row = namedtuple("Row", "name group what unit judge budget measure arguments")

ONE = "00000001"
CHANNEL = "0000000100000006"


def text(value):
    """The arguments of a text setter for BSS 1."""
    data = value.encode()
    return ONE + f"{len(data):08x}" + data.ljust(-(-len(data) // 4) * 4, b"\0").hex()


def ours(procedure, *variants):
    return f"60001:0x20131337:{procedure}:{','.join(variants)}"


def bare(procedure, *variants):
    return f"60002:0x20000001:{procedure}:{','.join(variants)}"


SAME = text("HomeGateway")
CHANGING = (text("HomeGateway"), text("HomeGarages"))

# The bare server's procedures, as bare.h numbers them.
(GETTER, SETTER, PROFILE_GETTER, TEXT_CHANGING, TEXT_SAME, STATION_COUNT, COUNTERS, BYTES_SENT,
 STATION_TABLE, STATION_LIST, STATION_LIST_ASKED, COMMAND) = range(1, 13)
# Added to one of the first five: also does what each call has to do besides, see bare.h.
DUTIES = 100

NULL = (ours(0), bare(0))
INERT_GETTER = (ours(16, ONE), bare(GETTER, ONE))
INERT_SETTER = (ours(17, CHANNEL), bare(SETTER, CHANNEL))
GETTER_OF_PROFILE = (ours(0x0100009E, ONE), bare(PROFILE_GETTER, ONE))
SSID_CHANGING = (ours(22, *CHANGING), bare(TEXT_CHANGING, *CHANGING))
SSID_SAME = (ours(22, SAME), bare(TEXT_SAME, SAME))
COUNT_STATIONS = (ours(58, ONE), bare(STATION_COUNT, ONE))
LIST_STATIONS = (ours(293, ONE), bare(STATION_LIST, ONE))
LIST_STATIONS_ASKED = (ours(293, ONE), bare(STATION_LIST_ASKED, ONE))

LIFECYCLE = ("load", "init", "restart", "reset")
BOARDS = ("mt7603", "mt7603+mt7612", "mt7615")

ROWS = [
    Row("null", "calls", "null procedure", "us", "ratio", 1.05, "pair", NULL),
    Row("get", "calls", "inert integer getter", "us", "ratio", 1.25, "pair", INERT_GETTER),
    Row("set", "calls", "inert integer setter", "us", "ratio", 1.25, "pair", INERT_SETTER),
    Row("get-traced", "calls", "inert getter, trace and log on", "us", "ratio", 4, "traced_pair",
        INERT_GETTER),
    Row("set-traced", "calls", "inert setter, trace and log on", "us", "ratio", 4, "traced_pair",
        INERT_SETTER),
    Row("profile-get", "calls", "profile-backed getter, 300 lines", "us", "ratio", 1.5, "pair",
        GETTER_OF_PROFILE),
    Row("ssid-change", "calls", "wlan_set_ssid, value changing", "us", "ratio", 1.3, "pair",
        SSID_CHANGING),
    Row("ssid-same", "calls", "wlan_set_ssid, same value", "us", "ratio", 1.5, "pair", SSID_SAME),
    Row("get-duties", "calls", "inert getter, bare with the marker tests", "us", "ratio", 1.25,
        "pair", (ours(16, ONE), bare(DUTIES + GETTER, ONE))),
    Row("set-duties", "calls", "inert setter, bare with the marker tests", "us", "ratio", 1.25,
        "pair", (ours(17, CHANNEL), bare(DUTIES + SETTER, CHANNEL))),
    Row("profile-get-duties", "calls", "profile getter, bare with tests and lock", "us", "ratio",
        1.5, "pair", (ours(0x0100009E, ONE), bare(DUTIES + PROFILE_GETTER, ONE))),
    Row("ssid-change-duties", "calls", "wlan_set_ssid, changing, bare with tests and lookup", "us",
        "ratio", 1.3, "pair",
        (ours(22, *CHANGING), bare(DUTIES + TEXT_CHANGING, *CHANGING))),
    Row("ssid-same-duties", "calls", "wlan_set_ssid, same, bare with tests and lookup", "us",
        "ratio", 1.5, "pair", (ours(22, SAME), bare(DUTIES + TEXT_SAME, SAME))),
    Row("p99", "calls", "p99 over p50, one client, inert getter", "us", "ratio", 1.5, "tail",
        INERT_GETTER),
    Row("p99-tests", "calls", "p99 over p50, beside that of the bare with the marker tests", "",
        "report", None, "tails", (ours(16, ONE), bare(DUTIES + GETTER, ONE))),
    Row("clients", "calls", "8 clients at once, null procedure", "calls/s", "least", 0.95, "load",
        NULL),
    Row("clients-get", "calls", "8 clients at once, inert getter", "calls/s", "report", None,
        "load", INERT_GETTER),
    Row("driver-count", "stations", "driver-backed getter: number of stations", "us", "ratio", 1.3,
        "pair", COUNT_STATIONS),
    Row("driver-counters", "stations", "driver-backed getter: counters of a BSS", "us", "ratio",
        1.3, "pair", (ours(56, ONE), bare(COUNTERS, ONE))),
    Row("driver-bytes", "stations", "driver-backed getter: bytes sent", "us", "ratio", 1.3, "pair",
        (ours(297, ONE), bare(BYTES_SENT, ONE))),
    Row("driver-table", "stations", "driver-backed getter: station table", "us", "ratio", 1.3,
        "pair", (ours(221, ONE), bare(STATION_TABLE, ONE))),
    Row("btm", "stations", "BTM list of 128 stations, per listed station", "us", "report", None,
        "per_listed", LIST_STATIONS),
    Row("btm-asked", "stations-mt7615", "the same, each asked for (MT7615)", "us", "report", None,
        "per_listed", LIST_STATIONS_ASKED),
    Row("command", "life:mt7603+mt7612", "setter by an iwpriv command line", "us", "report", None,
        "pair", (ours(259, ONE + ONE), bare(COMMAND, ONE + ONE))),
    Row("restart", "life:mt7603+mt7612", "inert call while a restart runs, over idle", "us",
        "ratio", 2, "restart", (ours(0x010000A8), ours(207, ONE))),
    Row("start", "processes", "start to first answer", "ms", "extra", 2, "start", ()),
    Row("memory", "processes", "PSS of both processes", "kB", "value", 1536, "memory", ()),
    Row("memory-bare", "processes", "PSS of both, beside the bare server's", "kB", "ratio", 2,
        "memory", ()),
    Row("size", "processes", "stripped executable", "bytes", "value", 300000, "size", ()),
    Row("libstdc++", "processes", "needs libstdc++.so", "", "value", 0, "libstdcxx", ()),
    Row("idle", "idle", "idle wake-ups", "", "value", 0, "idle", ()),
    Row("grow-get", "calls", "growth: profile getter, 30 to 3,000 lines", "ns/line", "bend", 2,
        "profile_growth", GETTER_OF_PROFILE),
    Row("grow-set", "calls", "growth: wlan_set_ssid, 30 to 3,000 lines", "ns/line", "bend", 2,
        "profile_growth", SSID_CHANGING),
    Row("grow-count", "stations", "growth: number of stations, 1 to 128", "ns/station", "bend", 2,
        "station_growth", COUNT_STATIONS),
    Row("grow-btm", "stations", "growth: BTM list, 1 to 128 stations", "ns/station", "bend", 2,
        "station_growth", LIST_STATIONS),
    Row("grow-btm-asked", "stations-mt7615", "growth: the same, each asked for", "ns/station",
        "bend", 2, "station_growth", LIST_STATIONS_ASKED),
    Row("grow-log", "calls", "growth: CPU, 1 to 1,000 log lines a second", "ns/line", "bend", 2,
        "log_growth", INERT_SETTER),
    *(Row(f"{step}:{board}", f"life:{board}", f"{step}, {board}", "ms", "report", None, "lifecycle",
          (step,)) for board in BOARDS for step in LIFECYCLE),
    Row("ping", "people", "wificonf ping, beside rpcinfo", "ms", "ratio", 1.5, "ping", ()),
    Row("tab-name", "people", "Tab behind a name's beginning", "ms", "value", 30, "tab",
        ("wlan_get_",)),
    Row("tab-value", "people", "Tab for an argument", "ms", "value", 30, "tab",
        ("wlan_set_wpa_encryption_modes", "3", "")),
    Row("dump", "people", "wificonf dump", "ms", "value", 1000, "dump", ()),
]
