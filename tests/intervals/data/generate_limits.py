#!/usr/bin/python3
"""Writes limits.csv: confidence limits of all families with an interval, by inversions of their own.

Run:   /usr/bin/python3 generate_limits.py          (Debian packages python3-numpy, python3-scipy; two minutes)

How the distributions are computed:
  t      the integral over s of Phi(t s - delta) f(s), f the density of sqrt(chi-square(df) / df), by
         Gauss-Legendre rules
  F      a Poisson mixture of SciPy's incomplete beta functions, over all terms within 40 standard
         deviations of the Poisson mean
  chi-square  the same of incomplete gamma functions
  R      exact: the integral of the hypergeometric form of the density; refined: Gayen's moments of
         Fisher's z; crude: atanh
  R2     exact: a mixture of beta functions with negative binomial weights; speed: Lee's noncentral F
         distribution, by the mixture above with real degrees of freedom
  proportions  exact: quantiles of the beta distribution; approximate: the roots in pi of
         |p - pi| - 1 / (2 n) = z sqrt(pi (1 - pi) / n); crude: z standard errors
Roots are searched by SciPy's brentq. Required sizes are found by bisection on these powers, and left
out where a change of the effect by 1e-6 of it would change the size.

Each row has a record, what the limits are of, both limits and a tolerance for each: the error that the
program's distribution may have in probability, divided by the slope at the limit, and a millionth of a
millionth part. '-' stands for a limit that is not there, '*' for one that is not compared.
"""

import itertools
import math
import os

import numpy as np
from scipy import optimize, special, stats
from scipy.integrate import quad

HERE = os.path.dirname(os.path.abspath(__file__))
NODES, WEIGHTS = np.polynomial.legendre.leggauss(80)
ROWS = []


def put(family, record, name, lower, upper, tolerances=(1e-12, 1e-12)):
    shown = ";".join(f"{key}={value!r}" for key, value in record.items())
    number = lambda value: value if isinstance(value, str) else repr(float(value))
    ROWS.append(",".join([family, shown, name, number(lower), number(upper), *(f"{t:.3g}" for t in tolerances)]))


def tails(record):
    tail = (1 - record["Confidence"]) / 2
    return 1 - tail, tail


def root(function, low, high):
    return optimize.brentq(function, low, high, xtol=1e-14, rtol=8.9e-16, maxiter=500)


def tolerance(function, at, error, step):
    """What an error in probability means for the root."""
    slope = abs(function(at + step) - function(at - step)) / (2 * step)
    return error / slope + 1e-12 * (1 + abs(at)) + 2e-10


# --- t

def t_cdf(t, df, delta):
    width = 1 / math.sqrt(2 * df)
    cuts = set(np.linspace(max(0.0, 1 - 14 * width), 1 + 14 * width, 29))
    low, high = min(cuts), max(cuts)
    if t != 0:
        turns = delta / t + np.arange(-40, 41) * 0.25 / abs(t)
        cuts |= set(turns[(turns > low) & (turns < high)])
    cuts = np.array(sorted(cuts))
    half = np.diff(cuts)[:, None] / 2
    s = (cuts[:-1] + cuts[1:])[:, None] / 2 + half * NODES
    log_density = (math.log(2) + df / 2 * math.log(df / 2) - special.gammaln(df / 2) + (df - 1) * np.log(s)
                   - df * s * s / 2)
    return float(np.sum(half * WEIGHTS * special.ndtr(t * s - delta) * np.exp(log_density)))


def t_delta(t, df, p):
    distance = 8 + 8 * abs(t) / math.sqrt(df) + 8 * abs(t) / df
    function = lambda delta: t_cdf(t, df, delta) - p
    delta = root(function, t - distance, t + distance)
    # As docs/distributions/NoncentralT.md has the accuracy of the program's distribution.
    error = 2.4e-8 if abs(delta) > 4 else 2.4e-9
    return delta, tolerance(function, delta, error, 1e-4 * (1 + abs(t)))


def t_rows(family, designs, df_of, unit_of, with_delta=True):
    for record in designs:
        limits = [t_delta(record["TObserved"], df_of(record), p) for p in tails(record)]
        unit = unit_of(record)
        if with_delta:
            put(family, record, "Delta", *(l[0] for l in limits), [l[1] for l in limits])
        put(family, record, "Es", *(l[0] / unit for l in limits), [l[1] / unit for l in limits])


