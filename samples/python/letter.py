#!/usr/bin/env python3
"""Makes the short letter:  letter.py TEMPLATE RESULT"""

import sys

import velmor


def main(template, result):
    with open(template, "rb") as file:
        text = velmor.decode(file.read())
    letter = velmor.evaluate(text, {"Name": "Ada Lovelace", "Item": "an aneroid barometer"})
    for entry in letter.errors:
        print(f"{template}:{entry.line}:{entry.column}: {entry.message}", file=sys.stderr)
    with open(result, "wb") as file:
        file.write(velmor.encode(letter.text))
    return 3 if letter.errors else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
