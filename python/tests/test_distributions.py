"""The numeric functions: broadcasting, results beside the value, failure, threads."""

import csv
import inspect
import math
import signal
import threading
import time
from pathlib import Path

import numpy as np
import pytest

from poweranalysis import distributions as d


def test_numbers_give_a_number():
    value = d.NormalCdf(1.5)
    assert type(value) is float and value == pytest.approx(0.9331927987, rel=1e-8)
    assert type(d.NormalCdf(np.float64(1.5))) is float
    assert type(d.NormalCdf(np.array(1.5))) is float
    assert d.NormalCdf(2) == d.NormalCdf(2.0)


def test_arrays_broadcast_and_each_element_is_the_scalar_result():
    t = np.linspace(-2, 4, 7)
    df = np.array([[1], [2], [7], [60]])
    values = d.NoncentralTCdf(t, df, 0.5)
    assert values.shape == (4, 7) and values.dtype == np.float64
    for i in range(4):
        for k in range(7):
            assert values[i, k] == d.NoncentralTCdf(t[k], int(df[i, 0]), 0.5)


def test_lists_strides_and_empty_arrays_work():
    grid = np.arange(12.0).reshape(3, 4)[:, ::2] / 4
    assert d.NormalCdf(grid).tolist() == [[d.NormalCdf(x) for x in row] for row in grid]
    assert d.NormalCdf([0, 1]).tolist() == [d.NormalCdf(0), d.NormalCdf(1)]
    assert d.NormalCdf([]).shape == (0,)
    assert d.NormalCdf(np.zeros((0, 3))).shape == (0, 3)
    assert d.NoncentralTCdf(np.zeros((1, 0)), np.ones((5, 1)), 0).shape == (5, 0)


def test_shapes_that_do_not_fit_are_refused():
    with pytest.raises(ValueError, match="shapes"):
        d.NoncentralTCdf([1, 2, 3], [1, 2], 0)


def test_what_is_reported_beside_the_value_follows_it():
    answer = d.BetaCdf(1.5, 2, 3)
    assert answer == (0.0, 1) and answer.result == 0.0 and answer.failure == 1
    assert type(answer)._fields == ("result", "failure")
    many = d.BetaCdf([0.0, 0.5, 1.5], 2, 3)
    assert many.failure.tolist() == [0, 0, 1] and many.failure.dtype == np.int32
    assert many.result[1] == d.BetaCdf(0.5, 2, 3).result
    quantile = d.NoncentralTQuantile(0.5, 10, 0.9)
    assert type(quantile)._fields == ("result", "status", "failure")
    assert d.NoncentralTCdf(quantile.result, 10, 0.5) == pytest.approx(0.9, abs=1e-9)


def test_failure_is_the_documented_value():
    assert d.NumericFailure == -9999.0
    assert d.NormalQuantile(0) == d.NormalQuantile(1) == d.NumericFailure
    assert d.NormalQuantile([0.5, 2]).tolist() == [0, d.NumericFailure]


@pytest.mark.parametrize(
    "call",
    [
        lambda: d.NoncentralTCdf(1, 0, 0),
        lambda: d.NoncentralTCdf(1, -5, 0),
        lambda: d.LogGamma(0),
        lambda: d.LogGamma(-1e9),
        lambda: d.BetaCdf(0.5, -1, 2).result,
        lambda: d.BetaContinuedFraction(1, 2, 7),
        lambda: d.CentralTQuantile(0, 0.5).result,
        lambda: d.CriticalT(0, 0.05, 0),
    ],
)
def test_arguments_outside_the_domain_fail_and_do_not_hang(call):
    assert call() == d.NumericFailure


def test_whole_numbers_are_checked():
    for bad in (1.5, math.nan, math.inf, 1e10):
        with pytest.raises(ValueError, match="df must be a whole number"):
            d.NoncentralTCdf(1, bad, 0)
    with pytest.raises(ValueError, match="form"):
        d.CriticalT(10, 0.05, 70000)
    assert d.NoncentralTCdf(1, 10.0, 0) == d.NoncentralTCdf(1, 10, 0)


@pytest.mark.parametrize("bad", ["1", None, 1j, object(), [[1], [2, 3]], ["a"]])
def test_what_is_no_number_is_refused(bad):
    with pytest.raises((TypeError, ValueError)):
        d.NormalCdf(bad)


def test_arguments_go_by_name_and_the_signature_tells_them():
    assert str(inspect.signature(d.NoncentralTCdf)) == "(t, df, delta)"
    assert str(inspect.signature(d.SolveParameter)) == "(x, df, target, start, kind, df2)"
    assert d.NoncentralTCdf(delta=0.5, df=10, t=1) == d.NoncentralTCdf(1, 10, 0.5)
    with pytest.raises(TypeError):
        d.NoncentralTCdf(1, 10)


