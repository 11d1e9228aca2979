#!/usr/bin/env python3
"""Writes correlation_power.csv: power of tests of one and of two correlations, independent of the
integrals and series that the program uses.

Family R, algorithm 0: the density of r with Gauss's hypergeometric function,

    f(r) = (n-2) G(n-1) / (sqrt(2 pi) G(n-1/2)) (1-rho^2)^((n-1)/2) (1-r^2)^((n-4)/2)
           (1-rho r)^(3/2-n) 2F1(1/2, 1/2; n-1/2; (1+rho r)/2),

integrated over atanh(r) by Gauss-Legendre rules. Algorithm 1, and family Z2R: the normal
distribution with the first two moments of atanh(r) under that density, by the same rules, where the
program has series in 1/(n-1); hence n of 12 and more. Algorithm 2: Fisher's moments. Critical values
are roots of the distribution function or quantiles of the normal distribution.

The script checks a sample of its probabilities against mpmath's adaptive quadrature at 30 digits and
stops when one is off by more than 1e-11.

Needs numpy, scipy and mpmath; takes some ten seconds:

    python3 tests/procedures/data/correlation_power.py > tests/procedures/data/correlation_power.csv
"""

import math
import sys
from functools import lru_cache

import mpmath as mp
import numpy as np
from scipy.optimize import brentq
from scipy.special import gammaln, hyp2f1
from scipy.stats import norm

NODES, WEIGHTS = np.polynomial.legendre.leggauss(40)

# rho, rho0, n, alpha of one correlation.
ONE = [
    (0.2, 0.0, 100, 0.05), (0.866, 0.0, 12, 0.05), (0.3, 0.5, 24, 0.05), (0.5, 0.0, 30, 0.01),
    (-0.4, 0.1, 60, 0.1), (0.95, 0.9, 80, 0.05), (0.9, 0.0, 6, 0.05), (0.1, 0.0, 400, 0.25),
    (-0.7, -0.5, 50, 0.001), (0.6, 0.45, 200, 0.0001), (0.05, -0.05, 300, 0.05),
    (-0.3, 0.0, 40, 0.2), (0.99, 0.97, 30, 0.05), (0.0, 0.25, 90, 0.05), (0.75, 0.6, 15, 0.05),
    (-0.9, -0.8, 25, 0.01), (0.45, 0.2, 120, 0.05), (0.8, 0.3, 10, 0.05),
]
# rho1, rho2, n1, n2, alpha of two correlations.
TWO = [
    (0.4, 0.0, 100, 100, 0.05), (0.75, 0.88, 51, 260, 0.05), (0.3, 0.5, 600, 600, 0.05),
    (0.84, 0.78, 95, 98, 0.05), (-0.2, 0.3, 40, 70, 0.01), (0.9, 0.6, 15, 20, 0.05),
    (0.1, 0.0, 1000, 500, 0.25), (-0.5, -0.7, 80, 60, 0.1), (0.95, 0.99, 30, 12, 0.001),
    (0.6, 0.1, 12, 200, 0.05), (-0.8, 0.8, 12, 12, 0.0001), (0.2, 0.1, 700, 900, 0.05),
    (0.0, -0.35, 64, 48, 0.05),
]


def density(z, rho, n):
    """Of z = atanh(r)."""
    r = np.tanh(z)
    log1 = lambda x: np.log1p(-x)
    logs = (math.log(n - 2) + gammaln(n - 1) - gammaln(n - 0.5) - 0.5 * math.log(2 * math.pi)
            + (n - 1) / 2 * math.log1p(-rho * rho) - (n - 2) * np.log(np.cosh(z))
            + (1.5 - n) * log1(rho * r))
    return np.exp(logs) * hyp2f1(0.5, 0.5, n - 0.5, (1 + rho * r) / 2)


def integral(function, rho, n, low, high):
    cuts = np.linspace(low, high, 61)
    half = (cuts[1:] - cuts[:-1]) / 2
    z = ((cuts[1:] + cuts[:-1]) / 2)[:, None] + half[:, None] * NODES
    return float(np.sum(half[:, None] * WEIGHTS * function(z) * density(z, rho, n)))


def reach(rho, n):
    """Bounds of atanh(r) beyond which nothing is left."""
    width = 14 / math.sqrt(n - 2) + 60 / (n - 2)
    return math.atanh(rho) - width, math.atanh(rho) + width


