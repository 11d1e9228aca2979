#!/usr/bin/python3
"""Simulates the tests of all families on random data and compares rejection rates with the power that
the program gives.

Each design is asked of the command line program; the data are drawn, the test statistic computed and
compared with critical values from SciPy, apart from the program. Power that follows from the
distribution of the statistic is to agree within 4 standard errors of the simulated rate; power by an
approximation within the bound of that approximation and 4 standard errors. The bounds are formulas
(functions named ..._error), written before any run and not fitted to its results.

Needs numpy and scipy (Debian: python3-numpy, python3-scipy); takes some minutes of one core:

    /usr/bin/python3 tests/validation/simulate.py build/release/bin/poweranalysis

prints the report in Markdown and ends with 1 when a power deviates further than that. --update
docs/validation.md puts it into the page; --only T2 simulates one family.
"""

import argparse
import datetime
import functools
import json
import math
import pathlib
import platform
import subprocess
import sys
import tempfile
import time
from dataclasses import dataclass
from typing import Callable

import numpy as np
import scipy
from scipy.integrate import quad
from scipy.optimize import brentq
from scipy.special import betainc, gammaln, hyp2f1
from scipy.stats import beta, chi2, f as fisher_f, nbinom, ncx2, norm, t as student

SEED = 20261121
REPLICATIONS = 100000
NUMBERS_AT_ONCE = 4000000
LIMIT = 4  # standard errors
TWO_SIDED, UPPER, LOWER = 0, 1, 2
NEVER = math.inf
PHI0 = 1 / math.sqrt(2 * math.pi)  # the largest slope of the normal distribution function
BEGIN, END = "<!-- begin of the report of simulate.py -->", "<!-- end of the report -->"


@dataclass
class Test:
    """One power of a design: reject where `statistic` is <= low or >= high."""
    name: str
    low: float
    high: float
    statistic: int = 0  # which of the arrays that the family draws
    power: tuple = ("Power", 0)  # title of the row of the summary table, and which one of that title
    bound: float = 0.0  # of the approximation; 0 for power from the distribution of the statistic
    options: tuple = ()  # beside those of the design
    lower_sign: int = 1  # -1 where power counts the lower tail off
    kept: str = ""  # why the power is known and meant not to be the rejection rate


@dataclass
class Family:
    code: str
    title: str
    what: str
    designs: list
    tests: Callable  # design -> list of Test
    draw: Callable  # design, generator, count -> one array of statistics for each number of Test
    numbers: Callable  # design -> random numbers of one replication


def table(names, *rows):
    return [dict(zip(names.split(), row)) for row in rows]


def critical(distribution, alpha, form):
    """Low and high critical value of a statistic with this distribution under the null hypothesis."""
    tail = alpha / 2 if form == TWO_SIDED else alpha
    return (-NEVER if form == UPPER else float(distribution.ppf(tail)),
            NEVER if form == LOWER else float(distribution.isf(tail)))


def one_test(null, form=TWO_SIDED, bound=lambda d: 0.0):
    """The tests of a family with one statistic and one power; `form` where the design has none."""
    return lambda d: [Test("", *critical(null(d), d["Alpha"], d.get("H0Type", form)), bound=bound(d))]


def standard_normal(design):
    return norm


def spread(k):
    """k values of mean 0 and sum of squares 1, in even steps."""
    x = np.arange(k) - (k - 1) / 2
    return x / math.sqrt(np.sum(x * x))


# --- Means.


def t_of_mean(x, mu):
    return (x.mean(1) - mu) / (x.std(1, ddof=1) / math.sqrt(x.shape[1]))


def draw_one_mean(d, rng, count):
    return [t_of_mean(rng.normal(d["Mu"], d["Sigma"], (count, d["SampleSize"])), d["Mu0"])]


def draw_two_means(d, rng, count):
    n1, n2 = d["SampleSizeN1"], d["SampleSizeN2"]
    x, y = rng.normal(d["Mu1"], d["Sigma"], (count, n1)), rng.normal(d["Mu2"], d["Sigma"], (count, n2))
    pooled = ((n1 - 1) * x.var(1, ddof=1) + (n2 - 1) * y.var(1, ddof=1)) / (n1 + n2 - 2)
    return [(x.mean(1) - y.mean(1)) / np.sqrt(pooled * (1 / n1 + 1 / n2))]


def draw_paired_means(d, rng, count):
    r, u, v = d["BetweenGroupR"], *rng.standard_normal((2, count, d["SampleSize"]))
    x = d["Mu1"] + d["Sigma1"] * u
    y = d["Mu2"] + d["Sigma2"] * (r * u + math.sqrt(1 - r * r) * v)
    return [t_of_mean(x - y, 0)]


def draw_contrast(d, rng, count):
    """Means along the weights, whose contrast is the standardized effect; sigma is 1."""
    w, n = np.array(d["weights"]), d["SampleSize"]
    means = 3 + d["StandardizedEffect"] * w / np.sum(w * w)
    x = means[:, None] + rng.standard_normal((count, len(w), n))
    return [x.mean(2) @ w / np.sqrt(x.var(2, ddof=1).mean(1) * np.sum(w * w) / n)]


def contrast(weights, n, effect, alpha):
    return {"weights": weights, "NumberOfGroups": len(weights), "SampleSize": n,
            "StandardizedEffect": effect, "SumOfSquaredWeights": float(np.sum(np.square(weights))),
            "Alpha": alpha}


