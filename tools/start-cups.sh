#!/usr/bin/env bash
# Makes a PDF printer the default printer of this machine, so that the
# printing tests print for real: starts the print server when it is not
# running, adds the queues "PDF" and "PDF2" of the PDF back end when they
# are missing, makes "PDF" the default, and sends the files of both to one
# known directory.
#
# Prints that directory on standard output.  Needs root for the server and
# its configuration; without root, or without the packages of
# tools/setup.sh, it explains why on standard error and exits 1.
#
#   tools/start-cups.sh [--state FILE]
#
# With --state (the test fixture) it always exits 0 and writes FILE for the
# printing tests: "ready" and the directory, or "unavailable" and the
# reason, which the tests give when they skip.
set -euo pipefail

state_file=""
if [ "${1:-}" = "--state" ]; then
  state_file=${2:?"--state needs a file"}
fi

queue=PDF
second_queue=PDF2
out_dir=${VLCORE_PDF_DIR:-/var/spool/cups-pdf/vlcore}
conf=/etc/cups/cups-pdf.conf

fail() {
  echo "start-cups: $*" >&2
  if [ -n "$state_file" ]; then
    printf 'unavailable\n%s\n' "$*" >"$state_file"
    exit 0
  fi
  exit 1
}

# As a fixture it must never stop the tests from running: any step that
# fails leaves its verdict instead.
[ -z "$state_file" ] || trap 'fail "a set-up step failed (line $LINENO)"' ERR

command -v cupsd >/dev/null || fail "no cupsd: run tools/setup.sh (package cups)"
command -v lpadmin >/dev/null || fail "no lpadmin: run tools/setup.sh (package cups-client)"
[ -e /usr/lib/cups/backend/cups-pdf ] || fail "no PDF back end: run tools/setup.sh (package printer-driver-cups-pdf)"
[ "$(id -u)" -eq 0 ] || fail "not root: the print server and its queues need root"

# Every job lands in one directory whoever prints it, so a test knows where
# to look.  Changed only when it says otherwise, so a second run costs
# nothing.
if [ -f "$conf" ] && ! grep -qx "Out $out_dir" "$conf"; then
  sed -i -e '/^Out /d' -e '/^AnonDirName /d' "$conf"
  printf 'Out %s\nAnonDirName %s\n' "$out_dir" "$out_dir" >>"$conf"
fi
mkdir -p "$out_dir"
chmod 1777 "$out_dir"

if ! lpstat -r 2>/dev/null | grep -q "is running"; then
  cupsd || fail "cupsd did not start"
  for _ in $(seq 1 50); do
    lpstat -r 2>/dev/null | grep -q "is running" && break
    sleep 0.2
  done
  lpstat -r 2>/dev/null | grep -q "is running" || fail "cupsd started but does not answer"
fi

# The second queue lets a test change the default printer behind the
# library's back.
for q in "$queue" "$second_queue"; do
  if ! lpstat -p "$q" >/dev/null 2>&1; then
    ppd=$(lpinfo -m 2>/dev/null | awk '/CUPS-PDF_opt\.ppd/ {print $1; exit}')
    [ -n "$ppd" ] || ppd=$(lpinfo -m 2>/dev/null | awk 'tolower($0) ~ /cups-pdf/ {print $1; exit}')
    [ -n "$ppd" ] || fail "the print server knows no driver of the PDF back end (lpinfo -m)"
    lpadmin -p "$q" -v cups-pdf:/ -m "$ppd" -E 2>/dev/null || fail "lpadmin could not add the queue $q"
  fi
  cupsenable "$q" 2>/dev/null || true
  cupsaccept "$q" 2>/dev/null || true
done
lpadmin -d "$queue" >/dev/null || fail "lpadmin could not make $queue the default"
lpoptions -d "$queue" >/dev/null 2>&1 || true

echo "$out_dir"
[ -z "$state_file" ] || printf 'ready\n%s\n' "$out_dir" >"$state_file"
