#!/usr/bin/python3
"""Writes variance_power.csv and variance_df.csv: power of the tests of one and of two variances, and
the least degrees of freedom whose power exceeds a goal, computed apart from the program.

Distribution functions and quantiles are SciPy's incomplete gamma and beta functions and their
inverses, each taken in its smaller tail. The script compares a sample of its values with mpmath at 30
digits and stops when one is off by more than 1e-11. Variances are exact in binary; every number is
written with all digits of its double.

One variance begins at 4 degrees of freedom: below that the program finds the lower quantile as 0.

Needs scipy and mpmath (Debian: python3-scipy, python3-mpmath); takes some seconds:

    /usr/bin/python3 tests/procedures/data/generate_variances.py tests/procedures/data
"""

import itertools
import pathlib
import sys

import mpmath as mp
from scipy.special import betainc, betaincinv, gammainc, gammaincc, gammainccinv, gammaincinv

ALPHAS = (0.0001, 0.01, 0.05, 0.25)
GOALS = (0.65, 0.8, 0.9, 0.999)
FORMS = (0, 1, 2)
ONE = ((2.0, 1.0), (1.0, 2.0), (1.25, 1.0), (0.75, 1.0), (40.0, 5.0), (3.0, 2.875))
RATIOS = (2.0, 0.5, 1.25, 0.75, 8.0, 1.0625)


def one_variance(df, var, var0, alpha, form):
    r, a = var0 / var, df / 2
    tail = alpha / 2 if form == 0 else alpha
    upper = gammaincc(a, gammainccinv(a, tail) * r)
    lower = gammainc(a, gammaincinv(a, tail) * r)
    return float({0: upper + lower, 1: upper, 2: lower}[form])


def two_variances(df1, df2, ratio, alpha, form):
    """x = df1 f / (df1 f + df2); a statistic divided by the ratio, seen from either end of it."""
    a, b = df1 / 2, df2 / 2
    tail = alpha / 2 if form == 0 else alpha
    y = betaincinv(b, a, tail)  # 1 - x of the upper quantile
    x = betaincinv(a, b, tail)
    upper = betainc(b, a, y * ratio / (y * ratio + 1 - y))
    lower = betainc(a, b, x / (x + (1 - x) * ratio))
    return float({0: upper + lower, 1: upper}[form])


def check():
    mp.mp.dps = 30
    for df, var, var0, alpha in ((4, 2.0, 1.0, 0.0001), (37, 0.75, 1.0, 0.05), (900, 1.0, 1.25, 0.25)):
        a, p = mp.mpf(df) / 2, mp.mpf(repr(alpha)) / 2
        low = lambda x: mp.gammainc(a, 0, x, regularized=True)
        high = lambda x: mp.gammainc(a, x, regularized=True)
        q_low = mp.findroot(lambda x: mp.log(low(x) / p), gammaincinv(df / 2, alpha / 2))
        q_high = mp.findroot(lambda x: mp.log(high(x) / p), gammainccinv(df / 2, alpha / 2))
        r = mp.mpf(var0) / var
        hold(high(q_high * r) + low(q_low * r), one_variance(df, var, var0, alpha, 0))
    for df1, df2, ratio, alpha in ((1, 7, 2.0, 0.0001), (20, 20, 0.5, 0.05), (300, 900, 1.25, 0.25)):
        a, b, p = mp.mpf(df1) / 2, mp.mpf(df2) / 2, mp.mpf(repr(alpha)) / 2
        below = lambda s, u, v: mp.betainc(u, v, 0, mp.exp(s), regularized=True)
        solve = lambda u, v: mp.exp(mp.findroot(lambda s: mp.log(below(s, u, v) / p),
                                                mp.log(betaincinv(float(u), float(v), alpha / 2))))
        y, x, r = solve(b, a), solve(a, b), mp.mpf(ratio)
        hold(below(mp.log(y * r / (y * r + 1 - y)), b, a) + below(mp.log(x / (x + (1 - x) * r)), a, b),
             two_variances(df1, df2, ratio, alpha, 0))


def hold(truth, value):
    if abs(truth - value) > 1e-11:
        sys.exit(f"{value}, truth {truth}")


def least_df(power_at, goal, smallest):
    """The least df with power above the goal, None above 150000 or at `smallest` or below."""
    low, high = smallest, 2 * smallest
    if power_at(low) > goal:
        return None
    while power_at(high) <= goal:
        low, high = high, high * 2
        if high > 150000:
            return None
    while high - low > 1:
        middle = (low + high) // 2
        low, high = (low, middle) if power_at(middle) > goal else (middle, high)
    return high


def against_null(effect, form):
    """Is the null hypothesis of the form false for the effect?"""
    return effect != 0 if form == 0 else effect > 0 if form == 1 else effect < 0


def line(*cells):
    return ",".join(x if isinstance(x, str) else repr(x) for x in cells)


def powers():
    for (var, var0), df, alpha, form in itertools.product(ONE, (4, 5, 10, 37, 500, 9999), ALPHAS, FORMS):
        if against_null(var - var0, form):
            yield line("V1", df, 0, var, var0, form, alpha, one_variance(df, var, var0, alpha, form))
    dfs = ((1, 1), (1, 7), (6, 2), (20, 20), (49, 12), (300, 900), (9999, 5000))
    for ratio, (df1, df2), alpha, form in itertools.product(RATIOS, dfs, ALPHAS, (0, 1)):
        yield line("V2", df1, df2, ratio, 1.0, form, alpha,
                   two_variances(df1, df2, ratio, alpha, form))


def sizes():
    for (var, var0), alpha, goal, form in itertools.product(ONE, ALPHAS, GOALS, FORMS):
        if not against_null(var - var0, form):
            continue
        size = least_df(lambda df: one_variance(df, var, var0, alpha, form), goal, 4)
        if size is not None:
            yield line("V1", 0, var, var0, form, alpha, goal, size,
                       one_variance(size, var, var0, alpha, form))
    # A fixed df2 of 0: equal degrees of freedom.
    for ratio, fixed, alpha, goal, form in itertools.product(RATIOS, (0, 400), ALPHAS, GOALS, (0, 1)):
        power_at = lambda df: two_variances(df, fixed or df, ratio, alpha, form)
        size = least_df(power_at, goal, 1) if against_null(ratio - 1, form) else None
        if size is not None:
            yield line("V2", fixed, ratio, 1.0, form, alpha, goal, size, power_at(size))


def write(path, header, rows):
    path.write_text("# Made by generate_variances.py; do not edit.\n" + header + "\n"
                    + "\n".join(rows) + "\n")


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    check()
    folder = pathlib.Path(sys.argv[1])
    write(folder / "variance_power.csv", "family,df1,df2,var1,var2,form,alpha,power", powers())
    write(folder / "variance_df.csv", "family,df2,var1,var2,form,alpha,goal,df,power", sizes())


if __name__ == "__main__":
    main()
