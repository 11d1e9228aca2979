#!/usr/bin/env python3
"""Writes t_test_power.csv: power of t-tests by quadrature, independent of the recursion that the
program uses.

    P(T <= t) = integral over u > 0 of Phi(t u - delta) f(u) du

with f the density of sqrt(chi-square(df) / df), by Gauss-Legendre rules on pieces that end where the
normal distribution function turns. Critical values are roots of the incomplete beta function at 30
digits (mpmath). The script checks a sample of its own values against mpmath's adaptive quadrature at 30
digits and stops when one is off by more than 1e-11.

Needs numpy, scipy and mpmath; takes a few seconds:

    python3 tests/procedures/data/t_test_power.py > tests/procedures/data/t_test_power.csv
"""

import itertools
import math
import sys
from functools import lru_cache

import mpmath as mp
import numpy as np
from scipy.special import gammaln, ndtr

DFS = [1, 2, 3, 4, 5, 8, 9, 17, 24, 40, 99, 100, 301, 998, 999, 2500, 4999, 5000]
EFFECTS = [0.01, 0.05, 0.2, 0.5, 0.8, 1.3, 2.0, 3.0]
ALPHAS = [0.0001, 0.001, 0.01, 0.05, 0.1, 0.25]
FORMS = [0, 1, 2]
NODES, WEIGHTS = np.polynomial.legendre.leggauss(60)


@lru_cache(maxsize=None)
def upper_critical(df, p):
    """The t above which a central t has probability p."""
    mp.mp.dps = 30
    half = mp.mpf(1) / 2
    # p = I_x(df / 2, 1 / 2) / 2 with x = df / (df + t^2); the root is searched in log t.
    tail = lambda s: mp.log(
        mp.betainc(mp.mpf(df) / 2, half, 0, df / (df + mp.exp(2 * s)), regularized=True) / 2)
    from scipy.stats import t as student
    start = mp.log(mp.mpf(float(student.isf(p, df))))
    root = mp.findroot(lambda s: tail(s) - mp.log(mp.mpf(repr(p))), (start, start + mp.mpf("1e-6")))
    return float(mp.exp(root))


def log_density(u, df):
    return (math.log(2) + df / 2 * math.log(df / 2) - gammaln(df / 2) + (df - 1) * np.log(u)
            - df * u * u / 2)


def cdf(t, df, delta):
    width = 1 / math.sqrt(2 * df)
    low, high = max(0.0, 1 - 14 * width), 1 + 14 * width
    cuts = set(np.linspace(low, high, 29))
    if t != 0:
        turn = delta / t
        for k in range(-40, 41):
            cut = turn + k * 0.25 / abs(t)
            if low < cut < high:
                cuts.add(cut)
    cuts = sorted(cuts)
    total = 0.0
    for a, b in zip(cuts, cuts[1:]):
        u = (a + b) / 2 + (b - a) / 2 * NODES
        total += (b - a) / 2 * np.sum(WEIGHTS * ndtr(t * u - delta) * np.exp(log_density(u, df)))
    return total


def power(df, delta, alpha, form):
    """Rejection in the upper tail is that of the mirrored statistic in the lower tail."""
    crit = -upper_critical(df, alpha / 2 if form == 0 else alpha)
    upper, lower = cdf(crit, df, -delta), cdf(crit, df, delta)
    return {0: upper + lower, 1: upper, 2: lower}[form]


def check(df, delta, alpha, form, value):
    mp.mp.dps = 30
    crit = upper_critical(df, alpha / 2 if form == 0 else alpha)
    n = mp.mpf(df)
    density = lambda u: mp.exp(
        mp.log(2) + n / 2 * mp.log(n / 2) - mp.loggamma(n / 2) + (n - 1) * mp.log(u) - n * u * u / 2)
    width = 1 / math.sqrt(2 * df)
    cuts = sorted({c for c in (1 - 14 * width, 1 - 4 * width, 1.0, 1 + 4 * width, 1 + 14 * width,
                               abs(delta) / crit, (abs(delta) - 6) / crit, (abs(delta) + 6) / crit)
                   if c > 0} | {mp.mpf("1e-30")})
    lower = lambda d: mp.quad(lambda u: mp.ncdf(-crit * u - d) * density(u), cuts)
    truth = {0: lambda: lower(delta) + lower(-delta), 1: lambda: lower(-delta),
             2: lambda: lower(delta)}[form]()
    if abs(truth - value) > 1e-11:
        sys.exit(f"df {df}, delta {delta}, alpha {alpha}, form {form}: {value}, truth {truth}")


def design(family, df, es):
    """mean1, mean2, sigma1, sigma2, r, n1, n2 with the degrees of freedom, and effect and delta."""
    if family == "T1":
        n = df + 1
        row, effect = (5 + es * 8, 5, 8, 0, 0, n, 0), es
        return row, es * math.sqrt(n)
    if family == "T2":
        n1 = max(2, (df + 2) * 2 // 5)
        n2 = df + 2 - n1
        return (es * 4, 0, 4, 0, 0, n1, n2), es * math.sqrt(n1 * n2 / (n1 + n2))
    n, s1, s2, r = df + 1, 3, 4, 0.375
    sd = math.sqrt(s1 * s1 + s2 * s2 - 2 * r * s1 * s2)  # 4
    return (1 + es * sd, 1, s1, s2, r, n, 0), es * math.sqrt(n)


def main():
    print("# Made by t_test_power.py; do not edit.")
    print("family,mean1,mean2,sigma1,sigma2,r,n1,n2,alpha,form,power")
    grid = itertools.product(range(len(DFS)), range(len(EFFECTS)), range(len(ALPHAS)), FORMS)
    for number, (i, j, k, form) in enumerate(grid):
        df, alpha = DFS[i], ALPHAS[k]
        es = -EFFECTS[j] if form == 2 else EFFECTS[j]
        families = ("T1", "T3") if df < 2 else ("T1", "T2", "T3")
        family = families[(i + j + k + form) % len(families)]
        row, delta = design(family, df, es)
        value = power(df, delta, alpha, form)
        if number % 97 == 0:
            check(df, delta, alpha, form, value)
        print(",".join([family, *(repr(x) for x in row), repr(alpha), str(form), f"{value:.15g}"]))


if __name__ == "__main__":
    main()
