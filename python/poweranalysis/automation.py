"""The object model: the dialogs as a script drives them.

    app = Application()
    startup = app.StartAnalysis()                       # PowStartup
    startup.AnalysisItem = PowAnalysisItem.scPowPowerCalculation
    startup.AnalysisType = PowAnalysisType.scPowTwoMeansTTestIndependentSamples
    startup.OK()
    dialog = app.Dialog                                 # PowT2PowParametersDialog
    dialog.Alpha = 0.01
    if dialog.OK():
        table = app.Dialog.Summary

Setting a property is typing: the dialog checks its ranges on OK, which gives 1 when it worked and
else 0. A call on a dialog that has closed raises DialogClosed. The class of a dialog is made from
the table of interfaces when it is first asked for.
"""

from . import _core
from ._core import AutomationError, DialogClosed, UnknownMember
from ._results import Message, chart_of, table_of


# --- Enumerators.


class _Enumerator(int):
    """A constant by name. Constants of one enumeration may share a number."""

    __slots__ = ()
    _names = {}
    _members = ()

    @property
    def value(self):
        return int(self)

    @classmethod
    def members(cls):
        """All constants, in order."""
        return cls._members


def _enumeration(name, doc, rows):
    members = []
    kind = type(name, (_Enumerator,), {"__doc__": doc, "__module__": __name__})
    for text, value in rows:
        # A class for each, so that constants of the same number keep their own names.
        body = {
            "__module__": __name__,
            "name": text,
            "__repr__": lambda self: f"{name}.{self.name}",
            "__reduce__": lambda self: (getattr, (kind, self.name)),
        }
        member = type(text, (kind,), body)(value)
        setattr(kind, text, member)
        members.append(member)
    kind._members = tuple(members)
    return kind


PowAnalysisType = _enumeration(
    "PowAnalysisType",
    "The tasks of all modes. The constants of a mode count from 0, so that modes share numbers.",
    _core.analysis_types(),
)
PowAnalysisItem = _enumeration("PowAnalysisItem", "The modes.", _core.analysis_items())


# --- Results.


class Workbook:
    """What an application has sent: tables, reports (paragraphs) and charts, in order."""

    def __init__(self, items):
        self.items = tuple(items)

    @property
    def tables(self):
        return [item for kind, item in self.items if kind == "table"]

    @property
    def reports(self):
        return [item for kind, item in self.items if kind == "report"]

    @property
    def charts(self):
        return [item for kind, item in self.items if kind == "chart"]

    def __len__(self):
        return len(self.items)

    def __repr__(self):
        return f"<Workbook: {len(self.tables)} tables, {len(self.charts)} charts>"


def _item(kind, study):
    if kind == "table":
        return kind, table_of(study)
    if kind == "chart":
        return kind, chart_of(study)
    from json import loads

    return kind, tuple(loads(study.export("json"))["report"])


# --- Dialogs.


class _Dialog:
    __slots__ = ("_application", "_handle")
    _interface = None

    def __init__(self, application, handle):
        object.__setattr__(self, "_application", application)
        object.__setattr__(self, "_handle", handle)

    def __getattr__(self, name):
        if name.startswith("_"):
            raise AttributeError(name)
        # The system knows the nearest name.
        return self._do(self._handle.get, name)

    def __setattr__(self, name, value):
        if not isinstance(getattr(type(self), name, None), property):
            self._do(self._handle.put, name, value)
            return
        object.__setattr__(self, name, value)

    def __repr__(self):
        state = "open" if self.IsOpen() else "closed"
        return f"<{type(self).__name__}: {state}>"

    def _do(self, call, *arguments):
        try:
            return call(*arguments)
        finally:
            self._application._echo_news()

    def IsOpen(self):
        """Whether the dialog is still there."""
        return self._handle.is_open()

    def GetField(self, field):
        """The value of a field that the dialog shows, by the field's own name."""
        return self._do(self._handle.get_field, field)

    def SetField(self, field, value):
        """Types a value into a field that the dialog shows, or chooses the button of that value."""
        self._do(self._handle.set_field, field, value)

    def PressButton(self, button, path=None):
        """Presses a button by name; `path` answers the file chooser that it brings up."""
        self._do(self._handle.press, button, _path(path))


def _path(path):
    if path is None:
        return None
    from os import fspath

    return fspath(path)


def _getter(name, kind):
    if kind == "application":

        def get(self):
            self._do(self._handle.get, name)
            return self._application

    elif kind == "table":

        def get(self):
            study = self._do(self._handle.get, name)
            return None if study is None else table_of(study)

    elif kind == "chart":

        def get(self):
            studies = self._do(self._handle.get, name)
            if isinstance(studies, list):
                return [chart_of(study) for study in studies]
            return None if studies is None else chart_of(studies)

    else:

        def get(self):
            return self._do(self._handle.get, name)

    return get


