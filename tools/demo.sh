#!/usr/bin/env bash
# The project's main job in one command: builds the instrument simulator and measctl, starts a
# private D-Bus daemon and the simulator on it, and walks through a short measctl session against
# the simulated measurement application. Everything it starts is stopped again, also on Ctrl-C.
# Exits 0 when every step gave what the session expects, non-zero otherwise.
set -euo pipefail

source_dir=$(cd "$(dirname "$0")/.." && pwd)
build_dir=$source_dir/build/demo
build=1
pid_file=""
app=sim
service=com.velk.mqx.app.$app
# A bound on waiting for a line from a process that should print it at once; not a pause.
line_limit_s=60

usage() {
    cat <<EOF
Usage: tools/demo.sh [--build-dir DIR] [--no-build] [--pid-file FILE]

Installs what is missing (tools/install-deps.sh), builds the simulator and measctl (Release, Qt 5),
starts a private bus and the simulator with its default model, and runs a scripted measctl session
against it. Never touches your own session bus. Leaves no process behind.

  --build-dir DIR   build directory (default: build/demo in the source tree)
  --no-build        use the binaries already built in the build directory; install nothing
  --pid-file FILE   append the id of every process the demo starts to FILE, one per line
  -h, --help        this text

Exit status: 0 when the session ran as scripted, 1 when a step gave something else,
2 on a bad command line, 130/143 when interrupted.
EOF
}

fail() {
    echo "demo: $*" >&2
    exit 1
}

parse_options() {
    while [ $# -gt 0 ]; do
        case $1 in
        --build-dir)
            [ $# -ge 2 ] || { echo "demo: --build-dir needs a directory" >&2; exit 2; }
            build_dir=$(realpath -m "$2")
            shift
            ;;
        --no-build) build=0 ;;
        --pid-file)
            [ $# -ge 2 ] || { echo "demo: --pid-file needs a file" >&2; exit 2; }
            pid_file=$2
            shift
            ;;
        -h | --help) usage; exit 0 ;;
        *) echo "demo: unknown option '$1' (see --help)" >&2; exit 2 ;;
        esac
        shift
    done
}

# --- Processes --------------------------------------------------------------------------------

work=""
started_pids=()

