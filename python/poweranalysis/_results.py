"""What a calculation gives: the table, the report, the messages and the charts."""

from __future__ import annotations

from typing import TYPE_CHECKING, Any, Iterator, NamedTuple

if TYPE_CHECKING:
    from numpy import float64
    from numpy.typing import NDArray

    from ._core import Study


class Message(NamedTuple):
    """A message of the system; `count` says how often it came in a row."""

    id: int
    text: str
    count: int  # type: ignore[assignment]


class Row(NamedTuple):
    """A row of a table; a missing value is None."""

    title: str
    indent: int
    values: tuple[float | None, ...]


class Table:
    """A summary table: its headings, its columns, and its rows in order."""

    __slots__ = ("headings", "columns", "rows", "_study")

    def __init__(self, content: dict[str, Any], study: Study) -> None:
        self.headings = tuple(content["headings"])
        self.columns = tuple(content["columns"])
        self.rows = tuple(
            Row(row["title"], row["indent"], tuple(row.get("values") or (row.get("value"),)))
            for row in content["rows"]
        )
        self._study = study

    def __len__(self) -> int:
        return len(self.rows)

    def __iter__(self) -> Iterator[Row]:
        return iter(self.rows)

    def __getitem__(self, key: int | str) -> Any:
        """A row by number, or the first value of the row of this title."""
        if not isinstance(key, str):
            return self.rows[key]
        for row in self.rows:
            if row.title == key:
                return row.values[0]
        raise KeyError(key)

    def keys(self) -> list[str]:
        """The titles of the rows that have one."""
        return [row.title for row in self.rows if row.title]

    def __repr__(self) -> str:
        return f"<Table {', '.join(self.headings)!r}: {len(self.rows)} rows>"

    def __str__(self) -> str:
        return self._study.table_text()

    def _repr_html_(self) -> str:
        return self._study.table_html().strip()


class Chart:
    """A chart: its data as arrays, where a point that could not be computed is NaN, and its
    picture."""

    __slots__ = ("name", "titles", "x_label", "y_label", "axes", "_x", "_y", "_study", "_index")

    def __init__(self, content: dict[str, Any], study: Study, index: int) -> None:
        self.name = content["name"]
        self.titles = tuple(content["titles"])
        self.x_label = content["xLabel"]
        self.y_label = content["yLabel"]
        self.axes = content["axes"]
        self._x = content["x"]
        self._y = content["y"]
        self._study = study
        self._index = index

    @property
    def x(self) -> NDArray[float64]:
        return _points(self._x)

    @property
    def y(self) -> NDArray[float64]:
        return _points(self._y)

    def svg(self, dark: bool = False) -> str:
        """The picture as an SVG document."""
        return self._study.svg(self._index, dark)

    def __repr__(self) -> str:
        return f"<Chart {self.name!r}: {len(self._x)} points>"

    def _repr_svg_(self) -> str:
        return self.svg()


class Charts(tuple[Chart, ...]):
    """The charts in order; one is also found by its name."""

    __slots__ = ()

    def __getitem__(self, key: Any) -> Any:
        if not isinstance(key, str):
            return super().__getitem__(key)
        for chart in self:
            if chart.name == key:
                return chart
        raise KeyError(key)


