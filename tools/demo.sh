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

Installs what is missing of what it needs (tools/install-deps.sh --demo), builds the simulator and measctl (Release, Qt 5),
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
# Every program runs in the background while the demo waits for it with the wait builtin: Ctrl-C
# then reaches the demo's trap at once, whatever runs, and the clean-up ends what is still running.

work=""
started_pids=()

# Stops what the demo started, newest first, and waits for each; ends with the work directory.
# A second Ctrl-C must not cut it short. Only a process that still exists is waited for: after
# Ctrl-C broke off a wait, bash may hang waiting again for the process it had already reaped.
cleanup() {
    local index pid
    trap '' INT TERM
    for ((index = ${#started_pids[@]} - 1; index >= 0; index--)); do
        pid=${started_pids[index]}
        if kill -TERM "$pid" 2>/dev/null; then
            wait "$pid" 2>/dev/null || true
        fi
    done
    started_pids=()
    [ -z "$work" ] || rm -rf "$work"
}

# Starts a command in the background, its stdout and stderr appended to the given files or pipes
# (the same one for both keeps their order), and remembers it for the clean-up. Sets started_pid.
start_process() {
    local out=$1 err=$2
    shift 2
    "$@" >>"$out" 2>>"$err" &
    started_pid=$!
    started_pids+=("$started_pid")
    [ -z "$pid_file" ] || echo "$started_pid" >>"$pid_file"
}

# Waits for a process of ours to end by itself; sets its exit status in ended_status.
wait_for_end() {
    local pid=$1 index
    ended_status=0
    wait "$pid" || ended_status=$?
    for index in "${!started_pids[@]}"; do
        [ "${started_pids[index]}" != "$pid" ] || unset 'started_pids[index]'
    done
    started_pids=("${started_pids[@]}")
}

# Starts a program whose stdout the demo reads line by line through a pipe; its stderr goes to
# $work/NAME.log, or with "both" through the pipe too. Sets started_pid and pipe_fd.
start_piped() {
    local name=$1 streams=$2
    shift 2
    local fifo=$work/$name.fifo err=$work/$name.log
    [ "$streams" != both ] || err=$fifo
    mkfifo "$fifo"
    start_process "$fifo" "$err" "$@"
    exec {pipe_fd}<"$fifo"
}

# Reads lines from a pipe until one is exactly the expected line.
wait_for_line() {
    local fd=$1 expected=$2 line
    while IFS= read -r -t "$line_limit_s" -u "$fd" line; do
        [ "$line" != "$expected" ] || return 0
    done
    return 1
}

# Shows what comes through a pipe up to its end; false when it goes quiet for too long.
# Keeps the lines in output_lines.
show_until_end() {
    local fd=$1 line status=0
    output_lines=()
    while IFS= read -r -t "$line_limit_s" -u "$fd" line || status=$?; [ "$status" -eq 0 ]; do
        echo "$line"
        output_lines+=("$line")
    done
    exec {fd}<&-
    [ "$status" -eq 1 ]
}

start_bus() {
    start_piped bus stdout dbus-daemon --nofork --config-file="$source_dir/tests/session-bus.conf" --print-address=1
    local address
    IFS= read -r -t "$line_limit_s" -u "$pipe_fd" address ||
        fail "the bus daemon printed no address: $(<"$work/bus.log")"
    exec {pipe_fd}<&-
    # Every command below, measctl and dbus-send alike, uses this bus as its session bus.
    export DBUS_SESSION_BUS_ADDRESS=$address
    echo "Private bus: $address (dbus-daemon, PID $started_pid)"
}

start_simulator() {
    start_piped simulator stdout dbusinterfaces-simulator --address "$DBUS_SESSION_BUS_ADDRESS" --name "$app"
    simulator_pid=$started_pid
    simulator_fd=$pipe_fd
    wait_for_line "$simulator_fd" ready || fail "the simulator did not get ready: $(<"$work/simulator.log")"
    echo "Simulator ready: $service, default model (dbusinterfaces-simulator, PID $simulator_pid)"
}

# --- The session ------------------------------------------------------------------------------

# Sets typed_line to the words as they would be typed: quoted only where the shell needs it.
typed() {
    local word words=()
    for word in "$@"; do
        if [[ $word =~ ^[A-Za-z0-9_./:=@%+,-]+$ ]]; then
            words+=("$word")
        else
            words+=("'${word//\'/\'\\\'\'}'")
        fi
    done
    typed_line=${words[*]}
}

step() {
    echo
    echo "== $*"
}

# Shows a command as typed at a prompt, with a suffix such as " &".
show_prompt() {
    typed "${@:2}"
    echo "\$ $typed_line$1"
}

# Runs a command as typed at a prompt, its output kept in output_lines and its exit status insisted
# on; the output is shown only by the caller.
execute() {
    local expected=$1 output=$work/output
    shift
    show_prompt "" "$@"
    : >"$output"
    start_process "$output" "$output" "$@"
    wait_for_end "$started_pid"
    mapfile -t output_lines <"$output"
    [ "$ended_status" -eq "$expected" ] || {
        show_output
        typed "$@"
        fail "expected exit status $expected, not $ended_status, from: $typed_line"
    }
}

show_output() {
    [ ${#output_lines[@]} -eq 0 ] || printf '%s\n' "${output_lines[@]}"
    [ "$ended_status" -eq 0 ] || echo "[exit status $ended_status]"
}

run_command() {
    execute "$@"
    show_output
}

run_client() {
    run_command "$1" measctl "${@:2}"
}

# A method of the simulator's own control interface, through the stock dbus-send.
run_control() {
    run_command 0 dbus-send --session --print-reply=literal --dest="$service" /Simulator \
        "com.velk.mqx.Simulator.$1" "${@:2}"
}

# Insists on a line of the last output that contains the text.
expect_output() {
    local line
    for line in "${output_lines[@]}"; do
        [[ $line != *"$1"* ]] || return 0
    done
    fail "expected \"$1\" in the output above"
}

# measctl watch in the background; returns once it is subscribed (its own line on stderr).
start_watch() {
    show_prompt " &" measctl watch "$@"
    start_piped watch both measctl watch "$@"
    watch_pid=$started_pid
    watch_fd=$pipe_fd
    wait_for_line "$watch_fd" "measctl: watching 1 element(s)" || fail "measctl watch did not subscribe"
}

# Shows what the watcher printed after subscribing, up to its end, and insists on exit status 0.
finish_watch() {
    echo "[measctl watch printed:]"
    show_until_end "$watch_fd" || fail "measctl watch did not end"
    wait_for_end "$watch_pid"
    [ "$ended_status" -eq 0 ] || fail "measctl watch ended with status $ended_status"
}

# The normal end: the simulator quits when told through its control interface, then the bus stops.
shut_down() {
    step "Ending the simulator through its control interface (it exits with status 0), then the bus"
    run_control quit
    show_until_end "$simulator_fd" >/dev/null || fail "the simulator did not end after quit"
    wait_for_end "$simulator_pid"
    [ "$ended_status" -eq 0 ] ||
        fail "the simulator ended with status $ended_status: $(<"$work/simulator.log")"
    cleanup
    echo "Simulator and bus stopped."
}

session() {
    step "Is the measurement application on the bus, and what does it report?"
    run_client 0 status
    expect_output "running"

    step "Its elements, each with the kind measctl inferred by introspection (the first lines)"
    execute 0 measctl list
    printf '%s\n' "${output_lines[@]:0:6}"
    echo "... (${#output_lines[@]} lines in all)"

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
        "$source_dir/tools/install-deps.sh" --demo
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
    trap cleanup EXIT
    trap 'echo "demo: interrupted" >&2; exit 130' INT
    trap 'echo "demo: terminated" >&2; exit 143' TERM
    work=$(mktemp -d "${TMPDIR:-/tmp}/measctl-demo.XXXXXX")
    start_bus
    start_simulator
    session
    shut_down
    echo "Demo finished: every step gave what it should."
}

main "$@"
