#!/usr/bin/python3
"""Prints the ratio ours / Boost.Math for each design, from one run of boost_peer_bench.

Run: ratios.py BUILD/bin/boost_peer_bench
"""

import json
import subprocess
import sys

GOALS = ((50, 0.3), (500, 1.0), (10000, 15.0))


def goal(df):
    return next(limit for top, limit in GOALS if df <= top)


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    run = subprocess.run(
        [sys.argv[1], "--benchmark_format=json", "--benchmark_min_time=0.2",
         "--benchmark_repetitions=3", "--benchmark_report_aggregates_only=true"],
        check=True, capture_output=True, text=True)
    times = {}
    for row in json.loads(run.stdout)["benchmarks"]:
        if row["aggregate_name"] == "median":
            side, df, tenths = row["run_name"].split("/")
            times[side, int(df), int(tenths)] = row["cpu_time"]
    print("    df  delta      ours     boost   ratio    goal")
    for side, df, tenths in times:
        if side == "ours":
            ours, boost = times["ours", df, tenths], times["boost", df, tenths]
            print(f"{df:6d} {tenths / 10:6.1f} {ours:8.0f}ns {boost:8.0f}ns"
                  f" {ours / boost:7.3f} {goal(df):7.1f}")


if __name__ == "__main__":
    main()
