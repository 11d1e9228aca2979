#!/usr/bin/python3
"""Writes the truth tables of the distribution of R2 from mpmath, independently of the library.

Run:   /usr/bin/python3 generate_multiple_r2.py      (Debian package python3-mpmath; four minutes)

Every input is exact in binary, so that both sides start from the same number. The column
`tolerance` bounds the relative error (absolute at an expected value of zero).

How the values are computed:
  MultipleR2CdfExact   integral of the density of R = sqrt(R2),
                         2 (1 - rho2)^A u^(2B - 1) (1 - u^2)^(C - 1) / B(B, C) F(A, A; B; rho2 u^2),
                       with the hypergeometric function of mpmath, by Gauss-Legendre quadrature over
                       the tail that is the smaller; the mixture of beta functions that the library
                       sums has no part in it
  MultipleR2CdfLee     Lee's formulas at 40 digits; the noncentral F distribution as a Poisson
                       mixture of beta functions, summed to 1e-30
  MultipleR2Quantile   root of that integral in x
  MultipleR2RhoForP    root of that integral in rho2
"""

import os
import sys

import mpmath as mp

mp.mp.dps = 25
HERE = os.path.dirname(os.path.abspath(__file__))


def shapes(n, k):
    return mp.mpf(n - 1) / 2, mp.mpf(k - 1) / 2, mp.mpf(n - k) / 2


def density_of_root(n, k, rho2):
    """The density of sqrt(R2) and its mean and standard deviation, roughly."""
    A, B, C = shapes(n, k)
    log_constant = mp.log(2) + A * mp.log(1 - rho2) - mp.log(mp.beta(B, C))

    def density(u):
        if u <= 0:
            return mp.exp(log_constant) if 2 * B == 1 else mp.mpf(0)
        if u >= 1:
            u = 1 - mp.mpf(10) ** -24
        return mp.exp(log_constant + (2 * B - 1) * mp.log(u) + (C - 1) * mp.log1p(-u * u)) * mp.hyp2f1(
            A, A, B, rho2 * u * u
        )

    return density


def cuts(low, high, pieces):
    return [low + (high - low) * mp.mpf(i) / pieces for i in range(pieces + 1)]


def moments(n, k, rho2):
    mean = rho2 + (1 - rho2) * mp.mpf(k - 1) / (n - 1)
    deviation = 2 * (1 - rho2) * mp.sqrt((rho2 + mp.mpf(1) / n) / n)
    return mean, deviation


def cdf(x, rho2, n, k):
    x, rho2 = mp.mpf(x), mp.mpf(rho2)
    if x <= 0:
        return mp.mpf(0)
    if x >= 1:
        return mp.mpf(1)
    _, B, C = shapes(n, k)
    if rho2 == 0:
        return mp.betainc(B, C, 0, x, regularized=True)
    density = density_of_root(n, k, rho2)
    mean, deviation = moments(n, k, rho2)
    u = mp.sqrt(x)
    center = mp.sqrt(mean)
    width = 14 * deviation / (2 * center)
    with mp.workdps(20):
        if x <= mean or C <= 1:
            # Below the mean the tail ends at zero or, in large samples, where nothing is left of it.
            low = max(mp.mpf(0), u - width) if n >= 100 else mp.mpf(0)
            return mp.quad(density, cuts(low, u, 4), method="gauss-legendre")
        # Above it the complement, with 1 - u = t^2 for the root that C = 3 / 2 leaves at one.
        high = min(mp.mpf(1), u + width)
        t_low, t_high = mp.sqrt(1 - high), mp.sqrt(1 - u)
        upper = mp.quad(
            lambda t: 2 * t * density(1 - t * t),
            cuts(t_low, t_high, 2 if n < 60 else 4),
            method="gauss-legendre",
        )
        return 1 - upper


def peak_index(rho2, n, k):
    N, P = mp.mpf(n - 1), mp.mpf(k - 1)
    G = 8 - 4 * N - (4 - 4 * N + 2 * P) / (1 - rho2)
    R = 2 * mp.sqrt((P - 2) ** 2 + 4 * rho2 * (N - 2) * (N - P)) / (1 - rho2)
    return int((G + R) / 8) + 2


