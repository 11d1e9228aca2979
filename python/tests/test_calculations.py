"""power, size and calc, against the command line digit for digit."""

import ctypes
import os
import signal
import subprocess
import sys
import threading
import time

import numpy as np
import pytest

import poweranalysis as pa

CASES = [
    ("power", "T1", {"Mu0": 0, "Mu": 0.3, "Sigma": 1.5, "SampleSize": 40}),
    ("power", "T1", {"Mu0": 0, "Mu": 0.3, "Sigma": 1.5, "H0Type": "upper", "Alpha": 0.01}),
    ("power", "T2", {"Mu1": 5, "Mu2": 0, "Sigma": 10, "SampleSizeN1": 64, "SampleSizeN2": 70}),
    ("power", "T3", {"Mu1": 1, "Mu2": 0.25, "BetweenGroupR": 0.625, "SampleSize": 33}),
    ("size", "T1", {"Mu0": 0, "Mu": 0.3, "Sigma": 1.5, "PowerGoal": 0.8}),
    ("size", "T2", {"Mu1": 5, "Mu2": 0, "Sigma": 10, "PowerGoal": 0.8}),
    ("size", "T2", {"Mu1": 5, "Mu2": 0, "NToVary": "n1", "SampleSizeN2": 80, "EsStart": 0.5}),
    ("size", "T3", {"Mu1": 1, "Mu2": 0.25, "Sigma1": 1.1, "H0Type": "upper"}),
]


def options(fields):
    return [text for name, value in fields.items() for text in ("--set", f"{name}={value}")]


@pytest.mark.parametrize("mode, family, fields", CASES)
def test_gives_the_digits_of_the_command_line(cli_json, mode, family, fields):
    result = getattr(pa, mode)(family, charts="all", **fields)
    expected = cli_json(mode, family.lower(), *options(fields), "--chart", "all")
    assert expected["status"] == 0 and expected["charts"]
    assert result.to_dict() == expected
    assert result.value == expected["rows"][-1]["value"]


FAMILIES = [code for code, _name, _title in pa.families()]
VARIATIONS = [
    {},
    {"Alpha": 0.01},
    {"Alpha": 0.2, "H0Type": 1},
    {"H0Type": 2},
    {"NToVary": 1, "SampleSizeN2": 900},
    {"NToVary": 2, "SampleSizeN1": 900},
    {"NToVary": 3, "Ratio": 1.5},
    {"DfToVary": 1, "Df2": 90},
    {"Algorithm": 1},
    {"RMSSE_Int": 0},
    {"Alpha": 0.5},
]


def asked(mode, family, fields, **more):
    """The answers, or the message of the refusal."""
    try:
        return getattr(pa, mode)(family, **fields, **more).answers
    except (pa.Refused, RuntimeError) as refusal:
        return str(refusal), [tuple(message) for message in getattr(refusal, "messages", ())]


@pytest.mark.parametrize("mode", ["power", "size"])
@pytest.mark.parametrize("family", FAMILIES)
def test_numbers_alone_are_those_of_the_whole_run(tmp_path, mode, family):
    # A file of defaults, though it changes nothing, takes the road of the dialogs.
    (tmp_path / "POWER.INI").write_text("")
    compared = 0
    for fields in VARIATIONS:
        try:
            direct = asked(mode, family, fields)
        except TypeError:
            continue  # the family has no such field
        assert direct == asked(mode, family, fields, config=tmp_path), fields
        compared += 1
    assert compared >= 3


def test_what_is_shown_of_a_number_goes_with_it_whatever_was_saved_since(config_folder):
    result = pa.power("T1", SampleSize=30)
    expected = pa.power("T1", SampleSize=30).to_dict()
    pa.power("T1", Mu=4, Alpha=0.01, save_defaults=True)
    assert pa.power("T1", SampleSize=30).value != result.value
    assert result.to_dict() == expected
    assert result.to_dict()["answers"][0]["value"] == result.value