def draw_one_way(d, rng, count):
    k, n = d["NumberOfGroups"], d["N"]
    effects = (rng.normal(0, d["RMSSE"], (count, k)) if d["ModelType"]
               else d["RMSSE"] * math.sqrt(k - 1) * spread(k)[None, :])
    x = effects[:, :, None] + rng.standard_normal((count, k, n))
    return [n * x.mean(2).var(1, ddof=1) / x.var(2, ddof=1).mean(1)]


def one_way_null(d):
    return fisher_f(d["NumberOfGroups"] - 1, (d["N"] - 1) * d["NumberOfGroups"])


def two_way_dfs(d):
    r, c = d["Rows"], d["Columns"]
    return (r - 1, c - 1, (r - 1) * (c - 1)), (d["N"] - 1) * r * c


def draw_two_way(d, rng, count):
    r, c, n = d["Rows"], d["Columns"], d["N"]
    (df_rows, df_columns, df_both), _ = two_way_dfs(d)
    means = (d["RMSSE_Row"] * math.sqrt(df_rows) * spread(r)[:, None]
             + d["RMSSE_Col"] * math.sqrt(df_columns) * spread(c)[None, :]
             + d["RMSSE_Int"] * math.sqrt(df_both) * np.outer(spread(r), spread(c)))
    x = means[:, :, None] + rng.standard_normal((count, r, c, n))
    error = x.var(3, ddof=1).mean((1, 2))
    cells = x.mean(3)
    rows, columns = cells.mean(2), cells.mean(1)
    both = (cells - rows[:, :, None] - columns[:, None, :] + cells.mean((1, 2))[:, None, None])
    return [n * c * rows.var(1, ddof=1) / error, n * r * columns.var(1, ddof=1) / error,
            n * np.sum(both * both, (1, 2)) / df_both / error]


def tests_two_way(d):
    dfs, error_df = two_way_dfs(d)
    return [Test(name, *critical(fisher_f(df, error_df), d["Alpha"], UPPER), statistic=i,
                 power=("Power", i)) for i, (name, df) in enumerate(zip(("row", "column", "interaction"), dfs))]


# --- Variances.


def draw_one_variance(d, rng, count):
    df = d["DegreesOfFreedom"]
    x = rng.normal(4, math.sqrt(d["PopulationVariance"]), (count, df + 1))
    return [df * x.var(1, ddof=1) / d["NullHypothesizedVariance"]]


def tests_one_variance(d):
    df, form = d["DegreesOfFreedom"], d["H0Type"]
    kept = ("the program's lower quantile of a few degrees of freedom is 0"
            if df == 1 and form != UPPER else "")
    return [Test("", *critical(chi2(df), d["Alpha"], form), kept=kept)]


def draw_two_variances(d, rng, count):
    x = rng.normal(1, math.sqrt(d["Var1"]), (count, d["Df1"] + 1))
    y = rng.normal(2, math.sqrt(d["Var2"]), (count, d["Df2"] + 1))
    return [x.var(1, ddof=1) / y.var(1, ddof=1)]


# --- Correlations.


def sample_correlation(rng, count, n, rho):
    u, v = rng.standard_normal((2, count, n))
    v = rho * u + math.sqrt(1 - rho * rho) * v
    u -= u.mean(1)[:, None]
    v -= v.mean(1)[:, None]
    return np.sum(u * v, 1) / np.sqrt(np.sum(u * u, 1) * np.sum(v * v, 1))


def z_density(z, rho, n):
    """Density of z = atanh(r): Hotelling, H. (1953), Journal of the Royal Statistical Society B 15."""
    r = math.tanh(z)
    logs = (math.log(n - 2) + gammaln(n - 1) - gammaln(n - .5) - .5 * math.log(2 * math.pi)
            + (n - 1) / 2 * math.log1p(-rho * rho) - (n - 2) * math.log(math.cosh(z))
            + (1.5 - n) * math.log1p(-rho * r))
    return math.exp(logs) * hyp2f1(.5, .5, n - .5, (1 + rho * r) / 2)


@functools.lru_cache(maxsize=None)
def z_integral(rho, n, power, center=0.0, up_to=None):
    middle, width = math.atanh(rho), 12 / math.sqrt(n - 2)
    top = middle + width if up_to is None else up_to
    integrand = lambda z: (z - center) ** power * z_density(z, rho, n)
    return sum(quad(integrand, a, b, epsabs=1e-12, limit=200)[0]
               for a, b in zip(np.linspace(middle - width, top, 7), np.linspace(middle - width, top, 7)[1:]))


class ExactZ:
    """The distribution of atanh(r); its quantiles from the density, for rho = 0 from t."""

    def __init__(self, rho, n):
        self.rho, self.n = rho, n

    def ppf(self, p):
        if self.rho == 0:
            t = student(self.n - 2).ppf(p)
            return math.atanh(t / math.sqrt(self.n - 2 + t * t))
        middle, width = math.atanh(self.rho), 8 / math.sqrt(self.n - 2)
        return brentq(lambda z: z_integral(self.rho, self.n, 0, 0.0, z) - p, middle - width,
                      middle + width, xtol=1e-9)

    def isf(self, p):
        return self.ppf(1 - p)


def refined_z(rho, n):
    """Normal with the first two moments of atanh(r)."""
    mean = z_integral(rho, n, 1)
    return norm(mean, math.sqrt(z_integral(rho, n, 2, mean)))


