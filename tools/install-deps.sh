#!/usr/bin/env bash
# Installs what building and testing the library needs on Debian 12, if it is missing.
set -euo pipefail

# --demo: only what tools/demo.sh needs (a Qt 5 build of the simulator and measctl, a bus, dbus-send).
if [ "${1:-}" = "--demo" ]; then
    shift
    packages=(cmake g++ make qtbase5-dev dbus-daemon dbus-bin "$@")
else
    packages=(cmake g++ make pkg-config qtbase5-dev qt6-base-dev dbus-daemon dbus-bin clang-format libsystemd-dev help2man doxygen
        libsdbus-c++-dev libbenchmark-dev "$@")
fi
missing=()
for package in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed" || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

sudo=""
[ "$(id -u)" -eq 0 ] || sudo="sudo"
echo "Installing: ${missing[*]}"
$sudo apt-get update -qq
DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