def test_a_field_goes_by_every_spelling():
    expected = pa.power("T2", SampleSizeN1=40, H0Type=1).to_dict()
    for spelling in ("sample_size_n1", "samplesizen1", "SAMPLESIZEN1", "sample-size-n1"):
        for form in ({"h0": "upper"}, {"h0_type": 1}, {"H0": "UPPER"}, {"h0type": "1"}):
            assert pa.power("T2", **{spelling: 40}, **form).to_dict() == expected


def test_a_family_goes_by_code_and_by_readable_name():
    expected = pa.power("T2").to_dict()
    for name in ("t2", "two-means", "two_means", "TWO-MEANS"):
        assert pa.power(name).to_dict() == expected
    assert ("T2", "two-means") in [row[:2] for row in pa.families()]


def test_numbers_of_numpy_are_numbers():
    expected = pa.power("T2", Mu1=5.5, SampleSizeN1=40).to_dict()
    assert pa.power("T2", Mu1=np.float64(5.5), SampleSizeN1=np.int32(40)).to_dict() == expected


def test_the_result_is_made_of_its_parts():
    result = pa.size("T2", Mu1=5, Mu2=0, Sigma=10, PowerGoal=0.8, charts=["n-vs-es"])
    assert result.value == 64 and isinstance(result.value, int)
    assert result.table["Required N (per group)"] == 64
    assert result.table.headings[0] == "Sample Size Calculation"
    assert [row.title for row in result.table][-1] == "Required N (per group)"
    assert any("N = 64" in paragraph for paragraph in result.report)
    assert result.messages == ()
    assert [chart.name for chart in result.charts] == ["n-vs-es"]
    assert float(result) == 64.0
    with pytest.raises(KeyError):
        result.table["Nothing"]


def test_a_chart_is_arrays_and_a_picture(cli_json):
    chart = pa.power("T1", charts="power-vs-n").charts["power-vs-n"]
    expected = cli_json("power", "t1", "--chart", "power-vs-n")["charts"][0]
    assert chart.x.tolist() == expected["x"] and chart.y.tolist() == expected["y"]
    assert chart.svg().lstrip().startswith("<?xml") or chart.svg().startswith("<svg")
    assert chart._repr_svg_() == chart.svg() != chart.svg(dark=True)


def test_to_dict_is_the_callers_own():
    result = pa.power("T1")
    result.to_dict()["rows"].clear()
    assert result.to_dict()["rows"]


def test_a_notebook_shows_table_report_and_charts_without_the_style_of_a_page():
    result = pa.power("T1", charts="power-vs-n")
    html = result._repr_html_()
    assert "<table>" in html and "<svg" in html and result.report[-1][:20] in html
    assert "<body" not in html and "<style" not in html and "<html" not in html
    assert result.to_html().startswith("<!DOCTYPE html>")
    table = result.table._repr_html_()
    assert table.startswith("<table>") and table.endswith("</table>")


def test_a_table_prints_with_its_rows_and_without_the_charts():
    text = str(pa.power("T1", charts="power-vs-n").table)
    assert text.startswith("Power Calculation\n")
    assert "Type I Error Rate (Alpha)" in text and "Power vs. N" not in text


def test_csv_is_one_table_unless_asked_for_all():
    result = pa.power("T1", charts="power-vs-n")
    assert result.to_csv().startswith("Title,Value\n") and "\n\n" not in result.to_csv()
    assert "\n\nChart,power-vs-n\n" in result.to_csv(full=True)


# --- What goes wrong.


def test_a_refusal_carries_the_message_and_its_number(cli_json):
    with pytest.raises(pa.Refused) as caught:
        pa.power("T2", Alpha=2)
    refused = caught.value
    (message,) = cli_json("power", "t2", "--alpha", "2")["messages"]
    assert (refused.message, refused.id) == (message["text"], message["id"])
    assert str(refused) == refused.message
    assert refused.result.value is None and refused.result.table is None


def test_a_refused_chart_raises_and_what_there_is_stays(cli_json):
    fields = {"Mu1": 5, "Mu2": 0, "Sigma": 10, "NToVary": "n1", "SampleSizeN2": 10}
    expected = cli_json("size", "t2", *options(fields), "--chart", "all")
    assert expected["status"] == 1
    with pytest.raises(pa.Refused) as caught:
        pa.size("T2", charts="all", **fields)
    assert caught.value.result.to_dict() == expected
    assert caught.value.id == expected["messages"][0]["id"]


