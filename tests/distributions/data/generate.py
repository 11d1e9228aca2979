#!/usr/bin/python3
"""Writes the truth tables of tests/distributions from mpmath, independently of the library.

Run:   /usr/bin/python3 generate.py          (Debian package python3-mpmath; about two minutes)

Every input is exact in binary, so that both sides start from the same number. The expected values
are those of the mathematical functions at 30 digits. The column `tolerance` bounds the relative
error (absolute at an expected value of zero). It is wider than double precision on purpose: the
library keeps short constants, and the tolerance of a row is what those constants allow there.

How the values are computed:
  NormalCdf            erfc
  NormalQuantile       root of erfc
  LogGamma             mpmath.loggamma
  BetaCdf              mpmath.betainc, regularized
  NoncentralTCdf       integral of Phi(t u / sqrt(n) - delta) over the density of chi with n degrees
                       of freedom, by Gauss-Legendre quadrature; the recursion that the library uses
                       has no part in it
  NoncentralTQuantile  root of that integral
"""

import os

import mpmath as mp

mp.mp.dps = 30
HERE = os.path.dirname(os.path.abspath(__file__))


def normal_cdf(z):
    return mp.erfc(-z / mp.sqrt(2)) / 2


def normal_quantile(p):
    y = mp.sqrt(-2 * mp.log(min(p, 1 - p)))
    start = y - (mp.mpf("2.30753") + mp.mpf("0.27061") * y) / (1 + mp.mpf("0.99229") * y)
    if p == mp.mpf("0.5"):
        return mp.mpf(0)
    z = mp.findroot(lambda x: mp.log(normal_cdf(-x)) - mp.log(min(p, 1 - p)), start)
    return z if p > 0.5 else -z


def noncentral_t_cdf(t, n, delta):
    t, n, delta = mp.mpf(t), mp.mpf(n), mp.mpf(delta)
    log_constant = (1 - n / 2) * mp.log(2) - mp.loggamma(n / 2)
    mode = mp.sqrt(n - 1)

    def density(u):
        return mp.exp(log_constant + (n - 1) * mp.log(u) - u * u / 2)

    # The density of chi is as wide as a normal one of standard deviation 1 / sqrt(2) or less.
    low, high = max(mode - 9, mp.mpf(0)), mode + 10
    cuts = [low + (high - low) * i / 8 for i in range(9)]
    with mp.workdps(22):
        return mp.quad(
            lambda u: density(u) * normal_cdf(t * u / mp.sqrt(n) - delta) if u > 0 else mp.mpf(0),
            cuts,
            method="gauss-legendre",
        )


def noncentral_t_quantile(p, n, delta):
    p, delta = mp.mpf(p), mp.mpf(delta)
    if delta == 0 and p == mp.mpf("0.5"):
        return mp.mpf(0)
    with mp.workdps(20):
        low, high = delta - 4, delta + 4
        while noncentral_t_cdf(low, n, delta) > p:
            low -= 8
        while noncentral_t_cdf(high, n, delta) < p:
            high += 8
        return mp.findroot(
            lambda t: noncentral_t_cdf(t, n, delta) - p,
            (low, high),
            solver="anderson",
            tol=mp.mpf("1e-28"),
            maxsteps=60,
        )


def write(name, header, rows):
    path = os.path.join(HERE, name + ".csv")
    with open(path, "w", encoding="ascii") as out:
        out.write("# Written by generate.py (mpmath %s). Do not edit.\n" % mp.__version__)
        out.write(header + "\n")
        for row in rows:
            out.write(",".join(v if isinstance(v, str) else text(v) for v in row) + "\n")
    print(name, len(rows), "rows")


def text(value):
    if isinstance(value, int):
        return str(value)
    return repr(float(value))


def tolerance_normal_cdf(z, p):
    """Absolute accuracy of each branch, carried to the smaller tail as a relative one."""
    magnitude = abs(z)
    if magnitude > 8:
        # The mass stops at 1 - 1e-15; the tail below -8 has no relative accuracy at all.
        return mp.mpf("1e-15") / p if z > 0 else mp.mpf("5.1e-16") / p
    if magnitude > 4:
        # The fitted tail.
        relative = mp.mpf("3e-2") if magnitude > 7 else mp.mpf("4e-3")
        return relative if z < 0 else relative * normal_cdf(-magnitude) / p + mp.mpf("1e-15")
    # Algorithm 209 is good to 1e-9.
    return mp.mpf("1.1e-9") / p


def normal_rows():
    zs = [mp.mpf(i) / 16 for i in range(-144, 145)]
    return [(z, normal_cdf(z), tolerance_normal_cdf(z, normal_cdf(z))) for z in zs]


