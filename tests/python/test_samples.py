"""The samples that use the package velmor, as a user runs them."""

import glob
import os
import re
import subprocess
import sys
import time

import pytest

import velmor

SAMPLES = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "samples")
VELMOR = os.environ["VELMOR"]


def run(*command, **options):
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, **options)
    assert (done.returncode, done.stderr) == (0, b"")
    return done.stdout


def without_identifiers(document):
    """Tables are marked with random ones."""
    return re.sub(rb"\{[-0-9A-F]{36}\}", b"", document)


def test_the_letter_is_that_of_the_program(tmp_path):
    letter = os.path.join(SAMPLES, "letter")
    run(sys.executable, os.path.join(SAMPLES, "python", "letter.py"), tmp_path / "python.rtf")
    evaluated = run(VELMOR, "eval", os.path.join(letter, "invoice.rtf"),
                    "--properties", os.path.join(letter, "invoice.properties"),
                    "--registry", os.path.join(letter, "handlers.reg"), "--handlers", os.environ["VELMOR_HANDLERS"])
    cleaned = run(VELMOR, "clean", "-", input=evaluated)
    assert without_identifiers((tmp_path / "python.rtf").read_bytes()) == without_identifiers(cleaned)


def one_by_one(template, people):
    """The document that `velmor render --join` makes of the records."""
    return velmor.encode(velmor.join(velmor.evaluate(template, person).text for person in people))


def test_dask_loses_no_letter_when_a_worker_dies(tmp_path):
    psutil = pytest.importorskip("psutil")
    pytest.importorskip("dask.distributed")
    tags = "<KV:TAG>PROPERTY:Name=:</KV> <KV:TAG>PROPERTY:Town=nowhere:</KV>\\par " * 300
    template = "{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\f0 " + tags + "}"
    people = [{"Name": f"P{number} \u00e4\u4e2d", "Town": "a, b"} for number in range(120)]
    (tmp_path / "letter.rtf").write_bytes(velmor.encode(template))
    lines = ["Name,Town"] + [f'{person["Name"]},"{person["Town"]}"' for person in people]
    (tmp_path / "people.csv").write_text("\n".join(lines) + "\n", "utf-8")
    script = subprocess.Popen(
        [sys.executable, os.path.join(SAMPLES, "dask", "render_letters.py"), tmp_path / "letter.rtf",
         tmp_path / "people.csv", tmp_path / "joined.rtf", "--workers", "2", "--part-size", "2"],
        stderr=subprocess.PIPE)
    while len(glob.glob(str(tmp_path / ".parts-*" / "part-*"))) < 3 and script.poll() is None:
        time.sleep(0.001)
    workers = [child for child in psutil.Process(script.pid).children() if "spawn_main" in " ".join(child.cmdline())]
    workers[0].kill()
    finished = len(glob.glob(str(tmp_path / ".parts-*" / "part-*")))
    errors = script.communicate()[1].decode()
    assert script.returncode == 0, errors
    assert len(workers) == 2 and finished < len(people) / 2
    assert (tmp_path / "joined.rtf").read_bytes() == one_by_one(template, people)
    assert glob.glob(str(tmp_path / ".parts-*")) == []
