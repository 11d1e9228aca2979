#!/usr/bin/env python3
"""Writes one_proportion_power.csv: power and actual alpha of the test of one proportion by SciPy's
normal quantiles and binomial distribution (incomplete beta functions of its own).

Designs whose critical value lies so near a whole number that eight digits of a normal quantile could
decide its rounding are left out.

Needs scipy; takes a second:

    python3 tests/procedures/data/one_proportion_power.py > tests/procedures/data/one_proportion_power.csv
"""

import itertools
import math

from scipy.stats import binom, norm

PAIRS = [(0.7, 0.5), (0.52, 0.5), (0.05, 0.02), (0.3, 0.75), (0.98, 0.9), (0.001, 0.01), (1.0, 0.8)]
SIZES = [2, 9, 40, 133, 1000, 20000, 150000]
ALPHAS = [0.0001, 0.01, 0.05, 0.25]


def critical(n, pi0, p):
    return n * pi0 + norm.isf(p) * math.sqrt(n * pi0 * (1 - pi0))


def rejected(n, pi, pi0, alpha, form, exact):
    """The chance of a count in the rejection region, or None for a region that rounding decides."""
    total = 0.0
    tail = alpha / 2 if form == 0 else alpha
    sides = {0: ("upper", "lower"), 1: ("upper",), 2: ("lower",)}[form]
    for side in sides:
        c = critical(n, pi0, tail if side == "upper" else 1 - tail)
        if exact:
            if abs(c - round(c)) < 1e-5 * math.sqrt(n * pi0 * (1 - pi0)) + 1e-9:
                return None
            total += binom.sf(math.ceil(c) - 1, n, pi) if side == "upper" else binom.cdf(math.floor(c), n, pi)
        elif pi in (0.0, 1.0):
            mean = n * pi
            total += float(mean >= c if side == "upper" else mean <= c)
        else:
            count = norm(n * pi, math.sqrt(n * pi * (1 - pi)))
            total += count.sf(c) if side == "upper" else count.cdf(c)
    return total


def main():
    print("# Made by one_proportion_power.py; do not edit.")
    print("n,pi,pi0,alpha,form,algorithm,power")
    grid = itertools.product(SIZES, PAIRS, ALPHAS, (0, 1, 2), (True, False))
    for n, (pi, pi0), alpha, form, exact in grid:
        # Where the null hypothesis is true the exact row holds the actual alpha of the design.
        shown = pi0 if exact and (form == 1) == (pi < pi0) and form != 0 else pi
        power = rejected(n, shown, pi0, alpha, form, exact)
        if power is not None:
            print(f"{n},{shown!r},{pi0!r},{alpha!r},{form},{0 if exact else 1},{power:.15g}")


if __name__ == "__main__":
    main()
