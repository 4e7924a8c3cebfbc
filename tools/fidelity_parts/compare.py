"""Compares the contents of PDF: whole pages, or a sequence of words in a text flow."""

import re
from difflib import SequenceMatcher

PLACE, LOOSE_PLACE = 1.0, 6.0  # points; a twentieth of a point is RTF's unit
DIGITS = re.compile(r"\d+")
CLOCK = re.compile(r"\d")


class Numbers:
    """The numbers that may replace a page number, a number of pages or that of a note.

    A document whose pages follow others counts on from them, and the number of pages is that of the whole. Notes, and
    the pages of embedded text, count on from others, at most `more` of them."""

    def __init__(self, offset=0, pages=0, total=0, has_fields=False, has_clock=False, more=0):
        self.offset, self.pages, self.total = offset, pages, total
        self.has_fields, self.has_clock, self.more = has_fields, has_clock, more

    def like(self, expected, actual):
        """Whether one text may replace the other."""
        if expected == actual:
            return True
        if self.has_clock and CLOCK.sub("0", expected) == CLOCK.sub("0", actual):
            return True
        if not (self.has_fields or self.more) or DIGITS.sub("0", expected) != DIGITS.sub("0", actual):
            return False
        pairs = zip(DIGITS.findall(expected), DIGITS.findall(actual))
        return all(int(b) in self._may_be(int(a)) for a, b in pairs)

    def _may_be(self, number):
        may_be = set(range(number, number + self.more + 1))
        if self.has_fields:
            may_be |= {number + self.offset} | ({self.total} if number == self.pages else set())
        return may_be


def look(word, place):
    """The description of a word in a report."""
    runs = ", ".join(f"{font} {size:g} #{colour:06x}" if size else font for font, size, colour in word.runs)
    return f"{runs} at {word.x:.1f}" + (f", {word.y:.1f}" if place == "xy" else "")


def is_same_place(a, b, place):
    """Whether two words have the same place, as far as the place counts."""
    wide = LOOSE_PLACE if a.loose or b.loose else PLACE
    return (abs(a.x - b.x) <= wide or "x" not in place) and (abs(a.y - b.y) <= PLACE or "y" not in place)


def is_same(a, b, place):
    """Whether two words of like text look the same."""
    return same_runs(a.runs, b.runs) and is_same_place(a, b, place)


def same_runs(a, b):
    """Whether two words have the same fonts, sizes and colours."""
    return len(a) == len(b) and all(
        x[0] == y[0] and abs(x[1] - y[1]) <= 0.1 and x[2] == y[2] for x, y in zip(a, b))


def compare_pages(expected, actual, spans):
    """The differences between lists of pages; each span (first, Numbers) says how pages from there count."""
    found = []
    if len(expected) != len(actual):
        found.append(f"{len(expected)} pages became {len(actual)}")
    for index, (one, other) in enumerate(zip(expected, actual)):
        numbers = [numbers for first, numbers in spans if first <= index][-1]
        found += [f"page {index + 1}: {text}" for text in compare_page(one, other, numbers)]
    return found


def compare_page(one, other, numbers):
    """The differences between two pages."""
    found = []
    if abs(one.width - other.width) > PLACE or abs(one.height - other.height) > PLACE:
        found.append(f"{one.width:.0f} x {one.height:.0f} became {other.width:.0f} x {other.height:.0f}")
    pool = list(other.words)
    shifted = {round(word.y) for word in one.words if numbers.has_fields and DIGITS.search(word.text)}
    missing = []
    for word in one.words:
        place = "y" if round(word.y) in shifted else "xy"
        partner = best(word, pool, numbers, place)
        if partner is None:
            missing.append(word)
        else:
            pool.remove(partner)
    return found + pair_up(missing, pool, numbers)


def best(word, pool, numbers, place):
    """The word of the pool that looks the same, None without one."""
    return next((other for other in pool
                 if is_same(word, other, place) and numbers.like(word.text, other.text)), None)


def pair_up(missing, extra, numbers):
    """Describes the words without an equal: changed, lost, or new."""
    found, extra = [], list(extra)
    for word in missing:
        alike = [other for other in extra if numbers.like(word.text, other.text)]
        if alike:
            other = min(alike, key=lambda each: abs(each.x - word.x) + abs(each.y - word.y))
            extra.remove(other)
            found.append(f'"{word.text}": {look(word, "xy")} became {look(other, "xy")}')
        else:
            found.append(f'"{word.text}" is lost: {look(word, "xy")}')
    return found + [f'"{word.text}" is new: {look(word, "xy")}' for word in extra]


def compare_flow(expected, actual, may_move):
    """The differences between two sequences of words. Each expected word is (word, Numbers, what counts).

    What counts: "x" the horizontal place and the look, "" the look, None the text alone. The vertical place
    follows the flow. May_move: words may be elsewhere in the order, as footnotes and frames do."""
    left = [item[0].text for item in expected]
    right = [word.text for word in actual]
    found, lost, new = [], [], []
    for kind, a, b, c, d in SequenceMatcher(None, left, right, autojunk=False).get_opcodes():
        if kind == "replace" and b - a == d - c and all(
                expected[a + i][1].like(left[a + i], right[c + i]) for i in range(b - a)):
            kind = "equal"
        if kind == "equal":
            unlike = [(a + i, text) for i in range(b - a) for text in flow_word(expected[a + i], actual[c + i])]
            if may_move:
                lost += [at for at, _ in unlike]
                new += [(at, actual[c + at - a]) for at, _ in unlike]
            else:
                found += unlike
        else:
            lost += range(a, b)
            new += [(a, word) for word in actual[c:d]]
    if may_move:
        lost, new = without_moved(expected, lost, new)
    changed = [(at, word) for at, word in new if at in lost and expected[at][1].like(left[at], word.text)]
    found += [(at, text) for at, word in changed for text in flow_word(expected[at], word)]
    lost = [at for at in lost if at not in dict(changed)]
    new = [item for item in new if item not in changed]
    found += [(at, f'"{left[at]}" is lost: {look(expected[at][0], "x")}') for at in lost]
    found += [(at, f'"{word.text}" is new: {look(word, "x")}') for at, word in new]
    return [text for _, text in sorted(found, key=lambda item: item[0])]


def flow_word(expected, actual):
    """The difference between two words of one text."""
    word, _, counts = expected
    if counts is None or is_same(word, actual, counts):
        return []
    return [f'"{word.text}": {look(word, counts)} became {look(actual, counts)}']


def without_moved(expected, lost, new):
    """Words that are lost here and new there are the same words, moved."""
    still = []
    for at in lost:
        word, numbers, counts = expected[at]
        partner = next((item for item in new if numbers.like(word.text, item[1].text)
                        and (counts is None or is_same(word, item[1], counts))), None)
        if partner:
            new.remove(partner)
        else:
            still.append(at)
    return still, new
