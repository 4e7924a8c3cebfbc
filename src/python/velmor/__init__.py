"""Document templates: evaluate their tags, find their mistakes, clean and join RTF documents.

    >>> import velmor
    >>> velmor.evaluate("Dear <KV:TAG>PROPERTY:Name=customer:</KV>,", {"Name": "Ada"}).text
    'Dear Ada,'

Texts are str; TypeError for bytes (see `decode`). Positions and lengths count UTF-16 units, positions from 1;
`index_of` turns a position into a Python index. Several threads may call every function at the same time. The
interpreter lock is released while the engine works, and taken for handlers.

Properties are a mapping of names to values. Names match without regard to case; of equal ones the last counts. A value
is a str, bool, int (beyond 32 bits the nearest float), finite float, datetime or date from the year 100 on (a time zone
is not looked at), Decimal of at most 28 digits, None, a mapping (child properties), or a list or tuple (child properties
named 1, 2 and so on). TypeError for another type, ValueError for a value that no property can hold.
"""

from __future__ import annotations

import functools
import json
import os
from collections.abc import Callable, Iterable, Mapping
from typing import Any, Literal, TypeAlias, Union

from . import _velmor
from ._types import (
    Diagnostic,
    Diagnostics,
    Error,
    EvaluationError,
    LogEntry,
    Place,
    Result,
    Tag,
    TracedTag,
)
from ._velmor import TagCall, decode, encode

__all__ = [
    "Diagnostic", "Diagnostics", "Error", "EvaluationError", "Handler", "LogEntry", "Place", "Result", "Tag",
    "TagCall", "Template", "TracedTag", "check", "clean", "decode", "encode", "evaluate", "index_of", "join", "schema",
    "tags",
]

__version__: str = _velmor.version()

Path: TypeAlias = Union[str, "os.PathLike[str]"]
#: Gives the text for a tag: plain, or a document that begins with "{\rtf1". Tags in it are evaluated.
Handler: TypeAlias = Callable[[TagCall], str]
Missing: TypeAlias = Literal["empty", "keep", "mark", "fail"]
DataTags: TypeAlias = Literal["allow", "report", "refuse"]


class Template:
    """A template whose tags have been found, to be evaluated often, by several threads if need be. It can be pickled."""

    __slots__ = ("_template",)

    def __init__(self, text: str) -> None:
        self._template = _PLAIN.compile(text)

    @property
    def text(self) -> str:
        return self._template.text

    def __reduce__(self) -> tuple[type[Template], tuple[str]]:
        return Template, (self.text,)

    def evaluate(
        self,
        properties: Mapping[str, Any] | None = None,
        *,
        include_path: Path | None = None,
        include_root: Path | None = None,
        handlers: Mapping[str, Handler] | None = None,
        registry: Path | None = None,
        handler_folders: Iterable[Path] = (),
        missing: Missing = "empty",
        data_tags: DataTags = "allow",
        exact: bool = False,
        trace: bool = False,
    ) -> Result:
        """As `velmor.evaluate`."""
        return _evaluate(
            self._template, properties, _engine(handlers, registry, handler_folders), handlers,
            (_path(include_path), _path(include_root), missing, data_tags, exact, trace),
        )


def evaluate(
    template: str,
    properties: Mapping[str, Any] | None = None,
    *,
    include_path: Path | None = None,
    include_root: Path | None = None,
    handlers: Mapping[str, Handler] | None = None,
    registry: Path | None = None,
    handler_folders: Iterable[Path] = (),
    missing: Missing = "empty",
    data_tags: DataTags = "allow",
    exact: bool = False,
    trace: bool = False,
) -> Result:
    """The template with its tags answered; linear in template and result. The properties stay as they are.

    include_path     where files without a path are included from; None: the current folder
    include_root     files outside of this folder are not included
    handlers         callables by the names of the handlers for which they answer; they precede registered ones
    registry         a .reg file that names handlers; it is read once, when it is first named
    handler_folders  where the libraries of registered handlers are searched
    missing          what becomes of a tag whose property, file, entry or handler is absent
    data_tags        what becomes of tags in values that come from data and handlers
    exact            RTF is read exactly as the component does by default, not tolerantly
    trace            Result.trace says what each tag gave

    An Exception of a handler, also an answer that is no str, becomes an entry with the number 440 in Result.errors, and
    the tag yields "". Any other exception, such as KeyboardInterrupt, is raised when the engine returns.
    EvaluationError, with the entries, if `missing` is "fail" and something is missing. Error 53 for a registry that
    cannot be read.
    """
    return _evaluate(
        template, properties, _engine(handlers, registry, handler_folders), handlers,
        (_path(include_path), _path(include_root), missing, data_tags, exact, trace),
    )


