#!/usr/bin/python3
"""Writes the truth tables of the noncentral F distribution from mpmath, independently of the library.

Run:   /usr/bin/python3 generate_noncentral_f.py    (Debian package python3-mpmath; three to four minutes)

Every input is exact in binary, so that both sides start from the same number. The expected values
are those of the mathematical functions at 40 digits, the roots at 28. The column `tolerance` bounds the relative
error (absolute at an expected value of zero); it is what the library's own stopping rules and short
constants allow in that row.

How the values are computed:
  NoncentralFCdf       the Poisson mixture of incomplete beta functions, summed outward from its
                       largest weight until nothing is left at 40 digits. A beta function is its
                       power series of positive terms; the library takes a continued fraction.
                       Every eighth row of moderate parameters is checked against an integral that
                       has no mixture in it: the density of a noncentral chi-square (a Bessel
                       function) times the tail of a chi-square.
  CentralFQuantile, NoncentralFQuantile, NoncentralFDelta
                       root of that function by Newton's or the secant method
"""

import os

import mpmath as mp

mp.mp.dps = 40
HERE = os.path.dirname(os.path.abspath(__file__))


def beta_cdf(x, a, b):
    if x <= 0:
        return mp.mpf(0)
    # The complement only where the series is long, and the value not small.
    if x > mp.mpf(1) / 2 and x > a / (a + b):
        return 1 - beta_lower(1 - x, b, a)
    return beta_lower(x, a, b)


def beta_lower(x, a, b):
    """x^a (1-x)^b / (a B(a, b)) (1 + (a+b)/(a+1) x + (a+b)(a+b+1)/((a+1)(a+2)) x^2 + ...)"""
    total = term = mp.mpf(1)
    n = 0
    smallest = mp.mpf(10) ** -(mp.mp.dps + 2)
    while term > total * smallest:
        term *= (a + b + n) / (a + 1 + n) * x
        total += term
        n += 1
    return beta_front(x, a, b) / a * total


def beta_front(x, a, b):
    return mp.exp(
        mp.loggamma(a + b) - mp.loggamma(a) - mp.loggamma(b) + a * mp.log(x) + b * mp.log(1 - x)
    )


def cdf(f, df1, df2, delta):
    """P(F <= f)."""
    f, a, b, L = mp.mpf(f), mp.mpf(df1) / 2, mp.mpf(df2) / 2, mp.mpf(delta) / 2
    if f <= 0:
        return mp.mpf(0)
    x = a * f / (a * f + b)
    if L == 0:
        return beta_cdf(x, a, b)
    spread = 15 * mp.sqrt(L) + 40
    top = int(L + spread + 10)
    low = max(int(L - spread), 0)
    weight = mp.exp(-L + top * mp.log(L) - mp.loggamma(top + 1))
    beta = beta_cdf(x, a + top, b)
    front = beta_front(x, a + top, b) / (a + top)  # I(a + j) - I(a + j + 1) at j = top
    total = weight * beta
    for j in range(top - 1, low - 1, -1):
        # Downward all terms are positive.
        front = front * (a + j + 1) / ((a + j + b) * x)
        beta += front
        weight = weight * (j + 1) / L
        total += weight * beta
    return total


def cdf_by_integral(f, df1, df2, delta):
    f, n1, n2, delta = mp.mpf(f), mp.mpf(df1), mp.mpf(df2), mp.mpf(delta)

    # In the root of the chi-square, where the density has no pole at zero.
    def integrand(u):
        if u <= 0:
            return mp.mpf(0)
        y = u * u
        density = (
            mp.exp(-(y + delta) / 2)
            * (y / delta) ** (n1 / 4 - mp.mpf(1) / 2)
            * mp.besseli(n1 / 2 - 1, mp.sqrt(delta * y))
            * u
        )
        return density * mp.gammainc(n2 / 2, y * n2 / (n1 * f) / 2, regularized=True)

    mean, sd = n1 + delta, mp.sqrt(2 * (n1 + 2 * delta))
    ends = [mp.mpf(0)] + [mp.sqrt(mean + k * sd) for k in (-4, -2, 0, 2, 5, 10, 20) if mean + k * sd > 0]
    with mp.workdps(20):
        return mp.quad(integrand, ends)