def quantile_rows():
    ps = [mp.mpf(i) / 256 for i in range(1, 256)]
    ps += [mp.mpf(2) ** -k for k in range(9, 110, 5)]
    ps += [1 - mp.mpf(2) ** -k for k in range(9, 50, 5)]
    # AS 70 is good to 1.5e-8 in z down to 1e-20; its digits were cut to eight.
    return [
        (p, z, mp.mpf("3e-8" if p > 1e-20 else "2e-6") / abs(z) if z != 0 else 0)
        for p, z in ((p, normal_quantile(p)) for p in sorted(ps))
    ]


def log_gamma_rows():
    xs = [mp.mpf(i) / 8 for i in range(1, 161)]
    xs += [20 + mp.mpf(i) * mp.mpf("12.5") for i in range(1, 41)]
    xs += [mp.mpf(10) ** k for k in range(3, 10)]
    # Constants of twelve digits: an absolute error, which shows near the zeros at 1 and 2.
    return [
        (x, v, max(mp.mpf("5e-13"), mp.mpf("2e-11") / abs(v)) if v != 0 else mp.mpf("2e-11"))
        for x, v in ((x, mp.loggamma(x)) for x in xs)
    ]


def beta_rows():
    rows = []
    shapes = [mp.mpf(s) for s in ("0.5", "1", "2.5", "5", "12", "40", "250")]
    for a in shapes:
        for b in shapes:
            for x in (mp.mpf(1) / 16, mp.mpf(5) / 16, mp.mpf(1) / 2, mp.mpf(13) / 16, mp.mpf(63) / 64):
                value = mp.betainc(a, b, 0, x, regularized=True)
                if value < mp.mpf("1e-290"):
                    continue
                # Three log-gammas and a fraction to 1e-10; one minus the other tail where x is
                # beyond the mean.
                rows.append((x, a, b, value, max(mp.mpf("1e-9"), mp.mpf("1e-10") / value)
                             if (a + 1) / (a + b + 2) <= x else mp.mpf("1e-9")))
    return rows


def t_cdf_rows():
    rows = []
    for n in (1, 2, 3, 4, 5, 10, 25, 60, 61, 250, 999, 5000):
        for delta in ("0", "0.5", "1.5", "-2", "3", "5.25"):
            for t in ("-2.5", "-0.75", "0", "1.25", "3.5"):
                t_value, d_value = mp.mpf(t), mp.mpf(delta)
                value = noncentral_t_cdf(t_value, n, d_value)
                rows.append((t_value, n, d_value, value, t_tolerance(t_value, n, d_value) / value))
    return rows


def t_tolerance(t, n, delta):
    """Absolute error that the short constants leave in the distribution function.

    The error of Phi(b A) enters the recursion. Beyond 4 it is that of the fitted tail, and the
    recursion magnifies that where t and delta differ in sign.
    The exponential term of the recursion is left out where its exponent is -12.5 or less.
    """
    growth = mp.exp(-t * delta * mp.sqrt(n / (n + t * t))) if t * delta < 0 else mp.mpf(1)
    exponent = delta * delta / 2 * t * t / (n + t * t)
    left_out = mp.mpf("2e-7") if exponent >= mp.mpf("12.5") else mp.mpf(0)
    b = delta * mp.sqrt(n / (n + t * t))
    fitted = sum(
        (mp.mpf("4e-3") * normal_cdf(-abs(z)) for z in (delta, b, b * t / mp.sqrt(n)) if abs(z) > 4),
        mp.mpf(0),
    )
    return mp.mpf("2e-9") + fitted * min(growth, mp.mpf("1e3")) + left_out


def t_quantile_rows():
    rows = []
    for n in (2, 3, 4, 9, 24, 25, 100, 399, 2000):
        for delta in ("0", "0.75", "-1.5", "3"):
            for p in (mp.mpf(1) / 32, mp.mpf(1) / 4, mp.mpf(1) / 2, mp.mpf(3) / 4, mp.mpf(15) / 16, mp.mpf(31) / 32):
                t = noncentral_t_quantile(p, n, mp.mpf(delta))
                # The error of the distribution function over its slope.
                absolute = mp.mpf("2e-7") + mp.mpf("2e-6") / mp.mpf(n) ** 2
                rows.append((mp.mpf(delta), n, p, t, absolute / abs(t) if t != 0 else absolute))
    return rows


if __name__ == "__main__":
    write("NormalCdf", "z,expected,tolerance", normal_rows())
    write("NormalQuantile", "p,expected,tolerance", quantile_rows())
    write("LogGamma", "x,expected,tolerance", log_gamma_rows())
    write("BetaCdf", "x,a,b,expected,tolerance", beta_rows())
    write("NoncentralTCdf", "t,df,delta,expected,tolerance", t_cdf_rows())
    write("NoncentralTQuantile", "delta,df,p,expected,tolerance", t_quantile_rows())