def crude_z(rho, n):
    return norm(math.atanh(rho), 1 / math.sqrt(n - 3))


def refined_error(n):
    """The form of r leaves terms of 1 / n; tests of the distribution hold them to this."""
    return .1 / n


def crude_error(rho, n):
    """The mean of z is off by rho / (2 (n - 1)), in standard errors of 1 / sqrt(n - 3)."""
    return PHI0 * abs(rho) / (2 * (n - 1)) * math.sqrt(n - 3) + .6 / n


def tests_one_correlation(d):
    rho, rho0, n, alpha, form = (d[key] for key in ("Rho", "Rho0", "SampleSize", "Alpha", "H0Type"))
    kinds = (("exact", "Exact", ExactZ, 0.0), ("refined", "Refined Fisher Z", refined_z, refined_error(n)),
             ("crude", "Crude Fisher Z", crude_z, max(crude_error(rho, n), crude_error(rho0, n))))
    return [Test(name, *critical(null(rho0, n), alpha, form), power=(f"Power ({title})", 0), bound=bound,
                 options=(("Algorithm", i),)) for i, (name, title, null, bound) in enumerate(kinds)]


def draw_one_correlation(d, rng, count):
    return [np.arctanh(sample_correlation(rng, count, d["SampleSize"], d["Rho"]))]


def tests_two_correlations(d):
    low_high = critical(norm, d["Alpha"], d["H0Type"])
    groups = ((d["Rho1"], d["SampleSizeN1"]), (d["Rho2"], d["SampleSizeN2"]))
    bounds = refined_error(min(n for _, n in groups)), sum(crude_error(rho, n) for rho, n in groups)
    return [Test(name, *low_high, power=(f"Power ({name.capitalize()} Fisher Z)", 0), bound=bound,
                 options=(("Algorithm", i),))
            for i, (name, bound) in enumerate(zip(("refined", "crude"), bounds), 1)]


def draw_two_correlations(d, rng, count):
    n1, n2 = d["SampleSizeN1"], d["SampleSizeN2"]
    z1 = np.arctanh(sample_correlation(rng, count, n1, d["Rho1"]))
    z2 = np.arctanh(sample_correlation(rng, count, n2, d["Rho2"]))
    return [(z1 - z2) / math.sqrt(1 / (n1 - 3) + 1 / (n2 - 3))]


class SquaredR:
    """The distribution of R2: beta with a negative binomial number of degrees of freedom added."""

    def __init__(self, rho2, n, k):
        self.a, self.c = (k - 1) / 2, (n - k) / 2
        mixing = nbinom((n - 1) / 2, 1 - rho2) if rho2 else None
        self.j = np.arange(int(mixing.isf(1e-14)) + 2) if rho2 else np.zeros(1)
        self.weights = mixing.pmf(self.j) if rho2 else np.ones(1)

    def ppf(self, p):
        cdf = lambda x: np.sum(self.weights * betainc(self.a + self.j, self.c, x))
        return brentq(lambda x: cdf(x) - p, 0, 1, xtol=1e-13)

    def isf(self, p):
        return self.ppf(1 - p)


LEE_ERROR = .005  # of the speed algorithm, held by a test against the accuracy algorithm


def tests_squared_correlation(d):
    n, k, c2 = d["SampleSize"], d["TotalNumberOfVars"], d["R2Null"]
    form = UPPER if c2 == 0 and d["H0Type"] != LOWER else d["H0Type"]
    low_high = critical(beta((k - 1) / 2, (n - k) / 2) if c2 == 0 else SquaredR(c2, n, k), d["Alpha"], form)
    return [Test("accuracy", *low_high, power=("Power (Accuracy Algorithm)", 0), options=(("Algorithm", 1),)),
            Test("speed", *low_high, power=("Power (Speed Algorithm)", 0), bound=LEE_ERROR,
                 options=(("Algorithm", 0),))]


def draw_squared_correlation(d, rng, count):
    """The regression of one variable on the others, all random; k counts the criterion."""
    n, p, rho2 = d["SampleSize"], d["TotalNumberOfVars"] - 1, d["PopulationR2"]
    x = rng.standard_normal((count, n, p))
    y = math.sqrt(rho2 / p) * x.sum(2) + math.sqrt(1 - rho2) * rng.standard_normal((count, n))
    x -= x.mean(1)[:, None, :]
    y -= y.mean(1)[:, None]
    xy = np.einsum("rni,rn->ri", x, y)
    slopes = np.linalg.solve(x.transpose(0, 2, 1) @ x, xy[:, :, None])[:, :, 0]
    return [np.sum(slopes * xy, 1) / np.sum(y * y, 1)]


# --- Proportions.


def normal_count_error(steps, sd, skewness):
    """A count of standard deviation sd taken as normal: the bound of the region falls within `steps`
    of where the normal distribution is cut, and the first term of Edgeworth's series for skewness, at
    most phi(0) skewness / 6; the terms behind them are of 1 / sd^2."""
    return PHI0 * (steps / sd + abs(skewness) / 6) + .2 / (sd * sd)


def draw_one_proportion(d, rng, count):
    n, pi0 = d["SampleSize"], d["Pi0"]
    z_of = lambda pi: (rng.binomial(n, pi, count) - n * pi0) / math.sqrt(n * pi0 * (1 - pi0))
    return [z_of(d["Pi"]), z_of(pi0)]


