"""Medians, whether they are stable, and how a figure grows."""

import time
from statistics import median

STABLE = 0.03


def apart(a, b):
    return abs(a - b) / max(a, b, 1e-9)


def stable(rounds):
    """Whether the first and the second half of the rounds agree within 3%, in the
    median of each side and in their ratio. A round has a list of figures per side."""
    half = len(rounds) // 2
    first, second = medians(rounds[:half]), medians(rounds[half:])
    pairs = list(zip(first, second))
    if len(first) > 1:
        pairs.append((first[0] / first[1], second[0] / second[1]))
    return all(apart(a, b) <= STABLE for a, b in pairs)


def medians(rounds):
    """The median of each side over all figures of all rounds."""
    sides = zip(*rounds)
    return [median(x for samples in side for x in samples) for side in sides]


def repeat(step, limits):
    """Rounds of step until they are stable, or `most` of them, or no time is left."""
    rounds = []
    steady = False
    end = time.monotonic() + limits["patience"]
    while len(rounds) < limits["most"] and not steady and time.monotonic() < end:
        rounds.append(step())
        steady = len(rounds) >= limits["least"] and stable(rounds)
    return medians(rounds), {"rounds": len(rounds), "stable": steady}


def once(value, other=None, **more):
    """The record of what is measured only once, since it does not vary."""
    ratio = value / other if other else None
    return {"ours": value, "bare": other, "ratio": ratio, "rounds": 1, "stable": True, **more}


def percentile(samples, part):
    ordered = sorted(samples)
    return ordered[int((len(ordered) - 1) * part)]


def slope(xs, ys):
    """The slope of the straight line nearest to the points."""
    x_mean, y_mean = sum(xs) / len(xs), sum(ys) / len(ys)
    rise = sum((x - x_mean) * (y - y_mean) for x, y in zip(xs, ys))
    return rise / sum((x - x_mean) ** 2 for x in xs)


def bend(xs, ys):
    """How much steeper the upper part is than the lower: 1 for a line, 10 for a square
    over two decades. Growth by less than a tenth counts as a line."""
    middle = len(xs) // 2
    lower = (ys[middle] - ys[0]) / (xs[middle] - xs[0])
    upper = (ys[-1] - ys[middle]) / (xs[-1] - xs[middle])
    if ys[-1] - ys[0] < ys[0] / 10:
        return 1.0
    # If the lower part does not grow, the noise of its figures is taken for its growth.
    noise = STABLE * ys[0] / (xs[middle] - xs[0])
    return upper / max(lower, noise)
