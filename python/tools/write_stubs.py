"""Writes the type stubs of what the package makes from tables: write_stubs.py FOLDER

The package itself must be importable: it is asked for its tables.
"""

import sys
from pathlib import Path

from poweranalysis import _core

NOTE = "# Made by python/tools/write_stubs.py; do not edit.\n"

AUTOMATION_HEAD = '''
from os import PathLike
from typing import Any, ClassVar

from ._core import AutomationError as AutomationError
from ._core import DialogClosed as DialogClosed
from ._core import UnknownMember as UnknownMember
from ._results import Chart, Message, Table

class Workbook:
    items: tuple[tuple[str, Any], ...]
    def __init__(self, items: Any) -> None: ...
    @property
    def tables(self) -> list[Table]: ...
    @property
    def reports(self) -> list[tuple[str, ...]]: ...
    @property
    def charts(self) -> list[Chart]: ...
    def __len__(self) -> int: ...

class Application:
    echo: bool
    def __init__(
        self, config: str | PathLike[str] | None = None, echo: bool | None = None
    ) -> None: ...
    def StartAnalysis(self) -> Any: ...
    @property
    def Dialog(self) -> Any: ...
    @property
    def workbook(self) -> Workbook: ...
    @property
    def messages(self) -> tuple[Message, ...]: ...

_Application = Application

class _Running:
    macro: Any

_running: _Running

class _Enumerator(int):
    name: str
    @property
    def value(self) -> int: ...
    @classmethod
    def members(cls) -> tuple[Any, ...]: ...

class _Dialog:
    def __init__(self, application: Any, handle: Any) -> None: ...
    def IsOpen(self) -> bool: ...
    def GetField(self, field: str) -> float | None: ...
    def SetField(self, field: str, value: float | str) -> None: ...
    def PressButton(self, button: str, path: str | PathLike[str] | None = None) -> None: ...
'''

DISTRIBUTIONS_HEAD = '''
from typing import Any, Callable, NamedTuple, overload

from numpy import bool_, float64
from numpy.typing import ArrayLike, NDArray

NumericFailure: float

class AdaptiveIntegrateResult(NamedTuple):
    result: float
    abserr: float
    neval: int
    ier: int

def AdaptiveIntegrate(
    f: Callable[[float], float], lower: float, upper: float, epsabs: float, epsrel: float
) -> AdaptiveIntegrateResult: ...
'''

TYPES = {
    "double": "float",
    "text": "str",
    "variant": "Any",
    "application": "_Application",
    "table": "Table | None",
    "chart": "Chart | list[Chart] | None",
    "PowAnalysisType": "int",
    "PowAnalysisItem": "int",
}


def docstring(text):
    return f'\n        """{text}"""\n' if text else " ...\n"


def member(interface, name, kind, value, takes_path):
    help_text = _core.member_help(interface, name)
    if kind == "method":
        path = ", path: str | PathLike[str] | None = None" if takes_path else ""
        result = TYPES.get(value, value).replace("none", "None")
        return f"    def {name}(self{path}) -> {result}:" + docstring(help_text)
    declared = TYPES.get(value, value)
    text = f"    @property\n    def {name}(self) -> {declared}:" + docstring(help_text)
    if kind != "get":
        text += f"    @{name}.setter\n    def {name}(self, value: {declared}) -> None: ...\n"
    return text


def interface_class(name, base):
    _dialog_class, title, members = _core.interface(name)
    text = f"\nclass {name}({base}):\n"
    if title:
        text += f'    """{title}"""\n'
    text += "".join(member(name, *row) for row in members)
    return text if title or members else text[:-1] + " ...\n"


def enumeration(name, rows):
    return f"\nclass {name}(_Enumerator):\n" + "".join(
        f"    {row}: ClassVar[{name}]\n" for row, _value in rows
    )


def exported(names):
    return "\n__all__ = [\n" + "".join(f'    "{name}",\n' for name in sorted(names)) + "]\n"


def automation():
    interfaces = _core.interface_names()
    text = NOTE + AUTOMATION_HEAD
    text += enumeration("PowAnalysisType", _core.analysis_types())
    text += enumeration("PowAnalysisItem", _core.analysis_items())
    for name in interfaces:
        text += interface_class(name, "_Dialog" if name == interfaces[0] else interfaces[0])
    own = ["Application", "AutomationError", "DialogClosed", "UnknownMember", "Workbook"]
    return text + exported([*own, "PowAnalysisType", "PowAnalysisItem", *interfaces])


def function(name, arguments, whole, results, value, doc):
    numbers = ", ".join(
        f"{argument}: {'int' if is_whole else 'float'}"
        for argument, is_whole in zip(arguments, whole)
    )
    arrays = ", ".join(f"{argument}: ArrayLike" for argument in arguments)
    if results:
        kind = f"{name}Result"
        names = results if value == "none" else ["result", *results]
        fields = "".join(f"    {field}: Any\n" for field in names)
        return f"\nclass {kind}(NamedTuple):\n{fields}\ndef {name}({arrays}) -> {kind}: ...\n"
    single, many = ("bool", "bool_") if value == "bool" else ("float", "float64")
    return (
        f"\n@overload\ndef {name}({numbers}) -> {single}: ...  # type: ignore[misc]\n"
        f"@overload\ndef {name}({arrays}) -> NDArray[{many}]: ...\n"
    )


def distributions():
    functions = _core.functions()
    text = NOTE + DISTRIBUTIONS_HEAD + "".join(function(*row) for row in functions)
    return text + exported([*(row[0] for row in functions), "AdaptiveIntegrate", "NumericFailure"])


def main(folder):
    for name, text in (("automation", automation()), ("distributions", distributions())):
        Path(folder, f"{name}.pyi").write_text(text, encoding="utf-8")


if __name__ == "__main__":
    main(sys.argv[1])
