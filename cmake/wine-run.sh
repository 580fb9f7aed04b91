#!/bin/sh
# Runs a Windows test program under Wine in the project's own prefix,
# creating the prefix on first use.  Several tests may start at once, so
# the creation is serialised.  Wine's own messages are off; a program that
# fails says so here with its status, so a log that shows nothing else
# still tells a crash from a refused start.
WINEPREFIX=${VLCORE_WINEPREFIX:-${HOME:-/tmp}/.vlcore-wine}
WINEDEBUG=${WINEDEBUG:--all}
export WINEPREFIX WINEDEBUG
WINE=${VLCORE_WINE:-/usr/lib/wine/wine64}
if [ ! -f "$WINEPREFIX/system.reg" ]; then
  mkdir -p "$(dirname "$WINEPREFIX")"
  (
    flock 9
    [ -f "$WINEPREFIX/system.reg" ] || "$WINE" wineboot -i >/dev/null 2>&1 || true
    wineserver -w 2>/dev/null || true
  ) 9>"$WINEPREFIX.lock"
fi
# A program that needs a screen of its own waits until the Wine server of
# the program before is gone: a server still up would keep showing that
# program's screen.
if [ -n "$VLCORE_WINE_OWN_SERVER" ]; then
  timeout 60 wineserver -w 2>/dev/null || true
fi
# A program that fails within a second has most likely not run at all,
# for instance by meeting a Wine server that the program before left
# shutting down.  It starts once more when every Wine process is gone.
start=$(date +%s)
"$WINE" "$@"
status=$?
if [ "$status" -ne 0 ] && [ $(($(date +%s) - start)) -le 1 ]; then
  echo "wine-run: $(basename "$1") ended at once with status $status; starting it again" >&2
  timeout 60 wineserver -w 2>/dev/null || true
  "$WINE" "$@"
  status=$?
fi
[ "$status" -eq 0 ] || echo "wine-run: $(basename "$1") ended with status $status" >&2
exit "$status"