class Result:
    """The outcome of a calculation. In a notebook it shows as its table, report and charts."""

    def __init__(self, study: Study, mode: str) -> None:
        self._study = study
        self._mode = mode
        self._content: dict[str, Any] | None = None
        self._charts: Charts | None = None

    def _dict(self) -> dict[str, Any]:
        if self._content is None:
            from json import loads

            self._content = loads(self._study.export("json"))
        return self._content

    @property
    def answers(self) -> dict[str | None, float | None]:
        """The answers by what each is of ("row", "group 1"); the only one is of None."""
        return {of: self._number(value) for _name, value, _counts, of in self._study.answers}

    @property
    def limits(self) -> dict[str, tuple[float | None, float | None]]:
        """The lower and the upper limit of each interval by what they are limits of ("RMSSE"),
        None where there is none; empty for what is no interval."""
        return {name: (lower, upper) for name, lower, upper in self._study.limits}

    @property
    def p_value(self) -> float | None:
        """The p value of what was observed, where an interval has one."""
        return self._study.p_value

    @property
    def value(self) -> float | None:
        """The only answer: the power, or the size as a whole number; None when there is none, or
        more than one."""
        answers = self.answers
        return next(iter(answers.values())) if len(answers) == 1 else None

    def _number(self, value: float | None) -> float | None:
        return int(value) if self._mode == "size" and value is not None else value

    @property
    def table(self) -> Table | None:
        """The summary table, or None."""
        return Table(self._dict(), self._study) if self._dict()["rows"] else None

    @property
    def report(self) -> tuple[str, ...]:
        """The paragraphs of the report."""
        return tuple(self._dict()["report"])

    @property
    def messages(self) -> tuple[Message, ...]:
        """What the system had to say."""
        return tuple(Message(*message) for message in self._study.messages)

    @property
    def charts(self) -> Charts:
        """The charts that were asked for."""
        if self._charts is None:
            contents = self._dict()["charts"]
            self._charts = Charts(
                Chart(content, self._study, index) for index, content in enumerate(contents)
            )
        return self._charts

    def to_dict(self) -> dict[str, Any]:
        """All of it, as the command line gives it with --format json."""
        from copy import deepcopy

        return deepcopy(self._dict())

    def to_json(self) -> str:
        return self._study.export("json")

    def to_html(self) -> str:
        """A complete document, with the charts drawn in it."""
        return self._study.export("html")

    def to_markdown(self) -> str:
        return self._study.export("markdown")

    def to_csv(self, full: bool = False) -> str:
        """The table; with `full` the headings before it and the charts after it."""
        return self._study.full_csv() if full else self._study.export("csv")

    def to_xlsx(self) -> bytes:
        """A workbook of a spreadsheet program: `Path("t2.xlsx").write_bytes(result.to_xlsx())`."""
        from ._office import document

        return document(self._study, "xlsx")

    def to_odt(self) -> bytes:
        """An OpenDocument text."""
        from ._office import document

        return document(self._study, "odt")

    def __float__(self) -> float:
        if len(self.answers) > 1:
            raise ValueError("the calculation gave several answers")
        if self.value is None:
            raise ValueError("the calculation gave no answer")
        return float(self.value)

    def __repr__(self) -> str:
        content = self._dict()
        numbers = [
            f"{value}" if of is None else f"{of} {value}" for of, value in self.answers.items()
        ] + [f"{name} {lower} to {upper}" for name, (lower, upper) in self.limits.items()]
        return f"<Result {content['family']} {self._mode}: {', '.join(numbers) or None}>"

    def __str__(self) -> str:
        return self._study.export("text")

    def _repr_html_(self) -> str:
        # A document inside a notebook's page would bring its style along.
        return self._study.html_body().strip()


class Refused(Exception):
    """The system refused the calculation.

    `message` is its message verbatim and `id` the message's number; `messages` are all that
    came, and `result` is whatever was computed besides.
    """

    def __init__(
        self,
        message: str,
        id: int = 0,
        messages: tuple[Message, ...] | list[Message] = (),
        result: Result | None = None,
    ) -> None:
        super().__init__(message)
        self.message = message
        self.id = id
        self.messages = tuple(messages)
        self.result = result

    def __reduce__(self) -> Any:
        return (Refused, (self.message, self.id, self.messages))


def table_of(study: Study) -> Table:
    """The table of a study that is nothing but one table."""
    from json import loads

    return Table(loads(study.export("json")), study)


def chart_of(study: Study) -> Chart:
    """The chart of a study that is nothing but one chart."""
    from json import loads

    return Chart(loads(study.export("json"))["charts"][0], study, 0)


def _points(points: list[float | None]) -> NDArray[float64]:
    from numpy import array, nan

    return array([nan if point is None else point for point in points])
