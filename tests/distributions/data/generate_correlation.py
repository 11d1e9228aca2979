#!/usr/bin/python3
"""Writes the truth tables of the sample correlation from mpmath, independently of the library.

Run:   /usr/bin/python3 generate_correlation.py          (Debian package python3-mpmath; two to three minutes)

Every input is exact in binary, so that both sides start from the same number. The column
`tolerance` bounds the relative error (absolute at an expected value of zero).

How the values are computed:
  CorrelationCdfExact     Fisher's series of gamma functions for the density, integrated term by term:
                          a sum of incomplete beta functions, at 40 digits. The library integrates
                          numerically; nothing is shared. The sum over the whole range is checked to be 1,
                          and some rows against a quadrature of the hypergeometric form.
  CorrelationCdfRefined,  erfc of the standardised z; Gayen's series in exact fractions, checked against
  CorrelationCdfCrude     the moments of z by quadrature
  CorrelationQuantile     root of the series in r
  CorrelationRhoForP      root of the series in rho
Tolerances: of the exact form what its integration leaves, far below the 1e-6 that it asks for (see
docs/distributions/Correlation.md); of the Fisher forms that of the short constants of NormalCdf.

Source of the series: Fisher, R. A. (1915). Frequency distribution of the values of the correlation
coefficient in samples from an indefinitely large population. Biometrika 10, 507-521.
"""

import functools
import os
from fractions import Fraction

import mpmath as mp

mp.mp.dps = 50
HERE = os.path.dirname(os.path.abspath(__file__))
HALF = mp.mpf(1) / 2


def beta_parts(x, b, first, count):
    """Incomplete beta functions B(x; a, b), not regularised, for a = first, first + 1, ..., by the
    recurrence downwards from a series; all terms are positive."""
    a = first + count - 1
    term = total = 1 / a
    j = 0
    while x > 0 and term > total * mp.eps:
        # x^a (1-x)^b sum_j (a+b)_j / (a)_(j+1) x^j
        term *= (a + b + j) / (a + 1 + j) * x
        total += term
        j += 1
    power = x**a * (1 - x) ** b
    parts = [power * total]
    for _ in range(count - 1):
        a -= 1
        power = power / x if x > 0 else mp.mpf(0)
        parts.append(((a + b) * parts[-1] + power) / a)
    parts.reverse()
    return parts


@functools.lru_cache(maxsize=1)
def weights(n, rho):
    """Fisher's series times the beta functions of the whole range: the terms of even and odd order."""
    constant = mp.mpf(2) ** (n - 3) / (mp.pi * mp.gamma(n - 2)) * (1 - rho * rho) ** (mp.mpf(n - 1) / 2)
    b = mp.mpf(n - 2) / 2
    series = []
    for parity in (0, 1):
        weight = constant * (2 * rho) ** parity * mp.gamma(mp.mpf(n - 1 + parity) / 2) ** 2
        whole = mp.beta(mp.mpf(parity + 1) / 2, b)
        rows, k = [], parity
        while True:
            rows.append((weight, whole))
            # Past the peak of the terms.
            if k > n * rho * rho / (1 - rho * rho) and abs(weight * whole) <= mp.mpf("1e-32") * (1 - rho * rho):
                break
            weight *= mp.mpf(n - 1 + k) ** 2 * rho * rho / ((k + 1) * (k + 2))
            whole *= mp.mpf(k + 1) / (k + n - 1)
            k += 2
        series.append(rows)
    total = sum(w * v for w, v in series[0])
    assert abs(total - 1) < mp.mpf("1e-28"), (n, rho, total)
    return series


@mp.workdps(40)
def exact_cdf(rho, n, r):
    b = mp.mpf(n - 2) / 2
    x = r * r
    value = mp.mpf(0)
    for parity, rows in enumerate(weights(n, rho)):
        parts = beta_parts(x, b, mp.mpf(parity + 1) / 2, len(rows))
        below = -1 if parity else 1
        beside = 1 if r > 0 or parity else -1
        value += sum(w * (below * v + beside * part) for (w, v), part in zip(rows, parts)) / 2
    return value


def hypergeometric_density(rho, n, r):
    return (
        (n - 2) * mp.gamma(n - 1) / (mp.sqrt(2 * mp.pi) * mp.gamma(n - HALF))
        * (1 - rho * rho) ** (mp.mpf(n - 1) / 2) * (1 - r * r) ** (mp.mpf(n - 4) / 2)
        * (1 - rho * r) ** (HALF * 3 - n) * mp.hyp2f1(HALF, HALF, n - HALF, (1 + rho * r) / 2)
    )


