"""The object model by name."""

import gc
import pickle
import threading

import pytest

import poweranalysis as pa
from poweranalysis import _core

ITEM = pa.PowAnalysisItem
TYPE = pa.PowAnalysisType


@pytest.fixture
def app():
    return pa.Application()


def open_task(app, item, task):
    startup = app.StartAnalysis()
    startup.AnalysisItem = item
    startup.AnalysisType = task
    assert startup.OK() == 1
    return app.Dialog


@pytest.fixture
def t2(app):
    return open_task(app, ITEM.scPowPowerCalculation, TYPE.scPowTwoMeansTTestIndependentSamples)


def test_each_interface_has_its_class():
    names = _core.interface_names()
    assert len(names) == 91 and names[0] == "ZlvAnalysisDialog"
    for name in names:
        kind = getattr(pa, name)
        assert kind.__name__ == name and issubclass(kind, pa.ZlvAnalysisDialog)
        for member, *_rest in _core.interface(name)[2]:
            assert hasattr(kind, member)
    assert set(names) <= set(pa.__all__) and set(names) <= set(dir(pa))


def test_enumerators_keep_their_names_and_numbers():
    assert len(TYPE.members()) == 35 and len(ITEM.members()) == 4
    assert TYPE.scPowTwoMeansTTestIndependentSamples == 1
    assert TYPE.scPowTwoMeansTTestIndpendentSamples == 1
    assert TYPE.scPowIntervalOneMeanTTest == TYPE.scPowOneMeanTTest == 0
    assert TYPE.scPowDistributionNonCentralChiSuare.value == 2
    assert repr(TYPE.scPowIntervalOneMeanTTest) == "PowAnalysisType.scPowIntervalOneMeanTTest"
    assert pickle.loads(pickle.dumps(TYPE.scPowIntervalOneMeanTTest)).name == (
        "scPowIntervalOneMeanTTest"
    )


def test_a_whole_analysis_gives_the_digits_of_the_command_line(app, t2, cli_json):
    t2.Mean1, t2.Mean2, t2.Sigma = 5, 0, 10
    t2.SampleSize1 = 64
    t2.SampleSize2 = 70
    assert t2.OK() == 1
    results = app.Dialog
    assert isinstance(results, pa.PowT2_P_ResultsDialog)
    results.EndOfSampleSize = 200
    table = results.Summary
    chart = results.GraphOfPowerVsN
    expected = cli_json(
        *"power t2 --mu1 5 --mu2 0 --sigma 10 --sample-size-n1 64 --sample-size-n2 70".split(),
        *"--n-end 200 --chart power-vs-n".split(),
    )
    assert [row.values[0] for row in table] == [row["value"] for row in expected["rows"]]
    assert chart.x.tolist() == expected["charts"][0]["x"]
    assert chart.y.tolist() == expected["charts"][0]["y"]
    assert [item[0] for item in app.workbook.items] == ["table", "report", "chart"]
    assert list(app.workbook.reports[0]) == expected["report"]


def test_a_plot_of_several_charts_gives_them_all(app):
    parameters = open_task(app, ITEM.scPowPowerCalculation, TYPE.scPowSeveralMeansANOVATwoWay)
    parameters.NumberOfRows, parameters.NumberOfColumns = 2, 4
    assert parameters.OK() == 1
    charts = app.Dialog.GraphOfPowerVsN
    expected = pa.power("AV2", Rows=2, Columns=4, charts="power-vs-n").charts
    assert [chart.titles for chart in charts] == [chart.titles for chart in expected]
    assert len(charts) == 3 and charts[2].y.tolist() == expected[2].y.tolist()


def test_a_calculator_tells_whether_it_computed(app):
    dialog = open_task(app, ITEM.scPowProbabilityDistribution, TYPE.scPowDistributionNonCentralT)
    dialog.ObservedT, dialog.DegreeOfFreedom, dialog.Delta = 2, 10, 6000
    assert dialog.OK() == 1 and "greater than 5000" in app.messages[-1].text
    dialog.DegreeOfFreedom = 0
    assert dialog.OK() == 0 and "permissible range" in app.messages[-1].text


def test_a_put_is_typing_and_is_checked_by_ok(app, t2):
    t2.Alpha = 2
    assert t2.Alpha == 2
    assert t2.OK() == 0 and app.Dialog is t2
    assert app.messages[-1].id > 0 and "Alpha" in app.messages[-1].text
    t2.Alpha = 0.01
    assert t2.OK() == 1 and app.Dialog is not t2


def test_flags_read_as_pressed_buttons(t2):
    assert (t2.TwoTailedEqual, t2.OneTailedLow, t2.OneTailedHigh) == (1, 0, 0)
    t2.OneTailedHigh = 1
    assert (t2.TwoTailedEqual, t2.OneTailedLow, t2.OneTailedHigh) == (0, 0, 1)
    t2.OneTailedHigh = 0
    assert t2.OneTailedHigh == 1


def test_a_put_keeps_full_precision(t2):
    t2.Mean1 = 0.1 + 0.2
    assert t2.Mean1 == 0.1 + 0.2


def test_a_call_on_a_closed_dialog_raises(app, t2):
    assert t2.OK() == 1
    for call in (
        lambda: t2.Alpha,
        lambda: setattr(t2, "Alpha", 0.01),
        lambda: t2.OK(),
        lambda: t2.Cancel(),
        lambda: t2.SaveAsDefault(),
        lambda: t2.GetField("Alpha"),
    ):
        with pytest.raises(pa.DialogClosed) as caught:
            call()
        assert isinstance(caught.value, pa.AutomationError)
        assert caught.value.code == 0x80004005
    assert not t2.IsOpen() and "closed" in repr(t2)


