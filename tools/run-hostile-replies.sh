#!/usr/bin/env bash
# A long run of the hostile-reply test: every operation of every proxy class answered with
# random D-Bus values. Usage: tools/run-hostile-replies.sh [cases [seed]]
# (default 200000 cases and a random seed; the seed is printed, and a failure names the
# seed and case count that repeat it). Builds into build/hostile (Qt 5) unless
# BUILD_DIR names another configured build.
set -euo pipefail
cd "$(dirname "$0")/.."
build=${BUILD_DIR:-build/hostile}
[ -f "$build/CMakeCache.txt" ] || cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=Debug -DDBUSINTERFACES_WERROR=ON >/dev/null
cmake --build "$build" -j "$(nproc)" --target tst_hostilereplies
export DBUSINTERFACES_HOSTILE_CASES=${1:-200000}
[ -n "${2:-}" ] && export DBUSINTERFACES_HOSTILE_SEED=$2
dbus-run-session --config-file=tests/session-bus.conf -- "$build/tests/robustness/tst_hostilereplies"
