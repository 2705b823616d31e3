#!/usr/bin/env bash
# Builds the library and runs the whole test suite five times: against Qt 5, against Qt 6,
# with AddressSanitizer + UndefinedBehaviorSanitizer against each, and as a 32-bit (i386) build in a
# Debian 12 root (tools/run-tests-i386.sh; skipped when DBUSINTERFACES_SKIP_I386=1). Before the
# last, builds the Debian packages and uses them in a bare root (tools/run-package-test.sh;
# skipped when DBUSINTERFACES_SKIP_PACKAGES=1).
# Warnings are errors; each test executable runs on a private bus of its own.
# Exits non-zero on any failure.
set -euo pipefail
cd "$(dirname "$0")/.."
tools/install-deps.sh

jobs=$(nproc)
build() {
    local name=$1
    shift
    echo "=== $name"
    cmake -S . -B "build/$name" -DCMAKE_BUILD_TYPE=Debug -DDBUSINTERFACES_WERROR=ON "$@" >/dev/null
    cmake --build "build/$name" -j "$jobs"
    DBUSINTERFACES_EXPECT_WORD_SIZE=$(getconf LONG_BIT) ctest --test-dir "build/$name" --output-on-failure -j "$jobs"
}

build qt5 -DQT_MAJOR_VERSION=5 -DBUILD_BENCHMARKS=ON
build qt6 -DQT_MAJOR_VERSION=6
# Both Qt versions: their containers differ enough that each has caught what the other did not.
export ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
build sanitize-qt5 -DQT_MAJOR_VERSION=5 -DDBUSINTERFACES_SANITIZE=ON
build sanitize-qt6 -DQT_MAJOR_VERSION=6 -DDBUSINTERFACES_SANITIZE=ON

if [ "${DBUSINTERFACES_SKIP_PACKAGES:-0}" != 1 ]; then
    echo "=== packages"
    tools/run-package-test.sh
fi

if [ "${DBUSINTERFACES_SKIP_I386:-0}" != 1 ]; then
    echo "=== i386"
    tools/run-tests-i386.sh
fi
