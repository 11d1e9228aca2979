"""Running recorded macros."""

from __future__ import annotations

from os import PathLike, fspath
from typing import Any

from . import automation
from ._results import Message


class MacroRun:
    """What a macro left behind."""

    def __init__(self, config: str | PathLike[str] | None, echo: bool) -> None:
        self.config = config
        self.echo = echo
        self.applications: list[automation.Application] = []
        self.names: dict[str, Any] = {}

    @property
    def workbook(self) -> automation.Workbook:
        """All that its applications have sent, in order."""
        items = [item for app in self.applications for item in app.workbook.items]
        return automation.Workbook(items)

    @property
    def messages(self) -> tuple[Message, ...]:
        return tuple(message for app in self.applications for message in app.messages)

    def __repr__(self) -> str:
        return f"<MacroRun: {self.workbook!r}>"


def run_macro(
    path: str | PathLike[str], config: str | PathLike[str] | None = None, echo: bool = False
) -> MacroRun:
    """Runs a macro, a Python script of the object model, and gives what it left behind.

    The script runs in this process with all that Python can do: run only what you trust. config:
    the folder of the default settings of its applications. echo: print results and messages as
    they come. `names` of the outcome are the script's variables. What the script raises comes out
    here.
    """
    from runpy import run_path

    outer = automation._running.macro
    run = MacroRun(config, echo)
    automation._running.macro = run
    try:
        run.names = run_path(fspath(path), run_name="__main__")
    finally:
        automation._running.macro = outer
    return run
