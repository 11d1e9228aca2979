"""The numeric functions: broadcasting, results beside the value, failure, threads."""

import inspect
import math
import threading
import time

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
    begin = time.monotonic()
    d.NoncentralTCdf(t, 3001, 0.5)
    deltas = np.full(int(100 * 0.3 / max(time.monotonic() - begin, 1e-6)), 0.5)

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
    assert steps > 20