def cdf(z, rho, n):
    low, high = reach(rho, n)
    return integral(np.ones_like, rho, n, low, min(max(z, low), high))


@lru_cache(maxsize=None)
def moments(rho, n):
    """Mean and variance of atanh(r)."""
    low, high = reach(rho, n)
    mean = integral(lambda z: z, rho, n, low, high)
    return mean, integral(lambda z: (z - mean) ** 2, rho, n, low, high)


def distribution(rho, n, algorithm):
    """Distribution function and quantile of atanh(r)."""
    if algorithm == 0:
        low, high = reach(rho, n)
        return (lambda z: cdf(z, rho, n),
                lambda p: brentq(lambda z: cdf(z, rho, n) - p, low, high, xtol=1e-14))
    mean, variance = moments(rho, n) if algorithm == 1 else (math.atanh(rho), 1 / (n - 3))
    normal = norm(mean, math.sqrt(variance))
    return normal.cdf, normal.ppf


def rejection(cdf_of, quantile, alpha, form):
    if form == 0:
        return 1 - cdf_of(quantile(1 - alpha / 2)) + cdf_of(quantile(alpha / 2))
    return 1 - cdf_of(quantile(1 - alpha)) if form == 1 else cdf_of(quantile(alpha))


def one_power(rho, rho0, n, alpha, form, algorithm):
    return rejection(distribution(rho, n, algorithm)[0], distribution(rho0, n, algorithm)[1], alpha,
                     form)


def two_power(rho1, rho2, n1, n2, alpha, form, algorithm):
    """The test statistic has Fisher's standard error, whatever its moments."""
    error = math.sqrt(1 / (n1 - 3) + 1 / (n2 - 3))
    if algorithm == 2:
        mean, sd = math.atanh(rho1) - math.atanh(rho2), error
    else:
        (mean1, variance1), (mean2, variance2) = moments(rho1, n1), moments(rho2, n2)
        mean, sd = mean1 - mean2, math.sqrt(variance1 + variance2)
    return rejection(norm(mean / error, sd / error).cdf, norm.ppf, alpha, form)


def check(rho, n, z):
    mp.mp.dps = 30
    rho = mp.mpf(repr(rho))
    constant = ((n - 2) * mp.gamma(n - 1) / mp.gamma(mp.mpf(n) - mp.mpf(1) / 2) / mp.sqrt(2 * mp.pi)
                * (1 - rho * rho) ** (mp.mpf(n - 1) / 2))
    half = mp.mpf(1) / 2
    f = lambda r: (constant * (1 - r * r) ** (mp.mpf(n - 4) / 2) * (1 - rho * r) ** (3 * half - n)
                   * mp.hyp2f1(half, half, n - half, (1 + rho * r) / 2))
    truth = mp.quad(f, mp.linspace(-1, mp.tanh(z), 25))
    if abs(truth - cdf(z, float(rho), n)) > 1e-11:
        sys.exit(f"rho {rho}, n {n}, z {z}: {cdf(z, float(rho), n)}, truth {truth}")


def main():
    for rho, n, z in ((0.2, 100, 0.25), (-0.4, 60, -0.5), (0.95, 80, 1.6), (0.9, 6, 1.0)):
        check(rho, n, z)
    print("# Made by correlation_power.py; do not edit.")
    print("family,rho1,rho2,n1,n2,alpha,form,algorithm,power")
    for rho, rho0, n, alpha in ONE:
        for algorithm in (0, 1, 2):
            for form in (0, 1 if rho > rho0 else 2):
                if algorithm == 1 and n < 12:
                    continue
                value = one_power(rho, rho0, n, alpha, form, algorithm)
                print(f"R,{rho!r},{rho0!r},{n},0,{alpha!r},{form},{algorithm},{value:.15g}")
    for rho1, rho2, n1, n2, alpha in TWO:
        for algorithm in (1, 2):
            for form in (0, 1 if rho1 > rho2 else 2):
                value = two_power(rho1, rho2, n1, n2, alpha, form, algorithm)
                print(f"Z2R,{rho1!r},{rho2!r},{n1},{n2},{alpha!r},{form},{algorithm},{value:.15g}")


if __name__ == "__main__":
    main()