def test_a_true_null_hypothesis_is_refused():
    with pytest.raises(pa.Refused) as caught:
        pa.size("T2", Mu1=1, Mu2=1)
    assert caught.value.id > 0 and caught.value.messages


@pytest.mark.parametrize(
    "arguments, fields, nearest",
    [
        (["T2"], {"Mu11": 5}, "'Mu1'"),
        (["T2"], {"sigmma": 5}, "'Sigma'"),
        (["two-meens"], {}, "'two-means'"),
        (["T2"], {"charts": "power-vs-m"}, "'power-vs-n'"),
    ],
)
def test_an_unknown_name_raises_with_the_nearest(arguments, fields, nearest):
    with pytest.raises(TypeError, match=nearest):
        pa.power(*arguments, **fields)


def test_a_lone_comma_asks_for_the_point():
    with pytest.raises(ValueError, match=r"'0,5' is not a number; did you mean 0\.5\?"):
        pa.power("T1", Mu="0,5")


def test_a_text_that_is_no_choice_names_the_choices():
    with pytest.raises(ValueError, match="'sideways' is not one of: two-sided, upper, lower"):
        pa.power("T1", H0Type="sideways")


# The same slips as in tests/cli/Names_test.cpp, which has members and fields too.
@pytest.mark.parametrize(
    "given, meant",
    [
        ("Alhpa", "Alpha"),
        ("Alpah", "Alpha"),
        ("Lapha", "Alpha"),
        ("Simga", "Sigma"),
        ("sigm", "Sigma"),
        ("Sigmaa", "Sigma"),
        ("SampelSize", "SampleSize"),
        ("SmapleSize", "SampleSize"),
    ],
)
def test_a_slip_has_the_same_nearest_as_everywhere(given, meant):
    with pytest.raises(TypeError, match=f"the nearest is '{meant}'"):
        pa.power("T1", **{given: 1})


@pytest.mark.parametrize(
    "fields, error",
    [
        ({"Sigma": "wide"}, ValueError),
        ({"H0Type": "sideways"}, ValueError),
        ({"SampleSizeN1": 2.5}, ValueError),
        ({"Mu1": float("nan")}, ValueError),
        ({"Mu1": [1, 2]}, TypeError),
        ({"Mu1": None}, TypeError),
        ({"Mu1": 1, "mu1": 2}, TypeError),
        ({"settings": "/nowhere/at/all.txt"}, RuntimeError),
    ],
)
def test_wrong_use_raises(fields, error):
    with pytest.raises(error):
        pa.power("T2", **fields)


# --- Every family.

FAMILIES = [family for family, _name, _title in pa.families()]
# How many steps a chart takes.
STEPS = {"V1": "DfIntervals", "V2": "DfIntervals"}


@pytest.mark.parametrize("family", FAMILIES)
@pytest.mark.parametrize("mode", ["power", "size"])
def test_every_family_computes_its_defaults_as_the_command_line_does(cli_json, mode, family):
    expected = cli_json(mode, family.lower())
    result = getattr(pa, mode)(family)
    assert expected["status"] == 0 and result.to_dict() == expected
    assert list(result.answers.values()) == [answer["value"] for answer in expected["answers"]]
    assert list(result.answers) == [answer["of"] for answer in expected["answers"]]
    for value in result.answers.values():
        assert 0 < value <= 1 if mode == "power" else value >= 1 and isinstance(value, int)
    assert result.report and len(result.table) > 3


def test_a_calculation_of_three_effects_has_three_answers():
    result = pa.size("AV2", RMSSE_Int=0)
    assert result.answers == {"row": 35, "column": 35, "interaction": None}
    assert result.value is None and "row 35" in repr(result)
    with pytest.raises(ValueError, match="several"):
        float(result)
    only = pa.size("T2", Mu1=5)
    assert only.answers == {None: only.value} and float(only) == only.value


