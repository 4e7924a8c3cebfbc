"""Converts documents to PDF with LibreOffice, and reads pages, words and pictures from PDF."""

import hashlib
import os
import shutil
import signal
import subprocess
from dataclasses import dataclass

BATCH = 25
SECONDS_TO_START, SECONDS_EACH = 60, 40

# A symbol font has its characters at two codes. PDF gives a glyph one of them, the same in the whole document.
SYMBOLS = {0xF000 + code: code for code in range(0x20, 0x100)}


@dataclass(frozen=True)
class Word:
    """A word, or a picture, as a page shows it. A run is a piece of one font, size and colour.

    LibreOffice varies the width of several blanks in a row; words of such a line are loose."""

    text: str
    runs: tuple
    x: float
    y: float
    loose: bool = False


@dataclass(frozen=True)
class Page:
    """A page: its size in points and its words in the order of the PDF."""

    width: float
    height: float
    words: tuple


class Office:
    """LibreOffice with a profile of its own, one process at a time."""

    def __init__(self, folder):
        self.profile = os.path.join(folder, "profile")

    def convert(self, paths, target):
        """Makes PDF of documents in the folder target, except of those that it cannot load."""
        os.makedirs(target, exist_ok=True)
        waiting = [path for path in paths if not is_made(path, target)]
        for first in range(0, len(waiting), BATCH):
            self._convert_batch(waiting[first:first + BATCH], target)
        for path in waiting:
            with open(pdf_path(path, target) + ".of", "w", encoding="ascii") as file:
                file.write(digest(path))

    def _convert_batch(self, batch, target):
        """The first document without PDF made LibreOffice end or hang: it is tried once more, alone."""
        while batch:
            self._run(batch, target)
            left = [path for path in batch if not os.path.exists(pdf_path(path, target))]
            if left and len(batch) > 1:
                self._run(left[:1], target)
            batch = left[1:]

    def _run(self, paths, target):
        command = ["nice", "soffice", "--headless", "--norestore", f"-env:UserInstallation=file://{self.profile}",
                   "--convert-to", "pdf", "--outdir", target, *paths]
        process = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                   start_new_session=True)
        try:
            process.wait(SECONDS_TO_START + SECONDS_EACH * len(paths))
        except subprocess.TimeoutExpired:
            os.killpg(process.pid, signal.SIGKILL)
            process.wait()
            shutil.rmtree(self.profile, ignore_errors=True)


def digest(path):
    """A fingerprint of the content."""
    with open(path, "rb") as file:
        return hashlib.sha256(file.read()).hexdigest()


def is_made(path, target):
    """Whether the PDF of a document is up to date. An older one is removed."""
    made = pdf_path(path, target)
    if os.path.exists(made + ".of"):
        with open(made + ".of", encoding="ascii") as file:
            if file.read() == digest(path):
                return True
    if os.path.exists(made):
        os.remove(made)
    return False


def pdf_path(path, target):
    """The path of the PDF of a document."""
    return os.path.join(target, os.path.splitext(os.path.basename(path))[0] + ".pdf")


def read_pages(path):
    """The pages of a PDF."""
    import fitz

    with fitz.open(path) as document:
        return [Page(page.rect.width, page.rect.height, tuple(read_words(page))) for page in document]


def read_words(page):
    """The words and pictures of a page."""
    words = []
    for block in page.get_text("rawdict")["blocks"]:
        if block["type"] == 1:
            left, top, right, bottom = block["bbox"]
            size = (round(right - left), round(bottom - top))
            words.append(Word("[picture]", (("%d x %d" % size, 0, 0),), left, bottom))
        else:
            for line in block["lines"]:
                words += line_words(line)
    return words


def line_words(line):
    """The words of a line, separated by white space."""
    words, chars = [], []
    loose = "  " in "".join(char["c"] for span in line["spans"] for char in span["chars"])
    for span in line["spans"]:
        run = (span["font"].split("+")[-1], round(span["size"], 1), span["color"])
        for char in span["chars"]:
            if not char["c"].isspace():
                chars.append((char, run))
            elif chars:
                words.append(make_word(chars, loose))
                chars = []
    return words + ([make_word(chars, loose)] if chars else [])


def make_word(chars, loose):
    """One word of its characters."""
    runs = tuple(dict.fromkeys(run for _, run in chars))
    text = "".join(char["c"] for char, _ in chars).translate(SYMBOLS)
    return Word(text, runs, *chars[0][0]["origin"], loose)
