"""Reads RTF as bytes: tokens, places for a tag, and the edits that make reference documents."""

import re

TOKEN = re.compile(rb"\\([a-zA-Z]+)(-?\d+)? ?|\\'[0-9a-fA-F]{2}|\\.|[{}]|[^\\{}]+", re.S)
HEADERS = frozenset(
    (b"header", b"headerl", b"headerr", b"headerf", b"footer", b"footerl", b"footerr", b"footerf"))
# Groups whose text is not body text. Groups that begin with \* are ignored too.
DESTINATIONS = HEADERS | frozenset(
    (b"fonttbl", b"colortbl", b"stylesheet", b"info", b"pict", b"object", b"footnote", b"listtext", b"pntext", b"shp",
     b"nonshppict", b"do", b"xe", b"tc", b"upr", b"field", b"nonesttables", b"fldinst"))
DOCUMENT_PAGE = frozenset((b"paperw", b"paperh", b"margl", b"margr", b"margt", b"margb", b"gutter", b"landscape"))
RTF_PAGE = {b"paperw": 12240, b"paperh": 15840, b"margl": 1800, b"margr": 1800, b"margt": 1440, b"margb": 1440}
SECTION_PAGE = {b"pgwsxn": b"paperw", b"pghsxn": b"paperh", b"marglsxn": b"margl", b"margrsxn": b"margr",
                b"margtsxn": b"margt", b"margbsxn": b"margb", b"guttersxn": b"gutter", b"lndscpsxn": b"landscape"}
SEVERAL = re.compile(rb"\\cols([2-9]|1\d)")
COLUMNS = frozenset((b"cols", b"colsx", b"colno", b"colw", b"colsr", b"linebetcol"))
NUMBERING = frozenset((b"pnlvl", b"pnlvlbody", b"pnlvlblt", b"pnlvlcont"))  # in {\*\pn: of the paragraph around it
PAGE_FIELD = re.compile(rb"\\chpgn|\\sectnum|fldinst[^}]*?(PAGE|SECTION)", re.S)
CLOCK_FIELD = re.compile(rb"\\chtime|\\chdate|\\chdpl|\\chdpa|fldinst[^}]*?(TIME|DATE)", re.S)


class Token:
    """One token: its place, and its control word and number if it has them."""

    __slots__ = ("start", "end", "word", "number", "text", "brace")

    def __init__(self, match):
        self.start, self.end = match.span()
        self.word = match.group(1)
        self.number = int(match.group(2)) if match.group(2) else None
        self.text = match.group(0)
        self.brace = self.text if self.text in (b"{", b"}") else b""


def tokens(data):
    """The tokens of a document; the data of \\bin is skipped."""
    at = 0
    while match := TOKEN.match(data, at):
        token = Token(match)
        at = token.end
        if token.word == b"bin" and token.number:
            at += max(token.number, 0)
        yield token


def closing_brace(data):
    """The place of the closing brace of the first group; -1 without one."""
    depth = 0
    for token in tokens(data):
        depth += {b"{": 1, b"}": -1}.get(token.brace, 0)
        if token.brace == b"}" and depth <= 0:
            return token.start
    return -1


class State:
    """The state of a group: whether its text is body text, and its paragraph."""

    def __init__(self):
        self.body, self.fresh, self.table, self.list, self.numbers_outside = True, True, False, False, False
        self.section = {}

    def copy(self):
        """The state in which an inner group begins."""
        other = State()
        other.body, other.table, other.list = self.body, self.table, self.list
        other.section = dict(self.section)
        return other

    def read(self, token, page):
        """Takes one token that is not a brace."""
        word, number = token.word, token.number
        on = number != 0
        if self.fresh and (word in DESTINATIONS or word is None):
            self.body = False
        self.fresh = False
        if word == b"pard":
            self.table = self.list = False
        elif word in (b"intbl", b"trowd") or word == b"itap":
            self.table = on
        elif word == b"ls":
            self.list = on
        elif word in NUMBERING:
            self.numbers_outside = on
        elif word == b"sectd":
            self.section = {}
        elif word in SECTION_PAGE:
            self.section[SECTION_PAGE[word]] = 1 if number is None else number
        elif word in COLUMNS:
            self.section[b"columns"] = self.section.get(b"columns", b"") + token.text
        elif word in DOCUMENT_PAGE:
            page[word] = 1 if number is None else number


class Place:
    """A place for a tag: the offset, what must precede and follow the tag, and the page and the columns there."""

    def __init__(self, offset, before, after, page):
        self.offset, self.before, self.after = offset, before, after
        columns = page.pop(b"columns", b"")
        self.columns = columns if SEVERAL.search(columns) else b""
        self.page = page

    def put(self, data, text):
        """The document with the text there, in a paragraph of its own."""
        return data[: self.offset] + self.before + text + self.after + data[self.offset:]


def walk(data):
    """Yields each token with the state in which it leaves the reader, and the document's page so far."""
    page = {}
    states = [State()]
    for token in tokens(data):
        if token.brace == b"{":
            states.append(states[-1].copy())
        elif token.brace == b"}":
            closed = states.pop()
            if not states:
                return
            states[-1].fresh = False
            states[-1].list |= closed.numbers_outside
        else:
            is_ignorable = states[-1].fresh and data[token.start: token.end] == b"\\*"
            is_text = token.word is None and not is_ignorable
            fresh = states[-1].fresh and not is_text
            states[-1].fresh = fresh
            states[-1].read(token, page)
        yield token, states[-1], page