def records(**lists):
    names = list(lists)
    return [dict(zip(names, values)) for values in itertools.product(*lists.values())]


def all_t():
    one = records(TObserved=[-3.1, 0.0, 0.75, 2.4, 6.5], SampleSize=[5, 12, 25, 130], Confidence=[0.9, 0.99])
    one += records(TObserved=[1.75], SampleSize=[40], Confidence=[0.65, 0.9999])
    unit = lambda r: math.sqrt(r["SampleSize"])
    t_rows("T1", one, lambda r: r["SampleSize"] - 1, unit)
    t_rows("T3", [dict(r, TObserved=-r["TObserved"]) for r in one], lambda r: r["SampleSize"] - 1, unit)
    two = records(TObserved=[-2.0, 0.0, 1.25, 3.5], SampleSizeN1=[4, 25, 80], SampleSizeN2=[6, 30],
                  Confidence=[0.8, 0.95])
    t_rows("T2", two, lambda r: r["SampleSizeN1"] + r["SampleSizeN2"] - 2,
           lambda r: math.sqrt(r["SampleSizeN1"] * r["SampleSizeN2"] / (r["SampleSizeN1"] + r["SampleSizeN2"])))
    contrast = records(TObserved=[-1.5, 0.0, 2.25, 5.0], SampleSize=[3, 10, 45], NumberOfGroups=[2, 5],
                       SumOfSquaredWeights=[1.0, 6.0], Confidence=[0.9])
    t_rows("PC", contrast, lambda r: (r["SampleSize"] - 1) * r["NumberOfGroups"],
           lambda r: math.sqrt(r["SampleSize"] / r["SumOfSquaredWeights"]), with_delta=False)


# --- F

def mixture(terms, half_delta):
    """The Poisson mixture with mean half_delta of terms(j)."""
    spread = 40 * math.sqrt(half_delta) + 40
    j = np.arange(max(0, int(half_delta - spread)), int(half_delta + spread))
    return float(np.sum(stats.poisson.pmf(j, half_delta) * terms(j)))


def f_cdf(f, df1, df2, delta):
    x = df1 * f / (df1 * f + df2)
    return mixture(lambda j: special.betainc(df1 / 2 + j, df2 / 2, x), delta / 2)


def f_delta(f, df1, df2, p):
    function = lambda delta: f_cdf(f, df1, df2, delta) - p
    if function(0) <= 0:
        return 0.0, 1e-12
    high = 10.0
    while function(high) > 0:
        high *= 2
    delta = root(function, 0, high)
    return delta, tolerance(function, delta, 2e-9, 1e-4 * delta)


def f_power(df1, df2, delta, alpha):
    return 1 - f_cdf(stats.f.isf(alpha, df1, df2), df1, df2, delta)


def least_size(power_at, goal):
    """The least size from 2 on with a power above the goal."""
    high = 2
    while not power_at(high) > goal:
        high *= 2
        if high > 140000:
            return None
    low = high // 2
    while high - low > 1:
        middle = (low + high) // 2
        low, high = (low, middle) if power_at(middle) > goal else (middle, high)
    return max(high, 2)


def f_rows(family, record, df1, df2_of, unit_of, random=False):
    n, alpha, goal = record["N"], record["Alpha"], record["PowerGoal"]
    df2 = df2_of(n)
    limits = [f_delta(record["FObserved"], df1, df2, p) for p in tails(record)]
    deltas = [l[0] for l in limits]
    put(family, record, "Delta", *deltas, [l[1] for l in limits])
    rmsse = [math.sqrt(d / unit_of(n)) for d in deltas]
    put(family, record, "RMSSE", *rmsse,
        [t / (2 * math.sqrt(d * unit_of(n))) + 1e-12 if d > 0 else 1e-12 for d, t in limits])
    slopes = [abs(f_power(df1, df2, d * 1.0001, alpha) - f_power(df1, df2, d, alpha)) / (1e-4 * d) if d > 0 else 0
              for d in deltas]
    put(family, record, "Power", *(f_power(df1, df2, d, alpha) for d in deltas),
        [s * t + 3e-9 for s, (_, t) in zip(slopes, limits)])

    def power(effect):
        def at(m):
            if random:
                crit = stats.f.isf(alpha, df1, df2_of(m))
                return special.fdtrc(df1, df2_of(m), crit / (m * effect * effect + 1))
            return f_power(df1, df2_of(m), unit_of(m) * effect * effect, alpha)
        return at

    def size(effect):
        if effect <= 0:
            return "-"
        if effect < 0.02:
            return "*"
        near = {least_size(power(effect * (1 + part)), goal) for part in (-1e-6, 0, 1e-6)}
        return near.pop() if len(near) == 1 and None not in near else "*"

    put(family, record, "N", size(rmsse[1]), size(rmsse[0]))


