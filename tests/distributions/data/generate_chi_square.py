#!/usr/bin/python3
"""Writes the truth tables of the noncentral chi-square distribution, independently of the library.

Run:   /usr/bin/python3 generate_chi_square.py     (Debian package python3-mpmath; about a minute)

Every input is exact in binary, so that both sides start from the same number. The expected values
are those of the mathematical functions. The column `tolerance` bounds the relative error (absolute
at an expected value of zero): what the library's truncation and short constants allow there.

How the values are computed:
  NoncentralChiSquareCdf       Poisson mixture of mpmath.gammainc, regularized; each central value
                               is evaluated afresh at 30 digits, without a recurrence. Some rows
                               are checked against an integral that has no mixture in it.
  NoncentralChiSquareQuantile  an x exact in binary, its probability rounded to a double, and x
                               corrected for that rounding by the density; what is left is of the
                               order of the square of a rounding
  NoncentralChiSquareDelta     the same with the derivative in the noncentrality
"""

import os

import mpmath as mp

mp.mp.dps = 30
HERE = os.path.dirname(os.path.abspath(__file__))
LARGEST_SERIES_DELTA = 2 * 200 * mp.log(10)  # exp(-delta / 2) = 1e-200


def central_cdf(x, n):
    return mp.gammainc(mp.mpf(n) / 2, 0, x / 2, regularized=True)


def central_density(x, n):
    half = mp.mpf(n) / 2
    return mp.exp((half - 1) * mp.log(x / 2) - x / 2 - mp.loggamma(half)) / 2


def mixture(x, n, delta, value):
    """Sum over the Poisson weights that are above 1e-28."""
    rate = mp.mpf(delta) / 2
    if rate == 0:
        return value(x, n)
    spread = 12 * mp.sqrt(rate) + 40
    first, last = int(max(0, rate - spread)), int(rate + spread)
    log_rate = mp.log(rate)
    total = mp.mpf(0)
    for i in range(first, last + 1):
        weight = mp.exp(i * log_rate - rate - mp.loggamma(i + 1))
        if weight > mp.mpf("1e-28"):
            total += weight * value(x, n + 2 * i)
    return total


def cdf(x, n, delta):
    return mixture(mp.mpf(x), n, delta, central_cdf)


def density(x, n, delta):
    return mixture(mp.mpf(x), n, delta, central_density)


def cdf_by_integral(x, n, delta):
    """X is (Z + sqrt(delta))^2 plus an independent central variable with n - 1 degrees."""
    x, shift = mp.mpf(x), mp.sqrt(mp.mpf(delta))
    low, high = max(-mp.sqrt(x) - shift, mp.mpf(-12)), min(mp.sqrt(x) - shift, mp.mpf(12))
    if high <= low:
        return mp.mpf(0)

    def integrand(z):
        rest = x - (z + shift) ** 2
        return mp.npdf(z) * central_cdf(rest, n - 1) if rest > 0 else mp.mpf(0)

    with mp.workdps(20):
        return mp.quad(integrand, [low + (high - low) * i / 12 for i in range(13)])


def check_mixture():
    for x, n, delta in ((3, 4, 2), (20, 10, 5), (60, 7, 40), (150, 100, 30)):
        difference = abs(cdf(x, n, delta) - cdf_by_integral(x, n, delta))
        assert difference < mp.mpf("1e-12"), (x, n, delta, difference)


def text(value):
    return str(value) if isinstance(value, int) else repr(float(value))


def write(name, header, rows):
    assert len(rows) >= 200, name
    with open(os.path.join(HERE, name + ".csv"), "w", encoding="ascii") as out:
        out.write("# Written by generate_chi_square.py (mpmath %s). Do not edit.\n" % mp.__version__)
        out.write(header + "\n")
        for row in rows:
            out.write(",".join(text(v) for v in row) + "\n")
    print(name, len(rows), "rows")


def sixteenths(value):
    """The nearest positive multiple of 1/16."""
    return max(mp.nint(value * 16), mp.mpf(1)) / 16


def place(n, delta, deviations):
    return sixteenths(n + delta + deviations * mp.sqrt(2 * (n + 2 * delta)))


