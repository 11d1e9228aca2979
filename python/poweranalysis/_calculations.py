"""Power, required size, intervals and the probability calculators by one call."""

from __future__ import annotations

from os import PathLike, fspath
from typing import Any, Iterable, SupportsFloat, SupportsIndex

from . import _core
from ._results import Message, Refused, Result

_Path = str | PathLike[str]
_Value = str | SupportsFloat | SupportsIndex

_MODES = {"power": 0, "size": 1, "interval": 2}


def families() -> list[tuple[str, str, str]]:
    """Code, readable name and title of each test family."""
    return _core.families()


def power(
    family: str,
    /,
    *,
    charts: str | Iterable[str] = (),
    settings: _Path | None = None,
    save_settings: _Path | None = None,
    save_defaults: bool = False,
    config: _Path | None = None,
    **fields: _Value,
) -> Result:
    """The power of a test of given size.

    `family` is its code or its readable name ("T2", "two-means"). Each further argument is a field
    of the family, in any of its spellings (SampleSizeN1, sample_size_n1, h0); a field with choices
    takes their names too (h0="upper"). A field that is left out has its default value.

    charts: names of charts ("power-vs-n"), or "all". settings: a settings file that is opened
    before the fields are applied. save_settings: a file to save the settings to; save_defaults:
    make them the defaults of later runs. config: the folder of the defaults, in place of the
    user's own.

    Raises Refused when the system refuses; TypeError for an unknown name, with the nearest one;
    ValueError for a text that is neither a number nor a choice; RuntimeError for a file that
    cannot be read or written.
    """
    return _run("power", family, charts, settings, save_settings, save_defaults, config, fields)


def size(
    family: str,
    /,
    *,
    charts: str | Iterable[str] = (),
    settings: _Path | None = None,
    save_settings: _Path | None = None,
    save_defaults: bool = False,
    config: _Path | None = None,
    **fields: _Value,
) -> Result:
    """The sample size that a power goal requires. Arguments and errors as of `power`."""
    return _run("size", family, charts, settings, save_settings, save_defaults, config, fields)


def interval(
    family: str,
    /,
    *,
    settings: _Path | None = None,
    save_settings: _Path | None = None,
    save_defaults: bool = False,
    config: _Path | None = None,
    **fields: _Value,
) -> Result:
    """Confidence intervals from an observed statistic, of the ten families that have them.

    Arguments as of `power`, without charts. The result has `limits`, a dictionary from what they
    are limits of ("Delta", "RMSSE", "N") to the lower and the upper one, and `p_value`; it has no
    `value`. Of one proportion the number of successes, XObserved, can be given for PObserved.

    Raises as `power`, and Refused too when a value is refused on its way into its box.
    """
    return _run("interval", family, (), settings, save_settings, save_defaults, config, fields)


def calculators() -> list[tuple[str, str, list[str]]]:
    """Name and title of each probability calculator, and the names of its unknowns."""
    return _core.calculators()


def calc(
    calculator: str,
    /,
    *,
    unknown: str = "p",
    one_minus_p: bool = False,
    config: _Path | None = None,
    **fields: _Value,
) -> Result:
    """One of the six probability calculators: P(statistic <= value) = p, solved for one number.

    `calculator` is "t", "f", "chi-square", "r-square", "correlation" or "binomial", and `unknown`
    one of its three numbers, by its short name ("t", "p", "delta") or its field's. Each further
    argument is a number of the calculator by its short name or its field's (df, p, delta, n,
    DegreesOfFreedom); one that is left out has its default value. With `one_minus_p` the p that is
    given or computed is the probability of a larger value. config: the folder of the defaults, in
    place of the user's own.

    The value is the answer. Raises Refused when the system refuses, when there is no such value
    (what comes nearest is in `result`) and when none could be computed; TypeError for an unknown
    name, with the nearest one, and for a value given to the unknown; ValueError for a text that is
    neither a number nor a choice.
    """
    study = _core.calculate(
        calculator, list(fields.items()), unknown, bool(one_minus_p), _path(config)
    )
    return _result(study, "calc")


def _path(path: _Path | None) -> str | None:
    return None if path is None else fspath(path)


def _run(
    mode: str,
    family: str,
    charts: str | Iterable[str],
    settings: _Path | None,
    save_settings: _Path | None,
    save_defaults: bool,
    config: _Path | None,
    fields: dict[str, Any],
) -> Result:
    study = _core.run(
        _MODES[mode],
        family,
        list(fields.items()),
        [charts] if isinstance(charts, str) else list(charts),
        _path(settings),
        _path(save_settings),
        bool(save_defaults),
        _path(config),
    )
    return _result(study, mode)


def _result(study: _core.Study, mode: str) -> Result:
    for note in study.notes:
        _warn(note)
    result = Result(study, mode)
    if study.status != 0:
        _refuse(study, result)
    return result


def _warn(note: str) -> None:
    from warnings import warn

    warn(note, stacklevel=5)


def _refuse(study: _core.Study, result: Result) -> None:
    messages = [Message(*message) for message in study.messages]
    if messages:
        # What comes after the first is mostly its consequence.
        first = messages[0]
        raise Refused(first.text, first.id, messages, result)
    if result.to_dict()["mode"] == "calc":
        raise Refused("; ".join(study.errors), result=result)
    raise RuntimeError("; ".join(study.errors))