def test_every_function_is_documented():
    for name in d.__all__:
        if name != "NumericFailure":
            assert len(getattr(d, name).__doc__) > 40, name
    assert "Owen, D. B. (1965)" in d.NoncentralTCdf.__doc__
    assert "AS 70" in d.NormalQuantile.__doc__


# --- The truth tables, one call per table: columns are arrays of arguments.

DATA = Path(__file__).parents[2] / "tests" / "distributions" / "data"

# Table, function, and what its columns leave open.
TRUTH = [
    ("NoncentralTCdf", "NoncentralTCdf", {}),
    ("NoncentralFCdf", "NoncentralFCdf", {}),
    ("CentralFQuantile", "CentralFQuantile", {}),
    ("NoncentralFQuantile", "NoncentralFQuantile", {"algorithm": 0}),
    ("NoncentralFDelta", "NoncentralFDelta", {"algorithm": 0}),
    ("NoncentralChiSquareCdf", "NoncentralChiSquareCdf", {}),
    ("NoncentralChiSquareQuantile", "NoncentralChiSquareQuantile", {}),
    ("NoncentralChiSquareDelta", "NoncentralChiSquareDelta", {}),
    ("CorrelationCdfExact", "CorrelationCdf", {"algorithm": 0}),
    ("CorrelationCdfRefined", "CorrelationCdf", {"algorithm": 1}),
    ("CorrelationCdfCrude", "CorrelationCdf", {"algorithm": 2}),
    ("CorrelationQuantile", "CorrelationQuantile", {"algorithm": 0}),
    ("CorrelationRhoForP", "CorrelationRhoForP", {"algorithm": 0}),
    ("MultipleR2CdfExact", "MultipleR2CdfExact", {}),
    ("MultipleR2CdfExact", "MultipleR2Cdf", {"algorithm": 1}),
    ("MultipleR2CdfLee", "MultipleR2CdfLee", {}),
    ("MultipleR2CdfLee", "MultipleR2Cdf", {"algorithm": 0}),
    ("MultipleR2Quantile", "MultipleR2Quantile", {"algorithm": 1}),
    ("MultipleR2RhoForP", "MultipleR2RhoForP", {"algorithm": 1}),
    ("BinomialCdf", "BinomialCdf", {}),
    ("BinomialQuantile", "BinomialQuantile", {}),
    ("BinomialProportionForP", "BinomialProportionForP", {}),
]


@pytest.mark.parametrize("table, name, open_arguments", TRUTH)
def test_the_functions_agree_with_the_truth_tables(table, name, open_arguments):
    with open(DATA / f"{table}.csv", encoding="utf-8") as file:
        rows = list(csv.DictReader(line for line in file if not line.startswith("#")))
    columns = {key: np.array([float(row[key]) for row in rows]) for key in rows[0]}
    expected = columns.pop("expected")
    tolerance = columns.pop("tolerance")
    assert len(expected) > 100
    if name == "BinomialQuantile":
        columns["logP"] = np.log(columns["p"])
    values = getattr(d, name)(**columns, **open_arguments)
    values = getattr(values, "result", values)
    # Relative, as the tables mean it.
    errors = np.abs(values - expected) / np.where(expected == 0, 1, np.abs(expected))
    assert (errors <= tolerance).all()
    first = {key: column[0] for key, column in columns.items()}
    single = getattr(d, name)(**first, **open_arguments)
    assert getattr(single, "result", single) == values[0]


# --- What the functions of these distributions say beside their value.


def fields(answer):
    return type(answer)._fields


def test_numbers_beside_the_value_are_numbers_and_words_are_words():
    answer = d.NoncentralChiSquareCdf(20, 10, 5)
    assert fields(answer) == ("result", "density", "failure")
    assert answer.result == pytest.approx(0.801701997, abs=1e-9)
    assert type(answer.density) is float and type(answer.failure) is int
    many = d.NoncentralChiSquareCdf([20, -1], 10, 5)
    assert many.density.dtype == np.float64 and many.failure.dtype == np.int32
    assert many.density.tolist() == [answer.density, -1] and many.failure.tolist() == [0, 1]
    quantile = d.BinomialQuantile(0.3, 10, 0.5, math.log(0.3))
    assert fields(quantile) == ("result", "actual", "failure")
    assert quantile == (4, pytest.approx(386 / 1024), 0)


