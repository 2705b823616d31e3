#!/usr/bin/env bash
# Builds the benchmarks (release, Qt 5), runs every scenario on a private bus, counts
# instructions per call under callgrind and writes build/bench/results.json and the
# start-up plot docs/performance-startup.png. Options go to Google Benchmark
# (e.g. --benchmark_filter=call/), except a first --no-callgrind, which keeps the
# instruction counts of the previous run.
set -euo pipefail
cd "$(dirname "$0")/.."
out=build/bench
bench="$out/bench/bench_dbusinterfaces"

on_private_bus() {
    dbus-run-session --config-file=tests/session-bus.conf -- "$0" --on-private-bus "$@"
}

if [ "${1:-}" != "--on-private-bus" ]; then
    callgrind=1
    if [ "${1:-}" = "--no-callgrind" ]; then
        callgrind=0
        shift
    fi
    tools/install-deps.sh valgrind python3-matplotlib
    cmake -S . -B "$out" -DCMAKE_BUILD_TYPE=Release -DQT_MAJOR_VERSION=5 -DBUILD_BENCHMARKS=ON >/dev/null
    cmake --build "$out" -j "$(nproc)" --target bench_dbusinterfaces
    # Scenarios 1, 3, 4 and 6 with everything on one core: the caller, QtDBus's thread, the
    # daemon and the server take turns there instead of waking each other across cores,
    # which spreads the times far less.
    taskset -c "$(($(nproc) - 1))" dbus-run-session --config-file=tests/session-bus.conf -- \
        "$0" --on-private-bus calls "$@"
    # Scenario 5 on every core, as an application starts: the batched reads overlap with
    # the daemon's and the server's work.
    on_private_bus startup
    [ $callgrind -eq 0 ] || on_private_bus callgrind
    /usr/bin/python3 - "$out" <<'PY'
import json, sys
out = sys.argv[1]
results = {
    "benchmarks": json.load(open(f"{out}/gbench.json")),
    "calls": json.load(open(f"{out}/calls.json"))["calls"],
    "startup": json.load(open(f"{out}/startup.json"))["startup"],
    "callgrind": json.load(open(f"{out}/callgrind.json")),
}
json.dump(results, open(f"{out}/results.json", "w"), indent=1)
PY
    /usr/bin/python3 tools/plot-bench.py "$out/results.json" docs/performance-startup.png "$out/tables.md"
    exit 0
fi
shift

case "$1" in
calls)
    shift
    "$bench" --benchmark_out="$out/gbench.json" --benchmark_out_format=json \
        --benchmark_enable_random_interleaving=true --results-json="$out/calls.json" --startup-sizes= "$@"
    ;;
startup)
    "$bench" --benchmark_filter=^$ --results-json="$out/startup.json"
    ;;
callgrind)
    # Scenario 2: instructions per call of the whole client process (its own thread and
    # QtDBus's), from the difference of two runs so that start-up costs cancel out; the
    # median of three such differences, since the threads' interleaving varies a little.
    small=1000
    large=3000
    instructions() { # contender calls; prints nothing if the calls failed
        valgrind --tool=callgrind --callgrind-out-file="$out/callgrind.out" "$bench" "--callgrind=$1:$2" \
            2>/dev/null && sed -n 's/^totals: *//p' "$out/callgrind.out"
    }
    {
        echo "["
        first=1
        while IFS= read -r contender; do
            # Every pattern library against bare subclass; the int read with all five.
            case "$contender" in *":library" | *":bare QDBusAbstractInterface" | "int read:"*) ;; *) continue ;; esac
            per_call=()
            for _ in 1 2 3; do
                many=$(instructions "$contender" $large)
                few=$(instructions "$contender" $small)
                if [ -z "$many" ] || [ -z "$few" ]; then
                    echo "the calls of $contender failed under callgrind" >&2
                    exit 1
                fi
                per_call+=($(((many - few) / (large - small))))
            done
            median=$(printf '%s\n' "${per_call[@]}" | sort -n | sed -n 2p)
            [ $first -eq 1 ] || echo ","
            first=0
            printf '{"contender": "%s", "instructions_per_call": %s, "runs": [%s]}' "$contender" "$median" \
                "$(IFS=,; echo "${per_call[*]}")"
        done < <("$bench" --list-contenders)
        echo "]"
    } >"$out/callgrind.json.new"
    mv "$out/callgrind.json.new" "$out/callgrind.json"
    ;;
esac
