"""Measures the rows of rows.py, each group in a simulated gateway of its own. Started by
scripts/bench."""

import argparse
import json
import os
import subprocess
import sys

import report
from rows import ROWS

# Options of each group's box.
BOXES = {"calls": [], "processes": [], "stations": [], "stations-mt7615": ["--board", "mt7615"],
         "people": ["--cold", "--companions", "--scenario", "apartment"],
         "idle": ["--cold", "--companions"]}


def box_options(group):
    kind, _, board = group.partition(":")
    return ["--cold", "--companions", "--board", board] if kind == "life" else BOXES[group]


def options():
    parser = argparse.ArgumentParser(prog="scripts/bench", description=(
        "Measures the daemon beside its bare alternatives and writes docs/performance.md, "
        "or measures the named rows and only prints them."))
    parser.add_argument("names", nargs="*", metavar="NAME", help="a row; --list tells them")
    parser.add_argument("--list", action="store_true", help="list the rows")
    parser.add_argument("--rounds", type=int, default=24, help="at most, until figures are stable")
    parser.add_argument("--calls", type=int, default=400, help="of each side in a round")
    parser.add_argument("--patience", type=float, default=6, help="seconds for each figure")
    parser.add_argument("--idle", type=float, default=60, help="seconds to count wake-ups")
    parser.add_argument("--json", metavar="FILE", help="write the figures there too")
    parser.add_argument("--build", default="build/release", help="the build to measure")
    return parser.parse_args()


def start(group, names, chosen):
    limits = {"most": chosen.rounds, "least": min(6, chosen.rounds), "calls": chosen.calls,
              "seconds": chosen.calls / 2000, "patience": chosen.patience, "idle": chosen.idle}
    cpu = min(os.sched_getaffinity(0))
    environment = {**os.environ, "BENCH_BUILD": chosen.build, "BENCH_CPU": str(cpu),
                   "PYTHONDONTWRITEBYTECODE": "1"}
    inside = ["python3", "bench/inside.py", group, json.dumps(limits), *names]
    # The driver model runs on the measured CPU, too. inside.py itself moves away from it.
    box = [f"{chosen.build}/gwbox", "run", *box_options(group), "--"]
    command = ["taskset", "-c", str(cpu), *box, *inside]
    return subprocess.Popen(command, stdout=subprocess.PIPE, text=True, env=environment)


def collect(process, records):
    """Collects what a group has measured. Ends the run if the group failed."""
    for line in process.stdout:
        record = json.loads(line)
        records[record["name"]] = record
        print(f"measured {record['name']}", file=sys.stderr)
    if process.wait() != 0:
        sys.exit(2)


def measure(rows, chosen):
    groups = {}
    for row in rows:
        groups.setdefault(row.group, []).append(row.name)
    records = {}
    # That box only counts its own wake-ups, so it can wait while the others run.
    waiting = start("idle", groups.pop("idle"), chosen) if "idle" in groups else None
    try:
        for group, names in groups.items():
            collect(start(group, names, chosen), records)
        if waiting:
            collect(waiting, records)
    finally:
        if waiting:
            waiting.terminate()
    return [(row, records[row.name]) for row in rows]


def main():
    chosen = options()
    if chosen.list:
        print("\n".join(f"{row.name:22} {row.what}" for row in ROWS))
        return 0
    unknown = set(chosen.names) - {row.name for row in ROWS}
    if unknown:
        print(f"bench: no row {', '.join(sorted(unknown))}; --list tells them", file=sys.stderr)
        return 2
    rows = [row for row in ROWS if not chosen.names or row.name in chosen.names]
    measured = measure(rows, chosen)
    report.print_table(measured)
    if chosen.json:
        with open(chosen.json, "w") as file:
            json.dump([record for _, record in measured], file, indent=1)
    if not chosen.names:
        report.write_document(measured)
    return 1 if report.failing(measured) else 0


sys.exit(main())
