#!/usr/bin/python3
"""Runs our benchmarks and all peers one after the other and prints the ratios of time, ours to peer.

Run: compare.py BUILD        (BUILD/bin holds the benchmark programs and the command line)

Ends with 1 when a goal is missed, so that a change for the worse can be seen. Processor time
everywhere but for whole processes.
"""

import json
import pathlib
import statistics
import subprocess
import sys
import time

HERE = pathlib.Path(__file__).resolve().parent

T_TESTS = (
    ("BM_T2Power/64", "power", None),
    ("BM_T2RequiredN/80", "size/0.8", 0.04),
    ("BM_T2RequiredN/50", "size/0.5", 0.06),
    ("BM_T2RequiredN/20", "size/0.2", 0.15),
    ("BM_T2RequiredN/5", "size/0.05", 1.0),
    ("BM_T2PowerCurveOverN", "power_curve", 0.2),
    ("BM_T2SizeCurveOverEffect", "size_curve", 0.1),
)
ANOVA = (
    ("BM_AV1Power/60", "anova_power", None),
    ("BM_AV1RequiredN/5", "anova_size/0.05", 0.04),
    ("BM_AV1RequiredN/25", "anova_size/0.25", 0.04),
    ("BM_AV1RequiredN/50", "anova_size/0.5", 0.04),
    ("BM_AV1RequiredN/100", "anova_size/1", 0.04),
    ("BM_AV1PowerCurveOverN", "anova_power_curve", 0.1),
    ("BM_AV1PowerCurveOverEffect", "anova_power_curve_over_effect", 0.1),
    ("BM_AV1SizeCurveOverEffect", "anova_size_curve", 0.03),
)
# The second number of a name is the algorithm: 0 is the exact distribution, 1 Fisher's z as in pwr.
CORRELATIONS = (
    ("BM_RPower/0", "power", None),
    *((f"BM_RRequiredN/{rho}/0", f"size/{rho}", 3.0) for rho in (10, 20, 30, 50, 80)),
    *((f"BM_RRequiredN/{rho}/1", f"size/{rho}", None) for rho in (10, 20, 30, 50, 80)),
    ("BM_RPowerCurveOverN/0", "power_curve", None),
    ("BM_RSizeCurveOverRho/0", "size_curve", None),
)
PROPORTIONS = tuple((f"BM_P1RequiredN/{i}", f"exact_size/{i}", 0.02) for i in range(7))
CORRELATION_CDF = tuple(
    (f"CorrelationCdf/exact/{n}/{design}", f"series/{n}/{design}", 3.0 if n == 100 else None)
    for n in (10, 30, 100, 1000) for design in ("20/10", "90/85"))
T_CDF = tuple((f"NoncentralTCdf/{df}/10", f"cdf/{df}", None) for df in (9, 49, 499, 9999))

# Heading, our program, the peer's program and the rows: our benchmark, the peer's key and the largest
# ratio that is good.
TABLES = (
    ("t-tests", "procedures_bench", "t_tests.R", T_TESTS),
    ("t-tests", "procedures_bench", "scipy_peers.py", [(*row[:2], None) for row in T_TESTS]),
    ("analyses of variance", "procedures_bench", "anova.R", ANOVA),
    ("correlations", "procedures_bench", "correlations.R", CORRELATIONS),
    ("one proportion, exact", "procedures_bench", "proportions.R", PROPORTIONS),
    ("correlation cdf", "distributions_bench", "correlation.R", CORRELATION_CDF),
    ("noncentral t cdf", "distributions_bench", "t_tests.R", T_CDF),
    ("noncentral t cdf", "distributions_bench", "scipy_peers.py", T_CDF),
)
# These name our benchmarks themselves.
SAME_NAMES = ("distributions.R", "scipy_peers.py")

# Every required size at the built-in values of its fields.
LARGEST_REQUIRED_SIZE = 1e-3


class Peers:
    """The seconds of a peer, by key; each is run once."""

    def __init__(self):
        self.runs = {}

    def __getitem__(self, name):
        if name not in self.runs:
            program = "Rscript" if name.endswith(".R") else sys.executable
            run = subprocess.run([program, HERE / name], check=True, capture_output=True, text=True)
            self.runs[name] = json.loads(run.stdout)
        return self.runs[name]["seconds"]

    def name(self, name):
        return self[name] and self.runs[name]["peer"]


