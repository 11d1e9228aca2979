#!/usr/bin/python3
"""Prints the ratio of time, ours to Boost.Math, for each design of boost_peer_bench, and for each
function the worst ratio and how many designs meet its goal. A row without a peer gives our time alone.

Run: ratios.py BUILD/bin/boost_peer_bench [FILTER]

The benchmarks are named ours/FUNCTION/ARGUMENTS and boost/FUNCTION/ARGUMENTS; both sides of a design
come from the same run, in random order.
"""

import json
import statistics
import subprocess
import sys

# The largest ratio that is good, by function; a function of the arguments where it depends on them.
GOALS = {
    "NoncentralTCdf": lambda df, _: 0.3 if df <= 50 else 1.0 if df <= 500 else 15.0,
    "NoncentralFCdf": 2.0,
    "NoncentralChiSquareCdf": 0.8,
    "BinomialCdf": 0.8,
    "MultipleR2CdfExact": 0.4,
}


def numbers(arguments):
    return [float(part.split(":")[-1]) for part in arguments.split("/")]


def goal_of(function, arguments):
    goal = GOALS.get(function)
    return goal(*numbers(arguments)) if callable(goal) else goal


def times_of(program, name_filter):
    run = subprocess.run(
        [program, "--benchmark_format=json", "--benchmark_min_time=0.05",
         "--benchmark_repetitions=3", "--benchmark_report_aggregates_only=true",
         "--benchmark_enable_random_interleaving=true", f"--benchmark_filter={name_filter}"],
        check=True, capture_output=True, text=True)
    times = {}
    for row in json.loads(run.stdout)["benchmarks"]:
        if row["aggregate_name"] == "median":
            side, function, arguments = row["run_name"].split("/", 2)
            times.setdefault((function, arguments), {})[side] = row["cpu_time"]
    return times


def columns(function, arguments, ours, boost, ratio, goal):
    return f"{function:30s} {arguments:30s} {ours:>10s} {boost:>10s} {ratio:>8s} {goal:>6s}"


def line(key, sides, ratio, goal):
    boost = f"{sides['boost']:.0f}ns" if "boost" in sides else "-"
    return columns(*key, f"{sides['ours']:.0f}ns", boost, "-" if ratio is None else f"{ratio:.3f}",
                   "" if goal is None else f"{goal:g}")


def summary(function, rows):
    ratios = [ratio for ratio, _ in rows]
    text = (f"{function:30s} median {statistics.median(ratios):7.3f}  from {min(ratios):.3f}"
            f" to {max(ratios):.3f}")
    judged = [ratio <= goal for ratio, goal in rows if goal is not None]
    return text + (f"  meets its goal in {sum(judged)} of {len(judged)}" if judged else "")


def main():
    if len(sys.argv) not in (2, 3):
        sys.exit(__doc__)
    print(columns("function", "design", "ours", "boost", "ratio", "goal"))
    functions = {}
    for key, sides in sorted(times_of(sys.argv[1], "".join(sys.argv[2:]) or ".").items()):
        if "ours" not in sides:
            continue
        goal = goal_of(*key)
        ratio = sides["ours"] / sides["boost"] if "boost" in sides else None
        if ratio is not None:
            functions.setdefault(key[0], []).append((ratio, goal))
        print(line(key, sides, ratio, goal))
    print()
    for function, rows in functions.items():
        print(summary(function, rows))


if __name__ == "__main__":
    main()
