#!/usr/bin/python3
"""Writes the golden files of this folder: what the command line prints for the designs below.

    tests/cli/goldens/update.py path/to/poweranalysis

One file a family and mode: a line "$ poweranalysis ..." and what it printed, for the built-in values
with every chart and then for one design of each hypothesis form, algorithm and option. A refusal shows
its message and its exit status. Read what changed before you commit it.
"""
import os
import pathlib
import subprocess
import sys
import tempfile

# Designs by family: options of both modes, then of power alone and of size alone.
DESIGNS = {
    "t1": (
        ["--h0 upper", "--mu -2 --h0 lower", "--mu0 100 --mu 105 --sigma 15"],
        [],
        ["--mu 20 --power-goal 0.8"],
    ),
    "t2": (
        ["--mu1 5 --h0 upper", "--mu1 -5 --h0 lower"],
        ["--mu1 5 --sample-size-n1 40 --sample-size-n2 20"],
        [
            "--mu1 5 --n-to-vary n1 --sample-size-n2 100",
            "--mu1 5 --n-to-vary n2 --sample-size-n1 100",
        ],
    ),
    "t3": (
        ["--h0 upper", "--mu1 -8 --h0 lower", "--sigma1 12 --sigma2 9 --between-group-r 0.6"],
        [],
        [],
    ),
    "pc": (
        ["--number-of-groups 4 --sum-of-squared-weights 2 --standardized-effect 0.5"],
        ["--alpha 0.01 --sample-size 60"],
        ["--standardized-effect 0.8 --power-goal 0.8"],
    ),
    "av1": (
        ["--model-type random", "--number-of-groups 5 --alpha 0.01"],
        ["--algorithm tiku"],
        ["--algorithm tiku", "--rmsse 0.4 --power-goal 0.8"],
    ),
    "av2": (
        ["--rows 3 --columns 4", "--rmsse-row 0.3 --rmsse-col 0.5 --rmsse-int 0.2"],
        ["--algorithm tiku"],
        ["--power-goal 0.8 --alpha 0.01"],
    ),
    "v1": (
        ["--h0 upper", "--population-variance 0.5 --h0 lower"],
        ["--degrees-of-freedom 30"],
        ["--population-variance 1.5 --power-goal 0.8"],
    ),
    "v2": (
        [],
        ["--h0 upper", "--var1 1 --var2 3", "--df1 30 --df2 12", "--var1 1 --var2 2 --h0 lower"],
        ["--h0 upper", "--ratio 0.5", "--df-to-vary df1 --df2 60 --ratio 3"],
    ),
    "r": (
        [
            "--algorithm exact --rho 0.4",
            "--algorithm crude",
            "--h0 upper",
            "--rho -0.2 --h0 lower",
            "--rho0 0.3 --rho 0.5",
        ],
        ["--sample-size 30 --rho 0.5"],
        ["--rho 0.5 --power-goal 0.8"],
    ),
    "z2r": (
        ["--algorithm crude", "--h0 upper", "--rho1 0.1 --rho2 0.5 --h0 lower"],
        ["--sample-size-n1 60 --sample-size-n2 150"],
        ["--n-to-vary n1 --sample-size-n2 150", "--n-to-vary n2 --sample-size-n1 200"],
    ),
    "r2": (
        [
            "--algorithm accuracy",
            "--r2-null 0.1 --population-r2 0.3",
            "--r2-null 0.1 --population-r2 0.3 --algorithm accuracy",
            "--r2-null 0.1 --population-r2 0.3 --h0 upper --algorithm accuracy",
            "--r2-null 0.3 --population-r2 0.1 --h0 lower --algorithm accuracy",
            "--h0 zero --total-number-of-vars 6",
        ],
        ["--sample-size 40 --total-number-of-vars 10 --r2-null 0.05"],
        ["--r2-null 0.2 --population-r2 0.24"],
    ),
    "p1": (
        ["--algorithm normal", "--h0 upper", "--pi 0.3 --h0 lower", "--pi 0.5"],
        ["--sample-size 40 --alpha 0.01"],
        ["--pi 0.6 --power-goal 0.8"],
    ),
    "p2": (
        ["--continuity yes", "--h0 upper", "--pi1 0.4 --h0 lower"],
        ["--sample-size-n1 250 --sample-size-n2 100"],
        [
            "--pi1 0.7 --n-to-vary n1 --sample-size-n2 150",
            "--pi1 0.7 --n-to-vary n2 --sample-size-n1 150",
            "--pi1 0.7 --n-to-vary ratio --ratio 2",
            "--pi1 0.7 --n-to-vary n1 --sample-size-n2 20",
        ],
    ),
    "qmac": (["--h0 upper", "--delta 0.2 --eta 0.3", "--delta 0.2 --eta 0.2"], [], []),
    "sa1": (["--h0 upper", "--pi1 0.7 --pi2 0.5", "--pi1 0.7 --pi2 0.5 --h0 upper"], [], []),
    "sa2": (["--h0 upper", "--lambda1 0.7 --lambda2 0.4", "--t0 10 --t 10", "--t0 10 --t 9"], [], []),
    "sa3": (["--d 0.3", "--d 0.3 --h0 upper", "--lambda1 0"], [], []),
    "sem": (
        [
            "--h0 0",
            "--r0 0",
            "--r0 0.08 --r 0.05 --h0 lower",
            "--degrees-of-freedom 100",
            "--h0 3",
        ],
        ["--sample-size 400"],
        ["--power-goal 0.8"],
    ),
}