def check(
    template: str,
    *,
    properties: Mapping[str, Any] | None = None,
    include_path: Path | None = None,
    include_root: Path | None = None,
    handlers: Iterable[str] = (),
    registry: Path | None = None,
    handler_folders: Iterable[Path] = (),
) -> Diagnostics:
    """The mistakes of a template and of the files that it includes. Nothing is evaluated. Linear.

    `properties` are those that the program will set. None: they are not known; properties that nothing sets are then
    not reported, and include_root does not count. `handlers`: the names of the program's handlers (a mapping of
    handlers will do). Error 5 for a property such as "kvTag.Missing" that asks something impossible of an evaluation.
    """
    mistakes, more = _engine(handlers, registry, handler_folders).check(
        template, properties, (_path(include_path), _path(include_root), "empty", "allow", False, False)
    )
    found = Diagnostics(
        Diagnostic(*each[:4], Place(*each[4]), *each[5:8], tuple(Place(*place) for place in each[8]))
        for each in mistakes
    )
    found.more = more
    return found


def schema(
    template: str, *, include_path: Path | None = None, include_root: Path | None = None
) -> dict[str, Any]:
    """A JSON Schema (2020-12) of the properties that a template and the files that it includes read.

    A property without a default is required unless the template sets it. Linear.
    """
    options = (_path(include_path), _path(include_root), "empty", "allow", False, False)
    described: dict[str, Any] = json.loads(_engine().schema(template, options))
    return described


def tags(text: str) -> list[Tag]:
    """The outermost tags of a template, in order, with the tags within them. Nothing is evaluated."""
    return [_tag(each) for each in _engine().tags(text)]


def clean(rtf: str, *, exact: bool = False) -> str:
    """An RTF document with the documents in it merged into one. Any other text comes back as it is."""
    return _engine().clean(rtf, exact)


def join(documents: Iterable[str], *, exact: bool = False) -> str:
    """Several RTF documents as one, each from a new page.

    Error 5 for a text that is no complete RTF document, and if there is none.
    """
    return _engine().join(_texts(documents), exact)


def index_of(text: str, position: int) -> int:
    """The Python index of a position in the text, which counts UTF-16 units from 1.

    Linear for a text with characters beyond U+FFFF. ValueError for a position below 1.
    """
    if position < 1:
        raise ValueError(f"positions count from 1, not {position}")
    if text.isascii():
        return position - 1
    index = 0
    for character in text:
        if position <= 1:
            break
        position -= 2 if character > "\uffff" else 1
        index += 1
    return index


def _evaluate(
    template: str | _velmor.Template,
    properties: Mapping[str, Any] | None,
    engine: _velmor.Engine,
    handlers: Mapping[str, Handler] | None,
    options: tuple[str | None, str | None, str, str, bool, bool],
) -> Result:
    text, entries, has_failed, trace = engine.evaluate(template, properties, handlers and dict(handlers), options)
    errors = tuple(LogEntry(*each) for each in entries) if entries else ()
    if has_failed:
        raise EvaluationError(5, errors[-1].message if errors else "something is missing", errors)
    return Result(text, errors, tuple(TracedTag(*each) for each in trace) if options[-1] else None)


def _engine(
    handlers: Iterable[str] | None = None, registry: Path | None = None, handler_folders: Iterable[Path] = ()
) -> _velmor.Engine:
    if not handlers and registry is None and not handler_folders:
        return _PLAIN
    return _engine_of(_path(registry), tuple(os.fspath(folder) for folder in handler_folders), tuple(handlers or ()))


_PLAIN = _velmor.Engine(None, (), ())


@functools.lru_cache(maxsize=32)
def _engine_of(registry: str | None, folders: tuple[str, ...], handlers: tuple[str, ...]) -> _velmor.Engine:
    return _velmor.Engine(registry, folders, handlers)


def _path(path: Path | None) -> str | None:
    return None if path is None else os.fspath(path)


def _texts(documents: Iterable[str]) -> Iterable[str]:
    if isinstance(documents, str):
        raise TypeError("documents must be several texts, not str")
    return documents


def _tag(given: tuple[Any, ...]) -> Tag:
    position, length, handler, command, parameters, inner = given
    return Tag(position, length, handler, command, parameters, tuple(_tag(each) for each in inner))
