"""Rows of calls: both servers run, and one client calls them in turn."""

import os

import box
from figures import bend, percentile, repeat, slope

PROFILE = "/tmp/mt76xx_24.dat"
CONSOLE = "/tmp/wlandbg"
LOG = "/tmp/auto_debug/rpc_dbg_en"
LISTED = 32


def begin(servers):
    for name in ("ra0", "ra1", "ra2", "ra3"):
        box.run("ip", "link", "set", name, "up")
    servers["ours"] = box.start_daemon()
    servers["bare"] = box.start_bare()


def begin_full(servers):
    """Removes the scenario's station, so that a radio has room for as many as it can take."""
    begin(servers)
    box.run("gwbox", "set", "station", "02:00:5e:00:00:01", "gone")


def record(sides, how, **more):
    return {"ours": sides[0], "bare": sides[1], "ratio": sides[0] / sides[1], **how, **more}


def pair(limits, servers, *sides):
    if "stations" in limits["group"]:
        set_stations(128, servers)
    step = lambda: box.client("alternate", limits["calls"], *sides)["us"]
    return record(*repeat(step, limits))


def traced_pair(limits, servers, *sides):
    box.mark(CONSOLE, True)
    box.mark(LOG, True)
    try:
        return pair(limits, servers, *sides)
    finally:
        box.mark(CONSOLE, False)
        box.mark(LOG, False)


def per_listed(limits, servers, *sides):
    whole = pair(limits, servers, *sides)
    return {**whole, "ours": whole["ours"] / LISTED, "bare": whole["bare"] / LISTED}


def measure_tails(limits, sides):
    """Medians over the rounds of p99 and p50 of each side, and how they were measured."""
    def step():
        samples = box.client("alternate", 5 * limits["calls"], *sides)["us"]
        return [[percentile(side, part)] for side in samples for part in (0.99, 0.5)]
    return repeat(step, limits)


def tail(limits, servers, *sides):
    """Our p99 beside our p50. The bare server's ratio is in the note."""
    (ours99, ours50, bare99, bare50), how = measure_tails(limits, sides)
    note = f"bare: p50; the bare server itself {bare99 / bare50:.2f}"
    return record((ours99, ours50), how, note=note)


def tails(limits, servers, *sides):
    """p99 over p50 of both sides."""
    (ours99, ours50, bare99, bare50), how = measure_tails(limits, sides)
    return record((ours99 / ours50, bare99 / bare50), how)


def load(limits, servers, *sides):
    def step():
        runs = [box.client("load", limits["seconds"], 8, side) for side in sides]
        return [[done["calls"] / done["seconds"]] for done in runs]
    return record(*repeat(step, limits))


def growth(limits, xs, sides, prepare):
    """Nanoseconds for each thing that xs counts, and how linear the growth is."""
    points = []
    for x in xs:
        prepare(x)
        step = lambda: box.client("alternate", limits["calls"], *sides)["us"]
        points.append(repeat(step, limits))
    how = {"rounds": max(p[1]["rounds"] for p in points),
           "stable": all(p[1]["stable"] for p in points)}
    ours, bare = ([p[0][side] for p in points] for side in (0, 1))
    return {"ours": 1e3 * slope(xs, ours), "bare": 1e3 * slope(xs, bare), "ratio": bend(xs, ours),
            "points": {"x": xs, "ours": ours, "bare": bare}, **how}


def write_profile(lines):
    """The keys that are asked for come last."""
    filler = [f"SomeParameter{i}=value of it {i}\n" for i in range(3, lines)]
    with open(PROFILE, "w") as profile:
        profile.writelines(["Default\n", *filler, "BSSHNCService=0;0;0;0\n", "SSID1=HomeGateway\n"])


def profile_growth(limits, servers, *sides):
    with open(PROFILE) as profile:
        kept = profile.read()
    try:
        return growth(limits, [30, 300, 3000], sides, write_profile)
    finally:
        with open(PROFILE, "w") as profile:
            profile.write(kept)


def set_stations(count, servers):
    """Every fourth is on the first BSS: with 128, as many as a list takes."""
    for number in range(servers.get("stations", 0), count):
        box.run("gwbox", "set", "station", f"02:00:5e:00:01:{number:02x}", f"bss={number % 4 + 1}",
                "rssi=[-50,-60]", "tx_rate=HT20 MCS7", "rx_rate=HT20 MCS7", "btm=true")
    for number in range(count, servers.get("stations", 0)):
        box.run("gwbox", "set", "station", f"02:00:5e:00:01:{number:02x}", "gone")
    servers["stations"] = count


def station_growth(limits, servers, *sides):
    return growth(limits, [1, 32, 64, 128], sides, lambda count: set_stations(count, servers))


def run_time(process):
    """Nanoseconds that all threads of the service child have run."""
    tasks = f"/proc/{box.child_of(process)}/task"
    total = 0
    for task in os.listdir(tasks):
        with open(f"{tasks}/{task}/schedstat") as times:
            total += int(times.read().split()[0])
    return total


def log_growth(limits, servers, *sides):
    """CPU time of the service child per second, by the number of lines logged per second."""
    rates = [1, 10, 100, 1000]
    times = []
    box.mark(LOG, True)
    for rate in rates:
        seconds = max(limits["seconds"] * 5, 3 / rate)
        before = run_time(servers["ours"])
        done = box.client("paced", rate, seconds, sides[0])
        times.append((run_time(servers["ours"]) - before) / done["seconds"])
    box.mark(LOG, False)
    return {"ours": slope(rates, times), "bare": None, "ratio": bend(rates, times), "rounds": 1,
            "stable": True, "points": {"x": rates, "ours": [t / 1e3 for t in times]}}
