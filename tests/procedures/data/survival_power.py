#!/usr/bin/env python3
"""Writes survival_power.csv: power of the survival tests by SciPy.

    SA1   the number of events in both groups by the end is n (1 - pi1) + n (1 - pi2); with k events
          the log-rank statistic is normal with mean sqrt(k) (h - 1) / (h + 1) and variance 1, h the
          hazard ratio; Freedman (1982), Statistics in Medicine 1, 121-129
    SA2,  the log of the estimated hazard ratio is normal with variance 1 / e1 + 1 / e2, e the
    SA3   expected events of a group: the chance of an event is integrated over the times of entry
          and of the event numerically, not by its closed form

Needs scipy; takes some seconds:

    python3 tests/procedures/data/survival_power.py > tests/procedures/data/survival_power.csv
"""

import itertools
import math

from scipy.integrate import quad
from scipy.stats import norm

RATES = [(0.5, 0.7), (0.25, 0.5), (0.9, 0.95), (0.05, 0.01), (0.999, 0.4)]
HAZARDS = [(0.5, 0.7), (0.02, 0.0166), (1.4, 3.0), (1e-05, 4e-05), (0.25, 0.03125)]
TIMES = [(10, 9), (5, 5), (40, 2), (1, 1)]
DROPOUTS = [0.0, 0.05, 2.0]
ALPHAS = [0.0001, 0.05, 0.25]
SIZES = [2, 100, 5000, 150000]


def upper(alpha, form):
    return norm.isf(alpha / 2 if form == 0 else alpha)


def log_rank(pi1, pi2, n, alpha, form):
    events = n * (1 - pi1) + n * (1 - pi2)
    h = math.log(pi1) / math.log(pi2)
    return norm.sf(upper(alpha, form), loc=math.sqrt(events) * abs(h - 1) / (h + 1))


def chance_of_event(rate, dropout, t, t0):
    """Entry at u within the accrual leaves t - u of follow-up."""
    seen = lambda u: quad(lambda x: rate * math.exp(-(rate + dropout) * x), 0, t - u,
                          epsabs=0, epsrel=1e-12, limit=200)[0]
    return quad(seen, 0, t0, epsabs=0, epsrel=1e-11, limit=200)[0] / t0


def exponential(rate1, rate2, dropout, t, t0, n, alpha, form):
    e1 = n * chance_of_event(rate1, dropout, t, t0)
    e2 = n * chance_of_event(rate2, dropout, t, t0)
    shift = abs(math.log(rate1 / rate2)) / math.sqrt(1 / e1 + 1 / e2)
    return norm.sf(upper(alpha, form), loc=shift)


def main():
    print("# Made by survival_power.py; do not edit.")
    print("family,first,second,d,t,t0,n,alpha,form,power")
    for (pi1, pi2), n, alpha, form in itertools.product(RATES, SIZES, ALPHAS, (0, 1)):
        power = log_rank(pi1, pi2, n, alpha, form)
        print(f"SA1,{pi1!r},{pi2!r},0,0,0,{n},{alpha!r},{form},{power:.15g}")
    designs = itertools.product(HAZARDS, TIMES, DROPOUTS, SIZES, ALPHAS, (0, 1))
    for number, ((rate1, rate2), (t, t0), dropout, n, alpha, form) in enumerate(designs):
        if number % 3:
            continue
        # Form 1 asks for the larger parameter in group 2.
        first, second = sorted((rate1, rate2)) if form == 1 else (rate1, rate2)
        power = exponential(first, second, dropout, t, t0, n, alpha, form)
        family = "SA3" if dropout else "SA2"
        print(f"{family},{first!r},{second!r},{dropout!r},{t},{t0},{n},{alpha!r},{form},{power:.15g}")


if __name__ == "__main__":
    main()