def density(f, df1, df2, delta):
    h = mp.mpf(f) * mp.mpf(10) ** -9
    return (cdf(f + h, df1, df2, delta) - cdf(f - h, df1, df2, delta)) / (2 * h)


def slope_in_delta(f, df1, df2, delta):
    h = mp.mpf(delta) * mp.mpf(10) ** -9
    return (cdf(f, df1, df2, delta + h) - cdf(f, df1, df2, delta - h)) / (2 * h)


def quantile(df1, df2, delta, p):
    """Bisection on the logarithm to three digits, then Newton's method."""
    low, high = mp.mpf(2) ** -60, mp.mpf(2) ** 60
    while high / low > 1.01:
        middle = mp.sqrt(low * high)
        if cdf(middle, df1, df2, delta) < p:
            low = middle
        else:
            high = middle
    f = mp.sqrt(low * high)
    for _ in range(4):
        f -= (cdf(f, df1, df2, delta) - p) / density(f, df1, df2, delta)
    assert abs(cdf(f, df1, df2, delta) - p) < mp.mpf(10) ** -18, (df1, df2, delta, p)
    return f


def delta_of(f, df1, df2, p):
    low, high = mp.mpf(0), mp.mpf(1)
    while cdf(f, df1, df2, high) > p:
        low, high = high, high * 2
    while high - low > high * mp.mpf("0.001"):
        middle = (low + high) / 2
        if cdf(f, df1, df2, middle) > p:
            low = middle
        else:
            high = middle
    delta = (low + high) / 2
    for _ in range(4):
        delta -= (cdf(f, df1, df2, delta) - p) / slope_in_delta(f, df1, df2, delta)
    assert abs(cdf(f, df1, df2, delta) - p) < mp.mpf(10) ** -18, (f, df1, df2, p)
    return delta


def cdf_tolerance(delta, df1, df2):
    """Absolute: the beta functions are good to some 1e-11, the log-gammas of large shapes less, and
    the sum ends when a bound of its rest is 1e-9 before the factor exp(-delta / 2)."""
    L = mp.mpf(delta) / 2
    rest = mp.mpf("1.5e-9") * mp.exp(-L) / (L / (L + 14) + mp.exp(-L)) if delta > 0 else 0
    shapes = mp.mpf(df1 + df2 + delta) / 2
    return mp.mpf("4e-11") + rest + shapes * mp.log(shapes + 2) * mp.mpf("4e-16")


def in_sixteenths(x):
    """The nearest number of five bits or so: short, and exact in binary."""
    step = mp.mpf(2) ** (int(mp.floor(mp.log(x, 2))) - 4)
    return mp.nint(x / step) * step


DESIGNS = [
    (1, 1), (1, 2), (2, 2), (1, 10), (2, 10), (3, 60), (5, 20), (10, 200), (20, 2000), (30, 5),
    (100, 100), ("2.5", "7.25"), ("0.5", "0.75"), (1, 150000), (500, 1000), (4999, 3),
]


def numbers(design):
    return mp.mpf(design[0]), mp.mpf(design[1])


def cdf_rows():
    rows = []
    for design in DESIGNS:
        df1, df2 = numbers(design)
        for delta in ("0", "0.0625", "1", "5", "20", "150", "2500"):
            for factor in ("0.25", "1", "3"):
                d = mp.mpf(delta)
                f = in_sixteenths((df1 + d) / df1 * mp.mpf(factor))
                value = cdf(f, df1, df2, d)
                if value < mp.mpf("1e-250"):
                    continue
                moderate = 1 <= df1 <= 30 and 2 <= df2 <= 200 and 0 < d <= 20
                if moderate and len(rows) % 8 == 0:
                    other = cdf_by_integral(f, df1, df2, d)
                    assert abs(other - value) < mp.mpf("1e-15"), (f, df1, df2, d, value, other)
                rows.append((f, df1, df2, d, value, cdf_tolerance(d, df1, df2) / value))
    return rows