@pytest.mark.parametrize("family", FAMILIES)
@pytest.mark.parametrize("mode", ["power", "size"])
def test_every_family_has_charts_of_arrays(mode, family):
    result = getattr(pa, mode)(family, charts="all", **{STEPS.get(family, "NInterval"): 4})
    assert len(result.charts) >= 3
    for chart in result.charts:
        assert len(chart.x) == len(chart.y) >= 5 and (np.diff(chart.x) > 0).all()
        assert np.isfinite(chart.y).any() and result.charts[chart.name].name == chart.name


@pytest.mark.parametrize("family", FAMILIES)
def test_every_family_refuses_a_value_outside_its_range(family):
    with pytest.raises(pa.Refused, match="outside the permissible range") as caught:
        pa.size(family, PowerGoal=1.5)
    assert caught.value.result.value is None


# --- The calculators.

CALCULATIONS = [
    ("t", "t", {"p": 0.975, "df": 10, "delta": 0}),
    ("t", "delta", {"t": 2.5, "df": 20, "p": 0.05}),
    ("f", "p", {"f": 2, "df1": 4, "df2": 5, "delta": 1}),
    ("f", "delta", {"f": 4.1, "df1": 2, "df2": 10, "p": 0.1}),
    ("chi-square", "chi-square", {"df": 4, "delta": 3, "p": 0.9}),
    ("chi-square", "delta", {"chi-square": 20, "df": 4, "p": 0.1}),
    ("r-square", "r-square", {"rho-square": 0.2, "n": 50, "k": 4, "p": 0.9}),
    ("r-square", "rho-square", {"r-square": 0.5, "n": 50, "k": 4, "p": 0.1, "algorithm": 1}),
    ("correlation", "r", {"rho": 0.5, "n": 30, "p": 0.9}),
    ("correlation", "rho", {"r": 0.5, "n": 30, "p": 0.9, "algorithm": "refined"}),
    ("binomial", "x", {"n": 20, "pi": 0.65, "p": 0.9}),
    ("binomial", "pi", {"n": 20, "x": 16, "p": 0.9}),
]


@pytest.mark.parametrize("one_minus_p", [False, True])
@pytest.mark.parametrize("calculator, unknown, fields", CALCULATIONS)
def test_a_calculator_gives_the_digits_of_the_command_line(
    cli_json, calculator, unknown, fields, one_minus_p
):
    result = pa.calc(calculator, unknown=unknown, one_minus_p=one_minus_p, **fields)
    arguments = [text for name, value in fields.items() for text in (f"--{name}", str(value))]
    flag = ["--one-minus-p"] if one_minus_p else []
    expected = cli_json("calc", calculator, "--unknown", unknown, *arguments, *flag)
    assert expected["status"] == 0 and result.to_dict() == expected
    assert result.value == expected["rows"][-1]["value"]
    assert len(result.report) == 1 and result.report[0].startswith("P(")


def test_every_calculator_computes_every_unknown_of_its_defaults_or_says_why():
    computed = 0
    for name, title, unknowns in pa.calculators():
        for unknown in unknowns:
            try:
                result = pa.calc(name, unknown=unknown)
                assert result.table.headings[0] == title
                computed += 1
            except pa.Refused as refused:
                assert refused.message
    assert computed >= 12


def test_the_probability_is_the_unknown_unless_another_is_named():
    expected = pa.distributions.NoncentralTCdf(2, 10, 1)
    assert pa.calc("t", t=2, df=10, delta=1).value == expected
    assert pa.calc("T", TObserved=2, DegreesOfFreedom=10, Delta=1).value == expected
    other = pa.calc("t", t=2, degrees_of_freedom=10, delta=1, one_minus_p=True)
    assert other.value == 1 - expected and other.table["1 - Cum. p"] == other.value
    assert pa.calc("chi_square", chi_square=3, df=2, delta=0).value == pytest.approx(
        1 - np.exp(-1.5)
    )


def test_a_p_without_a_solution_is_refused_with_what_comes_nearest():
    with pytest.raises(pa.Refused, match="There exists no non-negative Delta") as caught:
        pa.calc("f", unknown="delta", f=1, df1=2, df2=10, p=0.99)
    nearest = caught.value.result
    assert nearest.value == 0 and caught.value.id > 0
    assert nearest.table["Cum. p"] == pa.distributions.NoncentralFCdf(1, 2, 10, 0).result