def all_f():
    base = {"Alpha": 0.05, "PowerGoal": 0.9}
    for record in records(FObserved=[0.0, 0.5, 1.9, 4.0, 11.0], N=[3, 10, 40], NumberOfGroups=[2, 3, 6],
                          Confidence=[0.9], ModelType=[0]):
        f_rows("AV1", {**record, **base}, record["NumberOfGroups"] - 1,
               lambda n, k=record["NumberOfGroups"]: (n - 1) * k,
               lambda n, k=record["NumberOfGroups"]: (k - 1) * n)
    for record in records(FObserved=[3.5, 8.0], N=[8], NumberOfGroups=[4], Confidence=[0.7, 0.99], ModelType=[0, 1]):
        f_rows("AV1", {**record, "Alpha": 0.01, "PowerGoal": 0.75}, record["NumberOfGroups"] - 1,
               lambda n: (n - 1) * 4, lambda n: 3 * n, random=record["ModelType"] == 1)
    for record in records(FObserved=[0.25, 2.6, 7.0], N=[4, 15], Rows=[2, 4], Columns=[3, 5], Confidence=[0.95],
                          EffectToTest=[0, 1, 2]):
        rows, columns, effect = record["Rows"], record["Columns"], record["EffectToTest"]
        df1 = [rows - 1, columns - 1, (rows - 1) * (columns - 1)][effect]
        cells = [columns, rows, 1][effect]
        f_rows("AV2", {**record, **base}, df1, lambda n, c=rows * columns: (n - 1) * c,
               lambda n, d=df1 * cells: d * n)


# --- R

BIAS = ((2, (1,)), (8, (5, 1)), (16, (11, 2, 3)), (128, (83, 13, -27, 75)),
        (256, (143, 20, 138, -780, 735)), (1024, (625, 113, -990, 14250, -33075, 19845)))
# The last 113 is -113 in the moment itself; the program keeps +113.
SECOND = ((1, (1,)), (4, (8, -1)), (24, (88, -9, -9)), (64, (384, -19, 2, -75)),
          (1920, (16256, -225, -375, 8025, -11025)), (512, (5120, 113, 20, -7194, 26460, -19845)))


def moment(series, rho, n):
    return sum(sum(c * rho ** (2 * i) for i, c in enumerate(coefficients)) / divisor / (n - 1) ** power
               for power, (divisor, coefficients) in enumerate(series, 1))


def r_density(rho, n, r):
    return ((n - 2) * math.exp(math.lgamma(n - 1) - math.lgamma(n - 0.5)) / math.sqrt(2 * math.pi)
            * (1 - rho * rho) ** ((n - 1) / 2) * (1 - r * r) ** ((n - 4) / 2) * (1 - rho * r) ** (1.5 - n)
            * special.hyp2f1(0.5, 0.5, n - 0.5, (1 + rho * r) / 2))


def r_cdf(rho, n, r, algorithm):
    if algorithm == 0:
        # In z, where the density is nearly normal.
        centre, width, at = math.atanh(rho), 1 / math.sqrt(n - 3 + 1e-9), math.atanh(r)
        density = lambda z: r_density(rho, n, math.tanh(z)) / math.cosh(z) ** 2
        if at < centre:
            return quad(density, max(at - 12 * width, -18), at, epsabs=1e-13, epsrel=1e-12, limit=300)[0]
        return 1 - quad(density, at, min(at + 12 * width, 18), epsabs=1e-13, epsrel=1e-12, limit=300)[0]
    if algorithm == 1:
        bias = moment(BIAS, rho, n) * rho
        z = (math.atanh(r) - math.atanh(rho) - bias) / math.sqrt(moment(SECOND, rho, n) - bias * bias)
    else:
        z = (math.atanh(r) - math.atanh(rho)) * math.sqrt(n - 3)
    return special.ndtr(z)


