"""Rows of processes: start, memory, size and wake-ups."""

import glob
import os
import re
import subprocess
import time

import box
import lifecycle
from figures import once, repeat
from rows import bare, ours

PROBE = "/tmp/probe.sh"

def begin(servers):
    """Brings up a radio that answers the getters."""
    box.run("ip", "link", "set", "ra0", "up")


def start(limits, servers):
    """The bare side's time includes the daemon's portmapper probe."""
    with open(PROBE, "w") as probe:
        probe.write("pgrep -l portmap | grep -c portmap\n")
    def step():
        mine = box.client("start", ours(0), "wificonfd")["us"]
        other = box.client("start", bare(0), *box.BARE)["us"]
        probing = box.client("commands", 1, f"/bin/sh {PROBE}")["us"][0][0]
        return [[mine / 1e3], [(other + probing) / 1e3], [other / 1e3]]
    (mine, both, other), how = repeat(step, limits)
    note = f"bare: the server {other:.1f} ms and the portmapper probe"
    return {"ours": mine, "bare": both, "ratio": mine / both, "note": note, **how}


def memory_of(pid):
    """RSS and PSS in kB."""
    with open(f"/proc/{pid}/smaps_rollup") as rollup:
        text = rollup.read()
    return [int(re.search(rf"^{kind}: *(\d+)", text, re.M)[1]) for kind in ("Rss", "Pss")]


def memory(limits, servers):
    """Each side alone in the box, after calls of every kind."""
    daemon = box.start_daemon()
    for side in (ours(16, "00000001"), ours(58, "00000001"), ours(293, "00000001"),
                 ours(0x0100009E, "00000001")):
        box.client("alternate", 40, side)
    supervisor, child = memory_of(daemon.pid), memory_of(box.child_of(daemon))
    box.stop(daemon)
    server = box.start_bare()
    for procedure in (1, 3, 6, 10):
        box.client("alternate", 40, bare(procedure, "00000001"))
    other = memory_of(server.pid)
    box.stop(server)
    note = (f"supervisor RSS {supervisor[0]} PSS {supervisor[1]}, child RSS {child[0]} "
            f"PSS {child[1]}, bare RSS {other[0]} PSS {other[1]}")
    return once(supervisor[1] + child[1], other[1], note=note)


def size(limits, servers):
    subprocess.run(["strip", "-o", "/tmp/stripped", f"{box.BUILD}/wificonfd"], check=True)
    return once(os.path.getsize("/tmp/stripped"))


def libstdcxx(limits, servers):
    dynamic = subprocess.run(["readelf", "-d", f"{box.BUILD}/wificonfd"], check=True,
                             stdout=subprocess.PIPE, text=True).stdout
    if "libtirpc" not in dynamic:
        raise SystemExit("bench: readelf does not tell what is needed")
    return once(dynamic.count("libstdc++"))


def switches(pids):
    total = 0
    for pid in pids:
        for status in glob.glob(f"/proc/{pid}/task/*/status"):
            with open(status) as text:
                total += sum(map(int, re.findall(r"ctxt_switches:\s*(\d+)", text.read())))
    return total


def idle(limits, servers):
    """Wake-ups of a daemon that has brought the radios up, including the worker thread."""
    daemon = lifecycle.bring_up()
    pids = (daemon.pid, box.child_of(daemon))
    threads = len(os.listdir(f"/proc/{pids[1]}/task"))
    first = switches(pids)
    time.sleep(limits["idle"])
    value = switches(pids) - first
    box.stop(daemon)
    return once(value, note=f"in {limits['idle']} s, {threads + 1} threads")