def test_a_function_without_a_value_gives_what_it_reports():
    limits = d.MultipleR2Interval(4, 0.5, 50, 0.9, 1)
    assert fields(limits) == (
        "lower",
        "upper",
        "oneSided",
        "lowerFailure",
        "upperFailure",
        "oneSidedFailure",
        "pValue",
    )
    assert limits[3:6] == (0, 0, 0) and 0 < limits.lower < 0.5 < limits.upper < 1
    below = d.MultipleR2Cdf([limits.lower, limits.upper], 50, 4, 0.5, 1).result
    assert below == pytest.approx([0.95, 0.05], abs=1e-5)
    assert limits.pValue == pytest.approx(1 - d.MultipleR2CdfExact(0.5, 0, 50, 4).result)
    many = d.MultipleR2Interval(4, [[0.25], [0.5]], [50, 80, 120], 0.9, 0)
    assert many.lower.shape == many.lowerFailure.shape == (2, 3)
    assert many.lower[1, 0] == d.MultipleR2Interval(4, 0.5, 50, 0.9, 0).lower


def test_a_count_comes_with_its_proportion():
    assert d.RoundProportionToCount(0.26, 10) == (3, 0.3)
    counted = d.RoundProportionToCount([0.26, 0.31], 20)
    assert fields(counted) == ("count", "proportion")
    assert counted.count.tolist() == [5, 6] and counted.proportion.tolist() == [0.25, 0.3]


def test_values_known_from_elsewhere():
    # scipy 1.10.1: ncf.cdf(3, 2, 10, 5), ncx2.ppf(0.9, 4, 6), binom.cdf(3, 10, 0.3)
    assert d.NoncentralFCdf(3, 2, 10, 5).result == pytest.approx(0.472229201, abs=1e-8)
    assert d.NoncentralFCdfInt(3, 2, 10, 5, 0).result == d.NoncentralFCdf(3, 2, 10, 5).result
    assert d.NoncentralFCdfInt(3, 2, 10, 5, 1).result == pytest.approx(0.4722, abs=0.01)
    x = d.NoncentralChiSquareQuantile(6, 4, 0.9).result
    assert x == pytest.approx(17.63126704, abs=5e-5)
    assert d.NoncentralChiSquareCdf(x, 4, 6).result == pytest.approx(0.9, abs=1e-6)
    assert d.BinomialCdf(10, 0.3, 3).result == pytest.approx(0.6496107184)
    # r of .05 two-sided, n = 20: .4438
    assert d.CorrelationQuantile(0, 20, 0.975, 0) == pytest.approx(0.4438, abs=5e-5)
    r = d.CorrelationQuantile(0.5, 30, 0.9, 0)
    assert d.CorrelationCdf(0.5, 30, r, 0) == pytest.approx(0.9, abs=1e-6)
    assert d.CorrelationQuantileStart(0.5, 30, 0.9) == d.CorrelationQuantile(0.5, 30, 0.9, 1)
    # rho / (2 (n - 1)) and 1 / (n - 1), at first order.
    assert d.FisherZBias(0.5, 101) == pytest.approx(0.0025, rel=0.02)
    assert d.FisherZSecondMoment(0.5, 101) == pytest.approx(0.01, rel=0.05)
    # The density of r at rho 0 and n 4 is flat.
    assert d.CorrelationDensity([-0.5, 0, 0.9], 0, 4).result == pytest.approx([0.5, 0.5, 0.5])
    assert d.CorrelationIntegrand(0.5, 0, 0.3, 4) == pytest.approx(0.25 / math.sqrt(0.375))
    critical = d.MultipleR2CriticalValue(50, 4, 0.05, 0, 1, 3, 0).result
    assert d.MultipleR2Cdf(0, 50, 4, critical, 1).result == pytest.approx(0.95, abs=1e-6)
    assert d.NoncentralBetaCdf(0.5, 2, 3, 0).result == d.BetaCdf(0.5, 2, 3).result


