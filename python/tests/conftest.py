"""Every test has its own configuration folder, for itself and for what it starts."""

import json
import os
import subprocess

import pytest


@pytest.fixture(autouse=True)
def config_folder(tmp_path, monkeypatch):
    monkeypatch.setenv("XDG_CONFIG_HOME", str(tmp_path / "config"))
    return tmp_path / "config" / "poweranalysis"


@pytest.fixture(scope="session")
def command_line():
    program = os.environ.get("POWERANALYSIS_CLI")
    if not program:
        pytest.skip("POWERANALYSIS_CLI does not name the command line program")
    return program


@pytest.fixture
def cli_json(command_line):
    """Runs the command line and gives its JSON, with whatever exit status."""

    def run(*arguments):
        done = subprocess.run(
            [command_line, *arguments, "--format", "json"], capture_output=True, text=True
        )
        assert done.stdout, done.stderr
        return json.loads(done.stdout)

    return run


MACRO = """\
import poweranalysis

app = poweranalysis.Application()

startup = app.StartAnalysis()  # PowStartup
startup.AnalysisItem = poweranalysis.PowAnalysisItem.scPowPowerCalculation
startup.AnalysisType = poweranalysis.PowAnalysisType.scPowTwoMeansTTestIndependentSamples
startup.OK()

dialog = app.Dialog  # PowT2PowParametersDialog
dialog.Mean1 = 5
dialog.Mean2 = 0
dialog.Sigma = 10
dialog.SampleSize1 = 64
dialog.SampleSize2 = 70
dialog.OK()

results = app.Dialog  # PowT2_P_ResultsDialog
results.OK()
results.GraphOfPowerVsEs
"""


@pytest.fixture
def macro(tmp_path):
    path = tmp_path / "macro.py"
    path.write_text(MACRO, encoding="utf-8")
    return path