def tests_one_proportion(d):
    low_high = critical(norm, d["Alpha"], d["H0Type"])
    pi, sd = d["Pi"], math.sqrt(d["SampleSize"] * d["Pi"] * (1 - d["Pi"]))
    return [Test("exact", *low_high, power=("Power (Exact)", 0)),
            Test("actual alpha", *low_high, statistic=1, power=("Actual Alpha (Exact)", 0)),
            Test("normal", *low_high, power=("Power (Normal Approximation)", 0),
                 bound=normal_count_error(.5, sd, (1 - 2 * pi) / sd))]


def draw_two_proportions(d, rng, count):
    """The z statistic with the pooled standard error, without and with the correction."""
    n1, n2 = d["SampleSizeN1"], d["SampleSizeN2"]
    x, y = rng.binomial(n1, d["Pi1"], count), rng.binomial(n2, d["Pi2"], count)
    difference, pooled = x / n1 - y / n2, (x + y) / (n1 + n2)
    error = np.sqrt(pooled * (1 - pooled) * (1 / n1 + 1 / n2))
    error[error == 0] = NEVER
    corrected = np.sign(difference) * np.maximum(np.abs(difference) - .5 * (1 / n1 + 1 / n2), 0)
    return [difference / error, corrected / error]


def two_proportions_error(d):
    """Of two groups of one size the counts differ in steps of one, half of it to either side; the
    standard error of the test moves with the counts, which weighs like a skewness of 1 / sd."""
    n1, n2 = d["SampleSizeN1"], d["SampleSizeN2"]
    variances = [n * p * (1 - p) for n, p in ((n1, d["Pi1"]), (n2, d["Pi2"]))]
    sd = math.sqrt(variances[0] / n1 ** 2 + variances[1] / n2 ** 2) / (.5 * (1 / n1 + 1 / n2))
    return normal_count_error(.5, sd, 1 / math.sqrt(min(variances))) + .1 / math.sqrt(min(variances))


def tests_two_proportions(d):
    low_high = critical(norm, d["Alpha"], d["H0Type"])
    return [Test(name, *low_high, statistic=i, power=(f"Power ({title})", 0),
                 bound=two_proportions_error(d), options=(("Continuity", i),))
            for i, (name, title) in enumerate((("uncorrected", "Uncorrected"),
                                               ("corrected", "Continuity Corr.")))]


def draw_mcnemar(d, rng, count):
    """The z statistic of the two kinds of discordant pairs."""
    discordant = rng.binomial(d["SampleSize"], d["Eta"], count)
    first = rng.binomial(discordant, (d["Eta"] + d["Delta"]) / (2 * d["Eta"]))
    return [(2 * first - discordant) / np.sqrt(np.maximum(discordant, 1))]


def mcnemar_error(d):
    """For a given number of discordant pairs their difference moves in steps of two, for all numbers in
    steps of one; the variable number weighs like a skewness of 1 / sd."""
    sd = math.sqrt(d["SampleSize"] * (d["Eta"] - d["Delta"] ** 2))
    return normal_count_error(.5, sd, 1 / sd) + .1 / sd


# --- Survival.


def draw_log_rank(d, rng, count):
    """Exponential times of both groups, all followed to time 1, where the survival rates hold. The
    statistic is positive where group 2 survives longer."""
    n = d["SampleSize"]
    times = rng.standard_exponential((count, 2 * n))
    times[:, :n] /= -math.log(d["Pi1"])
    times[:, n:] /= -math.log(d["Pi2"])
    order = np.argsort(times, 1)
    first = order < n
    died = np.take_along_axis(times, order, 1) <= 1
    at_risk = 2 * n - np.arange(2 * n)
    share = (n - np.cumsum(first, 1) + first) / at_risk
    return [np.sum(died * (first - share), 1) / np.sqrt(np.sum(died * share * (1 - share), 1))]


def log_rank_error(d):
    """Freedman's mean of the statistic, sqrt(events) (h - 1) / (h + 1), stands for an expectation that
    Schoenfeld gives as sqrt(events) ln(h) / 2; its variance of 1 is 4 h / (h + 1)^2 where the groups at
    risk are equal; and they are equal at the start alone. Each by what it moves the power at most."""
    h = math.log(d["Pi1"]) / math.log(d["Pi2"])
    events = d["SampleSize"] * (2 - d["Pi1"] - d["Pi2"])
    schoenfeld = math.sqrt(events) * abs(math.log(h)) / 2
    freedman = math.sqrt(events) * abs(h - 1) / (h + 1)
    sd, share = 2 * math.sqrt(h) / (h + 1), d["Pi1"] / (d["Pi1"] + d["Pi2"])
    return (PHI0 * (schoenfeld - freedman) + .242 * (1 / sd - 1)
            + PHI0 * schoenfeld * (1 - 2 * math.sqrt(share * (1 - share))) + .1 / math.sqrt(events))


