#!/usr/bin/env bash
# Installs the built library into a scratch prefix, then builds and runs a client
# against it twice: through the CMake package and through pkg-config; and builds the
# example programs (EXAMPLES_DIR) against it as a user would.
set -euo pipefail
build_dir=$1
source_dir=$2
examples_dir=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cmake --install "$build_dir" --prefix "$work/prefix" >/dev/null

cmake -S "$source_dir" -B "$work/cmake-build" -DCMAKE_PREFIX_PATH="$work/prefix" >/dev/null
cmake --build "$work/cmake-build" >/dev/null
LD_LIBRARY_PATH="$work/prefix/lib:$work/prefix/lib/x86_64-linux-gnu:$work/prefix/lib/i386-linux-gnu" \
    "$work/cmake-build/consumer"

pcdir=$(dirname "$(find "$work/prefix" -name DBusInterfaces.pc | head -n 1)")
flags=$(PKG_CONFIG_PATH="$pcdir" pkg-config --cflags --libs DBusInterfaces)
# shellcheck disable=SC2086
g++ -std=c++17 -fPIC "$source_dir/main.cpp" -o "$work/pkgconfig-consumer" $flags
LD_LIBRARY_PATH="$(PKG_CONFIG_PATH="$pcdir" pkg-config --variable=libdir DBusInterfaces)" "$work/pkgconfig-consumer"

cmake -S "$examples_dir" -B "$work/examples" -DCMAKE_PREFIX_PATH="$work/prefix" >/dev/null
cmake --build "$work/examples" >/dev/null