def root_tolerance(error_of_p, slope, root):
    """Searches end at 1e-10 in p or in the argument."""
    return ((error_of_p + mp.mpf("1.1e-10")) / abs(slope) + mp.mpf("2.1e-10")) / root


def central_quantile_rows():
    rows = []
    designs = DESIGNS + [
        (2, 150000), (9, 4), (40, 40), (20, 20), (3, 3), (6, 15), (12, 30), (60, 120), (9, 9),
    ]
    for design in designs:
        df1, df2 = numbers(design)
        for p in PROBABILITIES:
            f = quantile(df1, df2, 0, p)
            if f < mp.mpf("1e-7") or f > mp.mpf("1e7"):
                continue
            error = cdf_tolerance(0, df1, df2)
            rows.append((df1, df2, p, f, root_tolerance(error, density(f, df1, df2, 0), f)))
    return rows


PROBABILITIES = [
    mp.mpf(2) ** -13, mp.mpf(2) ** -7, mp.mpf(1) / 32, mp.mpf(1) / 8, mp.mpf(1) / 2,
    mp.mpf(7) / 8, mp.mpf(31) / 32, 1 - mp.mpf(2) ** -7, 1 - mp.mpf(2) ** -13,
]


def quantile_rows():
    rows = []
    for design in [(1, 3), (1, 10), (2, 10), (3, 60), (5, 20), (10, 200), (20, 2000), (100, 100),
                   ("2.5", "7.25")]:
        df1, df2 = numbers(design)
        for delta in ("0.0625", "1", "5", "20", "150"):
            d = mp.mpf(delta)
            for p in (PROBABILITIES[1], PROBABILITIES[3], PROBABILITIES[4], PROBABILITIES[5],
                      PROBABILITIES[7]):
                f = quantile(df1, df2, d, p)
                if f > mp.mpf("1e7"):
                    continue
                error = cdf_tolerance(d, df1, df2)
                rows.append((d, df1, df2, p, f, root_tolerance(error, density(f, df1, df2, d), f)))
    return rows


def delta_rows():
    rows = []
    for df1, df2 in [(1, 10), (1, 98), (2, 10), (3, 60), (5, 20), (10, 200), (20, 2000), (100, 100)]:
        for factor in ("1.5", "3", "10", "40"):
            f = mp.mpf(factor)
            central = cdf(f, df1, df2, 0)
            for p in PROBABILITIES[:-1]:
                # Beside the central value the root is no better than the error of p over the slope.
                if p > central - mp.mpf("1e-4"):
                    continue
                d = delta_of(f, df1, df2, p)
                if d > 1500 or abs(f * df1 * (df2 - 2) / df2 - df1) < mp.mpf("1e-6"):
                    continue
                error = cdf_tolerance(d, df1, df2)
                rows.append((f, df1, df2, p, d,
                             root_tolerance(error, slope_in_delta(f, df1, df2, d), d)))
    return rows


def text(value):
    return str(value) if isinstance(value, int) else repr(float(value))


def write(name, header, rows):
    path = os.path.join(HERE, name + ".csv")
    with open(path, "w", encoding="ascii") as out:
        out.write("# Written by generate_noncentral_f.py (mpmath %s). Do not edit.\n" % mp.__version__)
        out.write(header + "\n")
        for row in rows:
            out.write(",".join(text(v) for v in row) + "\n")
    print(name, len(rows), "rows", flush=True)


if __name__ == "__main__":
    write("NoncentralFCdf", "f,df1,df2,delta,expected,tolerance", cdf_rows())
    mp.mp.dps = 28  # enough for roots
    write("CentralFQuantile", "df1,df2,p,expected,tolerance", central_quantile_rows())
    write("NoncentralFQuantile", "delta,df1,df2,p,expected,tolerance", quantile_rows())
    write("NoncentralFDelta", "f,df1,df2,p,expected,tolerance", delta_rows())