def all_r():
    error = {0: 1.1e-6, 1: 2.2e-8, 2: 2.2e-8}
    designs = records(RObserved=[-0.85, -0.2, 0.0, 0.35, 0.8], SampleSize=[8, 30, 120], Confidence=[0.95],
                      Algorithm=[0, 1, 2], Rho0=[0.0], H0Type=[0])
    designs += records(RObserved=[0.1, 0.45], SampleSize=[100], Confidence=[0.9], Algorithm=[0, 1, 2], Rho0=[0.3],
                       H0Type=[0, 1, 2])
    for record in designs:
        n, r, algorithm = record["SampleSize"], record["RObserved"], record["Algorithm"]
        limits = []
        for p in tails(record):
            function = lambda rho: r_cdf(rho, n, r, algorithm) - p
            if algorithm == 0:
                rho = root(function, -0.99995, 0.99995)
            else:
                # Gayen's series turns back near 1: the root is the one beside the crude limit.
                crude = math.tanh(math.atanh(r) - stats.norm.ppf(p) / math.sqrt(n - 3))
                room = 0.3 * (1 - crude * crude)
                rho = root(function, crude - room, crude + room)
            limits.append((rho, tolerance(function, rho, error[algorithm], 1e-5)))
        put("R", record, "Rho", *(l[0] for l in limits), [l[1] + 1e-8 for l in limits])
        c = r_cdf(record["Rho0"], n, r, algorithm)
        put("R", record, "PValue", {0: 2 * (1 - c), 1: 1 - c, 2: c}[record["H0Type"]], "*",
            (2 * error[algorithm], 1))


# --- R2

def r2_cdf(x, rho2, n, k, algorithm):
    if rho2 == 0:
        return special.betainc((k - 1) / 2, (n - k) / 2, x)
    if algorithm == 1:
        a = (n - 1) / 2
        mean = a * rho2 / (1 - rho2)
        spread = 60 * math.sqrt(mean / (1 - rho2)) + 200
        j = np.arange(max(0, int(mean - spread)), int(mean + spread))
        return float(np.sum(stats.nbinom.pmf(j, a, 1 - rho2) * special.betainc((k - 1) / 2 + j, (n - k) / 2, x)))
    total, predictors, q, g = n - 1, k - 1, n - k, 1 / (1 - rho2)
    p1, p2, p3 = ((g**i - 1) * total + predictors for i in (1, 2, 3))
    c = (p2 - math.sqrt(p2 * p2 - p3 * p1)) / p1
    nu = (p2 - 2 * (g - 1) * math.sqrt(g) * math.sqrt(q * total)) / c**2
    delta = math.sqrt(q * total) * (g - 1) * math.sqrt(g) / c**2
    return f_cdf(q * x / (1 - x) / (nu * c), nu, q, delta)


def all_r2():
    designs = records(R2Observed=[0.04, 0.2, 0.5, 0.85], SampleSize=[20, 60, 250], TotalNumberOfVars=[2, 4, 9],
                      Confidence=[0.9], Algorithm=[0, 1])
    designs += records(R2Observed=[0.3], SampleSize=[50], TotalNumberOfVars=[6], Confidence=[0.7, 0.99], Algorithm=[0, 1])
    for record in designs:
        n, k, x, algorithm = (record[f] for f in ("SampleSize", "TotalNumberOfVars", "R2Observed", "Algorithm"))
        error = (1.1e-7 if algorithm == 1 else 2e-8)

        def limit(p):
            function = lambda rho2: r2_cdf(x, rho2, n, k, algorithm) - p
            if function(0) <= 0:
                return 0.0, 1e-12
            high = x
            while function(high) > 0:
                high = 1 - (1 - high) * 0.7
            rho2 = root(function, 1e-12, high)
            return rho2, tolerance(function, rho2, error, 1e-4 * rho2) + 1e-8
        lower, upper, bound = (limit(p) for p in (*tails(record), record["Confidence"]))
        put("R2", record, "P2", lower[0], upper[0], (lower[1], upper[1]))
        put("R2", record, "P2Bound", bound[0], "-", (bound[1], 1))
        put("R2", record, "PValue", special.betaincc((k - 1) / 2, (n - k) / 2, x)
            if hasattr(special, "betaincc") else special.betainc((n - k) / 2, (k - 1) / 2, 1 - x), "*", (2e-9, 1))