def draw_exponential(d, rng, count):
    """Entry is uniform over the accrual; a subject ends with its event, as a dropout or at the end of
    the study. The statistic is the logarithm of the ratio of the estimated rates, events / exposure,
    over its standard error from the events."""
    groups = []
    for rate in (d["Lambda1"], d["Lambda2"]):
        shape = (count, d["SampleSize"])
        end = d["T"] - rng.uniform(0, d["T0"], shape)
        if d.get("D"):
            end = np.minimum(end, rng.exponential(1 / d["D"], shape))
        event = rng.exponential(1 / rate, shape)
        groups.append((np.maximum(np.sum(event <= end, 1), .5), np.sum(np.minimum(event, end), 1)))
    (events1, exposure1), (events2, exposure2) = groups
    return [np.log(events2 / exposure2 * exposure1 / events1) / np.sqrt(1 / events1 + 1 / events2)]


def expected_events(rate, d):
    s = rate + d.get("D", 0)
    seen, _ = quad(lambda u: rate / s * -math.expm1(-s * (d["T"] - u)), 0, d["T0"])
    return d["SampleSize"] * seen / d["T0"]


def exponential_error(d):
    """A studentized logarithm of a rate is normal up to terms of 1 / sqrt(events)."""
    return .2 / math.sqrt(min(expected_events(d[key], d) for key in ("Lambda1", "Lambda2")))


# --- Model fit.


def draw_model_fit(d, rng, count):
    df, delta = d["DegreesOfFreedom"], d["R"] ** 2 * (d["SampleSize"] - 1) * d["DegreesOfFreedom"]
    return [(rng.standard_normal(count) + math.sqrt(delta)) ** 2
            + (rng.chisquare(df - 1, count) if df > 1 else 0)]


def tests_model_fit(d):
    df, form = d["DegreesOfFreedom"], d["H0Type"]
    delta0 = d["R0"] ** 2 * (d["SampleSize"] - 1) * df
    if d["R0"] == 0 and form != LOWER:
        form = UPPER
    low, high = critical(ncx2(df, delta0) if delta0 else chi2(df), d["Alpha"], form)
    if form != TWO_SIDED:
        return [Test("", low, high)]
    kept = "the two-tailed power takes the lower tail off and does not add it"
    return [Test("upper less lower", low, high, lower_sign=-1), Test("rejections", low, high, kept=kept)]


# --- The designs.

