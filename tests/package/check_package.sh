#!/usr/bin/env bash
# Installs the built library into a temporary prefix, then builds and runs
# a small C consumer against it twice: through find_package(vlcore) and
# through pkg-config.
set -euo pipefail
build=$1
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix=$work/prefix

cmake --install "$build" --prefix "$prefix" >/dev/null
for f in include/vlcore.h lib/cmake/vlcore/vlcoreConfig.cmake lib/pkgconfig/vlcore.pc; do
  [ -f "$prefix/$f" ] || { echo "not installed: $f" >&2; exit 1; }
done

cmake -S "$here" -B "$work/cmake" -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build "$work/cmake" >/dev/null
LD_LIBRARY_PATH=$prefix/lib "$work/cmake/consumer"

PKG_CONFIG_PATH=$prefix/lib/pkgconfig
export PKG_CONFIG_PATH
# shellcheck disable=SC2046
cc -o "$work/consumer-pc" "$here/consumer.c" $(pkg-config --cflags --libs vlcore)
LD_LIBRARY_PATH=$prefix/lib "$work/consumer-pc"
echo "package: find_package and pkg-config consumers built and ran"
