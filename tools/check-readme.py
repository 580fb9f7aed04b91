#!/usr/bin/env python3
"""Checks that every command the README shows is run as written.

Each line of the README's `sh` blocks (its comment aside) must stand as a
line of tools/demo.sh, which runs them; the README's two commands are the
demo itself and tools/test-all.sh, which CI runs through .ci/run.  Prints
each command nothing runs and exits 1 when there is any.
"""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
BLOCK = re.compile(r"```sh\n(.*?)```", re.S)


def commands(readme):
    for block in BLOCK.findall(readme):
        for line in block.splitlines():
            command = re.sub(r"\s+#\s.*$", "", line).strip()
            if command:
                yield command


def main():
    # A demo line may go on after a failure of its own ("|| true").
    demo = (ROOT / "tools" / "demo.sh").read_text().splitlines()
    ran = {re.sub(r"\s*\|\| true$", "", line.strip()) for line in demo}
    ran.add("tools/demo.sh")
    if "tools/test-all.sh" in (ROOT / ".ci" / "run").read_text():
        ran.add("tools/test-all.sh")
    missing = [c for c in commands((ROOT / "README.md").read_text()) if c not in ran]
    for command in missing:
        print(f"README.md shows a command that nothing runs as written: {command}")
    return 1 if missing else 0


if __name__ == "__main__":
    sys.exit(main())
