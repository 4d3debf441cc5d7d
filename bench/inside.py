"""inside.py GROUP LIMITS NAME...: measures rows inside the simulated gateway and prints
their records, one line of JSON each. Started by bench.py."""

import json
import os
import sys

import box
import calls
import lifecycle
import processes
from rows import ROWS

# What a group needs before its rows.
BEGIN = {"calls": calls.begin, "stations": calls.begin_full, "stations-mt7615": calls.begin_full,
         "processes": processes.begin, "life": lifecycle.begin, "people": lifecycle.begin_people}
MEASURES = (calls, lifecycle, processes)


def measure(row, limits, servers):
    function = next(getattr(m, row.measure) for m in MEASURES if hasattr(m, row.measure))
    return function(limits, servers, *row.arguments)


def main(group, limits, *names):
    # Leaves the measured CPU to the servers, to bench_client and to the driver model.
    others = os.sched_getaffinity(0)
    os.sched_setaffinity(0, (others - {int(box.CPU)}) or others)
    limits = {**json.loads(limits), "group": group}
    servers = {}
    kind = group.split(":")[0]
    if kind in BEGIN:
        BEGIN[kind](servers)
    for row in ROWS:
        if row.name in names:
            print(json.dumps({"name": row.name, **measure(row, limits, servers)}), flush=True)
    for name in ("ours", "bare"):
        if name in servers:
            box.stop(servers[name])


main(*sys.argv[1:])