# Stops what the demo started, newest first, and waits for each; ends with the work directory.
# A second Ctrl-C must not cut it short.
cleanup() {
    local index
    trap '' INT TERM
    for ((index = ${#started_pids[@]} - 1; index >= 0; index--)); do
        stop_process "${started_pids[index]}" || true
    done
    started_pids=()
    [ -z "$work" ] || rm -rf "$work"
}

# Ends one process of ours (SIGTERM) and waits for it; answers its exit status.
stop_process() {
    local pid=$1 status=0
    kill -TERM "$pid" 2>/dev/null || true
    wait "$pid" 2>/dev/null || status=$?
    return "$status"
}

forget_process() {
    local pid=$1 index
    for index in "${!started_pids[@]}"; do
        [ "${started_pids[index]}" != "$pid" ] || unset 'started_pids[index]'
    done
    started_pids=("${started_pids[@]}")
}

# Starts a command in the background with its stdout (and with "both" its stderr too) on a pipe
# the demo reads; stderr goes to a log file otherwise. Sets spawned_pid and spawned_fd (the pipe's
# reading end).
spawn() {
    local name=$1 streams=$2
    shift 2
    local fifo=$work/$name.fifo log=$work/$name.log
    mkfifo "$fifo"
    if [ "$streams" = both ]; then
        "$@" >"$fifo" 2>&1 &
    else
        "$@" >"$fifo" 2>"$log" &
    fi
    spawned_pid=$!
    started_pids+=("$spawned_pid")
    [ -z "$pid_file" ] || echo "$spawned_pid" >>"$pid_file"
    exec {spawned_fd}<"$fifo"
}

# Reads lines from a spawned process until one is exactly the expected line.
wait_for_line() {
    local fd=$1 expected=$2 line
    while IFS= read -r -t "$line_limit_s" -u "$fd" line; do
        [ "$line" != "$expected" ] || return 0
    done
    return 1
}

start_bus() {
    spawn bus stdout dbus-daemon --nofork --config-file="$source_dir/tests/session-bus.conf" --print-address=1
    bus_pid=$spawned_pid
    local address
    IFS= read -r -t "$line_limit_s" -u "$spawned_fd" address ||
        fail "the bus daemon printed no address: $(cat "$work/bus.log")"
    exec {spawned_fd}<&-
    # Every command below, measctl and dbus-send alike, uses this bus as its session bus.
    export DBUS_SESSION_BUS_ADDRESS=$address
    echo "Private bus: $address (dbus-daemon, PID $bus_pid)"
}

start_simulator() {
    spawn simulator stdout dbusinterfaces-simulator --address "$DBUS_SESSION_BUS_ADDRESS" --name "$app"
    simulator_pid=$spawned_pid
    simulator_fd=$spawned_fd
    wait_for_line "$simulator_fd" ready ||
        fail "the simulator did not get ready: $(cat "$work/simulator.log")"
    echo "Simulator ready: $service, default model (dbusinterfaces-simulator, PID $simulator_pid)"
}

# Stops the simulator and the bus as a normal end; the simulator must end cleanly.
shut_down() {
    local status=0
    stop_process "$simulator_pid" || status=$?
    forget_process "$simulator_pid"
    [ "$status" -eq 0 ] || fail "the simulator ended with status $status: $(cat "$work/simulator.log")"
    cleanup
    echo "Simulator and bus stopped."
}

# --- The session ------------------------------------------------------------------------------

# Shows words as they would be typed: quoted only where the shell needs it.
typed() {
    local word words=()
    for word in "$@"; do
        if [[ $word =~ ^[A-Za-z0-9_./:=@%+,-]+$ ]]; then
            words+=("$word")
        else
            words+=("'${word//\'/\'\\\'\'}'")
        fi
    done
    echo "${words[*]}"
}

step() {
    echo
    echo "== $*"
}

# Runs a command as typed at a prompt, shows its output, and insists on its exit status.
# The output stays in last_output for checks of its content.
run_command() {
    local expected=$1 status=0
    shift
    echo "\$ $(typed "$@")"
    last_output=$("$@" 2>&1) || status=$?
    [ -z "$last_output" ] || echo "$last_output"
    [ "$status" -eq 0 ] || echo "[exit status $status]"
    [ "$status" -eq "$expected" ] || fail "expected exit status $expected from: $(typed "$@")"
}

run_client() {
    run_command "$1" measctl "${@:2}"
}

expect_output() {
    [[ $last_output == *"$1"* ]] || fail "expected \"$1\" in the output above"
}

# A method of the simulator's own control interface, through the stock dbus-send.
run_control() {
    run_command 0 dbus-send --session --print-reply=literal --dest="$service" /Simulator \
        "com.velk.mqx.Simulator.$1" "${@:2}"
}

# measctl watch in the background; returns once it is subscribed (its own line on stderr).
start_watch() {
    echo "\$ $(typed measctl watch "$@") &"
    spawn watch both measctl watch "$@"
    watch_pid=$spawned_pid
    watch_fd=$spawned_fd
    wait_for_line "$watch_fd" "measctl: watching 1 element(s)" || fail "measctl watch did not subscribe"
}

# Shows what the watcher printed after subscribing, up to its end, and insists on exit status 0.
finish_watch() {
    local line status=0
    last_output=""
    echo "[measctl watch printed:]"
    while IFS= read -r -t "$line_limit_s" -u "$watch_fd" line || status=$?; [ "$status" -eq 0 ]; do
        echo "$line"
        last_output+=$line$'\n'
    done
    [ "$status" -eq 1 ] || fail "measctl watch printed nothing more within $line_limit_s s"
    exec {watch_fd}<&-
    status=0
    wait "$watch_pid" || status=$?
    forget_process "$watch_pid"
    [ "$status" -eq 0 ] || fail "measctl watch ended with status $status"
}

session() {
    step "Is the measurement application on the bus, and what does it report?"
    run_client 0 status
    expect_output "running"

    step "Its elements, each with the kind measctl inferred by introspection (the first lines)"
    echo "\$ measctl list"
    last_output=$(measctl list) || fail "measctl list failed"
    head -n 6 <<<"$last_output"
    echo "... ($(wc -l <<<"$last_output") lines in all)"

    step "Reading settings of several kinds: int, double, enumeration, bool, string, array, map"
    run_client 0 get /Setup/Acquisition/SampleRate
    run_client 0 get /Setup/Acquisition/TriggerLevel
    run_client 0 get /Setup/Acquisition/TriggerMode
    run_client 0 get /Setup/Acquisition/AutoRange
    run_client 0 get /Setup/Device/SerialNumber
    run_client 0 get /Setup/Filter/Coefficients
    run_client 0 get /Setup/Display/ChannelColors

    step "A value within the range is accepted; one outside it is refused (exit status 6)"
    run_client 0 info /Setup/Acquisition/SampleRate
    run_client 0 set /Setup/Acquisition/SampleRate 96000
    run_client 6 set /Setup/Acquisition/SampleRate 250000

    step "Watching a setting: measctl prints the change signal that a set causes"
    start_watch --count 1 /Setup/Acquisition/Averages
    run_client 0 set /Setup/Acquisition/Averages 64
    finish_watch
    expect_output "setupChanged 64"

    step "A result while the measurement runs: value, limits, min/max and the ...Comp lists"
    run_client 0 info /Result/Voltage/Peak

    step "Remote commands: one the application runs, one its parser rejects (exit status 7)"
    run_client 0 exec resetMinMax /Result/Voltage/Peak
    run_client 7 exec calibrate now

    # --kind: inferring the kind would introspect the element, which answers late too.
    step "An injected fault: the element answers 5 s late, the client gives up after 1 s (exit status 8)"
    run_control setFault string:/Setup/Acquisition/Averages string:delay string:5000
    expect_output "true"
    run_client 8 --timeout 1000 --kind int get /Setup/Acquisition/Averages

    step "The fault cleared, the same call works again"
    run_control clearFault string:/Setup/Acquisition/Averages
    expect_output "true"
    run_client 0 --timeout 1000 --kind int get /Setup/Acquisition/Averages
    expect_output "value: 64"
}

# --- Main -------------------------------------------------------------------------------------

prepare() {
    if [ "$build" -eq 1 ]; then
        "$source_dir/tools/install-deps.sh"
        echo "Building the simulator and measctl in $build_dir (log: $build_dir/demo-build.log)"
        mkdir -p "$build_dir"
        if ! {
            cmake -S "$source_dir" -B "$build_dir" -DCMAKE_BUILD_TYPE=Release -DQT_MAJOR_VERSION=5 \
                -DBUILD_TESTING=OFF -DBUILD_CLI=ON -DBUILD_SIMULATOR=ON &&
                cmake --build "$build_dir" -j "$(nproc)" --target measctl dbusinterfaces-simulator
        } >"$build_dir/demo-build.log" 2>&1; then
            tail -n 30 "$build_dir/demo-build.log" >&2
            fail "the build failed"
        fi
    fi
    local program
    for program in "$build_dir/cli/measctl" "$build_dir/simulator/dbusinterfaces-simulator"; do
        [ -x "$program" ] || fail "$program is missing (build first, or give --build-dir)"
    done
    PATH=$build_dir/cli:$build_dir/simulator:$PATH
}

main() {
    parse_options "$@"
    prepare
    work=$(mktemp -d "${TMPDIR:-/tmp}/measctl-demo.XXXXXX")
    trap cleanup EXIT
    trap 'echo "demo: interrupted" >&2; exit 130' INT
    trap 'echo "demo: terminated" >&2; exit 143' TERM
    start_bus
    start_simulator
    session
    echo
    shut_down
    echo "Demo finished: every step gave what it should."
}

main "$@"
