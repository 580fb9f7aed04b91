#!/usr/bin/env bash
# Installs what building and testing VLCORE needs on a fresh Debian machine:
# compilers, CMake, GoogleTest, Google Benchmark, clang with libFuzzer, the
# mingw-w64 cross compilers, Wine and a virtual X server, and the print
# server with a PDF printer and the PDF tools that the printing tests use
# (tools/start-cups.sh sets the printer up).  Installs only
# what is missing, so a second run costs nothing.
set -euo pipefail

packages=(
  build-essential cmake git pkg-config python3
  googletest libgtest-dev libbenchmark-dev
  clang libclang-rt-14-dev
  g++-mingw-w64-x86-64-posix g++-mingw-w64-i686-posix binutils-mingw-w64-x86-64 binutils-mingw-w64-i686
  wine64 xvfb xauth
  cups cups-bsd printer-driver-cups-pdf poppler-utils libcups2
)

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if ((${#missing[@]})); then
  echo "setup: installing ${missing[*]}"
  sudo=""
  [ "$(id -u)" -eq 0 ] || sudo="sudo"
  $sudo apt-get update -q
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -q --no-install-recommends "${missing[@]}"
fi
