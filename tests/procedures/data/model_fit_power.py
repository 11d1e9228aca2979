#!/usr/bin/env python3
"""Writes model_fit_power.csv: power of tests of model fit by the RMSEA, from SciPy's noncentral
chi-square distribution and its central one where the noncentrality is 0.

The two-tailed power is 1 - F(high) - F(low), the lower tail subtracted, as the program defines it.
The script checks a sample of probabilities against mpmath's sum of the Poisson mixture at 30 digits
and stops when one is off by more than 1e-10.

Needs scipy and mpmath; takes a second:

    python3 tests/procedures/data/model_fit_power.py > tests/procedures/data/model_fit_power.csv
"""

import sys

import mpmath as mp
from scipy.stats import chi2, ncx2

# n, df, r, r0, alpha
DESIGNS = [
    (100, 20, 0.08, 0.05, 0.05), (100, 4, 0.116, 0.0, 0.05), (600, 4, 0.116, 0.0, 0.05),
    (200, 100, 0.08, 0.05, 0.05), (474, 20, 0.01, 0.05, 0.05), (14, 2000, 0.08, 0.0, 0.05),
    (750, 10, 0.01, 0.05, 0.05), (50, 7, 0.2, 0.1, 0.01), (1000, 30, 0.06, 0.05, 0.1),
    (150, 60, 0.0, 0.06, 0.05), (300, 15, 0.3, 0.25, 0.001), (2000, 8, 0.03, 0.0, 0.25),
    (400, 500, 0.02, 0.03, 0.0001), (120, 12, 0.5, 0.4, 0.05), (5000, 20, 0.05, 0.045, 0.05),
    (100000, 20, 0.052, 0.05, 0.05), (80, 5000, 0.04, 0.035, 0.05), (250, 6, 0.12, 0.07, 0.2),
    (40, 40, 0.05, 0.11, 0.1), (10, 5, 0.1, 0.05, 0.05),
]


def cdf(x, df, delta):
    return float(chi2.cdf(x, df) if delta == 0 else ncx2.cdf(x, df, delta))


def quantile(p, df, delta):
    return float(chi2.ppf(p, df) if delta == 0 else ncx2.ppf(p, df, delta))


def power(n, df, r, r0, alpha, form):
    null, actual = r0 * r0 * (n - 1) * df, r * r * (n - 1) * df
    at = lambda p: cdf(quantile(p, df, null), df, actual)
    if r0 == 0 and form in (0, 1):
        form = 3
    if form == 0:
        return 1 - at(1 - alpha / 2) - at(alpha / 2)
    return at(alpha) if form == 2 else 1 - at(1 - alpha)


def check(x, df, delta):
    mp.mp.dps = 30
    half = mp.mpf(repr(delta)) / 2
    truth = mp.nsum(lambda i: mp.exp(-half) * half ** i / mp.factorial(i)
                    * mp.gammainc(mp.mpf(df) / 2 + i, 0, mp.mpf(repr(x)) / 2, regularized=True),
                    [0, 400])
    if abs(truth - cdf(x, df, delta)) > 1e-10:
        sys.exit(f"x {x}, df {df}, delta {delta}: {cdf(x, df, delta)}, truth {truth}")


def main():
    for x, df, delta in ((31.4, 20, 12.672), (150.0, 100, 49.75), (9.5, 4, 5.33), (300.0, 7, 210.0)):
        check(x, df, delta)
    print("# Made by model_fit_power.py; do not edit.")
    print("n,df,r,r0,alpha,form,power")
    for n, df, r, r0, alpha in DESIGNS:
        for form in (0, 2) if r < r0 else (0, 1, 3):
            value = power(n, df, r, r0, alpha, form)
            print(f"{n},{df},{r!r},{r0!r},{alpha!r},{form},{value:.15g}")


if __name__ == "__main__":
    main()
