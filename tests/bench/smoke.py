#!/usr/bin/env python3
"""smoke.py BUILD_DIRECTORY: checks that the benches run and can tell good from bad. On a busy
machine figures mean little, so it only checks that the table has plausible ones."""

import json
import os
import subprocess
import sys
import tempfile
import time
import unittest

SOURCE = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
sys.path.insert(0, os.path.join(SOURCE, "bench"))
sys.dont_write_bytecode = True

import figures  # noqa: E402
import report  # noqa: E402
from rows import ROWS, Row  # noqa: E402

NAMES = ["null", "get", "ssid-change"]


def row(judge, budget):
    return Row("name", "group", "what", "us", judge, budget, "pair", ())


class Judging(unittest.TestCase):
    def test_a_square_bends_and_a_line_does_not(self):
        xs = [30, 300, 3000]
        self.assertEqual(figures.bend(xs, [100 + 2 * x for x in xs]), 1)
        self.assertGreater(figures.bend(xs, [x * x for x in xs]), 9)
        self.assertEqual(figures.bend(xs, [100, 101, 102]), 1)

    def test_the_slope_of_a_line(self):
        self.assertAlmostEqual(figures.slope([1, 2, 3], [5, 8, 11]), 3)

    def test_halves_that_differ_are_not_stable(self):
        self.assertTrue(figures.stable([[[100, 101], [50]], [[102, 101], [51]]]))
        self.assertFalse(figures.stable([[[100], [50]], [[104], [52]]]))
        self.assertFalse(figures.stable([[[100], [50]], [[102], [49]]]))

    def test_rounds_go_on_until_they_are_stable(self):
        figure = iter([10] + 9 * [20])
        limits = {"least": 2, "most": 9, "patience": 60}
        medians, how = figures.repeat(lambda: [[next(figure)]], limits)
        self.assertEqual((medians, how), ([20], {"rounds": 6, "stable": True}))

    def test_rounds_end_unstable(self):
        figure = iter([10, 20, 40, 80])
        limits = {"least": 2, "most": 4, "patience": 60}
        medians, how = figures.repeat(lambda: [[next(figure)]], limits)
        self.assertEqual((medians, how), ([30], {"rounds": 4, "stable": False}))

    def test_what_is_over_its_budget(self):
        record = {"ours": 13, "bare": 10, "ratio": 1.3}
        for judge, kept, broken in (("ratio", 1.3, 1.29), ("least", 1.3, 1.31), ("extra", 3, 2.9),
                                    ("value", 13, 12), ("bend", 1.3, 1.2)):
            self.assertFalse(report.over(row(judge, kept), record), judge)
            self.assertTrue(report.over(row(judge, broken), record), judge)

    def test_a_row_that_is_over_by_its_duties_only_does_not_fail(self):
        def named(name, ratio):
            return (Row(name, "group", "what", "us", "ratio", 1.5, "pair", ()),
                    {"ours": ratio, "bare": 1, "ratio": ratio, "stable": True})
        over, kept = named("a", 1.6), named("a-duties", 1.4)
        self.assertEqual(report.failing([over, kept]), [])
        self.assertEqual(report.failing([over, named("a-duties", 1.7)]), ["a", "a-duties"])
        self.assertEqual(report.failing([over]), ["a"])
        self.assertEqual(report.failing([named("a", 1.4), kept]), [])

    def test_rounds_end_when_the_time_is_over(self):
        _, how = figures.repeat(lambda: time.sleep(0.02) or [[1]],
                                      {"least": 900, "most": 999, "patience": 0.1})
        self.assertLess(how["rounds"], 10)
        self.assertFalse(how["stable"])


class Measuring(unittest.TestCase):
    def test_rows_have_sane_figures_and_a_line_each(self):
        with tempfile.TemporaryDirectory(dir=BUILD) as scratch:
            file = os.path.join(scratch, "figures.json")
            options = ["--build", BUILD, "--rounds", "2", "--calls", "40", "--json", file]
            command = ["python3", "-B", "bench/bench.py", *options, *NAMES]
            done = subprocess.run(command, cwd=SOURCE, stdout=subprocess.PIPE, text=True,
                                  check=False)
            # 1: over a budget, which may happen on a busy machine.
            self.assertIn(done.returncode, (0, 1))
            with open(file) as figures_file:
                records = json.load(figures_file)
        self.assertEqual([record["name"] for record in records], NAMES)
        for record in records:
            for side in ("ours", "bare"):
                self.assertGreater(record[side], 1)
                self.assertLess(record[side], 1e6)
            self.assertEqual(record["ratio"], record["ours"] / record["bare"])
            what = next(row.what for row in ROWS if row.name == record["name"])
            self.assertRegex(done.stdout, rf"(?m)^{what} +[\d.]+ +[\d.]+ +us +[\d.]+ ")


BUILD = os.path.abspath(sys.argv.pop(1))
unittest.main()
