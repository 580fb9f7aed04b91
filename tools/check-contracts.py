#!/usr/bin/env python3
"""Lists the functions of 15 lines or more that carry no contract comment.

A function's contract is the comment right above its definition, or above
its declaration in a header (the exports' contracts are in the public
header).  It says what the function accepts, what it writes and what it
answers.  Prints each function without one and exits 1 when there is any.

    tools/check-contracts.py [REPO]          (default: this repository)
"""
import pathlib
import re
import subprocess
import sys

LONG = 15
KEYWORD = r"(if|for|while|switch|else|do|return|case|namespace|struct|class|enum|union)\b"
DEFINITION = re.compile(r"^(?!\s*" + KEYWORD + r")[A-Za-z_].*\)\s*(const\s*)?(noexcept\s*)?(override\s*)?\{\s*$")
CALL = re.compile(r"([\w:~]+)\s*\(")


def tracked(root, *dirs):
    out = subprocess.run(["git", "ls-files", *dirs], cwd=root, capture_output=True, text=True, check=True).stdout
    return out.split()


def is_comment(line):
    line = line.strip()
    return line.startswith(("//", "*")) or line.endswith("*/")


def documented_in_headers(root):
    """Names declared in a header under a comment, and every export."""
    names = set()
    for header in tracked(root, "src", "include", "examples", "tools"):
        if not header.endswith(".h"):
            continue
        lines = (root / header).read_text().split("\n")
        for k, line in enumerate(lines):
            m = CALL.search(line)
            if not m:
                continue
            if "VLAPI" in line or (line.rstrip().endswith((";", ",")) and k and is_comment(lines[k - 1])):
                names.add(m.group(1))
    return names


def undocumented(root):
    """(file, line, length, signature) of each long function without a contract."""
    known = documented_in_headers(root)
    found = []
    for path in tracked(root, "src", "examples", "tools"):
        if not path.endswith((".cpp", ".h")):
            continue
        lines = (root / path).read_text().split("\n")
        i = 0
        while i < len(lines):
            line = lines[i]
            if not DEFINITION.match(line) or line.startswith(" " * 8) or "=" in line.split("(")[0]:
                i += 1
                continue
            indent = len(line) - len(line.lstrip())
            # The signature may begin a few lines up.
            start = i
            while start > 0 and lines[start - 1].strip() and not lines[start - 1].strip().endswith((";", "}", "{", "*/")) \
                    and not lines[start - 1].strip().startswith(("//", "#", "/*", "*")):
                start -= 1
            end = i + 1
            while end < len(lines) and not (lines[end].startswith(" " * indent + "}")
                                            and len(lines[end]) - len(lines[end].lstrip()) == indent):
                end += 1
            names = CALL.findall(" ".join(lines[start:i + 1]))
            name = names[0].split("::")[-1] if names else ""
            commented = start > 0 and is_comment(lines[start - 1])
            if end - start + 1 >= LONG and name not in known and not commented:
                found.append((path, start + 1, end - start + 1, lines[start].strip()))
            i = end + 1
    return found


def main():
    root = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else pathlib.Path(__file__).resolve().parent.parent
    found = undocumented(root)
    for path, line, length, signature in found:
        print(f"{path}:{line}: {length} lines without a contract: {signature[:90]}")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