def absolute_error_allowed(x, rho2, n, k):
    """The library ends its series at a bound of 1e-7 for the rest, unless the terms before the peak
    index are below 1e-18 first. Apart from that, its beta functions are good to 1e-10."""
    A, B, C = shapes(n, k)
    j = peak_index(rho2, n, k)
    if rho2 == 0:
        return mp.mpf("5e-11")
    log_weight = A * mp.log(1 - rho2) + mp.loggamma(A + j) - mp.loggamma(A) - mp.loggamma(j + 1) + j * mp.log(rho2)
    last = mp.exp(log_weight) * mp.betainc(B + j, C, 0, x, regularized=True)
    return mp.mpf("1e-7") if last > mp.mpf("1e-19") else mp.mpf("1e-10")


def lee_cdf(x, rho2, n, k):
    x, rho2 = mp.mpf(x), mp.mpf(rho2)
    N, P, Q = mp.mpf(n - 1), mp.mpf(k - 1), mp.mpf(n - k)
    g = 1 / (1 - rho2)
    p1, p2, p3 = ((g**i - 1) * N + P for i in (1, 2, 3))
    c = (p2 - mp.sqrt(p2 * p2 - p3 * p1)) / p1
    nu = (p2 - 2 * (g - 1) * mp.sqrt(g) * mp.sqrt(Q * N)) / c**2
    delta = mp.sqrt(Q * N) * (g - 1) * mp.sqrt(g) / c**2
    f = Q * x / (1 - x) / (nu * c)
    return noncentral_f_cdf(f, nu, Q, delta)


def noncentral_f_cdf(f, df1, df2, delta):
    a, b, L = df1 / 2, df2 / 2, delta / 2
    x = a * f / (a * f + b)
    top = int(L + 14 * mp.sqrt(L) + 60)
    beta = mp.betainc(a + top, b, 0, x, regularized=True)
    front = mp.exp((a + top) * mp.log(x) + b * mp.log(1 - x) + mp.loggamma(a + b + top) - mp.loggamma(a + top + 1)
                   - mp.loggamma(b))
    weight = mp.exp(-L + (top * mp.log(L) if top else 0) - mp.loggamma(top + 1)) if L else mp.mpf(top == 0)
    if L == 0:
        return mp.betainc(a, b, 0, x, regularized=True)
    total = mp.mpf(0)
    for j in range(top, -1, -1):
        total += weight * beta
        if j:
            # I_x(a + j - 1, b) = I_x(a + j, b) + x^(a + j - 1) (1 - x)^b / ((a + j - 1) B(a + j - 1, b))
            front = front * (a + j) / (x * (a + b + j - 1))
            beta += front
            weight = weight * j / L
    return total


def quantile(p, rho2, n, k, start):
    """Newton's method on the integral, from a start inside."""
    density = density_of_root(n, k, rho2)

    def slope(x):
        u = mp.sqrt(x)
        return density(u) / (2 * u)

    x = start
    for _ in range(40):
        step = (cdf(x, rho2, n, k) - p) / slope(x)
        new = x - step
        if new <= 0:
            new = x / 4
        if new >= 1:
            new = (1 + x) / 2
        done = abs(new - x) < mp.mpf("1e-13") * x
        x = new
        if done:
            return x, slope(x)
    raise ArithmeticError("no quantile")


def rho_for_p(p, r2, n, k):
    # The distribution function falls as rho2 rises: halve the way to 1 until it is below p.
    low, high = mp.mpf(0), mp.mpf("0.5")
    while cdf(r2, high, n, k) > p:
        low, high = high, (1 + high) / 2
        if high > mp.mpf("0.995"):
            return None, None
    root = mp.findroot(
        lambda rho2: cdf(r2, rho2, n, k) - p, (low, high), solver="anderson", tol=mp.mpf("1e-22"), maxsteps=80
    )
    step = max(root * mp.mpf("1e-4"), mp.mpf("1e-7"))
    return root, (cdf(r2, root + step, n, k) - cdf(r2, max(root - step, mp.mpf(0)), n, k)) / (
        step + min(step, root)
    )


def binary(value, bits=14):
    """The value rounded to so many significant bits."""
    value = mp.mpf(value)
    exponent = int(mp.floor(mp.log(value, 2)))
    scale = mp.mpf(2) ** (bits - exponent)
    return mp.nint(value * scale) / scale


def text(value):
    return str(value) if isinstance(value, int) else repr(float(value))


def write(name, header, rows):
    with open(os.path.join(HERE, name + ".csv"), "w", encoding="ascii") as out:
        out.write("# Written by generate_multiple_r2.py (mpmath %s). Do not edit.\n" % mp.__version__)
        out.write(header + "\n")
        for row in rows:
            out.write(",".join(text(value) for value in row) + "\n")
    print(name, len(rows), "rows")
    sys.stdout.flush()


