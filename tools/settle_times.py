#!/usr/bin/env python3
"""Takes the time of the build out of a file, so that the same sources give the same bytes.

    tools/settle_times.py FILE.tlb      a type library that widl made: the time becomes the beginning of 1970
    tools/settle_times.py FILE.msi      an installer package that wixl made: the times become $SOURCE_DATE_EPOCH, and the
                                        random code of the package follows from the rest of it
"""

import hashlib
import os
import re
import struct
import sys
import time
import uuid

WIDL = re.compile(rb"(Created by WIDL version [\d.]+ at )[\x20-\x7e]{24}(\nWW\x13\x00).{4}", re.S)
PACKAGE_CODE = re.compile(rb"(?<=\x1e\0\0\0\x27\0\0\0)\{[-0-9A-F]{36}\}(?=\0)")  # a text in the summary
VT_FILETIME = b"\x40\x00\x00\x00"
SECONDS_1601 = 11644473600
TICKS = 10_000_000  # in a second


def settle_type_library(data):
    """The time is a text and, after it, a number."""
    settled, count = WIDL.subn(rb"\1Thu Jan  1 00:00:00 1970\g<2>\0\0\0\0", data)
    if count != 1:
        sys.exit(f"{count} times in the type library")
    return settled


def settle_package(data):
    """The times in the summary of the package are those of the last hour."""
    now = (time.time() + SECONDS_1601) * TICKS
    settled = struct.pack("<Q", (int(os.environ["SOURCE_DATE_EPOCH"]) + SECONDS_1601) * TICKS)
    at, count = data.find(VT_FILETIME), 0
    while at >= 0:
        place = at + len(VT_FILETIME)
        if len(data) >= place + 8 and abs(now - struct.unpack_from("<Q", data, place)[0]) < 3600 * TICKS:
            data = data[:place] + settled + data[place + 8:]
            count += 1
        at = data.find(VT_FILETIME, at + 1)
    if count == 0:
        sys.exit("no time in the package")
    without, codes = PACKAGE_CODE.subn(b"-" * 38, data)
    if codes != 1:
        sys.exit(f"{codes} codes in the package")
    code = uuid.UUID(bytes=hashlib.sha256(without).digest()[:16], version=4)
    return PACKAGE_CODE.sub(b"{" + str(code).upper().encode() + b"}", data)


def main(arguments):
    settle = {".tlb": settle_type_library, ".msi": settle_package}.get(arguments[0][-4:] if arguments else "")
    if len(arguments) != 1 or not settle:
        print(__doc__)
        return 0 if arguments in (["-h"], ["--help"]) else 2
    with open(arguments[0], "rb+") as file:
        data = settle(file.read())
        file.seek(0)
        file.write(data)
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