FAMILIES = [
    Family("T1", "One mean, t-test", "Normal samples.",
           table("Mu0 Mu Sigma SampleSize Alpha H0Type",
                 (0, 2, 10, 25, .05, 0), (5, 9, 8, 40, .01, 0), (100, 108, 15, 12, .05, 1),
                 (0, -3, 4, 5, .1, 2), (-1, .5, 2, 2, .25, 0), (10, 9, 5, 150, .05, 2)),
           one_test(lambda d: student(d["SampleSize"] - 1)), draw_one_mean, lambda d: d["SampleSize"]),
    Family("T2", "Two independent means, t-test", "Two normal samples, pooled variance.",
           table("Mu1 Mu2 Sigma SampleSizeN1 SampleSizeN2 Alpha H0Type",
                 (2, 0, 10, 25, 25, .05, 0), (12, 7, 8, 30, 60, .01, 0), (5, 3, 4, 40, 15, .05, 1),
                 (0, 6, 5, 4, 7, .05, 2), (1, 0, 1, 2, 2, .2, 1), (100, 103, 15, 200, 250, .05, 0)),
           one_test(lambda d: student(d["SampleSizeN1"] + d["SampleSizeN2"] - 2)), draw_two_means,
           lambda d: d["SampleSizeN1"] + d["SampleSizeN2"]),
    Family("T3", "Two dependent means, t-test", "Bivariate normal samples.",
           table("Mu1 Mu2 Sigma1 Sigma2 BetweenGroupR SampleSize Alpha H0Type",
                 (8, 0, 10, 10, .1, 25, .05, 0), (3, 0, 6, 9, .6, 50, .05, 0),
                 (1, 0, 3, 3, -.5, 80, .05, 1), (0, 4, 5, 8, .8, 8, .01, 2),
                 (20, 18, 10, 4, .3, 100, .1, 0), (2, 0, 1, 3, .9, 3, .05, 1)),
           one_test(lambda d: student(d["SampleSize"] - 1)), draw_paired_means,
           lambda d: 2 * d["SampleSize"]),
    Family("PC", "Planned contrast", "Normal groups of one size, their means along the weights.",
           [contrast((1, 1, -2), 10, .25, .05), contrast((1, 1, -2), 20, 1.5, .05),
            contrast((1, -1), 30, .75, .01), contrast((-3, -1, 1, 3), 8, -3.5, .05),
            contrast((1, -.25, -.25, -.25, -.25), 15, -.9, .1), contrast((.5, .5, -.5, -.5), 2, 1.5, .25)],
           one_test(lambda d: student((d["SampleSize"] - 1) * d["NumberOfGroups"])),
           draw_contrast, lambda d: d["SampleSize"] * d["NumberOfGroups"]),
    Family("AV1", "One-way analysis of variance, fixed effects",
           "Normal groups of one size, their means in even steps.",
           table("NumberOfGroups N RMSSE Alpha ModelType",
                 (3, 10, .25, .05, 0), (4, 15, .5, .05, 0), (2, 20, .8, .01, 0), (6, 5, .6, .1, 0),
                 (10, 30, .2, .05, 0), (3, 2, 1.5, .25, 0)),
           one_test(one_way_null, UPPER), draw_one_way, lambda d: d["NumberOfGroups"] * d["N"]),
    Family("AV1", "One-way analysis of variance, random effects",
           "The same with normal group effects of standard deviation RMSSE, drawn anew each time.",
           table("NumberOfGroups N RMSSE Alpha ModelType",
                 (3, 10, .25, .05, 1), (5, 12, .6, .05, 1), (8, 20, .4, .01, 1), (2, 6, 1.5, .1, 1),
                 (20, 4, .7, .05, 1), (4, 2, 2, .25, 1)),
           one_test(one_way_null, UPPER), draw_one_way, lambda d: d["NumberOfGroups"] * d["N"]),
    Family("AV2", "Two-way analysis of variance",
           "Normal cells of one size with all three effects at once; three tests of the same data.",
           table("Rows Columns N RMSSE_Row RMSSE_Col RMSSE_Int Alpha",
                 (3, 3, 10, .25, .25, .25, .05), (2, 2, 20, .3, .15, .6, .05),
                 (2, 3, 8, .4, .3, .7, .01), (4, 2, 6, .2, .5, .4, .1),
                 (5, 4, 3, .35, .25, .5, .05), (2, 5, 2, .5, .6, .8, .25)),
           tests_two_way, draw_two_way, lambda d: d["Rows"] * d["Columns"] * d["N"]),
    Family("V1", "One variance, chi-square test", "Normal samples.",
           table("DegreesOfFreedom PopulationVariance NullHypothesizedVariance Alpha H0Type",
                 (10, 2, 1, .05, 0), (24, 3, 2, .05, 1), (15, 1, 2.5, .01, 2), (40, .6, 1, .05, 0),
                 (3, .3, 1, .05, 2), (150, 1.25, 1, .1, 1), (1, 8, 1, .25, 1), (1, .1, 1, .05, 0)),
           tests_one_variance, draw_one_variance, lambda d: d["DegreesOfFreedom"] + 1),
    Family("V2", "Two variances, F-test",
           "Two normal samples. The lower form has no power: the program takes its null hypothesis for true.",
           table("Df1 Df2 Var1 Var2 Alpha H0Type",
                 (20, 20, 2, 1, .05, 0), (30, 12, 3, 1, .05, 1), (15, 40, 1, 2.5, .05, 0),
                 (5, 5, 10, 1, .01, 1), (120, 90, 1.4, 1, .1, 0), (1, 4, 20, 1, .25, 1)),
           one_test(lambda d: fisher_f(d["Df1"], d["Df2"])), draw_two_variances,
           lambda d: d["Df1"] + d["Df2"] + 2),
    Family("R", "One correlation",
           "Bivariate normal samples; r against the exact critical values, or those of a normal atanh(r) "
           "with its own moments (refined) or Fisher's (crude).",
           table("Rho Rho0 SampleSize Alpha H0Type",
                 (.2, 0, 100, .05, 0), (.5, 0, 25, .01, 0), (.6, .3, 60, .05, 1), (-.4, 0, 40, .05, 2),
                 (.3, .5, 80, .05, 0), (.9, .8, 30, .05, 0), (.8, 0, 10, .05, 1), (-.85, -.7, 50, .1, 2),
                 (.25, .15, 400, .05, 0)),
           tests_one_correlation, draw_one_correlation, lambda d: 2 * d["SampleSize"]),
    Family("Z2R", "Two correlations, z-test",
           "Two bivariate normal samples; the difference of atanh(r) over Fisher's standard error.",
           table("Rho1 Rho2 SampleSizeN1 SampleSizeN2 Alpha H0Type",
                 (.4, 0, 100, 100, .05, 0), (.75, .88, 51, 120, .05, 0), (.5, .2, 60, 90, .05, 1),
                 (-.3, .3, 25, 40, .01, 2), (.9, .7, 15, 20, .05, 0), (.1, -.1, 150, 150, .1, 1),
                 (.35, .25, 600, 500, .05, 0)),
           tests_two_correlations, draw_two_correlations,
           lambda d: 2 * (d["SampleSizeN1"] + d["SampleSizeN2"])),
    Family("R2", "Squared multiple correlation",
           "Regression on multivariate normal predictors; the F test where C2 is 0, otherwise R2 against "
           "its exact critical values. k counts the criterion.",
           table("TotalNumberOfVars SampleSize PopulationR2 R2Null Alpha H0Type",
                 (3, 100, .1, 0, .05, 3), (6, 95, .1, 0, .05, 3), (4, 20, .4, 0, .01, 0),
                 (9, 60, .25, 0, .05, 1), (2, 30, .2, 0, .1, 3), (5, 12, .6, 0, .05, 3),
                 (4, 60, .4, .2, .05, 1), (3, 50, .1, .3, .05, 2), (5, 80, .5, .35, .05, 0)),
           tests_squared_correlation, draw_squared_correlation,
           lambda d: d["SampleSize"] * d["TotalNumberOfVars"]),
    Family("P1", "One proportion, z-test",
           "Binomial counts; z with the standard error under the null hypothesis. The exact power is the "
           "chance of that rejection; the actual alpha is simulated at Pi0; the normal power approximates.",
           table("Pi Pi0 SampleSize Alpha H0Type",
                 (.7, .5, 40, .05, 0), (.3, .2, 90, .05, 1), (.35, .5, 60, .01, 2), (.9, .8, 133, .05, 0),
                 (.05, .02, 200, .1, 1), (.52, .5, 1000, .05, 0), (.6, .75, 30, .05, 2)),
           tests_one_proportion, draw_one_proportion, lambda d: 2),
    Family("P2", "Two proportions, z-test",
           "Two binomial counts; z with the pooled standard error, uncorrected and with half a step of each "
           "group taken off the difference.",
           table("Pi1 Pi2 SampleSizeN1 SampleSizeN2 Alpha H0Type",
                 (.6, .5, 100, 100, .05, 0), (.3, .15, 120, 60, .05, 1), (.85, .7, 40, 90, .05, 0),
                 (.5, .25, 30, 30, .1, 0), (.1, .05, 500, 500, .05, 1), (.45, .55, 400, 150, .01, 2),
                 (.32, .3, 8000, 7000, .05, 0)),
           tests_two_proportions, draw_two_proportions, lambda d: 2),
    Family("QMAC", "McNemar's test",
           "Pairs discordant with probability Eta, of two kinds that differ by Delta; z without a correction.",
           table("Delta Eta SampleSize Alpha H0Type",
                 (.1, .4, 100, .05, 0), (.15, .3, 120, .05, 0), (.1, .2, 150, .01, 0), (.2, .5, 60, .05, 1),
                 (.05, .1, 500, .05, 0), (.08, .6, 400, .1, 1), (.02, .3, 6000, .05, 0)),
           one_test(standard_normal, bound=mcnemar_error), draw_mcnemar, lambda d: 2),
    Family("SA1", "Log-rank test",
           "Proportional hazards with the survival rates given. The one-tailed form rejects where group 2 "
           "survives longer, as its power does.",
           table("Pi1 Pi2 SampleSize Alpha H0Type",
                 (.5, .7, 100, .05, 0), (.25, .5, 62, .05, 1), (.6, .4, 80, .05, 0), (.8, .9, 250, .05, 0),
                 (.3, .4, 150, .1, 1), (.1, .3, 40, .01, 0), (.6, .65, 1000, .05, 0)),
           one_test(standard_normal, bound=log_rank_error), draw_log_rank, lambda d: 6 * d["SampleSize"]),
    Family("SA2", "Exponential survival, accrual",
           "Exponential times with uniform entry; the maximum-likelihood test of the two rates.",
           table("Lambda1 Lambda2 T0 T SampleSize Alpha H0Type",
                 (.5, .7, 9, 10, 100, .05, 0), (.2, .35, 3, 5, 80, .05, 1), (.3, .15, 2, 4, 120, .05, 0),
                 (.02, .04, 24, 36, 100, .01, 0), (1.2, 1.8, 1, 1, 150, .1, 1), (.1, .25, 5, 5, 60, .05, 0),
                 (.5, .55, 9, 10, 1500, .05, 0)),
           one_test(standard_normal, bound=exponential_error), draw_exponential, lambda d: 4 * d["SampleSize"]),
    Family("SA3", "Exponential survival, accrual and dropouts",
           "The same with exponential dropouts of rate D.",
           table("Lambda1 Lambda2 T0 T D SampleSize Alpha H0Type",
                 (.5, .7, 9, 10, .1, 100, .05, 0), (.2, .35, 3, 5, .2, 100, .05, 1),
                 (.3, .15, 2, 4, .05, 120, .05, 0), (.02, .04, 24, 36, .02, 150, .01, 0),
                 (1.2, 1.8, 1, 1, .5, 150, .1, 1), (.1, .25, 5, 5, .3, 90, .05, 0),
                 (.5, .55, 9, 10, .1, 1500, .05, 0)),
           one_test(standard_normal, bound=exponential_error), draw_exponential, lambda d: 6 * d["SampleSize"]),
    Family("SEM", "Model fit by the RMSEA",
           "The fit statistic itself, noncentral chi-square; no covariance matrix is fitted.",
           table("R R0 DegreesOfFreedom SampleSize Alpha H0Type",
                 (.08, .05, 20, 100, .05, 1), (.116, 0, 4, 200, .05, 3), (.01, .05, 20, 400, .05, 2),
                 (.08, .05, 100, 200, .05, 1), (.06, 0, 35, 150, .01, 1), (.12, .07, 1, 250, .1, 1),
                 (.08, .05, 20, 200, .05, 0), (.05, .06, 40, 150, .05, 0)),
           tests_model_fit, draw_model_fit, lambda d: 2),
]