def shows(data, token, state):
    """Whether the token is text that shows in the body."""
    return token.word is None and not token.brace and state.body and data[token.start: token.end].strip() != b""


def is_in_paragraph(data, token, state):
    """Whether the token is text, or a blank, of the body."""
    return token.word is None and not token.brace and state.body and data[token.start: token.end].strip(b"\r\n") != b""


def end_place(data):
    """The place for a tag at the document's end, None when the document has no end."""
    end = closing_brace(data)
    if end < 0:
        return None
    is_open, state, page = False, State(), {}
    for token, state, page in walk(data[:end]):
        if token.word in (b"par", b"sect", b"row", b"page"):
            is_open = False
        elif is_in_paragraph(data, token, state):
            is_open = True
    before = (b"\\par " if is_open else b"") + (b"\\pard " if state.table or state.list else b"")
    return Place(end, before, b"", {**page, **state.section})


def between_place(data):
    """The place for a tag after a paragraph in the middle of the body, or None."""
    found, text_after = [], 0
    for token, state, page in walk(data):
        if shows(data, token, state):
            text_after = token.end
        if token.word == b"par" and state.body and not state.table and not state.list:
            found.append((token.end, {**page, **state.section}))
    found = [place for place in found if place[0] < text_after]
    if not found:
        return None
    offset, page = found[len(found) // 2]
    before = b" " if data[offset - 1:offset].isalnum() else b""
    return Place(offset, before, b"\\par ", page)


def without_headers(data):
    """The document without its headers and footers."""
    out, depth, kept, skip_from = [], 0, 0, None
    previous = None
    for token in tokens(data):
        depth += {b"{": 1, b"}": -1}.get(token.brace, 0)
        if skip_from is None and token.word in HEADERS and previous and previous.brace == b"{":
            out.append(data[kept:previous.start])
            skip_from = depth
        elif skip_from is not None and depth < skip_from:
            skip_from, kept = None, token.end
        previous = token
    return b"".join(out) + (data[kept:] if skip_from is None else b"")


def on_page(data, page, columns):
    """The document on another page: its own page words and the columns of its first section are replaced."""
    out, kept, is_first = [], 0, True
    for token in tokens(data):
        is_first = is_first and token.word != b"sect"
        drop = token.word in DOCUMENT_PAGE or is_first and (
            token.word in SECTION_PAGE or token.word in COLUMNS or columns and token.word == b"sectd")
        if drop:
            out.append(data[kept:token.start] + b"\\nopage ")  # a word that readers ignore
            kept = token.end
    return after_opening(with_page_words(b"".join(out) + data[kept:], page), columns)


def with_columns_ended(data):
    """The document with text on the same page after its last section, if that has columns."""
    end = end_place(data)
    if not end.columns:
        return data
    if end.before.startswith(b"\\par "):
        end.before = b""  # \sect ends the paragraph
    return end.put(data, b"\\sect\\sectd\\sbknone\\pard\\plain\\~")


def adds_spacing(data):
    """Whether the space after a paragraph and that before the next one add up, which holds for a whole text."""
    return b"\\htmautsp" not in data


def as_joined(data, is_left, is_added):
    """The document as it must look in a joined text: its first section begins on a new page. Is_left: the page
    is a left one, and the document has facing pages. Is_added: what adds_spacing is there."""
    changed = {b"sbknone": b"sbkpage", b"sbkcol": b"sbkpage"}
    always = {b"htmautsp": b"nohtmautsp"} if is_added else {}
    if is_left:
        always.update({b"headerl": b"headerr", b"headerr": b"headerl", b"footerl": b"footerr", b"footerr": b"footerl"})
    out, kept = [], 0
    for token in tokens(data):
        if token.word == b"sect":
            changed = {}
        word = changed.get(token.word) or always.get(token.word)
        if word:
            out.append(data[kept:token.start] + b"\\" + word)
            kept = token.start + 1 + len(token.word)
    joined = b"".join(out) + data[kept:]
    return joined if is_added or not adds_spacing(joined) else after_opening(joined, b"\\htmautsp")


def with_page_before_object(data):
    """The document with an empty page before it if an object is the first thing in it; else None."""
    for token, state, _ in walk(data):
        if shows(data, token, state) or state.body and token.word == b"par":
            return None
        if token.word == b"object":
            at = data.rfind(b"\\pard", 0, token.start)
            return data[:at] + b"\\pard\\plain\\~\\page " + data[at:] if at >= 0 else None
    return None


def with_whole_page(data):
    """The document with RTF's own page words for those that it lacks."""
    own = {token.word for token in tokens(data)}
    return with_page_words(data, {word: number for word, number in RTF_PAGE.items() if word not in own})


def with_page_words(data, page):
    """The document with these page words after its opening."""
    return after_opening(data, b"".join(b"\\%s%d" % item for item in page.items()
                                        if item[0] != b"landscape" or item[1]))


def after_opening(data, words):
    """The document with these words after its opening."""
    opening = re.match(rb"\s*\{\\rtf-?\d*", data)
    if not opening:
        return data
    rest = data[opening.end():]
    return data[: opening.end()] + words + (b" " if rest[:1].isalnum() else b"") + rest


def is_whole(data):
    """Whether it is a whole document: it has a font table, a style sheet or page words of its own."""
    return any(token.word in (b"fonttbl", b"stylesheet") or token.word in DOCUMENT_PAGE or token.word in SECTION_PAGE
               for token in tokens(data))
