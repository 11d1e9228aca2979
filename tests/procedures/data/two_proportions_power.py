#!/usr/bin/env python3
"""Writes two_proportions_power.csv: power of the z-test of two proportions and of McNemar's test by
normal distributions of SciPy, each from the definition of its rejection region.

    P2    the difference of the two observed proportions is normal with the standard error of the
          population and is compared with the critical difference under the null hypothesis, moved
          out by half a step of each group with the correction for continuity
    QMAC  with n pairs the number of discordant ones is set to its mean, and the difference of the two
          kinds is normal; Miettinen (1968), Biometrics 24, 339-352, equation of the unconditional
          power, written in the probabilities p10 and p01 of the two kinds

Needs scipy; takes a second:

    python3 tests/procedures/data/two_proportions_power.py > tests/procedures/data/two_proportions_power.csv
"""

import itertools
import math

from scipy.stats import norm

PAIRS = [(0.6, 0.5), (0.1, 0.35), (0.02, 0.01), (0.999, 0.9), (1.0, 0.4)]
GROUPS = [(2, 3), (100, 100), (40, 400), (1500, 30), (150000, 150000)]
ALPHAS = [0.0001, 0.05, 0.25]
MCNEMAR = [(0.1, 0.4), (0.0001, 0.3), (0.05, 0.0502), (0.7, 0.9), (0.5, 1.0)]
PAIRED_SIZES = [2, 30, 250, 4000, 150000]


def two_proportions(pi1, pi2, n1, n2, alpha, form, continuity):
    pooled = (n1 * pi1 + n2 * pi2) / (n1 + n2)
    null_error = math.sqrt(pooled * (1 - pooled) * (n1 + n2) / (n1 * n2))
    observed = norm(pi1 - pi2, math.sqrt(pi1 * (1 - pi1) / n1 + pi2 * (1 - pi2) / n2))
    step = (1 / (2 * n1) + 1 / (2 * n2)) * continuity
    bound = norm.isf(alpha / 2 if form == 0 else alpha) * null_error + step
    upper, lower = observed.sf(bound), observed.cdf(-bound)
    return {0: upper + lower, 1: upper, 2: lower}[form]


def mcnemar(delta, eta, n, alpha, form):
    p10, p01 = (eta + delta) / 2, (eta - delta) / 2
    psi, difference = p10 + p01, p10 - p01
    z = norm.isf(alpha / 2 if form == 0 else alpha)
    variance = psi ** 2 - difference ** 2 * (3 + psi) / 4
    return norm.cdf((difference * math.sqrt(n * psi) - z * psi) / math.sqrt(variance))


def main():
    print("# Made by two_proportions_power.py; do not edit.")
    print("family,first,second,n1,n2,alpha,form,continuity,power")
    for (pi1, pi2), (n1, n2), alpha, form, continuity in itertools.product(
            PAIRS, GROUPS, ALPHAS, (0, 1, 2), (0, 1)):
        first, second = (pi1, pi2) if (pi1 > pi2) != (form == 2) else (pi2, pi1)
        power = two_proportions(first, second, n1, n2, alpha, form, continuity)
        print(f"P2,{first!r},{second!r},{n1},{n2},{alpha!r},{form},{continuity},{power:.15g}")
    for (delta, eta), n, alpha, form in itertools.product(MCNEMAR, PAIRED_SIZES, ALPHAS, (0, 1)):
        power = mcnemar(delta, eta, n, alpha, form)
        print(f"QMAC,{delta!r},{eta!r},{n},0,{alpha!r},{form},0,{power:.15g}")


if __name__ == "__main__":
    main()