DESIGNS = ((3, 2), (4, 3), (5, 2), (10, 3), (12, 11), (20, 6), (30, 2), (60, 40), (100, 6), (250, 3), (600, 11))
RHOS = ("0", "0.015625", "0.125", "0.5", "0.875")


def points(n, k, rho2, spread=(-3, -1.5, 0, 1, 2.5)):
    """Distinct x about the mean, by the logit so that they stay inside."""
    mean, deviation = moments(n, k, rho2)
    logit = mp.log(mean / (1 - mean))
    scale = min(deviation / (mean * (1 - mean)), mp.mpf("1.5"))
    return [binary(1 / (1 + mp.exp(-(logit + s * scale)))) for s in spread]


def normal_start(p, r2, n, k):
    """Where the calculator starts its search, rounded."""
    mean = r2 - (k - 3) * (1 - r2) / (n - k)
    deviation = mp.sqrt(4 * (1 - r2) ** 2 * r2 * mp.mpf(n - k) ** 2 / ((mp.mpf(n) ** 2 - 1) * (n + 3)))
    z = mp.sqrt(2) * mp.erfinv(2 * p - 1)
    return binary(max(mp.mpf("0.0001"), mean - z * deviation))


def cdf_rows():
    rows = []
    for n, k in DESIGNS:
        for rho in RHOS:
            rho2 = mp.mpf(rho)
            for x in points(n, k, rho2):
                p = cdf(x, rho2, n, k)
                if p > mp.mpf("1e-12"):
                    rows.append((x, rho2, n, k, p, absolute_error_allowed(x, rho2, n, k) / p))
    return rows


def lee_rows():
    rows = []
    for n, k in DESIGNS + ((2000, 5),):
        for rho in RHOS:
            rho2 = mp.mpf(rho)
            for x in points(n, k, rho2):
                with mp.workdps(40):
                    p = lee_cdf(x, rho2, n, k)
                if p > mp.mpf("1e-12"):
                    # The bound of the series of the noncentral F distribution and its beta functions.
                    rows.append((x, rho2, n, k, p, mp.mpf("1e-9") / p))
    return rows


def quantile_rows():
    rows = []
    for n, k in ((4, 2), (5, 3), (10, 3), (12, 11), (20, 6), (30, 4), (60, 40), (100, 6), (300, 11)):
        for rho in ("0", "0.015625", "0.25", "0.625", "0.875"):
            rho2 = mp.mpf(rho)
            for p, s in ((mp.mpf(1) / 32, -1.5), (mp.mpf(1) / 4, -0.75), (mp.mpf(1) / 2, 0), (mp.mpf(13) / 16, 0.75),
                         (mp.mpf(31) / 32, 1.5)):
                x, slope = quantile(p, rho2, n, k, points(n, k, rho2, (s,))[0])
                # A residual or a step of 1e-7 ends the search; with one degree of freedom the density
                # is unbounded at 1 and the steps shorten slowly.
                step = mp.mpf("5e-7" if n - k == 1 else "1e-7")
                rows.append((rho2, n, k, p, x, (mp.mpf("2e-7") / slope + step) / x))
    return rows


def rho_rows():
    rows = []
    for n, k in ((5, 2), (8, 3), (12, 8), (20, 6), (30, 2), (60, 20), (100, 6), (250, 11)):
        for r in ("0.125", "0.25", "0.375", "0.5", "0.625", "0.75", "0.875", "0.9375"):
            r2 = mp.mpf(r)
            central = cdf(r2, mp.mpf(0), n, k)
            for p in (mp.mpf(1) / 32, mp.mpf(1) / 4, mp.mpf(1) / 2, mp.mpf(7) / 8, mp.mpf(31) / 32):
                if p >= central - mp.mpf("0.005"):
                    continue
                root, slope = rho_for_p(p, r2, n, k)
                if root is None:
                    continue
                start = normal_start(p, r2, n, k)
                rows.append((start, n, k, r2, p, root, (mp.mpf("2e-7") / abs(slope) + mp.mpf("2e-8")) / root))
    return rows


if __name__ == "__main__":
    write("MultipleR2CdfLee", "x,rho2,n,k,expected,tolerance", lee_rows())
    write("MultipleR2CdfExact", "x,rho2,n,k,expected,tolerance", cdf_rows())
    write("MultipleR2Quantile", "rho2,n,k,p,expected,tolerance", quantile_rows())
    write("MultipleR2RhoForP", "start,n,k,r2,target,expected,tolerance", rho_rows())
