#!/usr/bin/env bash
# Builds the library (Qt 5 unless QT_MAJOR_VERSION says otherwise) and installs it into
# ./install, or into the prefix given as the first argument.
set -euo pipefail
cd "$(dirname "$0")/.."
tools/install-deps.sh
prefix=${1:-$PWD/install}
cmake -S . -B build/release -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING=OFF -DQT_MAJOR_VERSION="${QT_MAJOR_VERSION:-5}" >/dev/null
cmake --build build/release -j "$(nproc)"
cmake --install build/release --prefix "$prefix"
echo "Installed into $prefix"
