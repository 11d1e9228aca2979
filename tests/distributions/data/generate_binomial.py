#!/usr/bin/python3
"""Writes the truth tables of the binomial distribution, independently of the library.

Run:   /usr/bin/python3 generate_binomial.py       (Debian package python3-mpmath; half a minute)

Every input is exact in binary, so that both sides start from the same number. The expected values
are those of the mathematical functions at 30 digits. The column `tolerance` bounds the relative
error (absolute at an expected value of zero): what the library's short constants and the end of its
continued fraction allow there.

How the values are computed:
  BinomialCdf             sum of the probabilities of the single counts, the beta function has no
                          part in it
  BinomialQuantile        the smallest count at which that sum reaches p
  BinomialProportionForP  a pi exact in binary, its probability rounded to a double, and pi
                          corrected for that rounding by the derivative; what is left is of the
                          order of the square of a rounding
"""

import os

import mpmath as mp

mp.mp.dps = 30
HERE = os.path.dirname(os.path.abspath(__file__))


def mass(n, pi, k):
    log_choose = mp.loggamma(n + 1) - mp.loggamma(k + 1) - mp.loggamma(n - k + 1)
    return mp.exp(log_choose + k * mp.log(pi) + (n - k) * mp.log1p(-pi))


def lower_sum(n, pi, k):
    """P(X <= k) from k downwards, until a term no longer counts."""
    term = mass(n, pi, k)
    total = mp.mpf(0)
    odds = (1 - pi) / pi
    while True:
        total += term
        # Downwards from above the mode the terms rise first.
        if k == 0 or (term < total * mp.mpf("1e-28") and k < n * pi):
            return total
        term = term * k / (n - k + 1) * odds
        k -= 1


def upper_sum(n, pi, k):
    """P(X > k) from k + 1 upwards."""
    return lower_sum(n, 1 - pi, n - k - 1)


def cdf(n, pi, k):
    if k < 0:
        return mp.mpf(0)
    if k >= n:
        return mp.mpf(1)
    return lower_sum(n, pi, k) if k < n * pi else 1 - upper_sum(n, pi, k)


def text(value):
    return str(value) if isinstance(value, int) else repr(float(value))


def write(name, header, rows):
    assert len(rows) >= 200, name
    with open(os.path.join(HERE, name + ".csv"), "w", encoding="ascii") as out:
        out.write("# Written by generate_binomial.py (mpmath %s). Do not edit.\n" % mp.__version__)
        out.write(header + "\n")
        for row in rows:
            out.write(",".join(text(v) for v in row) + "\n")
    print(name, len(rows), "rows")


def cdf_tolerance(n):
    """Absolute error: the continued fraction ends at 1e-10, the log-gammas grow with n."""
    return mp.mpf("2e-10") + mp.mpf("2e-15") * n


SIZES = (1, 2, 5, 10, 30, 100, 500, 2000, 20000, 150000)
PROPORTIONS = (mp.mpf(1) / 1024, mp.mpf(1) / 32, mp.mpf(5) / 16, mp.mpf(1) / 2, mp.mpf(7) / 8, mp.mpf(63) / 64)


def place(n, pi, deviations):
    k = int(mp.nint(n * pi + deviations * mp.sqrt(n * pi * (1 - pi))))
    return min(max(k, 0), n)


def designs(deviations):
    """Every size, proportion and count once."""
    seen = set()
    for n in SIZES:
        for pi in PROPORTIONS:
            for d in deviations:
                key = (n, pi, place(n, pi, d))
                if key not in seen:
                    seen.add(key)
                    yield key


def cdf_rows():
    rows = []
    for n, pi, k in designs((-6, -3, -1, 0, 0.5, 2, 4, 9)):
        value = cdf(n, pi, k)
        if value > mp.mpf("1e-290"):
            rows.append((n, pi, k, value, cdf_tolerance(n) / value))
    return rows


def smallest_count(n, pi, p):
    low, high = -1, n
    while high - low > 1:
        middle = (low + high) // 2
        if cdf(n, pi, middle) >= p:
            high = middle
        else:
            low = middle
    return high


def quantile_rows():
    rows = []
    margin = mp.mpf("1e-8")
    for n in SIZES[1:]:
        for pi in PROPORTIONS:
            for p in [mp.mpf(i) / 1024 for i in (1, 17, 26, 102, 256, 512, 700, 922, 998, 1007, 1023)]:
                # The caller answers 0 itself, and n where a power of pi reaches p.
                if mp.power(1 - pi, n) >= p or mp.power(pi, n) >= p:
                    continue
                k = smallest_count(n, pi, p)
                if cdf(n, pi, k) - p > margin and p - cdf(n, pi, k - 1) > margin:
                    rows.append((p, n, pi, k, mp.mpf(0)))
    return rows


def proportion_rows():
    rows = []
    for n, pi, k in designs((-3, -2, -1, 0, 1, 2, 3)):
        if k >= n:
            continue
        exact = cdf(n, pi, k)
        p = mp.mpf(float(exact))
        if not mp.mpf("0.0001") <= p <= mp.mpf("0.9999"):
            continue
        # From a start of 0 the search does not move; that has a test of its own.
        if k == 0 and p == mp.mpf("0.5"):
            continue
        # Written with the probability of one trial less, which does not end at a k of n - 1.
        slope = -n * mass(n - 1, pi, k)
        expected = pi + (p - exact) / slope
        absolute = (cdf_tolerance(n) + mp.mpf("1.1e-10")) / abs(slope)
        rows.append((n, p, k, expected, absolute / expected))
    return rows


if __name__ == "__main__":
    write("BinomialCdf", "n,pi,k,expected,tolerance", cdf_rows())
    write("BinomialQuantile", "p,n,pi,expected,tolerance", quantile_rows())
    write("BinomialProportionForP", "n,p,k,expected,tolerance", proportion_rows())
