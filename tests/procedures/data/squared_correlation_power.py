#!/usr/bin/env python3
"""Writes squared_correlation_power.csv: power of tests of a squared multiple correlation.

Algorithm 1: R2 is beta((k - 1) / 2 + J, (n - k) / 2) with J negative binomial of index (n - 1) / 2
and probability rho2 (SciPy's nbinom and betainc), summed over all J of any weight. Algorithm 0: Lee's
three-moment noncentral F in SciPy's ncf. Critical values are roots of either by Brent's method. The
script checks the sum against a mean over the noncentral F of fixed regressors, whose noncentrality is
rho2 / (1 - rho2) times a chi-square of n - 1, and stops when they differ by more than 1e-8.

Needs numpy and scipy; takes a few seconds:

    python3 tests/procedures/data/squared_correlation_power.py \
        > tests/procedures/data/squared_correlation_power.csv
"""

import math
import sys

import numpy as np
from scipy.integrate import quad
from scipy.optimize import brentq
from scipy.special import betainc
from scipy.stats import chi2, nbinom, ncf

# rho2, c2, n, k, alpha
DESIGNS = [
    (0.1, 0.0, 95, 6, 0.05), (0.02, 0.0, 400, 3, 0.05), (0.05, 0.2, 153, 6, 0.05),
    (0.3, 0.1, 60, 4, 0.05), (0.5, 0.3, 80, 2, 0.01), (0.2, 0.0, 25, 5, 0.05),
    (0.25, 0.4, 100, 8, 0.1), (0.9, 0.8, 50, 3, 0.05), (0.6, 0.5, 300, 10, 0.001),
    (0.15, 0.0, 200, 20, 0.0001), (0.35, 0.0, 15, 4, 0.25), (0.75, 0.85, 70, 6, 0.05),
    (0.4, 0.35, 1000, 5, 0.05), (0.01, 0.1, 120, 3, 0.05), (0.12, 0.05, 500, 12, 0.2),
    (0.55, 0.2, 40, 7, 0.05), (0.0, 0.15, 90, 4, 0.05), (0.3, 0.25, 2000, 50, 0.05),
]


def exact(x, rho2, n, k):
    if rho2 == 0:
        return betainc((k - 1) / 2, (n - k) / 2, x)
    weights = nbinom((n - 1) / 2, 1 - rho2)
    j = np.arange(0, int(weights.ppf(1 - 1e-14)) + 200)
    return float(np.sum(weights.pmf(j) * betainc((k - 1) / 2 + j, (n - k) / 2, x)))


def lee(x, rho2, n, k):
    m, q, g = n - 1, n - k, 1 / (1 - rho2)
    p1, p2, p3 = ((g ** i - 1) * m + k - 1 for i in (1, 2, 3))
    c = (p2 - math.sqrt(max(p2 * p2 - p3 * p1, 0))) / p1
    delta = math.sqrt(q * m) * (g - 1) * math.sqrt(g) / (c * c)
    nu = p2 / (c * c) - 2 * delta
    return float(ncf.cdf(q * x / (1 - x) / (nu * c), nu, q, delta))


def power(cdf, rho2, c2, n, k, alpha, form):
    quantile = lambda p: brentq(lambda x: cdf(x, c2, n, k) - p, 1e-9, 1 - 1e-9, xtol=1e-14)
    at = lambda p: cdf(quantile(p), rho2, n, k)
    if c2 == 0 and form != 2:
        form = 3
    if form == 0:
        return 1 - at(1 - alpha / 2) + at(alpha / 2)
    return at(alpha) if form == 2 else 1 - at(1 - alpha)


def check(x, rho2, n, k):
    f = x / (1 - x) * (n - k) / (k - 1)
    average = lambda w: chi2.pdf(w, n - 1) * ncf.cdf(f, k - 1, n - k, w * rho2 / (1 - rho2))
    width = 12 * math.sqrt(2 * (n - 1))
    truth = quad(average, max(0, n - 1 - width), n - 1 + width + 60, epsabs=1e-11, limit=400)[0]
    if abs(truth - exact(x, rho2, n, k)) > 1e-8:
        sys.exit(f"x {x}, rho2 {rho2}, n {n}, k {k}: {exact(x, rho2, n, k)}, truth {truth}")


def main():
    for x, rho2, n, k in ((0.15, 0.1, 95, 6), (0.45, 0.5, 80, 2), (0.3, 0.25, 100, 8)):
        check(x, rho2, n, k)
    print("# Made by squared_correlation_power.py; do not edit.")
    print("rho2,c2,n,k,alpha,form,algorithm,power")
    for rho2, c2, n, k, alpha in DESIGNS:
        forms = (0, 2) if rho2 < c2 else (0, 1, 3)
        for algorithm, cdf in ((0, lee), (1, exact)):
            for form in forms:
                value = power(cdf, rho2, c2, n, k, alpha, form)
                print(f"{rho2!r},{c2!r},{n},{k},{alpha!r},{form},{algorithm},{value:.15g}")


if __name__ == "__main__":
    main()
