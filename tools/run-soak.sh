#!/usr/bin/env bash
# The soak at full length: 100000 mixed calls, 100000 received signals and 10000 proxies of
# every class made and destroyed with signals connected and disconnected, printing resident
# memory before and after and the match rules left at the bus daemon (docs/robustness.md).
# Sizes: DBUSINTERFACES_SOAK_CALLS, _SIGNALS, _PROXIES. Builds into build/soak (Qt 5) unless
# BUILD_DIR names another configured build (a sanitizer build checks for leaks as well).
set -euo pipefail
cd "$(dirname "$0")/.."
build=${BUILD_DIR:-build/soak}
[ -f "$build/CMakeCache.txt" ] || cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build "$build" -j "$(nproc)" --target tst_soak
export DBUSINTERFACES_SOAK_CALLS=${DBUSINTERFACES_SOAK_CALLS:-100000}
export DBUSINTERFACES_SOAK_SIGNALS=${DBUSINTERFACES_SOAK_SIGNALS:-100000}
export DBUSINTERFACES_SOAK_PROXIES=${DBUSINTERFACES_SOAK_PROXIES:-10000}
dbus-run-session --config-file=tests/session-bus.conf -- "$build/tests/robustness/tst_soak" -maxwarnings 0
