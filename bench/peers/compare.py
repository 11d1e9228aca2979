#!/usr/bin/python3
"""Runs our benchmarks and the peers one after the other and prints the ratios of time, ours to peer.

Run: compare.py BUILD        (BUILD/bin holds the benchmark programs and the command line)
"""

import json
import pathlib
import statistics
import subprocess
import sys
import time

HERE = pathlib.Path(__file__).resolve().parent

# Our benchmark, the peer's key, and the largest ratio that is good.
ROWS = (
    ("BM_T2Power/64", "power", None),
    ("BM_T2RequiredN/80", "size/0.8", 0.04),
    ("BM_T2RequiredN/50", "size/0.5", 0.06),
    ("BM_T2RequiredN/20", "size/0.2", 0.15),
    ("BM_T2RequiredN/5", "size/0.05", 1.0),
    ("BM_T2PowerCurveOverN", "power_curve", 0.2),
    ("BM_T2SizeCurveOverEffect", "size_curve", 0.1),
)


def ours(program):
    run = subprocess.run(
        [program, "--benchmark_format=json", "--benchmark_repetitions=3",
         "--benchmark_report_aggregates_only=true"],
        check=True, capture_output=True, text=True)
    scale = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3}
    return {row["run_name"]: row["cpu_time"] * scale[row["time_unit"]]
            for row in json.loads(run.stdout)["benchmarks"] if row["aggregate_name"] == "median"}


def peer(command):
    run = subprocess.run(command, check=True, capture_output=True, text=True)
    return json.loads(run.stdout)["seconds"]


def process(command, runs=21):
    times = []
    for _ in range(runs):
        start = time.perf_counter()
        subprocess.run(command, check=True, stdout=subprocess.DEVNULL)
        times.append(time.perf_counter() - start)
    return statistics.median(times)


def line(name, mine, other, goal):
    limit = "" if goal is None else f"{goal:8.2f}"
    print(f"{name:28s} {mine * 1e6:12.1f}us {other * 1e6:12.1f}us {mine / other:8.3f} {limit}")


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    programs = pathlib.Path(sys.argv[1]) / "bin"
    print("NoncentralTCdf beside Boost.Math")
    if (programs / "boost_peer_bench").exists():
        subprocess.run([sys.executable, HERE / "ratios.py", programs / "boost_peer_bench"], check=True)

    mine = ours(programs / "procedures_bench")
    peers = {"pwr": peer(["Rscript", HERE / "peers.R"]),
             "SciPy": peer([sys.executable, HERE / "peers.py"])}
    for name, seconds in peers.items():
        print(f"\n{'t-tests beside ' + name:28s} {'ours':>14s} {name:>14s} {'ratio':>8s} {'goal':>8s}")
        for benchmark, key, goal in ROWS:
            line(benchmark, mine[benchmark], seconds[key], goal if name == "pwr" else None)

    tool = process([programs / "poweranalysis", "size", "t2", "--mu1", "5", "--mu2", "0", "--sigma", "10",
                    "--power-goal", "0.8"])
    print(f"\n{'whole process':28s} {'ours':>14s} {'peer':>14s} {'ratio':>8s} {'goal':>8s}")
    line("beside Rscript with pwr", tool, peers["pwr"]["process"], 0.03)
    line("beside a bare program", tool, process([programs / "bare_process"]), 3.0)


if __name__ == "__main__":
    main()