def cdf_tolerance(x, n, delta):
    """Absolute error of the distribution function."""
    if delta > LARGEST_SERIES_DELTA:
        return mp.mpf("2e-5")  # the normal approximation
    # The sum ends when what is left is below 1e-6; an odd n starts from the normal integral, good to
    # 1.1e-9 up to a deviate of 4 and to 4e-3 of the tail beyond; the logarithm of a long product
    # loses digits as x grows.
    truncation = mp.mpf("1e-6") if delta > 0 else mp.mpf(0)
    normal = mp.mpf(0)
    if n % 2:
        normal = mp.mpf("2.3e-9") if x <= 16 else mp.mpf("4e-3") * mp.erfc(mp.sqrt(x / 2))
    return truncation + normal + mp.mpf("1e-13") * (1 + mp.mpf(n + delta) / 10)


DFS = (1, 2, 3, 4, 7, 10, 25, 60, 101, 250, 1000, 5000)
DELTAS = ("0", "0.0625", "1", "5.5", "30", "120", "400")


def cdf_rows():
    points = [
        (place(n, mp.mpf(delta), d), n, mp.mpf(delta))
        for n in DFS
        for delta in DELTAS
        for d in (-1.5, 0, 2)
    ]
    # Far tails, tiny x, no degree of freedom, the largest noncentralities of the series and the
    # approximation beyond them.
    points += [(mp.mpf(2) ** -k, n, mp.mpf(d)) for n in (1, 2, 3, 5) for k in (4, 10, 30) for d in (0, 2)]
    points += [(mp.mpf(x), 0, mp.mpf(d)) for x in (1, 8, 25) for d in (1, 10, 60)]
    points += [(place(n, mp.mpf(d), s), n, mp.mpf(d)) for n in (1, 20) for d in (700, 800) for s in (-4, -1, 1)]
    points += [(place(n, mp.mpf(0), s), n, mp.mpf(0)) for n in (2, 9, 40) for s in (4, 6)]
    points += [
        (place(n, mp.mpf(d), s), n, mp.mpf(d)) for n in (1, 10, 1000) for d in (925, 2000) for s in (-2, 0, 2)
    ]
    rows = []
    for x, n, delta in points:
        # The point mass at zero is the mixture's first term when there is no degree of freedom.
        value = cdf(x, n, delta) if n > 0 else mp.exp(-delta / 2) + mixture(
            x, 0, delta, lambda y, m: central_cdf(y, m) if m > 0 else mp.mpf(0)
        )
        if value > mp.mpf("1e-290"):
            rows.append((x, n, delta, value, cdf_tolerance(x, n, delta) / value))
    return rows


def inverse_points(dfs, deltas):
    return [
        (place(n, mp.mpf(delta), d), n, mp.mpf(delta))
        for n in dfs
        for delta in deltas
        for d in (-1.5, -0.5, 0.5, 2)
    ]


def inverse_rows(points, slope, unknown_of, row):
    """Rows for p rounded to a double; `slope` is the derivative of the probability."""
    rows = []
    for x, n, delta in points:
        exact = cdf(x, n, delta)
        p = mp.mpf(float(exact))
        if not mp.mpf("0.0001") <= p <= mp.mpf("0.9999"):
            continue
        rate = slope(x, n, delta)
        unknown = unknown_of(x, delta) + (p - exact) / rate
        # The error of the distribution function and the residual of the search, over the slope.
        absolute = (cdf_tolerance(x, n, delta) + mp.mpf("1.1e-10")) / abs(rate)
        rows.append(row(x, n, delta, p) + (unknown, absolute / unknown))
    return rows


def quantile_rows():
    points = inverse_points((4, 5, 10, 31, 100, 501, 2000), ("0", "0.5", "3", "20", "100", "450", "700"))
    points += inverse_points((4, 50), ("950", "1500"))
    return inverse_rows(
        points, density, lambda x, delta: x, lambda x, n, delta, p: (delta, n, p)
    )


def delta_rows():
    points = inverse_points((1, 2, 3, 8, 20, 75, 300), ("0.5", "2", "6", "20", "75", "250", "600"))
    points += inverse_points((4, 50), ("1200",))
    points += inverse_points((1500,), ("10", "100", "500"))
    return inverse_rows(
        points,
        lambda x, n, delta: -density(x, n + 2, delta),
        lambda x, delta: delta,
        lambda x, n, delta, p: (x, n, p),
    )


if __name__ == "__main__":
    check_mixture()
    write("NoncentralChiSquareCdf", "x,df,delta,expected,tolerance", cdf_rows())
    write("NoncentralChiSquareQuantile", "delta,df,p,expected,tolerance", quantile_rows())
    write("NoncentralChiSquareDelta", "x,df,p,expected,tolerance", delta_rows())
