#!/usr/bin/env python3
"""Renders a letter for each record of a CSV file on the workers of dask.distributed, and joins them to one document.

    render_letters.py TEMPLATE DATA RESULT [--scheduler ADDRESS | --workers N] [--part-size N]

Without --scheduler the workers are processes of this machine. Workers of other machines need the package velmor, and
the same paths of TEMPLATE and of the folder of RESULT. Exit code 3: something went wrong in the letters that are named.
"""

import argparse
import collections
import csv
import functools
import itertools
import json
import os
import sys
import tempfile
import uuid

import velmor
from dask.distributed import Client, LocalCluster


@functools.lru_cache(maxsize=1)
def template_of(path):
    """The template, read once by each worker."""
    with open(path, "rb") as file:
        return velmor.Template(velmor.decode(file.read()))


def render_part(template_path, first, records, part):
    """Writes the letters of some records, a line each, and gives what went wrong in them.

    The part is there as a whole or not at all: Dask runs a part again whose worker has died, even if it was finished.
    """
    template = template_of(template_path)
    errors = []
    temporary = f"{part}.{uuid.uuid4().hex}"
    with open(temporary, "w", encoding="ascii") as file:
        for number, record in enumerate(records, first):
            letter = template.evaluate(record, include_path=os.path.dirname(template_path))
            file.write(json.dumps(letter.text) + "\n")
            errors += [f"record {number}: {entry.line}:{entry.column}: {entry.message}" for entry in letter.errors]
    os.replace(temporary, part)
    return errors


def records_of(data):
    """The records of a CSV file in UTF-8 with a line of names."""
    with open(data, encoding="utf-8-sig", newline="") as file:
        reader = csv.DictReader(file, strict=True)
        for name in reader.fieldnames or ():
            if name.casefold() == "path" or name.casefold().startswith("kvtag."):
                sys.exit(f"{data}: a column {name} would change how templates are evaluated")
        for record in reader:
            if None in record or None in record.values():
                sys.exit(f"{data}:{reader.line_num}: the record has another number of fields than the first line")
            yield record


def letters_of(parts):
    for part in parts:
        with open(part, encoding="ascii") as file:
            yield from map(json.loads, file)


def render(client, template, data, result, part_size):
    """Gives what went wrong. Holds a few parts of the data at a time."""
    folder = os.path.dirname(os.path.abspath(result))
    errors, parts, running = [], [], collections.deque()
    with tempfile.TemporaryDirectory(prefix=".parts-", dir=folder) as place:
        records = records_of(data)
        while chunk := list(itertools.islice(records, part_size)):
            first = len(parts) * part_size + 1
            parts.append(os.path.join(place, f"part-{len(parts):06}"))
            running.append(client.submit(render_part, os.path.abspath(template), first, chunk, parts[-1], pure=False))
            if len(running) > 4 * max(1, len(client.nthreads())):
                errors += running.popleft().result()
        for part in running:
            errors += part.result()
        write(velmor.encode(velmor.join(letters_of(parts))), result)
    return errors


def write(data, path):
    temporary = f"{path}.{uuid.uuid4().hex}"
    with open(temporary, "wb") as file:
        file.write(data)
    os.replace(temporary, path)


def main():
    parser = argparse.ArgumentParser(description=__doc__.partition("\n")[0])
    parser.add_argument("template")
    parser.add_argument("data")
    parser.add_argument("result")
    parser.add_argument("--scheduler", help="of a Dask cluster that runs")
    parser.add_argument("--workers", type=int, default=os.cpu_count(), help="processes of this machine")
    parser.add_argument("--part-size", type=int, default=1000, help="records of a part")
    options = parser.parse_args()
    cluster = None
    if not options.scheduler:
        cluster = LocalCluster(n_workers=options.workers, threads_per_worker=1, dashboard_address=None)
    with Client(options.scheduler or cluster) as client:
        errors = render(client, options.template, options.data, options.result, options.part_size)
    if cluster:
        cluster.close()
    print("\n".join(errors), end="\n" if errors else "", file=sys.stderr)
    return 3 if errors else 0


if __name__ == "__main__":
    sys.exit(main())
