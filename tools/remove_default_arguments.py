#!/usr/bin/env python3
"""Removes the default arguments of the C++ methods from a header that widl wrote, in place.

    tools/remove_default_arguments.py HEADER

widl writes the default value of a text as a wide literal (BSTR psData = L""). No length precedes a literal, so it
is not a BSTR, and a call that omits the argument would read outside of it. C++ allows no gap in a list of default
arguments, so all of them are removed. A line that assigns in another form is refused, and the header is not changed.
"""

import re
import sys

# A parameter of a method, one a line: "    TYPE name = DEFAULT," or, the last one, "    TYPE name = DEFAULT) = 0;".
DEFAULT = re.compile(r'^(\s+[A-Za-z_][\w ]*[ *]+\w+) = (?:-?\d+|L"[^"\\]*")(,|\) = 0;)$')
PURE = re.compile(r"^[^=]*\) = 0;$")
NO_DECLARATION = re.compile(r"^\s*(?:#|/\*|\*|//)")


def without_default(line):
    match = DEFAULT.match(line)
    if match:
        return match.group(1) + match.group(2)
    if "=" in line and not PURE.match(line) and not NO_DECLARATION.match(line):
        raise ValueError(line)
    return line


def main(arguments):
    if len(arguments) != 1 or arguments[0] in ("-h", "--help"):
        print(__doc__)
        return 0 if arguments and arguments[0] in ("-h", "--help") else 2
    with open(arguments[0], encoding="ascii") as header:
        lines = header.read().split("\n")
    try:
        lines = [without_default(line) for line in lines]
    except ValueError as fault:
        print(f"{arguments[0]}: not understood: {fault}", file=sys.stderr)
        return 1
    with open(arguments[0], "w", encoding="ascii") as header:
        header.write("\n".join(lines))
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
