#!/usr/bin/env python3
"""Checks that every path a page names exists, so the page follows the code.

A path is a back-quoted word with a slash (`src/text/numparse.cpp`) or, in a
table row of a directory, a file name (`numparse.cpp`), which is then looked
for in that row's directory.  Prints each missing path and exits 1.

    tools/check-doc-paths.py [PAGE...]       (default docs/ARCHITECTURE.md)
"""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
QUOTED = re.compile(r"`([^`\s]+)`")
FILE = re.compile(r"^[\w.-]+\.(cpp|h|inc|txt|tsv|rc|sh|py|cmake|md|json)$")


def missing_paths(page):
    """The paths of `page` that do not exist, with their line numbers."""
    missing = []
    row_dir = None
    for number, line in enumerate(page.read_text().splitlines(), 1):
        cells = [c.strip() for c in line.split("|")] if line.startswith("|") else []
        if not cells:
            row_dir = None
        elif len(cells) > 1 and cells[1]:
            # A row that names a directory first; continuation rows (an
            # empty first cell) keep the directory of the row above.
            first = QUOTED.findall(cells[1])
            row_dir = first[0].rstrip("/") if first and (ROOT / first[0]).is_dir() else None
        for word in QUOTED.findall(line):
            word = word.rstrip(".,:;")
            places = [ROOT / word] + ([ROOT / row_dir / word] if row_dir else [])
            if "/" in word or (row_dir and FILE.match(word)):
                if not any(place.exists() for place in places):
                    missing.append((number, word))
    return missing


def main():
    pages = [pathlib.Path(p) for p in sys.argv[1:]] or [ROOT / "docs" / "ARCHITECTURE.md"]
    bad = 0
    for page in pages:
        for number, path in missing_paths(page):
            print(f"{page.name}:{number}: names {path}, which does not exist")
            bad += 1
    return 1 if bad else 0


if __name__ == "__main__":
    sys.exit(main())
