"""Makes the short letter:  python letter.py TEMPLATE RESULT      (full paths)"""

import sys

from win32com.client import gencache


def main(template, result):
    tag = gencache.EnsureDispatch("kvVelmor3.kvTag")  # makepy's classes; made on first use
    library = gencache.EnsureDispatch(tag.Library)
    properties = gencache.EnsureDispatch(tag.Properties)
    properties.Add("Name", "Ada Lovelace", True)
    properties.Add("Item", "an aneroid barometer", True)
    tag.Value = library.ReadTextFile(template)  # last, when all else is set
    if not library.SaveTextFile(result, tag.Result):
        sys.exit(f"cannot write {result}")
    entries = [f"{entry.Name}: {entry.Value}" for entry in tag.ErrorLog]
    tag.Dispose()
    print("\n".join(entries), end="\n" if entries else "")
    return 3 if entries else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