@pytest.mark.parametrize(
    "answer, expected",
    [
        (lambda: d.NoncentralFCdf(1, 0, 5, 0), (-9999, 1)),
        (lambda: d.NoncentralFCdf(1, 2, 5, -1), (-9999, 1)),
        (lambda: d.NoncentralFCdf(math.nan, 2, 5, 1), (-9999, 1)),
        (lambda: d.NoncentralFCdfInt(1, 2, 5, 1, 7), (-9999, 1)),
        (lambda: d.NoncentralFDelta(1, 2, 10, 0.99, 0), (0, 0)),
        (lambda: d.NoncentralFQuantile(1, 2, 10, 1, 0), (-9999, 1)),
        (lambda: d.NoncentralChiSquareDelta(1, 2, 0.99), (-9999, 9999)),
        (lambda: d.CorrelationCdf(1, 10, 0.5, 0), -9999),
        (lambda: d.CorrelationCdf(0.5, 2, 0.5, 0), -9999),
        (lambda: d.CorrelationQuantile(0.5, 10, 1, 0), -9999),
        (lambda: d.CorrelationRhoForP(10, 1, 0.5, 0), (-9999, 1)),
        (lambda: d.CorrelationDensity(1, 0.5, 10), (-9999, 1)),
        (lambda: d.CorrelationIntegrand(0, 0.5, 0.5, 10), -9999),
        (lambda: d.FisherZBias(0.5, 1), -9999),
        (lambda: d.MultipleR2CdfExact(0.5, 0.5, 4, 4), (-1, 1)),
        (lambda: d.MultipleR2Cdf(0.5, 20, 4, 0.5, 7), (-1, 1)),
        (lambda: d.MultipleR2Quantile(1, 20, 4, 0.5, 1), (-9999, 1)),
        (lambda: d.MultipleR2CriticalValue(20, 4, 0.05, 0.1, 0, 7, 0), (-9999, 1)),
        (lambda: d.BinomialCdf(0, 0.5, 0), (-9999, 1)),
        (lambda: d.RoundProportionToCount(2, 10), (-9999, -9999)),
    ],
)
def test_failures_are_told(answer, expected):
    assert answer() == expected
    assert len(np.atleast_1d(expected)) == 1 or answer()[-1] == expected[-1]


def test_a_single_long_search_can_be_interrupted():
    def interrupt(*_):
        raise KeyboardInterrupt

    def search():
        return d.MultipleR2Quantile(0.9999, 1000, 4, 0.3, 1)

    begin = time.perf_counter()
    search()
    whole = time.perf_counter() - begin
    before = signal.signal(signal.SIGALRM, interrupt)
    try:
        signal.setitimer(signal.ITIMER_REAL, whole / 4)
        begin = time.perf_counter()
        with pytest.raises(KeyboardInterrupt):
            search()
        assert time.perf_counter() - begin < 0.8 * whole
    finally:
        signal.setitimer(signal.ITIMER_REAL, 0)
        signal.signal(signal.SIGALRM, before)


def test_the_power_of_a_t_test_is_that_of_the_dialogs():
    import poweranalysis as pa

    n, effect = 40, 0.5
    delta = effect * math.sqrt(n)
    power = d.TTestPower(d.CriticalT(n - 1, 0.05, 0), n - 1, delta, 0)
    result = pa.power("T1", Mu0=0, Mu=1, Sigma=2, SampleSize=n)
    assert result.value == power
    assert d.OneMeanEffect(1, 0, 2) == effect


def test_a_true_null_hypothesis_has_no_power():
    assert d.TTestPower(-2, 10, 0, 0) == d.NumericFailure


def test_tests_give_truth_values():
    assert d.AlmostEqual(1, 1 + 1e-12) is True and d.AlmostEqual(1, 2) is False
    assert d.AlmostEqual([1, 2], 1).dtype == np.bool_


def test_the_integrator_takes_a_function_and_passes_its_exception_on():
    answer = d.AdaptiveIntegrate(lambda x: x * x, 0, 3, 1e-12, 1e-12)
    assert answer.result == pytest.approx(9) and answer.ier == 0 and answer.neval >= 21
    with pytest.raises(ZeroDivisionError):
        d.AdaptiveIntegrate(lambda x: 1 / 0, 0, 1, 1e-9, 1e-9)
    with pytest.raises((TypeError, RuntimeError)):
        d.AdaptiveIntegrate(lambda x: "no number", 0, 1, 1e-9, 1e-9)


def test_other_threads_run_meanwhile():
    steps = 0
    done = threading.Event()

    # One call that lasts some hundred milliseconds.
    t = np.full(100, 1.5)
    seconds = []
    for _ in range(5):
        begin = time.monotonic()
        d.NoncentralTCdf(t, 3001, 0.5)
        seconds.append(max(time.monotonic() - begin, 1e-6))
    deltas = np.full(int(100 * 0.3 / min(seconds)), 0.5)

    def work():
        d.NoncentralTCdf(1.5, 3001, deltas)
        done.set()

    thread = threading.Thread(target=work)
    thread.start()
    while not done.is_set():
        time.sleep(0.001)
        steps += 1
    thread.join()
    # Had the one long call kept the lock, this thread would not have come by before its end.
    assert steps > 5
