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


def test_the_short_letter_is_that_of_the_program(tmp_path):
    template = os.path.join(SAMPLES, "letter", "short.rtf")
    run(sys.executable, os.path.join(SAMPLES, "python", "letter.py"), template, tmp_path / "python.rtf")
    given = ["--property", "Name=Ada Lovelace", "--property", "Item=an aneroid barometer"]
    run(VELMOR, "eval", template, *given, "-o", tmp_path / "program.rtf")
    assert (tmp_path / "python.rtf").read_bytes() == (tmp_path / "program.rtf").read_bytes()


def test_the_invoice_is_that_of_the_program(tmp_path):
    letter = os.path.join(SAMPLES, "letter")
    run(sys.executable, os.path.join(SAMPLES, "python", "invoice.py"), tmp_path / "python.rtf")
    evaluated = run(VELMOR, "eval", os.path.join(letter, "invoice.rtf"),
                    "--properties", os.path.join(letter, "invoice.properties"),
                    "--registry", os.path.join(letter, "handlers.reg"), "--handlers", os.environ["VELMOR_HANDLERS"])
    cleaned = run(VELMOR, "clean", "-", input=evaluated)
    assert without_identifiers((tmp_path / "python.rtf").read_bytes()) == without_identifiers(cleaned)


def joined(folder, people):
    """The document of all letters; it is the same by `velmor render` as one by one."""
    template = velmor.decode((folder / "letter.rtf").read_bytes())
    document = velmor.encode(velmor.join(velmor.evaluate(template, person).text for person in people))
    run(VELMOR, "render", folder / "letter.rtf", "--data", folder / "people.csv", "--join", folder / "render.rtf", "-q")
    assert (folder / "render.rtf").read_bytes() == document
    return document


def mailing(folder, count):
    """Writes a template and data of so many people, and gives these."""
    tags = "<KV:TAG>PROPERTY:Name=:</KV> <KV:TAG>PROPERTY:Town=nowhere:</KV>\\par " * 300
    (folder / "letter.rtf").write_text("{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\f0 " + tags + "}")
    people = [{"Name": f"P{number} \u00e4\u4e2d", "Town": "a, b"} for number in range(count)]
    lines = ["Name,Town"] + [f'{person["Name"]},"{person["Town"]}"' for person in people]
    (folder / "people.csv").write_text("\n".join(lines) + "\n", "utf-8")
    return people


def test_dask_loses_no_letter_when_a_worker_dies(tmp_path):
    psutil = pytest.importorskip("psutil")
    pytest.importorskip("dask.distributed")
    people = mailing(tmp_path, 120)
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
    assert (tmp_path / "joined.rtf").read_bytes() == joined(tmp_path, people)
    assert glob.glob(str(tmp_path / ".parts-*")) == []


def test_slurm_renders_in_parts(tmp_path):
    people = mailing(tmp_path, 7)
    for part in ("2", "1", "3", "2"):
        run(os.path.join(SAMPLES, "slurm", "letters.sh"), tmp_path / "letter.rtf", tmp_path / "people.csv",
            tmp_path / "letters", env=dict(os.environ, SLURM_ARRAY_TASK_ID=part, SLURM_ARRAY_TASK_COUNT="3"))
    run(os.path.join(SAMPLES, "slurm", "join.sh"), tmp_path / "letters", tmp_path / "joined.rtf")
    assert (tmp_path / "joined.rtf").read_bytes() == joined(tmp_path, people)
