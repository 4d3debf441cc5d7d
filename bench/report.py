"""The table: on the terminal, and in docs/performance.md."""

import datetime
import os
import platform
import re

DOCUMENT = "docs/performance.md"
BEGIN, END = "<!-- figures: written by scripts/bench -->", "<!-- end of figures -->"
HEADINGS = ("", "ours", "bare", "unit", "ratio", "budget", "")


def over(row, record):
    """Whether the row is over its budget."""
    judged = {"ratio": lambda: record["ratio"] > row.budget,
              "least": lambda: record["ratio"] < row.budget,
              "extra": lambda: record["ours"] - record["bare"] > row.budget,
              "value": lambda: record["ours"] > row.budget,
              "bend": lambda: record["ratio"] > row.budget,
              "report": lambda: False}
    return judged[row.judge]()


def failing(measured):
    """The rows that are over their budgets, except those that are within them when the
    bare side also does what each call has to do ("NAME-duties")."""
    verdicts = {row.name: over(row, record) for row, record in measured}
    return [name for name, is_over in verdicts.items()
            if is_over and verdicts.get(f"{name}-duties", True)]


def number(value):
    if value is None:
        return "-"
    return f"{value:.0f}" if value == int(value) or abs(value) >= 1000 else f"{value:.2f}"


BUDGETS = {"ratio": "{}", "least": "at least {}", "extra": "+ {} {unit}", "value": "{} {unit}",
           "bend": "bend {}", "report": "report"}


def cells(row, record, failed):
    budget = BUDGETS[row.judge].format(row.budget, unit=row.unit).strip()
    verdict = "ok" if row.budget is not None else ""
    if over(row, record):
        verdict = "OVER" if row.name in failed else "over by its duties"
    if not record["stable"]:
        verdict += " (unstable)"
    ratio = "-" if record["ratio"] is None else f"{record['ratio']:.2f}"
    return (row.what, number(record["ours"]), number(record["bare"]), row.unit, ratio, budget,
            verdict.strip())


def print_table(measured):
    failed = failing(measured)
    table = [HEADINGS, *(cells(row, record, failed) for row, record in measured)]
    widths = [max(map(len, column)) for column in zip(*table)]
    for line in table:
        aligned = [cell.rjust(width) if 0 < at < 5 and at != 3 else cell.ljust(width)
                   for at, (cell, width) in enumerate(zip(line, widths))]
        print("  ".join(aligned).rstrip())
    for row, record in measured:
        for note in notes(record):
            print(f"{row.name}: {note}")


def notes(record):
    if "note" in record:
        yield record["note"]
    if "points" in record:
        points = record["points"]
        for side in ("ours", "bare"):
            if side in points:
                told = ", ".join(f"{x}: {y:.1f}" for x, y in zip(points["x"], points[side]))
                yield f"{side}, us at {told}"


def machine():
    with open("/proc/cpuinfo") as cpus:
        model = re.search(r"^(?:model name|Hardware)\s*: (.*)", cpus.read(), re.M)
    with open("/etc/os-release") as release:
        system = re.search(r'^PRETTY_NAME="?([^"\n]*)', release.read(), re.M)
    above = os.sched_getscheduler(0) in (os.SCHED_FIFO, os.SCHED_RR)
    return (f"{datetime.date.today()}, {model[1] if model else platform.machine()}, "
            f"{os.cpu_count()} CPUs, Linux {platform.release()}, {system[1]}"
            f"{', at real-time priority' if above else ''}")


def markdown(measured):
    yield machine() + "."
    yield ""
    yield "| what | ours | bare | unit | ratio | budget | |"
    yield "|---|---|---|---|---|---|---|"
    failed = failing(measured)
    for row, record in measured:
        yield "| " + " | ".join(cells(row, record, failed)) + " |"
    yield ""
    for row, record in measured:
        for note in notes(record):
            yield f"- {row.what}: {note}"


def write_document(measured):
    """Replaces the figures in the document and leaves the text around them."""
    with open(DOCUMENT) as document:
        text = document.read()
    before, rest = text.split(BEGIN)
    after = rest.split(END)[1]
    figures = "\n".join(markdown(measured))
    with open(DOCUMENT, "w") as document:
        document.write(f"{before}{BEGIN}\n\n{figures}\n\n{END}{after}")