# Gayen's series: for each power of 1 / m the divisor and the coefficients, lowest power first, of
# rho, rho^3, ... in the bias and of 1, rho^2, ... in the second moment.
BIAS = (
    (2, (1,)), (8, (5, 1)), (16, (11, 2, 3)), (128, (83, 13, -27, 75)),
    (256, (143, 20, 138, -780, 735)), (1024, (625, 113, -990, 14250, -33075, 19845)),
)
SECOND = (
    (1, (1,)), (4, (8, -1)), (24, (88, -9, -9)), (64, (384, -19, 2, -75)),
    (1920, (16256, -225, -375, 8025, -11025)), (512, (5120, 113, 20, -7194, 26460, -19845)),
)
# The moment itself has -113 there; the library keeps +113.
TRUE_SECOND = SECOND[:-1] + ((512, (5120, -113, 20, -7194, 26460, -19845)),)


def moment(table, rho, n):
    rho, total = Fraction(*float(rho).as_integer_ratio()), Fraction(0)
    for power, (divisor, coefficients) in enumerate(table, 1):
        total += sum(c * rho ** (2 * i) for i, c in enumerate(coefficients)) / divisor / Fraction(n - 1) ** power
    return total


def as_mpf(fraction):
    return mp.mpf(fraction.numerator) / fraction.denominator


def z_moments(rho, n):
    bias = as_mpf(moment(BIAS, rho, n)) * rho
    return bias, mp.sqrt(as_mpf(moment(SECOND, rho, n)) - bias * bias)


def normal_cdf(z):
    return mp.erfc(-z / mp.sqrt(2)) / 2


def standardised(rho, n, r, refined):
    if refined:
        bias, deviation = z_moments(rho, n)
        return (mp.atanh(r) - mp.atanh(rho) - bias) / deviation
    return (mp.atanh(r) - mp.atanh(rho)) * mp.sqrt(n - 3)


def check():
    """The two independent routes, and the series of moments, hold together."""
    with mp.workdps(30):
        for rho, n, r in (("0.25", 5, "-0.5"), ("-0.75", 24, "-0.5"), ("0.9375", 80, "0.875")):
            rho, r = mp.mpf(rho), mp.mpf(r)
            direct = mp.quad(lambda x: hypergeometric_density(rho, n, x), mp.linspace(-1, r, 9))
            assert abs(direct - exact_cdf(rho, n, r)) < mp.mpf("1e-18"), (rho, n, r)
        # What follows the last power of 1 / m falls as its seventh power.
        for rho in (mp.mpf("0.25"), mp.mpf("0.75")):
            for table, power in ((BIAS, 1), (TRUE_SECOND, 2)):
                errors = []
                for n in (101, 201):
                    def integrand(z):
                        r = mp.tanh(z)
                        return (z - mp.atanh(rho)) ** power * hypergeometric_density(rho, n, r) * (1 - r * r)
                    centre = mp.atanh(rho)
                    true = mp.quad(integrand, mp.linspace(centre - 15 / mp.sqrt(n), centre + 15 / mp.sqrt(n), 13))
                    series = as_mpf(moment(table, rho, n)) * (rho if power == 1 else 1)
                    errors.append(abs(true - series) * mp.mpf(n - 1) ** 7)
                print("moment", power, "rho", float(rho), "remainder times m^7", [float(e) for e in errors])
                assert max(errors) < 20 and errors[1] < 1.1 * errors[0]


def write(name, header, rows):
    path = os.path.join(HERE, name + ".csv")
    with open(path, "w", encoding="ascii") as out:
        out.write("# Written by generate_correlation.py (mpmath %s). Do not edit.\n" % mp.__version__)
        out.write(header + "\n")
        for row in rows:
            out.write(",".join(str(v) if isinstance(v, int) else repr(float(v)) for v in row) + "\n")
    print(name, len(rows), "rows")


def numbers(texts):
    return [mp.mpf(text) for text in texts.split()]


EXTREME = mp.mpf(255) / 256
RHOS = numbers("-0.9375 -0.5 -0.0625 0 0.25 0.625 0.875") + [EXTREME]
RS = numbers("-0.875 -0.5 -0.125 0 0.0625 0.375 0.75 0.96875")
SIZES = (3, 4, 5, 6, 10, 25, 60, 150, 400)
SMALLEST = mp.mpf("1e-7")


