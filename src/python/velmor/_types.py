"""The values that this package gives, and its exceptions."""

from __future__ import annotations

from typing import NamedTuple


class LogEntry(NamedTuple):
    """Something that went wrong while a template was evaluated. The result is complete all the same."""

    handler: str
    message: str
    number: int  #: 440 for an exception of a handler, 53 for a file, ...; 0 if there is none
    tag: str  #: the tag's text, or a part of it
    data: str  #: what the message is about
    tag_index: int  #: of the outermost tag that led to it, from 1; 0 if none did
    position: int  #: of that tag's opening marker in the template, in UTF-16 units from 1; 0 if there is none
    line: int  #: from 1
    column: int  #: in UTF-16 units, from 1


class TracedTag(NamedTuple):
    """What a tag gave while a template was evaluated."""

    parent: int  #: the tag whose answer holds it, counted from 1 in the list; 0 if the template holds it
    origin: str  #: of the text that holds it: "template", "include", "property" or "handler"
    handler: str  #: upper case; "" if it names none
    command: str
    name: str  #: as it is written between its markers, its first 60 UTF-16 units
    position: int  #: in the text that holds it, in UTF-16 units from 1; 0 if a handler evaluates it by itself
    length: int  #: of what it gave, in UTF-16 units
    place: int | None  #: of that in the result, in UTF-16 units from 1; None if it is not there, or has moved
    seconds: float  #: until it was answered, the tags within it included


class Result(NamedTuple):
    """An evaluated template."""

    text: str
    errors: tuple[LogEntry, ...]
    trace: tuple[TracedTag, ...] | None  #: as the tags began, the first million; None unless it was asked for


class Tag(NamedTuple):
    """A tag of a template as it is written."""

    position: int  #: of its opening marker, in UTF-16 units from 1
    length: int  #: with both markers, in UTF-16 units
    handler: str  #: upper case; "" if it names none
    command: str
    parameters: tuple[tuple[str, str], ...]
    tags: tuple[Tag, ...]  #: within its parameters, at most 100 levels


class Place(NamedTuple):
    """A place in a template or in a file that it includes. Counts UTF-16 units, from 1."""

    file: str  #: "" for the template itself
    position: int
    line: int
    column: int


class Diagnostic(NamedTuple):
    """A mistake of a template, or what may be one."""

    code: str  #: "KV201"; docs/diagnostics.md describes each
    is_error: bool  #: else a warning
    message: str
    hint: str  #: "did you mean FORMAT?"; "" if there is none
    place: Place
    length: int  #: of the faulty part, in UTF-16 units, at least 1
    seen_at: str  #: "page text, paragraph 4", as an author sees the place; "" in plain text
    context: str  #: the text around it, as an author sees it
    included_from: tuple[Place, ...]  #: the tags that included the file, the nearest first


class Diagnostics(list[Diagnostic]):
    """Diagnostics, file by file, each in the order of its text: the first thousand."""

    more: int = 0  #: that were found and are not among them


class Error(Exception):
    """What could not be done. `number` is that of the component: 53 for a file, 5 for a value, ..."""

    def __init__(self, number: int, message: str, errors: tuple[LogEntry, ...] = ()) -> None:
        super().__init__(number, message, errors)
        self.number = number
        self.message = message
        self.errors = errors  #: what went wrong on the way

    def __str__(self) -> str:
        return self.message


class EvaluationError(Error):
    """Something is missing, and `missing="fail"` was asked for. `errors` names what."""