# --- Asking the program, simulating, reporting.


def power_of(program, folder, code, design, test):
    fields = {key: value for key, value in design.items() if key != "weights"} | dict(test.options)
    options = [f"--set={key}={value!r}" for key, value in fields.items()]
    run = subprocess.run([program, "power", code.lower(), "--format", "json", "--config", folder, *options],
                         capture_output=True, text=True)
    rows = json.loads(run.stdout)["rows"] if run.returncode == 0 else []
    title, which = test.power
    values = [row["value"] for row in rows if row["title"] == title]
    if which >= len(values) or values[which] is None:
        sys.exit(f"{code} {design}: no \"{title}\" from the program. {run.stdout}{run.stderr}")
    return values[which]


def rates(family, design, tests, seed):
    """Of each test the mean of the scores (1 for a rejection) and its standard error."""
    rng = np.random.default_rng(seed)
    at_once = max(1, min(REPLICATIONS, NUMBERS_AT_ONCE // family.numbers(design)))
    upper, lower = np.zeros(len(tests)), np.zeros(len(tests))
    for start in range(0, REPLICATIONS, at_once):
        statistics = family.draw(design, rng, min(at_once, REPLICATIONS - start))
        for i, test in enumerate(tests):
            upper[i] += np.count_nonzero(statistics[test.statistic] >= test.high)
            lower[i] += np.count_nonzero(statistics[test.statistic] <= test.low)
    for test, high, low in zip(tests, upper / REPLICATIONS, lower / REPLICATIONS):
        rate = high + test.lower_sign * low
        yield rate, math.sqrt((high + low - rate * rate) / REPLICATIONS)


@dataclass
class Result:
    seed: tuple
    design: dict
    test: Test
    power: float
    rate: float
    error: float

    def deviation(self):
        """In standard errors; no standard error is taken below that of one rejection."""
        return (self.power - self.rate) / max(self.error, 1 / REPLICATIONS)

    def holds(self):
        return abs(self.power - self.rate) <= self.test.bound + LIMIT * max(self.error, 1 / REPLICATIONS)

    def verdict(self):
        if self.test.kept:
            return "kept"
        return "holds" if self.holds() else "**FAILS**"

    def cells(self):
        words = ", ".join(f"{key} {value}" for key, value in self.design.items())
        return (f"{self.seed[1]}, {self.seed[2]}", words, self.test.name, f"{self.power:.5f}",
                f"{self.rate:.5f}", f"{self.error:.5f}", f"{self.deviation():+.2f}",
                f"{self.test.bound:.4f}" if self.test.bound else "", self.verdict())


HEAD = ("Seed", "Design", "Test", "Power", "Simulated", "S. E.", "Deviation", "Bound", "Verdict")
SUMMARY_HEAD = ("Family", "Exact", "Largest", "Approximate", "Largest difference", "Seconds")


def markdown(head, rows):
    """Columns without a word below their heading are left out."""
    filled = [column for column in zip(head, *rows) if any(column[1:])]
    head, *rows = zip(*filled)
    return "\n".join("| " + " | ".join(cells) + " |" for cells in (head, ["---"] * len(head), *rows))


def simulate(family, number, program, folder):
    for index, design in enumerate(family.designs):
        seed = (SEED, number, index)
        tests = family.tests(design)
        for test, (rate, error) in zip(tests, rates(family, design, tests, seed)):
            yield Result(seed, design, test, power_of(program, folder, family.code, design, test), rate, error)


def summary(family, results, seconds):
    judged = [r for r in results if not r.test.kept]
    exact = [abs(r.deviation()) for r in judged if not r.test.bound]
    approximate = [abs(r.power - r.rate) for r in judged if r.test.bound]
    return (f"{family.code}, {family.title}", str(len(exact)), f"{max(exact):.2f} s. e." if exact else "",
            str(len(approximate)), f"{max(approximate):.4f}" if approximate else "", f"{seconds:.1f}")


def report(families, program, started):
    """The report, and whether all holds."""
    lines, overview, everything = [], [], []
    with tempfile.TemporaryDirectory() as folder:
        for number, family in families:
            begin = time.process_time()
            results = list(simulate(family, number, program, folder))
            overview.append(summary(family, results, time.process_time() - begin))
            everything += results
            lines += [f"### {family.title} ({family.code})", "", family.what, "",
                      markdown(HEAD, [r.cells() for r in results]), ""]
            for reason in sorted({r.test.kept for r in results} - {""}):
                lines += [f"Kept: {reason}.", ""]
    failed = [r for r in everything if not r.test.kept and not r.holds()]
    exact = [abs(r.deviation()) for r in everything if not r.test.kept and not r.test.bound]
    judged = sum(not r.test.kept for r in everything)
    head = [f"{datetime.date.today()}, {platform.machine()}, Python {platform.python_version()}, NumPy "
            f"{np.__version__}, SciPy {scipy.__version__}; {REPLICATIONS} replications a design, seed {SEED}; "
            f"{time.process_time() - started:.0f} seconds of processor time.", "",
            f"{judged} powers of {sum(len(f.designs) for _, f in families)} designs; {len(failed)} deviate by more "
            f"than allowed. Of the {len(exact)} exact ones {sum(x > 2 for x in exact)} deviate by more than 2 "
            f"standard errors ({.0455 * len(exact):.1f} expected), {sum(x > 3 for x in exact)} by more than 3 "
            f"({.0027 * len(exact):.1f} expected); the largest deviation is {max(exact, default=0):.2f}.", "",
            markdown(SUMMARY_HEAD, overview), ""]
    return "\n".join(head + lines).rstrip() + "\n", not failed


def update(path, text):
    page = path.read_text()
    before, rest = page.split(BEGIN)
    path.write_text(f"{before}{BEGIN}\n\n{text}\n{END}{rest.split(END)[1]}")


def main():
    parser = argparse.ArgumentParser(description="Compares the program's power with simulated rejection rates.")
    parser.add_argument("program", help="path of poweranalysis, the command line program")
    parser.add_argument("--only", help="code of one family")
    parser.add_argument("--update", type=pathlib.Path, help="page to put the report into")
    arguments = parser.parse_args()
    families = [(i, f) for i, f in enumerate(FAMILIES) if arguments.only in (None, f.code)]
    if not pathlib.Path(arguments.program).is_file():
        parser.error(f"no program {arguments.program}")
    text, good = report(families, arguments.program, time.process_time())
    if arguments.update:
        update(arguments.update, text)
    print(text)
    return 0 if good else 1


if __name__ == "__main__":
    sys.exit(main())
