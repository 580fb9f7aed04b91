#!/usr/bin/env bash
# The main job: the example host runs a script on the library.
#   1. natively, the console host reads examples/host/demo.vls and prints
#      its transcript;
#   2. on Windows (Wine with a virtual screen), the window host opens the
#      library's script window, types the same script into it key by key,
#      and leaves the window's text and a screenshot in build/win64;
#   3. on Windows, the printers the library sees, and the script printed
#      through the library's printer device on the PDF printer;
#   4. a few of the library's entries through the command-line tool.
# Set DEMO_NATIVE_ONLY=1 to skip the Windows part.
set -euo pipefail
cd "$(dirname "$0")/.."
tools/setup.sh
script=examples/host/demo.vls
step() { printf '\n=== %s ===\n' "$*"; }

step "native: the host runs $script"
# Every command of the README, as it stands there (the test readme_commands
# checks that each one is here).
cmake --preset native && cmake --build --preset native -j 2 && ctest --preset native
build/native/vlcore_host examples/host/demo.vls
step "native: the host reads lines from standard input"
printf 'x = 2\ntype SQRT(x), x ^ 10\n' | build/native/vlcore_host

if [ -z "${DEMO_NATIVE_ONLY:-}" ]; then
  step "Windows: the script typed into the script window under Wine"
  cmake --preset win64 >/dev/null
  cmake --build --preset win64 -j 2 --target vlcore_host_window >/dev/null
  rm -f build/win64/demo-window.txt build/win64/demo-window.bmp
  xvfb-run -a -s "-screen 0 1024x768x24" cmake/wine-run.sh build/win64/vlcore_host_window.exe --demo examples/host/demo.vls --transcript build/win64/demo-window.txt --screenshot build/win64/demo-window.bmp || true
  if [ -s build/win64/demo-window.txt ]; then
    tr -d '\r' <build/win64/demo-window.txt
    printf '\n(window text in %s, screenshot in %s)\n' build/win64/demo-window.txt build/win64/demo-window.bmp
  else
    echo "the window host left no transcript" >&2
    exit 1
  fi

  step "Windows: the script printed through the printer device"
  cmake --build --preset win64 -j 2 --target vlcore_tool >/dev/null
  if pdf_dir=$(tools/start-cups.sh); then
    before=$(ls "$pdf_dir" 2>/dev/null | wc -l)
    xvfb-run -a cmake/wine-run.sh build/win64/vlcore.exe printers
    xvfb-run -a cmake/wine-run.sh build/win64/vlcore.exe print examples/host/demo.vls
    # The print server writes the PDF a moment after the job is handed over.
    for _ in $(seq 50); do
      [ "$(ls "$pdf_dir" | wc -l)" -gt "$before" ] && break
      sleep 0.2
    done
    pdf=$(ls -t "$pdf_dir"/*.pdf 2>/dev/null | head -1)
    if [ -n "$pdf" ]; then
      printf '
%s, page 1:
' "$pdf"
      pdftotext -l 1 "$pdf" - | head -n 12
    fi
  else
    echo "(no PDF printer here: tools/start-cups.sh needs root)"
  fi
fi

step "native: the library installed into build/prefix"
cmake --install build/native --prefix build/prefix

step "the command-line tool"
build/native/vlcore --help
build/native/vlcore eval --deg SIN 30
vlcore=build/native/vlcore
show() {
  printf '\n$ vlcore'
  printf ' %q' "$@"
  printf '\n'
  "$vlcore" "$@"
}
show tokens 'x = sin(a+b)*1.5e-3; plot.color(2)="red line"'
show number '-1.25e3'
show number '12abc'
show eval --deg SIN 30
show eval TTABLE 0.975 5
show random 5 3
show format 'E*3' 1234 0.00123 2e6 1e21 missing
show sprintf '%7.3g' 1234.5678 123456.789 0.00123 999.9996
show names 2 'COL#'
show date 2460374.5452430556
show parsedate '3/5/2024 1:05:09 PM' 10
show time 0.5452459490740741