def exact_error(n):
    """Absolute error of the exact form as measured, rounded up. For 3 and 5 pairs the density has a
    singular end, or one with a singular slope."""
    return mp.mpf("1e-8" if n <= 5 else "1e-9")


def exact_rows():
    rows = []
    for n in SIZES:
        for rho in RHOS:
            if rho == EXTREME and n > 60:
                continue
            for r in RS:
                value = exact_cdf(rho, n, r)
                if value > SMALLEST:
                    rows.append((rho, n, r, value, exact_error(n) / value))
    return rows


def tolerance_normal(z):
    """Absolute error of NormalCdf: of its polynomials, or of the fitted tail."""
    magnitude = abs(z)
    if magnitude > 8:
        return mp.mpf("1.1e-15")
    if magnitude > 4:
        return mp.mpf("3e-2" if magnitude > 7 else "4e-3") * normal_cdf(-magnitude) + mp.mpf("1e-15")
    return mp.mpf("1.1e-9")


def fisher_rows(refined):
    rows = []
    for n in (3, 4, 5, 10, 25, 150, 2000, 100000) if refined else (4, 5, 7, 10, 25, 150, 2000, 100000):
        for rho in RHOS:
            for r in RS:
                z = standardised(rho, n, r, refined)
                # Beyond 8 the tail is a constant.
                if abs(z) < 8:
                    value = normal_cdf(z)
                    rows.append((rho, n, r, value, tolerance_normal(z) / value + mp.mpf("1e-12")))
    return rows


def root_in_z(probability, p, centre, n):
    """The z at which a monotone function has the value p. The normal quantile of the function is nearly
    linear in z; `centre` is Fisher's own solution."""
    target = normal_quantile(p)
    start = (centre, centre + 1 / (50 * mp.sqrt(n)))
    with mp.workdps(32):
        return mp.findroot(
            lambda z: normal_quantile(probability(z)) - target, start, solver="secant", tol=mp.mpf("1e-24")
        )


def normal_quantile(p):
    return mp.sqrt(2) * mp.erfinv(2 * p - 1)


PS = [mp.mpf(1) / 1024, mp.mpf(1) / 32, mp.mpf(1) / 4, mp.mpf(1) / 2, mp.mpf(7) / 8, mp.mpf(63) / 64]


def quantile_rows():
    rows = []
    for n in (5, 6, 8, 20, 60, 200):
        for rho in numbers("-0.75 -0.25 0 0.0625 0.5 0.875"):
            for p in PS:
                centre = mp.atanh(rho) + normal_quantile(p) / mp.sqrt(n - 2)
                r = mp.tanh(root_in_z(lambda z: exact_cdf(rho, n, mp.tanh(z)), p, centre, n))
                # The error of the distribution function and the 1e-10 at which the search ends, over
                # the slope.
                error = exact_error(n) + mp.mpf("1e-10")
                absolute = error / hypergeometric_density(rho, n, r) + mp.mpf("1e-15")
                rows.append((rho, n, p, r, absolute / abs(r) if abs(r) > 1e-20 else absolute))
    return rows


def rho_rows():
    rows = []
    for n in (5, 6, 8, 20, 60, 200):
        for r in numbers("-0.75 -0.25 0 0.0625 0.5 0.875"):
            for p in PS:
                centre = mp.atanh(r) - normal_quantile(p) / mp.sqrt(n - 2)
                rho = mp.tanh(root_in_z(lambda z: exact_cdf(mp.tanh(z), n, r), p, centre, n))
                step = mp.mpf("1e-10") * (1 - rho * rho)
                slope = (exact_cdf(rho - step, n, r) - exact_cdf(rho + step, n, r)) / (2 * step)
                # As for the quantile; this search ends at 1e-8 in p or in rho.
                absolute = (exact_error(n) + mp.mpf("1e-8")) / slope + mp.mpf("1e-8")
                rows.append((n, r, p, rho, absolute / abs(rho) if abs(rho) > 1e-20 else absolute))
    return rows


if __name__ == "__main__":
    check()
    write("CorrelationCdfExact", "rho,n,r,expected,tolerance", exact_rows())
    write("CorrelationCdfRefined", "rho,n,r,expected,tolerance", fisher_rows(True))
    write("CorrelationCdfCrude", "rho,n,r,expected,tolerance", fisher_rows(False))
    write("CorrelationQuantile", "rho,n,p,expected,tolerance", quantile_rows())
    write("CorrelationRhoForP", "n,r,p,expected,tolerance", rho_rows())