# Designs of the intervals.
INTERVALS = {
    "t1": ["--t-observed 2.4 --sample-size 30 --confidence 0.95", "--t-observed=-1.5"],
    "t2": ["--t-observed 2.4 --sample-size-n1 20 --sample-size-n2 35 --confidence 0.95"],
    "t3": ["--t-observed 3.1 --sample-size 18 --confidence 0.99"],
    "pc": ["--t-observed 2.4 --number-of-groups 4 --sample-size 15 --sum-of-squared-weights 2"],
    "av1": [
        "--f-observed 4.2 --number-of-groups 4 --n 15 --confidence 0.95",
        "--f-observed 4.2 --model-type random",
        "--f-observed 4.2 --algorithm tiku",
        "--f-observed 1000.5",
    ],
    "av2": [
        "--f-observed 3.5 --rows 3 --columns 4 --n 10 --effect-to-test column",
        "--f-observed 3.5 --effect-to-test interaction --power-goal 0.8",
    ],
    "r": [
        "--r-observed 0.4 --sample-size 60 --algorithm exact",
        "--r-observed 0.4 --sample-size 60 --algorithm crude --h0 upper",
        "--r-observed -0.3 --rho0 -0.1 --h0 lower",
    ],
    "r2": [
        "--r2-observed 0.3 --sample-size 60 --total-number-of-vars 6 --h0 upper",
        "--r2-observed 0.3 --sample-size 60 --r2-null 0.1 --h0 upper --algorithm accuracy",
        "--r2-observed 0.05 --r2-null 0.2 --h0 lower",
    ],
    "p1": [
        "--p-observed 0.3 --sample-size 40",
        "--x-observed 3 --sample-size 40 --confidence 0.9",
        "--x-observed 0 --sample-size 12",
    ],
    "sem": [
        "--observed-chi-square 45 --degrees-of-freedom 20 --sample-size 250",
        "--observed-chi-square 45 --groups 0",
    ],
}


def lines_of(mode, family):
    if mode == "interval":
        yield f"interval {family} --format markdown"
        for options in INTERVALS[family]:
            yield f"interval {family} {options} --format markdown"
        return
    both, power, size = DESIGNS[family]
    start = f"{mode} {family}"
    yield f"{start} --format markdown --chart all"
    for options in both + (power if mode == "power" else size):
        yield f"{start} {options} --format markdown"


def printed(program, line, folder):
    environment = {"HOME": folder, "XDG_CONFIG_HOME": folder + "/config", "PATH": "/usr/bin:/bin"}
    result = subprocess.run(
        [program] + line.split(), capture_output=True, encoding="utf-8", env=environment, cwd=folder
    )
    refusal = f"{result.stderr}(exit status {result.returncode})\n" if result.returncode else ""
    return result.stdout + refusal


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    program = os.path.abspath(sys.argv[1])
    here = pathlib.Path(__file__).parent
    with tempfile.TemporaryDirectory() as folder:
        for family in DESIGNS:
            for mode in ("power", "size") + (("interval",) if family in INTERVALS else ()):
                text = "".join(
                    f"$ poweranalysis {line}\n{printed(program, line, folder)}\n"
                    for line in lines_of(mode, family)
                )
                (here / f"{family}-{mode}.md").write_text(text, encoding="utf-8")


if __name__ == "__main__":
    main()
