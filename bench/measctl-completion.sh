#!/usr/bin/env bash
# How long one completion of measctl takes, as a person waits for it after Tab: the first in a
# shell (it reads `measctl --help` then) and the following ones, each listing the element
# paths of the simulator's default model. Runs on a private bus of its own.
#   bench/measctl-completion.sh BUILD_DIR [RUNS]
set -euo pipefail
build=$(realpath "$1")
runs=${2:-50}
source_dir=$(cd "$(dirname "$0")/.." && pwd)
exec dbus-run-session -- bash -euo pipefail -c '
    build=$1 runs=$2 source_dir=$3
    export PATH="$build/cli:$PATH"
    work=$(mktemp -d)
    mkfifo "$work/out"
    "$build/simulator/dbusinterfaces-simulator" --manual-clock >"$work/out" &
    simulator=$!
    exec 3<"$work/out"
    read -r -t 30 line <&3
    source "$source_dir/cli/measctl.bash-completion"
    complete_path() {
        COMP_WORDS=(measctl get /Setup/Acquisition/S)
        COMP_CWORD=2
        _measctl
    }
    milliseconds() { echo $(( ($(date +%s%N) - $1) / 1000000 )); }
    start=$(date +%s%N); complete_path; first=$(milliseconds "$start")
    times=()
    for ((i = 0; i < runs; i++)); do
        start=$(date +%s%N); complete_path; times+=("$(milliseconds "$start")")
    done
    sorted=$(printf "%s\n" "${times[@]}" | sort -n)
    echo "offered: ${COMPREPLY[*]}"
    echo "first completion: $first ms; then over $runs: median $(sed -n "$((runs / 2 + 1))p" <<<"$sorted") ms, max $(tail -n1 <<<"$sorted") ms"
    kill "$simulator"; wait "$simulator" || true
    rm -rf "$work"
' completion-bench "$build" "$runs" "$source_dir"