def test_a_warning_of_a_calculator_comes_beside_its_answer():
    result = pa.calc("t", t=2, df=4, delta=6000)
    assert 0 < result.value < 1e-9 and "greater than 5000" in result.messages[0].text


def test_a_calculator_that_finds_no_value_says_so():
    with pytest.raises(pa.Refused, match="--Error--") as caught:
        pa.calc("chi-square", unknown="chi-square", df=1, delta=0, p=0.01)
    assert caught.value.messages == () and caught.value.result.value is None


@pytest.mark.parametrize(
    "arguments, fields, error, words",
    [
        (["tt"], {}, TypeError, "'T'"),
        (["t"], {"fd": 3}, TypeError, "'df'"),
        (["t"], {"p": 0.5}, TypeError, "p is the unknown"),
        (["t"], {"unknown": "df"}, TypeError, "t, p, delta"),
        (["t"], {"Alpha": 0.05}, TypeError, "no argument 'Alpha'"),
        (["t"], {"df": 2.5}, ValueError, "whole"),
        (["t"], {"df": 3, "DegreesOfFreedom": 3}, TypeError, "twice"),
        (["correlation"], {"algorithm": "best"}, ValueError, "exact"),
        (["t"], {"df": 0}, pa.Refused, "permissible range"),
        (["binomial"], {"pi": 1.5}, pa.Refused, "permissible range"),
        (["r-square"], {"n": 3, "k": 4}, pa.Refused, "Sample Size"),
    ],
)
def test_wrong_use_of_a_calculator_raises(arguments, fields, error, words):
    with pytest.raises(error, match=words):
        pa.calc(*arguments, **fields)


# --- Settings.


def test_defaults_live_in_the_users_folder_and_in_the_one_given(config_folder, tmp_path):
    own = pa.power("T1").value
    pa.power("T1", Alpha=0.01, save_defaults=True)
    assert list(config_folder.iterdir())
    assert pa.power("T1").value < own
    assert pa.power("T1", config=tmp_path / "other").value == own


def test_settings_are_saved_and_opened(tmp_path):
    file = tmp_path / "settings.ini"
    expected = pa.power("T2", Mu1=4.5, Sigma=9, save_settings=file).to_dict()
    assert pa.power("T2", settings=file).to_dict() == expected


def test_saving_the_defaults_does_not_change_the_answer(tmp_path):
    expected = pa.power("R2", PopulationR2=0.4, SampleSize=15).value
    with pytest.warns(UserWarning, match="cannot hold PopulationR2=0.4"):
        saved = pa.power("R2", PopulationR2=0.4, SampleSize=15, config=tmp_path, save_defaults=True)
    assert saved.value == expected


def test_keys_of_a_settings_file_that_cannot_be_read_are_warnings(tmp_path):
    file = tmp_path / "settings.ini"
    file.write_text("[POWER_ANALYSIS_TWO_SAMPLE_TTEST_INDEPENDENT]\nMu1=9,5\nMu2=+3\n")
    with pytest.warns(UserWarning, match="line 2: Mu1=9,5 is not a number"):
        opened = pa.power("T2", settings=file)
    assert opened.value == pa.power("T2", Mu2=3).value


def test_a_file_that_cannot_be_written_raises(tmp_path):
    with pytest.raises(RuntimeError, match="cannot save the settings"):
        pa.power("T2", save_settings=tmp_path / "missing" / "settings.ini")


# --- Threads and interrupts.


def test_calculations_of_two_threads_do_not_disturb_each_other():
    expected = {n: pa.size("T2", Mu1=5, Mu2=0, Sigma=n).value for n in (8, 10, 12, 14)}
    found = {}

    def work(n):
        for _ in range(20):
            found.setdefault(n, set()).add(pa.size("T2", Mu1=5, Mu2=0, Sigma=n).value)

    threads = [threading.Thread(target=work, args=(n,)) for n in expected]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert found == {n: {value} for n, value in expected.items()}


