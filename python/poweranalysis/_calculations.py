"""Power and required size by one call."""

from __future__ import annotations

from os import PathLike, fspath
from typing import Any, Iterable, SupportsFloat, SupportsIndex

from . import _core
from ._results import Message, Refused, Result

_Path = str | PathLike[str]
_Value = str | SupportsFloat | SupportsIndex

_MODES = {"power": 0, "size": 1}


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
    cannot be read or written, and for a family that has no dialogs yet.
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
    for note in study.notes:
        _warn(note)
    result = Result(study, mode)
    if study.status != 0:
        _refuse(study, result)
    return result


def _warn(note: str) -> None:
    from warnings import warn

    warn(note, stacklevel=4)


def _refuse(study: _core.Study, result: Result) -> None:
    messages = [Message(*message) for message in study.messages]
    if messages:
        # What comes after the first is mostly its consequence.
        first = messages[0]
        raise Refused(first.text, first.id, messages, result)
    raise RuntimeError("; ".join(study.errors))
