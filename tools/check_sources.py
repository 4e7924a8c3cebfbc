#!/usr/bin/env python3
"""Checks the direction of includes between the rooms, the one header that includes <windows.h>, and ASCII sources.

    tools/check_sources.py
"""

import os
import re
import sys

# A room may include itself and the rooms listed here.
ALLOWED = {"text": []}
ALLOWED["automation"] = ["text"]
ALLOWED["platform"] = ["text", "automation"]
ALLOWED["common"] = ALLOWED["process"] = ALLOWED["platform"] + ["platform"]
ALLOWED["properties"] = ALLOWED["common"] + ["common"]
ALLOWED["rtf"] = ALLOWED["handlers"] = ALLOWED["direct"] = ALLOWED["properties"] + ["properties"]
ALLOWED["core"] = ALLOWED["rtf"] + ["rtf", "handlers", "direct"]
ALLOWED["check"] = ALLOWED["core"] + ["core"]
ALLOWED["com"] = ALLOWED["api"] = ALLOWED["check"] + ["check"]
ALLOWED["cli"] = ALLOWED["check"] + ["check", "process"]
ALLOWED["python"] = []  # it uses the public header

# The rooms within rtf, in the same manner.
RTF_ALLOWED = {"read": [], "edit": ["read"]}
RTF_ALLOWED["tables"] = RTF_ALLOWED["pages"] = ["read", "edit"]
RTF_ALLOWED["merge"] = ["read", "edit", "pages"]
RTF_ALLOWED["clean"] = ["read", "edit", "tables", "pages", "merge"]

WINDOWS_HEADER = "src/platform/win32/Windows.h"
WINDOWS_ROOMS = ("src/com/", "src/platform/win32/")
WINDOWS_ALONE = "src/extension/ComHandler.cpp"  # is installed, and includes nothing of the tree's
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')
# Windows headers that need <windows.h> or include it.
WINDOWS_OWN = re.compile(r"^(windows|ole|oa|obj|shl|shell|win|unknwn|oc|comdef|initguid)[a-z0-9]*\.h$", re.I)


def files():
    """The sources of the working tree. The tree is walked, not git's index: an export has no index."""
    suffixes = (".h", ".cpp", ".inc", ".idl", ".py", ".vbs", ".js", ".cmake", ".rc", ".def", "CMakeLists.txt")
    found = []
    for folder, folders, names in os.walk("."):
        folders[:] = sorted(name for name in folders if not name.startswith(".") and name != "build")
        found += [os.path.relpath(os.path.join(folder, name)) for name in sorted(names) if name.endswith(suffixes)]
    return found


def room(path):
    parts = path.split("/")
    return parts[1] if len(parts) > 2 and parts[0] == "src" else None


def check_includes(path, text, report):
    for number, line in enumerate(text.split("\n"), 1):
        match = INCLUDE.match(line)
        if not match:
            continue
        kind, target = match.groups()
        if path == WINDOWS_ALONE:
            continue
        if target.lower() == "windows.h" and path != WINDOWS_HEADER and path.startswith("src/"):
            report(path, number, f"only {WINDOWS_HEADER} includes <windows.h>")
        elif kind == "<" and WINDOWS_OWN.match(target) and path.startswith("src/"):
            if not path.startswith(WINDOWS_ROOMS):
                report(path, number, f"a Windows header outside {' and '.join(WINDOWS_ROOMS)}")
        if target == WINDOWS_HEADER[4:] and path.startswith("src/") and not path.startswith(WINDOWS_ROOMS):
            report(path, number, f"only {' and '.join(WINDOWS_ROOMS)} see Windows")
        own, other = room(path), target.split("/")[0]
        if kind == '"' and own and "/" in target and other in ALLOWED and other != own and other not in ALLOWED[own]:
            report(path, number, f"{own} must not include {other}")
        inner, inner_other = path.split("/")[2:3], target.split("/")[1:2]
        if own == other == "rtf" and inner != inner_other and inner_other[0] not in RTF_ALLOWED[inner[0]]:
            report(path, number, f"rtf/{inner[0]} must not include rtf/{inner_other[0]}")


def main():
    if len(sys.argv) > 1:
        print(__doc__)
        return 0 if sys.argv[1] in ("-h", "--help") else 2
    os.chdir(os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))
    faults = []

    def report(path, number, message):
        faults.append(f"{path}:{number}: {message}")

    for path in files():
        data = open(path, "rb").read()
        for number, line in enumerate(data.split(b"\n"), 1):
            if any(byte > 126 or (byte < 32 and byte not in b"\t\r") for byte in line):
                report(path, number, "not ASCII")
        if path.endswith((".h", ".cpp")):
            check_includes(path, data.decode("latin-1"), report)
    print("\n".join(faults), end="\n" if faults else "")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
