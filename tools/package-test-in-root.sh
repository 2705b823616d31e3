#!/usr/bin/env bash
# Run by run-package-test.sh inside the root where the packages are installed: what a user
# of each package does first.
set -euo pipefail
examples=/usr/share/doc/libdbusinterfaces-dev/examples

echo "--- the examples, built with find_package"
cmake -S "$examples" -B /tmp/examples >/dev/null
cmake --build /tmp/examples >/dev/null

echo "--- an example, built with pkg-config"
# shellcheck disable=SC2046 # pkg-config prints several words
g++ -std=c++17 -fPIC "$examples/read-write-setting/main.cpp" -o /tmp/read-write-setting-pc \
    $(pkg-config --cflags --libs DBusInterfaces)

echo "--- measctl and the examples against the packaged simulator, on a private bus"
dbus-run-session -- bash -euo pipefail -c '
    fifo=$(mktemp -u) && mkfifo "$fifo"
    dbusinterfaces-simulator --manual-clock >"$fifo" &
    simulator=$!
    exec 3<"$fifo"
    # The simulator prints "ready" once it owns its name.
    read -r -t 30 line <&3 && [ "$line" = ready ]
    measctl status
    /tmp/examples/read-write-setting sim /Setup/Acquisition/Averages 64
    /tmp/read-write-setting-pc sim /Setup/Acquisition/Averages 32
    /tmp/examples/watch-result sim /Result/Voltage/Peak 3
    /tmp/examples/live-value-widget sim /Setup/Acquisition/Averages --until-valid -platform offscreen
    # The completion that bash loads for measctl offers the packaged simulator'"'"'s paths.
    source /usr/share/bash-completion/completions/measctl
    COMP_WORDS=(measctl get /Result/Voltage/P) COMP_CWORD=2
    _measctl
    [ "${COMPREPLY[*]}" = /Result/Voltage/Peak ]
    kill -TERM "$simulator"
    wait "$simulator" || true
'
echo "--- documentation"
for program in measctl dbusinterfaces-simulator; do
    man -P cat "$program" 2>/dev/null | grep -q -- "--help" || { echo "man $program shows no page" >&2; exit 1; }
done
test -f /usr/share/doc/dbusinterfaces-doc/html/classSetupIntInterface.html
