#!/usr/bin/env bash
# Builds and runs the benchmarks (release build, Qt 5) on a private bus.
set -euo pipefail
cd "$(dirname "$0")/.."
tools/install-deps.sh
cmake -S . -B build/bench -DCMAKE_BUILD_TYPE=Release -DBUILD_BENCHMARKS=ON >/dev/null
cmake --build build/bench -j "$(nproc)" --target bench_proxycalls
dbus-run-session --config-file=tests/session-bus.conf -- build/bench/bench/bench_proxycalls "$@"