def ours(program):
    run = subprocess.run(
        [program, "--benchmark_format=json", "--benchmark_repetitions=3", "--benchmark_min_time=0.05",
         "--benchmark_report_aggregates_only=true"],
        check=True, capture_output=True, text=True)
    scale = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3}
    return {row["run_name"]: row["cpu_time"] * scale[row["time_unit"]]
            for row in json.loads(run.stdout)["benchmarks"] if row["aggregate_name"] == "median"}


def process(command, runs=21):
    times = []
    for _ in range(runs):
        start = time.perf_counter()
        subprocess.run(command, check=True, stdout=subprocess.DEVNULL)
        times.append(time.perf_counter() - start)
    return statistics.median(times)


class Report:
    def __init__(self):
        self.missed = []

    def heading(self, title, peer):
        print(f"\n{title + ' beside ' + peer:50s} {'ours':>13s} {'peer':>13s} {'ratio':>8s} {'goal':>6s}")

    def line(self, name, mine, other, goal):
        ratio = mine / other
        missed = goal is not None and ratio > goal
        if missed:
            self.missed.append(f"{name}: {ratio:.3f}, goal {goal:g}")
        print(f"{name:50s} {mine * 1e6:11.2f}us {other * 1e6:11.2f}us {ratio:8.3f}"
              f" {'' if goal is None else f'{goal:6.2f}'}{' missed' if missed else ''}", flush=True)


def compare_tables(report, mine, peers):
    for title, program, peer, rows in TABLES:
        report.heading(title, peers.name(peer))
        for benchmark, key, goal in rows:
            if key in peers[peer]:
                report.line(benchmark, mine[program][benchmark], peers[peer][key], goal)


def compare_distributions(report, mine, peers):
    for peer in SAME_NAMES:
        for prefix, words in (("", "distributions, one a call"), ("vector/", "distributions, a thousand a call")):
            report.heading(words, peers.name(peer))
            for name, seconds in mine["distributions_bench"].items():
                other = peers[peer].get(prefix + name)
                if other:
                    report.line(name, seconds, other, None)


def list_families(report, mine):
    print(f"\n{'families at the built-in values of their fields':50s} {'ours':>13s}")
    for name, seconds in mine["procedures_bench"].items():
        if name.startswith("BM_"):
            continue
        missed = "/Required" in name and seconds > LARGEST_REQUIRED_SIZE
        if missed:
            report.missed.append(f"{name}: {seconds * 1e3:.2f} ms, goal 1 ms")
        print(f"{name:50s} {seconds * 1e6:11.2f}us{' missed' if missed else ''}")


def compare_processes(report, programs, peers):
    tool = process([programs / "poweranalysis", "size", "t2", "--mu1", "5", "--mu2", "0", "--sigma", "10",
                    "--power-goal", "0.8"])
    report.heading("whole process", "peers")
    report.line("beside Rscript with pwr", tool, peers["t_tests.R"]["process"], 0.03)
    report.line("beside a bare program", tool, process([programs / "bare_process"]), 3.0)


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    programs = pathlib.Path(sys.argv[1]) / "bin"
    if (programs / "boost_peer_bench").exists():
        print("distributions beside Boost.Math", flush=True)
        subprocess.run([sys.executable, HERE / "ratios.py", programs / "boost_peer_bench"], check=True)
    mine = {name: ours(programs / name) for name in ("distributions_bench", "procedures_bench")}
    report, peers = Report(), Peers()
    compare_tables(report, mine, peers)
    list_families(report, mine)
    compare_distributions(report, mine, peers)
    if (programs / "poweranalysis").exists():
        compare_processes(report, programs, peers)
    print("\nGoals missed beside R and by the clock:" if report.missed else "\nAll goals beside R are met.")
    for text in report.missed:
        print("  " + text)
    sys.exit(1 if report.missed else 0)


if __name__ == "__main__":
    main()