# --- P1

def all_p1():
    for n, confidence in itertools.product((2, 5, 17, 40, 300), (0.8, 0.95, 0.999)):
        for x in sorted({0, 1, n // 3, n // 2, n - 1, n}):
            record = {"PObserved": x / n, "SampleSize": n, "Confidence": confidence}
            p, tail = x / n, (1 - confidence) / 2
            z = stats.norm.isf(tail)
            put("P1", record, "PiExact", stats.beta.ppf(tail, x, n - x + 1) if x > 0 else 0,
                stats.beta.isf(tail, x + 1, n - x) if x < n else 1, (3e-8, 3e-8))

            def score(pi, sign):
                return sign * (p - pi) - 0.5 / n - z * math.sqrt(pi * (1 - pi) / n)
            # The correction takes the limits beyond the observed proportion.
            lower = root(lambda pi: score(pi, 1), 0, p) if x > 0 and score(0, 1) > 0 else 0
            upper = root(lambda pi: score(pi, -1), p, 1) if x < n and score(1, -1) > 0 else 1
            put("P1", record, "PiApproximate", lower, upper, (1e-7, 1e-7))
            s = math.sqrt(p * (1 - p) / n)
            put("P1", record, "PiCrude", max(p - s * z, 0), p + s * z, (1e-7, 1e-7))


# --- SEM

def chi_cdf(x, df, delta):
    return mixture(lambda j: special.gammainc(df / 2 + j, x / 2), delta / 2)


def chi_delta(x, df, p):
    function = lambda delta: chi_cdf(x, df, delta) - p
    if function(0) <= 0:
        return 0.0, 1e-12
    high = 10.0
    while function(high) > 0:
        high *= 2
    delta = root(function, 0, high)
    return delta, tolerance(function, delta, 1.1e-6, 1e-4 * delta + 1e-6)


def all_sem():
    designs = records(ObservedChiSquare=[0.0, 6.0, 24.0, 85.306, 210.0], DegreesOfFreedom=[8, 24], P=[6, 9],
                      Groups=[1, 3], SampleSize=[120, 301], Confidence=[0.9])
    designs += records(ObservedChiSquare=[60.0], DegreesOfFreedom=[30], P=[10], Groups=[1], SampleSize=[200],
                       Confidence=[0.65, 0.99])
    for record in designs:
        chi, df, p, k, n = (record[f] for f in ("ObservedChiSquare", "DegreesOfFreedom", "P", "Groups", "SampleSize"))
        limits = [chi_delta(chi, df, q) for q in tails(record)]
        f = [l[0] / (n - k) for l in limits]
        tf = [l[1] / (n - k) for l in limits]
        put("SEM", record, "RMSEA", *(math.sqrt(k * v / df) for v in f),
            [math.sqrt(k * (v + t) / df) - math.sqrt(k * v / df) + 1e-12 for v, t in zip(f, tf)])
        if k >= 2:
            put("SEM", record, "Gamma1", "-", "-")
            put("SEM", record, "Gamma2", "-", "-")
            continue
        gamma1 = [p / (2 * v + p) for v in reversed(f)]
        t1 = [2 * t / p + 1e-12 for t in reversed(tf)]
        m = p * (p + 1) / 2 / df
        put("SEM", record, "Gamma1", *gamma1, t1)
        put("SEM", record, "Gamma2", *(1 - (1 - g) * m for g in gamma1), [t * m + 1e-12 for t in t1])


def main():
    for family in (all_t, all_f, all_r, all_r2, all_p1, all_sem):
        family()
    with open(os.path.join(HERE, "limits.csv"), "w", encoding="ascii") as file:
        file.write("# Made by generate_limits.py; do not edit.\n")
        file.write("family,record,limit,lower,upper,lower tolerance,upper tolerance\n")
        file.write("\n".join(ROWS) + "\n")


if __name__ == "__main__":
    main()