def _putter(name, kind):
    def put(self, value):
        if kind == "variant" and not isinstance(value, (int, float, str)):
            value = repr(value)
        self._do(self._handle.put, name, value)

    return put


def _method(name, takes_path):
    if takes_path:

        def method(self, path=None):
            return self._do(self._handle.call, name, _path(path))

    else:

        def method(self):
            return self._do(self._handle.call, name, None)

    method.__name__ = name
    return method


def _attribute(interface, row):
    name, kind, value_kind, takes_path = row
    if kind == "method":
        method = _method(name, takes_path)
        method.__qualname__ = f"{interface}.{name}"
        method.__doc__ = _core.member_help(interface, name)
        return method
    return property(
        _getter(name, value_kind) if kind != "put" else None,
        _putter(name, value_kind) if kind != "get" else None,
        None,
        _core.member_help(interface, name),
    )


_CLASSES = {}
_INTERFACES = tuple(_core.interface_names())
_BASE = _INTERFACES[0]


def _class(name):
    found = _CLASSES.get(name)
    if found is None:
        _dialog_class, title, members = _core.interface(name)
        body = {row[0]: _attribute(name, row) for row in members}
        body.update(__slots__=(), __doc__=title, __module__=__name__, __qualname__=name)
        base = _Dialog if name == _BASE else _class(_BASE)
        found = _CLASSES[name] = type(name, (base,), body)
    return found


def __getattr__(name):
    if name in _INTERFACES:
        kind = globals()[name] = _class(name)
        return kind
    raise AttributeError(f"module {__name__!r} has no attribute {name!r}")


# --- The application.

class _Running:
    """The macro that runs, to which new applications belong."""

    macro = None


_running = _Running()


class Application:
    """The root of the object model, with its own dialogs.

    config: the folder of the default settings, in place of the user's own. echo: whether results
    and messages are printed as they come; by default an application prints that a script makes at
    its top level, as a recorded macro does.

    Inside the desktop program it stands for the program itself, and results show there.
    """

    def __init__(self, config=None, echo=None):
        macro = _running.macro
        if config is None and macro is not None:
            config = macro.config
        self._session = _core.Session(_path(config))
        self._open = None
        self._items = []
        self._told = [0, 0, 0]
        if macro is not None:
            macro.applications.append(self)
        if echo is None:
            echo = macro.echo if macro is not None else _is_script()
        self.echo = bool(echo) and not self._session.hosted

    def StartAnalysis(self):
        """Opens the startup dialog of a new analysis, PowStartup; the one before ends."""
        return self._wrap(self._session.start_analysis())

    @property
    def Dialog(self):
        """The open dialog, or None."""
        return self._wrap(self._session.dialog())

    @property
    def workbook(self):
        """What was sent so far."""
        new = self._session.items(len(self._items))
        self._items += [_item(kind, study) for kind, study in new]
        return Workbook(self._items)

    @property
    def messages(self):
        """What the system had to say so far."""
        return tuple(Message(*message) for message in self._session.messages(0))

    def _wrap(self, handle):
        if handle is None:
            self._open = None
        elif self._open is None or not self._open._handle.is_same(handle):
            self._open = _class(handle.interface)(self, handle)
        return self._open

    def _echo_news(self):
        if not self.echo:
            return
        try:
            self._print_news()
        except BrokenPipeError:
            _end_by_closed_pipe()

    def _print_news(self):
        from sys import stderr

        items, messages, repeats = self._told
        for kind, study in self._session.items(items):
            items += 1
            print(study.export("text").strip("\n"), end="\n\n", flush=True)
        news = self._session.messages(max(messages - 1, 0))
        for position, (_id, text, count) in enumerate(news, max(messages - 1, 0)):
            seen = repeats if position == messages - 1 else 0
            for _ in range(count - seen):
                print(text.replace("\r\n", "\n").replace("\r", "\n"), file=stderr, flush=True)
            repeats = count
            messages = position + 1
        self._told = [items, messages, repeats]


def _end_by_closed_pipe():
    # As other programs end whose reader has gone: silently, with the status that a shell gives
    # the signal. The interpreter would try to write what is left, and complain.
    from os import O_WRONLY, devnull, dup2
    from os import open as open_file

    for descriptor in (1, 2):
        dup2(open_file(devnull, O_WRONLY), descriptor)
    raise SystemExit(141)


def _is_script():
    from sys import _getframe

    frame = _getframe(2)
    names = frame.f_globals
    return (
        frame.f_code.co_name == "<module>"
        and names.get("__name__") == "__main__"
        and "__file__" in names
    )


__all__ = [
    "Application",
    "AutomationError",
    "DialogClosed",
    "PowAnalysisItem",
    "PowAnalysisType",
    "UnknownMember",
    "Workbook",
    *_INTERFACES,
]


def __dir__():
    return __all__
