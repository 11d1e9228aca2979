#!/usr/bin/python3
"""Times SciPy on the inputs of our benchmarks and prints one JSON object of seconds a call.

Run: /usr/bin/python3 peers.py        (Debian package python3-scipy)

The keys are the same as those of peers.R, so that one program can set both beside ours:
  cdf/DF         P(T <= 2) at DF degrees of freedom and delta 1
  power          power of a two-sided test of two means, 50 a group, d .5, alpha .05
  size/D         required size a group for power .8 at effect D
  power_curve    power at 100 sizes, 5 to 500 a group
  size_curve     required size at 100 effects, .1 to 1.09
SciPy has no power functions: they are written here from its distributions, as a user would.
"""

import json
import time

from scipy import optimize, stats

ALPHA = 0.05


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
        count, start = 0, time.perf_counter()
        while True:
            call()
            count += 1
            elapsed = time.perf_counter() - start
            if elapsed >= least:
                break
        best = min(best, elapsed / count)
    return best


def main():
    calls = {f"cdf/{df}": lambda df=df: stats.nct.cdf(2.0, df, 1.0) for df in (9, 49, 499, 9999)}
    calls["power"] = lambda: power(50, 0.5)
    for effect in (0.8, 0.5, 0.2, 0.05):
        calls[f"size/{effect:g}"] = lambda effect=effect: required_size(effect)
    calls["power_curve"] = lambda: [power(5 * i, 0.5) for i in range(1, 101)]
    calls["size_curve"] = lambda: [required_size(0.1 + 0.01 * i) for i in range(100)]
    print(json.dumps({"peer": "scipy", "seconds": {k: seconds(v) for k, v in calls.items()}}))


if __name__ == "__main__":
    main()
