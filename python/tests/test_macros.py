"""Recorded macros: in this process, and as scripts by themselves."""

import subprocess
import sys

import pytest

import poweranalysis as pa

COMMAND = "power t2 --mu1 5 --mu2 0 --sigma 10 --sample-size-n1 64 --sample-size-n2 70".split()


def test_a_macro_gives_the_digits_of_the_command_line(macro, cli_json):
    run = pa.run_macro(macro)
    expected = cli_json(*COMMAND, "--chart", "power-vs-es")
    (table,) = run.workbook.tables
    assert [row.values[0] for row in table] == [row["value"] for row in expected["rows"]]
    (chart,) = run.workbook.charts
    assert chart.y.tolist() == expected["charts"][0]["y"]
    assert isinstance(run.names["results"], pa.PowT2_P_ResultsDialog)
    assert run.messages == ()


CALCULATOR = """\
import poweranalysis

app = poweranalysis.Application()

startup = app.StartAnalysis()  # PowStartup
startup.AnalysisItem = poweranalysis.PowAnalysisItem.scPowProbabilityDistribution
startup.AnalysisType = poweranalysis.PowAnalysisType.scPowDistributionNonCentralF
startup.OK()

dialog = app.Dialog  # PowFDistributionDialog
dialog.ComputeDelta = 1
dialog.ObservedF = 4.1
dialog.DegreeOfFreedom1 = 2
dialog.DegreeOfFreedom2 = 10
dialog.PVALUE = 0.1
done = dialog.OK()
"""


def test_a_macro_drives_a_calculator(tmp_path):
    path = tmp_path / "calculator.py"
    path.write_text(CALCULATOR)
    run = pa.run_macro(path)
    assert run.names["done"] == 1 and run.messages == () and run.workbook.items == ()
    expected = pa.calc("f", unknown="delta", f=4.1, df1=2, df2=10, p=0.1).value
    assert run.names["dialog"].Delta == expected > 0


def test_python_runs_a_macro_and_prints_what_the_command_line_prints(macro, command_line):
    done = subprocess.run([sys.executable, str(macro)], capture_output=True, text=True)
    assert done.returncode == 0, done.stderr
    text = subprocess.run([command_line, *COMMAND], capture_output=True, text=True).stdout
    assert text and done.stdout.startswith(text.rstrip("\n"))
    assert done.stderr == ""


def test_a_macro_shows_the_messages_of_the_system(macro):
    macro.write_text(macro.read_text().replace("dialog.Sigma = 10", "dialog.Alpha = 2"))
    done = subprocess.run([sys.executable, str(macro)], capture_output=True, text=True)
    assert "outside the permissible range" in done.stderr
    assert done.stdout == ""
    # The dialog of the results is not there, and the macro says so.
    assert done.returncode != 0 or "Alpha" in done.stderr


def test_nothing_is_printed_unless_a_script_asks(macro, capsys):
    pa.run_macro(macro)
    assert capsys.readouterr().out == ""
    pa.run_macro(macro, echo=True)
    assert "Power Calculation" in capsys.readouterr().out


def test_what_a_macro_raises_comes_out(tmp_path):
    path = tmp_path / "bad.py"
    path.write_text("import poweranalysis\npoweranalysis.Application().Dialgo\n")
    with pytest.raises(AttributeError):
        pa.run_macro(path)
    with pytest.raises(FileNotFoundError):
        pa.run_macro(tmp_path / "none.py")


def test_a_macro_honours_the_folder_given(macro, tmp_path):
    folder = tmp_path / "mine"
    pa.power("T2", Alpha=0.125, save_defaults=True, config=folder)
    run = pa.run_macro(macro, config=folder)
    assert run.workbook.tables[0]["Type I Error Rate (Alpha)"] == 0.125


def test_a_reader_that_closes_the_pipe_ends_a_macro_in_silence(macro):
    run = subprocess.Popen(
        [sys.executable, macro], stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True
    )
    run.stdout.close()
    assert (run.stderr.read(), run.wait()) == ("", 141)