# Some tenths of a second of work in one call.
LONG = {"Mu0": 0, "Mu": 0.02, "Sigma": 1, "PowerGoal": 0.95}
RANGES = {"EsStart": 0.012, "EsEnd": 0.02, "NInterval": 100}


def long_call():
    return pa.size("T1", charts="all", **LONG, **RANGES)


def long_array():
    return pa.distributions.NoncentralTCdf(1.5, 100001, np.full(2000, 0.5))


def long_dialog():
    app = pa.Application()
    startup = app.StartAnalysis()
    startup.AnalysisItem = pa.PowAnalysisItem.scPowSampleSizeCalculation
    startup.AnalysisType = pa.PowAnalysisType.scPowOneMeanTTest
    startup.OK()
    for name, value in LONG.items():
        app.Dialog.SetField(name, value)
    app.Dialog.OK()
    results = app.Dialog
    for name, value in RANGES.items():
        results.SetField(name, value)
    try:
        return results.GraphOfSampleSizeVsEs
    except KeyboardInterrupt:
        # The application goes on.
        assert results.IsOpen() and results.NumberOfSteps == 100 and results.Summary is not None
        raise


def long_family():
    return pa.size("R", charts="all", Rho=0.35, Rho0=0.3, Algorithm="exact", NInterval=4)


def long_calculation():
    # A search that goes in circles and finds nothing in the end.
    with pytest.raises(pa.Refused, match="--Error--"):
        pa.calc(
            "r-square",
            unknown="r-square",
            rho_square=0.9999,
            n=1000,
            k=4,
            p=0.3,
            algorithm="accuracy",
        )


@pytest.mark.parametrize("work", [long_call, long_array, long_dialog, long_family, long_calculation])
def test_an_interrupt_stops_the_work(work):
    begin = time.perf_counter()
    work()
    whole = time.perf_counter() - begin

    def interrupt(*_):
        raise KeyboardInterrupt

    before = signal.signal(signal.SIGALRM, interrupt)
    try:
        signal.setitimer(signal.ITIMER_REAL, whole / 4)
        begin = time.perf_counter()
        with pytest.raises(KeyboardInterrupt):
            work()
        assert time.perf_counter() - begin < 0.8 * whole
    finally:
        signal.setitimer(signal.ITIMER_REAL, 0)
        signal.signal(signal.SIGALRM, before)


def test_an_interrupted_command_leaves_the_next_ones_alone():
    app = pa.Application()

    def results_of(task):
        startup = app.StartAnalysis()
        startup.AnalysisItem = pa.PowAnalysisItem.scPowSampleSizeCalculation
        startup.AnalysisType = task
        startup.OK()
        if task == pa.PowAnalysisType.scPowOneMeanTTest:
            for name, value in LONG.items():
                app.Dialog.SetField(name, value)
        app.Dialog.OK()
        return app.Dialog

    def interrupt(*_):
        raise KeyboardInterrupt

    results = results_of(pa.PowAnalysisType.scPowOneMeanTTest)
    for name, value in RANGES.items():
        results.SetField(name, value)
    before = signal.signal(signal.SIGALRM, interrupt)
    try:
        signal.setitimer(signal.ITIMER_REAL, 0.05)
        with pytest.raises(KeyboardInterrupt):
            while True:
                results.GraphOfSampleSizeVsEs
    finally:
        signal.setitimer(signal.ITIMER_REAL, 0)
        signal.signal(signal.SIGALRM, before)
    # Neither of these searches opens a bar.
    for code, task in (
        ("R", pa.PowAnalysisType.scPowOneCorrelationTTest),
        ("SEM", pa.PowAnalysisType.scPowStructuralEquationModeling),
    ):
        table = results_of(task).Summary
        assert table is not None and table.rows[-1].values[0] == pa.size(code).value


def test_another_thread_can_stop_the_work():
    # As a Stop button does that belongs to the window of another thread.
    stopped = []

    def work():
        try:
            long_array()
        except KeyboardInterrupt:
            stopped.append(time.perf_counter())

    begin = time.perf_counter()
    long_array()
    whole = time.perf_counter() - begin
    begin = time.perf_counter()
    thread = threading.Thread(target=work)
    thread.start()
    time.sleep(whole / 4)
    raised = ctypes.pythonapi.PyThreadState_SetAsyncExc(
        ctypes.c_ulong(thread.ident), ctypes.py_object(KeyboardInterrupt)
    )
    thread.join()
    assert raised == 1 and stopped and stopped[0] - begin < 0.8 * whole


