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
