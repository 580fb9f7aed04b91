#!/usr/bin/env bash
# Builds the native library and its command-line tool, then shows what the
# library does with a few typical inputs.
set -euo pipefail
cd "$(dirname "$0")/.."
tools/setup.sh
cmake --preset native >/dev/null
cmake --build --preset native -j 2 --target vlcore_tool >/dev/null
vlcore=build/native/vlcore

show() {
  printf '\n$ vlcore'
  printf ' %q' "$@"
  printf '\n'
  "$vlcore" "$@"
}

show tokens 'x = sin(a+b)*1.5e-3; plot.color(2)="red line"'
show tokens 'f(1, 2) g[3]+"quoted text" {brace}'
show number '-1.25e3'
show number '  42 items'
show number '0.000000001'
show number '12abc'
show number 'ff'
show eval --deg SIN 30
show eval TTABLE 0.975 5
show eval LN 0
show random 5 3
show random 5 4 poisson 3
show format 'E*3' 1234 0.00123 2e6 1e21 missing
show sprintf '%7.3g' 1234.5678 123456.789 0.00123 999.9996

# Section files, packages and the name tables, on a small sample.
sample=$(mktemp -d)
trap 'rm -rf "$sample"' EXIT
printf 'a=1\n[One]\nx = 5 ; five\ny =\n\n[Two] tail\nz\n[Three]\nw\n' >"$sample/sample.ini"
show section "$sample/sample.ini" one
show section "$sample/sample.ini" One x
show section "$sample/sample.ini" Three
python3 - "$sample/sample.pkg" <<'PY'
import struct, sys
members = [(b"readme.txt", b"hello from the package\n"), (b"data.csv", b"1,2,3\n")]
rows, data, at = b"", b"", 24 + 24 * len(members)
for name, body in members:
    rows += name.ljust(16, b"\0") + struct.pack("<II", at + len(data), len(body))
    data += body
open(sys.argv[1], "wb").write(b"\0" * 20 + struct.pack("<i", len(members)) + rows + data)
PY
show package "$sample/sample.pkg"
show package "$sample/sample.pkg" README.TXT
show names 7
show names 2 'COL#'
show date 2460374.5452430556
show date 2460374.5452430556 33292
show date 7 4096
show parsedate '3/5/2024 1:05:09 PM' 10
show parsedate 'Mar 5, 2024'
show time 1.5 0
show time 0.5452459490740741
