#!/usr/bin/python3
"""Writes anova_power.csv and anova_size.csv: power of planned contrasts and of analyses of variance,
and the least sizes whose power exceeds a goal, computed apart from the program.

    P(F <= f) = sum over j of Poisson(j; delta / 2) I_x(df1 / 2 + j, df2 / 2),
    x = df1 f / (df1 f + df2)

over all terms within 40 standard deviations of the Poisson mean, with SciPy's incomplete beta
function and its inverse. A contrast is the F test of 1 and df degrees of freedom with noncentrality
delta^2, so that the program's noncentral t distribution meets another one here. The script compares
a sample of its values with mpmath's sum at 30 digits and stops when one is off by more than 1e-11.
Effects are exact in binary; every number is written with all digits of its double.

Needs scipy and mpmath (Debian: python3-scipy, python3-mpmath); takes some seconds:

    /usr/bin/python3 tests/procedures/data/generate_anova.py tests/procedures/data
"""

import itertools
import math
import pathlib
import sys

import mpmath as mp
import numpy as np
from scipy.special import betainc, betaincinv
from scipy.stats import poisson

ALPHAS = (0.0001, 0.01, 0.05, 0.25)
GOALS = (0.65, 0.8, 0.9, 0.999)
FIXED, RANDOM = 0, 1


def quantile(df1, df2, alpha):
    """The upper critical value: through the smaller tail of the mirrored distribution."""
    y = betaincinv(df2 / 2, df1 / 2, alpha)
    return df2 * (1 - y) / (df1 * y)


def upper_tail(f, df1, df2, delta):
    terms = np.arange(max(0, math.floor(delta / 2 - 40 * math.sqrt(delta / 2) - 40)),
                      math.ceil(delta / 2 + 40 * math.sqrt(delta / 2) + 41))
    y = df2 / (df1 * f + df2)
    return float(np.sum(poisson.pmf(terms, delta / 2) * betainc(df2 / 2, df1 / 2 + terms, y)))


def f_power(df1, df2, delta, alpha):
    return upper_tail(quantile(df1, df2, alpha), df1, df2, delta)


def check(df1, df2, delta, alpha, value):
    mp.mp.dps = 30
    a, b, p = mp.mpf(df1) / 2, mp.mpf(df2) / 2, mp.mpf(repr(alpha))
    # Searched in log y, where the incomplete beta function is smooth.
    s = mp.findroot(lambda s: mp.log(mp.betainc(b, a, 0, mp.exp(s), regularized=True)) - mp.log(p),
                    mp.log(betaincinv(df2 / 2, df1 / 2, alpha)))
    half = mp.mpf(delta) / 2
    top = int(half + 40 * mp.sqrt(half) + 41)
    truth = sum(mp.exp(-half) * half**j / mp.factorial(j)
                * mp.betainc(b, a + j, 0, mp.exp(s), regularized=True) for j in range(top))
    if abs(truth - value) > 1e-11:
        sys.exit(f"df {df1} {df2}, delta {delta}, alpha {alpha}: {value}, truth {truth}")


def contrast_power(groups, n, es, ss, alpha):
    return f_power(1, (n - 1) * groups, es * es * n / ss, alpha)


def one_way_power(groups, n, rmsse, model, alpha):
    df1, df2 = groups - 1, (n - 1) * groups
    if model == FIXED:
        return f_power(df1, df2, rmsse * rmsse * n * df1, alpha)
    return upper_tail(quantile(df1, df2, alpha) / (n * rmsse * rmsse + 1), df1, df2, 0.0)


def two_way_design(rows, columns, n, rmsse, effect):
    df1, cells = ((rows - 1, columns), (columns - 1, rows), ((rows - 1) * (columns - 1), 1))[effect]
    return df1, (n - 1) * rows * columns, df1 * cells * n * rmsse * rmsse


def two_way_power(rows, columns, n, rmsse, effect, alpha):
    return f_power(*two_way_design(rows, columns, n, rmsse, effect), alpha)


# Family, its power at n, and the designs without n: (first count, second count, effect, ss, kind),
# where kind is the model of AV1 and the effect of AV2.
FAMILIES = {
    "PC": (lambda d, n, alpha: contrast_power(d[0], n, d[2], d[3], alpha),
           [(groups, 0, es, ss, 0)
            for groups, es, ss in ((2, 0.5, 2.0), (3, 0.25, 6.0), (3, -1.0, 6.0), (4, 1.25, 1.0),
                                   (5, -0.75, 1.25), (10, 0.375, 0.625), (200, 2.0, 40.0))]),
    "AV1": (lambda d, n, alpha: one_way_power(d[0], n, d[2], d[4], alpha),
            [(groups, 0, rmsse, 0.0, model)
             for groups, rmsse in ((2, 0.5), (3, 0.25), (4, 1.25), (6, 0.375), (20, 0.125),
                                   (100, 0.75))
             for model in (FIXED, RANDOM)]),
    "AV2": (lambda d, n, alpha: two_way_power(d[0], d[1], n, d[2], d[4], alpha),
            [(rows, columns, rmsse, 0.0, effect)
             for rows, columns, rmsse in ((2, 2, 0.5), (3, 3, 0.25), (2, 3, 1.25), (5, 2, 0.375),
                                          (10, 12, 0.125))
             for effect in (0, 1, 2)]),
}


def least_size(power_at, goal):
    """The least n >= 2 with power above the goal; power rises with n. None above 150000."""
    low, high = 1, 2
    while power_at(high) <= goal:
        low, high = high, high * 2
        if high > 150000:
            return None
    while high - low > 1:
        middle = (low + high) // 2
        low, high = (low, middle) if power_at(middle) > goal else (middle, high)
    return high


def row(family, design, *rest):
    return ",".join([family, *(repr(x) for x in design), *(repr(x) for x in rest)])


def write(path, header, rows):
    path.write_text("# Made by generate_anova.py; do not edit.\n" + header + "\n"
                    + "\n".join(rows) + "\n")


def powers():
    for family, (power, designs) in FAMILIES.items():
        for design, n, alpha in itertools.product(designs, (2, 3, 5, 24, 151, 2000), ALPHAS):
            yield row(family, design, n, alpha, power(design, n, alpha))


def sizes():
    for family, (power, designs) in FAMILIES.items():
        for design, alpha, goal in itertools.product(designs, ALPHAS, GOALS):
            size = least_size(lambda n: power(design, n, alpha), goal)
            if size is not None:
                yield row(family, design, alpha, goal, size, power(design, size, alpha))


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    for df1, df2, delta, alpha in ((1, 8, 1.5, 0.05), (2, 27, 6.25, 0.0001), (5, 900, 12.0, 0.25),
                                   (99, 2300, 40.0, 0.01), (1, 2, 0.5, 0.0001)):
        check(df1, df2, delta, alpha, f_power(df1, df2, delta, alpha))
    folder = pathlib.Path(sys.argv[1])
    design = "family,count1,count2,effect,ss,kind"
    write(folder / "anova_power.csv", design + ",n,alpha,power", powers())
    write(folder / "anova_size.csv", design + ",alpha,goal,size,power", sizes())


if __name__ == "__main__":
    main()
