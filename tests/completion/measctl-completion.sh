#!/usr/bin/env bash
# measctl's bash completion against the simulator on the test's private bus: each check
# completes one command line as bash would and compares what is offered.
#   measctl-completion.sh MEASCTL SIMULATOR COMPLETION-SCRIPT
set -uo pipefail
measctl=$1
simulator=$2
completion=$3
export PATH="$(dirname "$measctl"):$PATH"

work=$(mktemp -d)
trap 'kill "$simulator_pid" 2>/dev/null; wait "$simulator_pid" 2>/dev/null; rm -rf "$work"' EXIT
mkfifo "$work/out"
"$simulator" --manual-clock >"$work/out" &
simulator_pid=$!
exec 3<"$work/out"
read -r -t 30 line <&3 && [ "$line" = ready ] || { echo "the simulator did not get ready"; exit 1; }

# shellcheck source=cli/measctl.bash-completion
source "$completion"

passed=0
failed=0
# offers "LINE" "WORD..." : completing LINE (the cursor at its end) offers exactly the WORDs.
offers() {
    local line=$1
    shift
    read -r -a COMP_WORDS <<<"$line"
    [[ $line == *" " ]] && COMP_WORDS+=("")
    COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
    COMPREPLY=()
    _measctl
    local got want
    got=$(printf '%s\n' "${COMPREPLY[@]}" | sort | paste -sd' ')
    want=$(printf '%s\n' "$@" | sort | paste -sd' ')
    if [ "$got" = "$want" ]; then
        passed=$((passed + 1))
    else
        failed=$((failed + 1))
        echo "FAIL: '$line' offered [$got], expected [$want]"
    fi
}

offers "measctl st" status
offers "measctl --json e" exec
offers "measctl --ki" --kind
offers "measctl --kind map" map mapList mapMap
offers "measctl --kind result" resultBool resultDouble resultEnum resultInt resultIntArray resultVarArray
offers "measctl --timeout " 
offers "measctl get /Setup/Acquisition/Sa" /Setup/Acquisition/SampleRate
offers "measctl --kind int info /Setup/Acquisition/A" /Setup/Acquisition/Averages /Setup/Acquisition/AutoRange
offers "measctl get /Result/Voltage/P" /Result/Voltage/Peak
offers "measctl --app sim watch /Setup/Acquisition/Averages /Setup/Acquisition/Sa" /Setup/Acquisition/SampleRate
offers "measctl set /Setup/Acquisition/Averages " 
offers "measctl --app elsewhere get /Setup/" 
offers "measctl status /" 

echo "measctl completion: $passed passed, $failed failed"
[ "$failed" -eq 0 ]