def test_a_new_analysis_closes_the_dialogs_of_the_one_before(app, t2):
    startup = app.StartAnalysis()
    assert isinstance(startup, pa.PowStartup) and app.Dialog is startup
    with pytest.raises(pa.DialogClosed):
        t2.OK()


def test_unknown_members_name_the_nearest(t2):
    with pytest.raises(pa.UnknownMember, match="Alpha"):
        t2.Alhpa = 0.01
    with pytest.raises(AttributeError, match="Alpha"):
        t2.Alhpa
    with pytest.raises(pa.UnknownMember, match="Sigma"):
        t2.SetField("Sigam", 1)
    assert not hasattr(t2, "Nothing")
    with pytest.raises(AttributeError):
        t2.Name = "another"
    with pytest.raises(TypeError):
        t2.Alpha = None


def test_the_base_members_are_there(app, t2):
    assert t2.Application is app and t2.Parent is app
    assert "t-Test" in t2.Name
    t2.ResultsSelection = ["anything"]
    t2.ResultsOption = 1
    t2.Cancel()
    assert isinstance(app.Dialog, pa.PowStartup)


def test_fields_and_buttons_beyond_the_interface_are_reached_by_name(app, tmp_path):
    dialog = open_task(
        app, ITEM.scPowSampleSizeCalculation, TYPE.scPowTwoMeansTTestIndependentSamples
    )
    dialog.SetField("NToVary", 1)
    assert dialog.GetField("NToVary") == 1
    dialog.Alpha = 0.02
    file = tmp_path / "saved.ini"
    dialog.SaveSettingsAs(file)
    assert "0.02" in file.read_text(encoding="utf-8")
    dialog.PressButton("RestoreDefaults")
    assert dialog.Alpha == 0.05
    dialog.PressButton("Open", file)
    assert dialog.Alpha == 0.02


def test_a_settings_file_that_cannot_be_written_is_told(app, tmp_path):
    dialog = open_task(app, ITEM.scPowPowerCalculation, TYPE.scPowOneMeanTTest)
    dialog.SetField("Mu", 5)
    file = tmp_path / "missing" / "saved.ini"
    dialog.SaveSettingsAs(file)
    assert "not saved" in app.messages[-1].text and str(file) in app.messages[-1].text
    assert dialog.GetField("Mu") == 5


def test_defaults_that_cannot_be_written_leave_the_inputs(tmp_path):
    (tmp_path / "POWER.INI").mkdir()
    app = pa.Application(config=tmp_path)
    dialog = open_task(app, ITEM.scPowPowerCalculation, TYPE.scPowOneMeanTTest)
    dialog.SetField("Mu", 5)
    dialog.SaveAsDefault()
    assert "not saved" in app.messages[-1].text
    assert dialog.GetField("Mu") == 5


def test_keys_that_cannot_be_read_are_told(app, tmp_path):
    file = tmp_path / "mine.ini"
    file.write_text("[POWER_ANALYSIS_ONE_SAMPLE_TTEST]\nMu=9,5\nSampleSize=1e2\n")
    dialog = open_task(app, ITEM.scPowPowerCalculation, TYPE.scPowOneMeanTTest)
    dialog.PressButton("Open", file)
    assert app.messages[-1].text == (
        "'mine.ini', line 2: Mu=9,5 is not a number; the built-in value 2 stands."
    )
    assert dialog.SampleSize == 100


def test_applications_do_not_disturb_each_other_nor_the_calls(app, t2):
    other = open_task(pa.Application(), ITEM.scPowSampleSizeCalculation, TYPE.scPowOneMeanTTest)
    t2.Alpha = 0.02
    other.Alpha = 0.03
    assert pa.power("T1", Alpha=0.04).value > 0
    assert (t2.Alpha, other.Alpha) == (0.02, 0.03)
    assert t2.OK() == 1 and other.OK() == 1


def test_a_second_command_is_refused_until_the_first_has_ended(app):
    dialog = open_task(app, ITEM.scPowSampleSizeCalculation, TYPE.scPowOneMeanTTest)
    for field, value in {"Mu0": 0, "Mu": 0.02, "Sigma": 1, "PowerGoal": 0.95}.items():
        dialog.SetField(field, value)
    assert dialog.OK() == 1
    results = app.Dialog
    for field, value in {"EsStart": 0.012, "EsEnd": 0.02, "NInterval": 100}.items():
        results.SetField(field, value)
    charts = []

    def draw():
        while not charts:
            try:
                charts.append(results.GraphOfSampleSizeVsEs)
            except pa.AutomationError:
                pass  # the other thread came first

    thread = threading.Thread(target=draw)
    thread.start()
    refused = 0
    while thread.is_alive():
        try:
            results.NumberOfSteps
        except pa.AutomationError as error:
            refused += "running" in str(error)
    thread.join()
    assert refused > 0 and charts[0].name == "n-vs-es"
    assert results.NumberOfSteps == 100


def test_a_program_hands_over_nothing_but_a_driver():
    _core.use_driver(None)
    with pytest.raises(ValueError):
        _core.use_driver(object())


def test_the_defaults_come_from_the_folder_given(tmp_path):
    folder = tmp_path / "mine"
    task = (ITEM.scPowPowerCalculation, TYPE.scPowOneMeanTTest)
    dialog = open_task(pa.Application(config=folder), *task)
    dialog.Alpha = 0.125
    dialog.SaveAsDefault()
    assert open_task(pa.Application(config=folder), *task).Alpha == 0.125
    assert open_task(pa.Application(), *task).Alpha == 0.05


def test_dialog_objects_are_counted_and_go():
    gc.collect()
    before = _core.lock_count()
    app = pa.Application()
    startup = app.StartAnalysis()
    assert _core.lock_count() == before + 1
    del app, startup
    gc.collect()
    assert _core.lock_count() == before
