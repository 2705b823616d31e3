#!/usr/bin/env bash
# Builds the library in a 32-bit Debian 12 (i386) root and runs the whole test suite there
# under linux32, warnings as errors, as it runs on the instrument. The root is made once
# with debootstrap and reused; each test executable starts its own private bus inside it.
# Exits non-zero on any failure. Needs root (debootstrap, chroot, mount).
#
# Environment:
#   DBUSINTERFACES_I386_ROOT       where the root lives (default: build/i386-root)
#   DBUSINTERFACES_DEBIAN_MIRROR   Debian mirror (default: the host's bookworm mirror)
set -euo pipefail

if [ "$(id -u)" -ne 0 ]; then
    echo "Running as root through sudo: debootstrap, chroot and mount need it."
    exec sudo --preserve-env=DBUSINTERFACES_I386_ROOT,DBUSINTERFACES_DEBIAN_MIRROR "$0" "$@"
fi

src=$(cd "$(dirname "$0")/.." && pwd)
root=$(realpath -m "${DBUSINTERFACES_I386_ROOT:-$src/build/i386-root}")
packages=(cmake g++ make pkg-config qtbase5-dev dbus-daemon dbus-bin libsystemd-dev)
jobs=$(nproc)
# The source appears read-only at /source (not at its host path, which may lie under the
# root's private /tmp); the build tree stays in the root, one per source tree, and is reused.
source_dir=/source
build="/build$src"
started=$SECONDS

# shellcheck source=tools/debian-root.sh
source "$src/tools/debian-root.sh"

# 1. The host's own tools.
debian_root_host_tools

# One run at a time per root: they would share its mounts and build tree.
mkdir -p "$(dirname "$root")"
exec 9>"$root.lock"
flock 9
trap debian_root_release_mounts EXIT
trap 'exit 130' INT
trap 'exit 143' TERM
debian_root_release_mounts

# 2. The root, unless a finished one is there.
debian_root_create i386

# 3. What building and testing need inside the root: processes, devices, a private /tmp
#    for the test buses, and the source tree.
mkdir -p "$root$source_dir" "$root$build"
mount -t proc proc "$root/proc"
mount --bind /dev "$root/dev"
mount -t tmpfs -o mode=1777 tmpfs "$root/tmp"
mount --bind "$src" "$root$source_dir"
mount -o remount,bind,ro "$root$source_dir"

# 4. The build and test dependencies, unless all are installed already.
debian_root_install "${packages[@]}"
# libdbus wants a machine id; without systemd or the dbus package nobody writes one.
[ -s "$root/etc/machine-id" ] || in_root dbus-uuidgen --ensure=/etc/machine-id

# 5. Build and test as a 32-bit process; tst_platform checks the word size it is told.
echo "=== i386 (Qt 5) in $root"
in_root linux32 cmake -S "$source_dir" -B "$build" -DCMAKE_BUILD_TYPE=Debug -DDBUSINTERFACES_WERROR=ON \
    -DQT_MAJOR_VERSION=5 >/dev/null
in_root linux32 cmake --build "$build" -j "$jobs"
in_root linux32 env DBUSINTERFACES_EXPECT_WORD_SIZE=32 ctest --test-dir "$build" --output-on-failure -j "$jobs"
# What the 32-bit run measured, which the passing test's output otherwise hides.
grep -E 'tst_Platform::(initTestCase\(\) (word|sizes)|wordSizeIsWhatTheEnvironmentExpects)' \
    "$root$build/Testing/Temporary/LastTest.log"
echo "i386 run passed in $((SECONDS - started)) s"
