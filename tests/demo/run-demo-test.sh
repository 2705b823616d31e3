#!/usr/bin/env bash
# Runs tools/demo.sh on an existing build and checks what it leaves behind.
#   complete:  the demo runs to its end; exit status 0 and the key lines of its session.
#   interrupt: Ctrl-C once the demo reports its simulator ready; exit status 130, no session end.
# Either way every process the demo started (its --pid-file) must be gone once it has ended.
# Usage: run-demo-test.sh complete|interrupt DEMO BUILD_DIR
set -euo pipefail

if [ $# -ne 3 ] || [[ $1 != @(complete|interrupt) ]]; then
    echo "usage: run-demo-test.sh complete|interrupt DEMO BUILD_DIR" >&2
    exit 2
fi
mode=$1
demo=$2
build_dir=$3
work=$(mktemp -d "${TMPDIR:-/tmp}/demo-test.XXXXXX")
trap 'rm -rf "$work"' EXIT
pid_file=$work/pids
output=$work/output
failures=0

failed() {
    echo "FAIL: $*"
    failures=$((failures + 1))
}

expect_line() {
    grep -qxF -- "$1" "$output" || failed "no line \"$1\" in the demo's output"
}

expect_no_line() {
    ! grep -qxF -- "$1" "$output" || failed "the line \"$1\" should not be in the demo's output"
}

# Runs the demo with its output on a pipe read here line by line; in interrupt mode sends SIGINT
# to its process group, as Ctrl-C in a terminal does, when the simulator-ready line arrives.
# Sets demo_status.
run_demo() {
    mkfifo "$work/demo.fifo"
    # Job control: the demo gets a process group of its own. SIGINT at its default, even when this
    # test was started with SIGINT ignored: a shell cannot trap a signal ignored on its entry.
    set -m
    env --default-signal=INT "$demo" --no-build --build-dir "$build_dir" --pid-file "$pid_file" >"$work/demo.fifo" 2>&1 &
    local demo_pid=$! line fd
    set +m
    exec {fd}<"$work/demo.fifo"
    while IFS= read -r -u "$fd" line; do
        echo "$line" | tee -a "$output"
        if [ "$mode" = interrupt ] && [[ $line == "Simulator ready:"* ]]; then
            kill -INT -- "-$demo_pid" || failed "could not interrupt the demo's process group"
        fi
    done
    exec {fd}<&-
    demo_status=0
    wait "$demo_pid" || demo_status=$?
    echo "--- the demo ended with status $demo_status"
}

# Every process the demo started is gone; one that is not is reported and ended here.
expect_no_process_left() {
    local pid
    [ -s "$pid_file" ] || { failed "the demo recorded no process"; return; }
    [ "$(wc -l <"$pid_file")" -ge 2 ] || failed "the demo recorded fewer than 2 processes (bus, simulator)"
    while read -r pid; do
        if kill -0 "$pid" 2>/dev/null; then
            failed "process $pid started by the demo is still running: $(tr '\0' ' ' <"/proc/$pid/cmdline" 2>/dev/null)"
            kill -TERM "$pid"
        fi
    done <"$pid_file"
}

run_demo
case $mode in
complete)
    [ "$demo_status" -eq 0 ] || failed "exit status $demo_status, not 0"
    expect_line '$ measctl status'
    expect_line 'status: running'
    expect_line '$ measctl set /Setup/Acquisition/SampleRate 250000'
    expect_line 'accepted: false'
    expect_line '[exit status 6]'
    # watch opens each line with its time stamp
    grep -qE -- '^[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9:.]+Z /Setup/Acquisition/Averages setupChanged 64$' "$output" ||
        failed "no watch line of Averages changing to 64 in the demo's output"
    expect_line 'lowerLimit: 0'
    expect_line 'upperLimit: 3.5'
    expect_line 'answer: OK'
    expect_line '[exit status 7]'
    expect_line '[exit status 8]'
    expect_line 'Simulator and bus stopped.'
    expect_line 'Demo finished: every step gave what it should.'
    ;;
interrupt)
    [ "$demo_status" -eq 130 ] || failed "exit status $demo_status, not 130 (interrupted)"
    expect_line 'demo: interrupted'
    expect_no_line 'Demo finished: every step gave what it should.'
    ;;
esac
expect_no_process_left

[ "$failures" -eq 0 ] || { echo "$failures check(s) failed"; exit 1; }
echo "PASS"
