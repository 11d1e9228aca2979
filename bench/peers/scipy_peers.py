#!/usr/bin/python3
"""Times SciPy on the inputs of our benchmarks and prints one JSON object of processor seconds a call.

Run: /usr/bin/python3 scipy_peers.py        (Debian package python3-scipy)

The keys of the t-tests are those of t_tests.R, so that one program can set both beside ours:
  cdf/DF         P(T <= 2) at DF degrees of freedom and delta 1
  power          power of a two-sided test of two means, 50 a group, d .5, alpha .05
  size/D         required size a group for power .8 at effect D
  power_curve    power at 100 sizes, 5 to 500 a group
  size_curve     required size at 100 effects, .1 to 1.09
SciPy has no power functions: they are written here from its distributions, as a user would.

A distribution's key is the name of our benchmark: one call of its function in scipy.special. "vector/"
before it is one element of a call with a thousand of them.
"""

import json
import math
import time

import numpy
from scipy import optimize, special, stats

ALPHA = 0.05
ELEMENTS = 1000


def power(size, effect):
    df = 2 * size - 2
    delta = effect * (size / 2) ** 0.5
    critical = stats.t.isf(ALPHA / 2, df)
    return stats.nct.sf(critical, df, delta) + stats.nct.cdf(-critical, df, delta)


def required_size(effect, goal=0.8):
    return optimize.brentq(lambda size: power(size, effect) - goal, 2, 1e6)


def seconds(call, least=0.2):
    """The best of three means, each over at least `least` seconds."""
    call()
    best = float("inf")
    for _ in range(3):
        count, start = 0, time.process_time()
        while True:
            call()
            count += 1
            elapsed = time.process_time() - start
            if elapsed >= least:
                break
        best = min(best, elapsed / count)
    return best


def t_tests():
    calls = {f"cdf/{df}": lambda df=df: stats.nct.cdf(2.0, df, 1.0) for df in (9, 49, 499, 9999)}
    calls["power"] = lambda: power(50, 0.5)
    for effect in (0.8, 0.5, 0.2, 0.05):
        calls[f"size/{effect:g}"] = lambda effect=effect: required_size(effect)
    calls["power_curve"] = lambda: [power(5 * i, 0.5) for i in range(1, 101)]
    calls["size_curve"] = lambda: [required_size(0.1 + 0.01 * i) for i in range(100)]
    return {key: seconds(call) for key, call in calls.items()}


def f_rows():
    for df1, df2, delta, hundredths in ((2, 10, 5, 300), (3, 60, 10, 300), (10, 200, 30, 200),
                                        (20, 2000, 60, 160), (1, 98, 1, 394), (5, 500, 500, 5000)):
        f, key = hundredths / 100, f"{df1}/{df2}/{delta}/{hundredths}"
        yield f"NoncentralFCdf/{key}", f, lambda x, a=(df1, df2, delta): special.ncfdtr(*a, x)
        yield f"CentralFQuantile/{key}", 0.95, lambda p, a=(df1, df2): special.fdtri(*a, p)
        yield f"NoncentralFQuantile/{key}", 0.95, lambda p, a=(df1, df2, delta): special.ncfdtri(*a, p)
        yield f"NoncentralFDelta/{key}", 0.05, lambda p, a=(df1, df2, f): special.ncfdtrinc(*a[:2], p, a[2])


def chi_square_rows():
    def x_at(df, delta, sd):
        x = df + delta + sd * math.sqrt(2 * (df + 2 * delta))
        return x if x > 0 else 0.25 * df

    for df in (1, 10, 100, 1000, 5000):
        for delta in (0, 5, 50, 500):
            for sd in (-1, 2):
                yield (f"NoncentralChiSquareCdf/df:{df}/delta:{delta}/sd:{sd}", x_at(df, delta, sd),
                       lambda x, a=(df, delta): special.chndtr(x, *a))
    for df in (4, 20, 200, 2000):
        for delta in (2, 20, 200):
            key = f"df:{df}/delta:{delta}"
            yield (f"NoncentralChiSquareQuantile/{key}", 0.95,
                   lambda p, a=(df, delta): special.chndtrix(p, *a))
            yield (f"NoncentralChiSquareDelta/{key}", 0.25,
                   lambda p, a=(x_at(df, delta, 0), df): special.chndtrinc(*a, p))


def binomial_rows():
    for n in (10, 100, 1000, 10000, 100000):
        for thousandths in (20, 300, 500):
            pi, key = thousandths / 1000, f"n:{n}/thousandths:{thousandths}"
            for sd in (-1, 2):
                k = math.floor(max(n * pi + sd * math.sqrt(n * pi * (1 - pi)), 0))
                yield f"BinomialCdf/{key}/sd:{sd}", pi, lambda p, a=(k, n): special.bdtr(*a, p)
            if n != 10000:
                k = math.floor(n * pi)
                yield f"BinomialProportionForP/{key}", 0.025, lambda p, a=(k, n): special.bdtri(*a, p)


def distributions():
    result = {}
    for rows in (f_rows, chi_square_rows, binomial_rows):
        for key, at, call in rows():
            near = at * numpy.linspace(1 - 1e-6, 1, ELEMENTS)
            result[key] = seconds(lambda: call(at), 0.01)
            result[f"vector/{key}"] = seconds(lambda: call(near), 0.01) / ELEMENTS
    return result


def main():
    numpy.seterr(all="ignore")
    print(json.dumps({"peer": "SciPy", "seconds": {**t_tests(), **distributions()}}))


if __name__ == "__main__":
    main()