CONTROL_C = """\
import poweranalysis as pa
print("started", flush=True)
try:
    while True:
        pa.size("T1", Mu0=0, Mu=0.012, Sigma=1, PowerGoal=0.99)
except KeyboardInterrupt:
    print("interrupted", flush=True)
"""


def test_control_c_is_a_keyboard_interrupt():
    process = subprocess.Popen(
        [sys.executable, "-c", CONTROL_C], stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True
    )
    assert process.stdout.readline() == "started\n"
    time.sleep(0.2)
    os.kill(process.pid, signal.SIGINT)
    out, err = process.communicate(timeout=60)
    assert out == "interrupted\n", err


@pytest.mark.parametrize("name", ["xlsx", "odt"])
def test_documents_are_those_of_the_command_line(name, command_line, tmp_path):
    result = pa.size("T2", Mu1=5, charts="n-vs-es")
    path = tmp_path / "study"
    subprocess.run(
        [command_line, "size", "t2", "--mu1", "5", "--chart", "n-vs-es", "--format", name]
        + ["-o", path],
        check=True,
    )
    assert getattr(result, f"to_{name}")() == path.read_bytes()


def test_office_libraries_load_with_the_first_document():
    script = (
        "import sys, poweranalysis as pa; r = pa.size('T2', Mu1=5); loaded = 'poweranalysis._office';"
        "assert loaded not in sys.modules; assert r.to_odt()[:2] == b'PK'; assert loaded in sys.modules"
    )
    subprocess.run([sys.executable, "-c", script], check=True)


# --- Intervals.

INTERVALS = ["T1", "T2", "T3", "PC", "AV1", "AV2", "R", "R2", "P1", "SEM"]


@pytest.mark.parametrize("family", INTERVALS)
def test_an_interval_has_the_limits_of_the_command_line(cli_json, family):
    result = pa.interval(family)
    expected = cli_json("interval", family)
    assert list(result.limits.items()) == [
        (limits["name"], (limits["lower"], limits["upper"])) for limits in expected["limits"]
    ]
    assert result.p_value == expected["pValue"]
    assert result.to_dict() == expected
    assert result.value is None and result.answers == {}


def test_an_interval_is_of_what_was_given():
    result = pa.interval("one-mean", t_observed=2.4, SampleSize=30, Confidence=0.95)
    assert result.table["Observed t-Statistic"] == 2.4
    lower, upper = result.limits["Delta"]
    assert pa.distributions.NoncentralTCdf(2.4, 29, lower) == pytest.approx(0.975, abs=1e-6)
    assert pa.distributions.NoncentralTCdf(2.4, 29, upper) == pytest.approx(0.025, abs=1e-6)
    assert repr(result).startswith("<Result T1 interval: Delta ")
    with pytest.raises(ValueError):
        float(result)


def test_a_limit_that_is_blank_is_none():
    assert pa.interval("R2").limits["Power"] == (None, None)
    assert pa.interval("R2").limits["P2Bound"][1] is None
    assert pa.power("T1").limits == {} and pa.power("T1").p_value is None


def test_a_refused_interval_raises():
    with pytest.raises(pa.Refused, match="Conf. Level"):
        pa.interval("T1", Confidence=2)
    with pytest.raises(pa.Refused, match="An invalid value entered"):
        pa.interval("AV1", FObserved=1000.5)
    with pytest.raises(TypeError, match="there is no family 'Z2R'"):
        pa.interval("Z2R")


def test_successes_stand_for_their_proportion():
    given = pa.interval("P1", XObserved=3, SampleSize=40).limits
    assert given == pa.interval("P1", PObserved=0.075, SampleSize=40).limits
    with pytest.raises(TypeError, match="3 successes in 40 are not the proportion 0.5"):
        pa.interval("P1", XObserved=3, SampleSize=40, PObserved=0.5)
