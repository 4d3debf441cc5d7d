"""Rows of a daemon that brings the radios up itself, and of people who use the client."""

import subprocess
import time

import box
from figures import once, percentile, repeat

REQUESTS = {"load": ["wlan_load", "1"], "init": ["wlan_init"], "restart": ["wlan_restart_all"],
            "reset": ["wlan_reset"]}
CONSOLE = "/tmp/wlandbg"


def done():
    with open(box.OUT) as traces:
        return traces.read().count("de-queue'd")


def request(name):
    """Milliseconds from the call to the request's removal from the queue, including its
    window of a second. For a reset, only the call is timed. Console traces are on."""
    before = done()
    start = time.monotonic()
    box.run("wificonf", "--timeout", "60", *REQUESTS[name])
    if name != "reset":
        box.wait_until(lambda: done() > before, 60)
    return 1e3 * (time.monotonic() - start)


def bring_up():
    """A daemon that has loaded the drivers and brought the radios up."""
    daemon = box.start_daemon()
    box.mark(CONSOLE, True)
    for name in ("load", "init"):
        request(name)
    box.mark(CONSOLE, False)
    return daemon


def begin(servers):
    """Measures each request once, and brings the radios up again."""
    daemon = box.start_daemon()
    box.mark(CONSOLE, True)
    servers["ms"] = {name: request(name) for name in ("load", "init", "restart", "reset")}
    request("load")
    request("init")
    box.mark(CONSOLE, False)
    servers["ours"] = daemon
    servers["bare"] = box.start_bare()


def lifecycle(limits, servers, name):
    return once(servers["ms"][name])


def restart(limits, servers, inert, request_side):
    def step():
        idle, busy = box.client("restart", inert, request_side)["us"]
        return [busy, idle, [percentile(busy, 0.99)], [percentile(idle, 0.99)]]
    (busy, idle, busy99, idle99), how = repeat(step, {**limits, "patience": 4 * limits["patience"]})
    note = f"bare: idle; p99 {busy99:.0f} us, idle {idle99:.0f} us"
    return {"ours": busy, "bare": idle, "ratio": busy / idle, "note": note, **how}


def begin_people(servers):
    servers["ours"] = bring_up()


def ping(limits, servers):
    rpcinfo = "rpcinfo -n 60001 -u 192.168.254.254 538121015 1"
    step = lambda: box.client("commands", 20, "wificonf ping", rpcinfo)["us"]
    (ours, other), how = repeat(step, limits)
    return {"ours": ours / 1e3, "bare": other / 1e3, "ratio": ours / other, **how}


def tab(limits, servers, *words):
    """Each time in a shell that has not completed wificonf before."""
    def step():
        times = subprocess.run(box.pinned("bash", "bench/tab.sh", *words), check=True,
                               stdout=subprocess.PIPE, text=True).stdout
        return [[float(us) / 1e3 for us in times.split()]]
    (ours,), how = repeat(step, limits)
    return {"ours": ours, "bare": None, "ratio": None, **how}


def dump(limits, servers):
    step = lambda: box.client("commands", 1, "wificonf dump")["us"]
    (ours,), how = repeat(step, limits)
    return {"ours": ours / 1e3, "bare": None, "ratio": None, **how}
