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
suite=bookworm
packages=(cmake g++ make pkg-config qtbase5-dev dbus-daemon dbus-bin libsystemd-dev)
jobs=$(nproc)
# The source appears read-only at /source (not at its host path, which may lie under the
# root's private /tmp); the build tree stays in the root, one per source tree, and is reused.
source_dir=/source
build="/build$src"
started=$SECONDS

# shellcheck disable=SC2016 # $(...) and ${...} below are apt's and dpkg's own format fields
host_mirror() {
    apt-get indextargets --no-release-info --format '$(RELEASE) $(REPO_URI)' 'Target-Of: deb' 2>/dev/null |
        awk -v suite="$suite" '$1 == suite { print $2; exit }'
}

# Unmounts whatever is mounted below the root, innermost first; also what a killed run left.
release_mounts() {
    local target
    findmnt -rn -o TARGET | awk -v prefix="$root/" 'index($0, prefix) == 1' | sort -r | while read -r target; do
        umount "$target" 2>/dev/null || umount -l "$target"
    done
}

# Runs a command in the root with a clean environment; the lock stays with this script.
in_root() {
    chroot "$root" /usr/bin/env -i PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin \
        HOME=/root LANG=C.UTF-8 TMPDIR=/tmp DEBIAN_FRONTEND=noninteractive "$@" 9>&-
}

# shellcheck disable=SC2016
missing_in_root() {
    local package
    for package in "${packages[@]}"; do
        in_root dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed" ||
            echo "$package"
    done
}

# 1. The host's own tools.
host_missing=()
command -v debootstrap >/dev/null || host_missing+=(debootstrap)
[ -f /usr/share/keyrings/debian-archive-keyring.gpg ] || host_missing+=(debian-archive-keyring)
if [ ${#host_missing[@]} -gt 0 ]; then
    echo "Installing on the host: ${host_missing[*]}"
    apt-get update -qq
    DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${host_missing[@]}" >/dev/null
fi

# One run at a time per root: they would share its mounts and build tree.
mkdir -p "$(dirname "$root")"
exec 9>"$root.lock"
flock 9
trap release_mounts EXIT
trap 'exit 130' INT
trap 'exit 143' TERM
release_mounts

# 2. The root, unless a finished one is there. debootstrap leaves its "debootstrap"
#    directory behind only when it did not finish.
if [ -d "$root/debootstrap" ]; then
    echo "Removing the unfinished root $root"
    rm -rf --one-file-system "$root"
fi
if [ ! -x "$root/usr/bin/apt-get" ]; then
    if [ -e "$root" ] && [ -n "$(ls -A "$root")" ]; then
        echo "$root exists, is not empty and holds no Debian root; set DBUSINTERFACES_I386_ROOT elsewhere." >&2
        exit 1
    fi
    mirror=${DBUSINTERFACES_DEBIAN_MIRROR:-$(host_mirror)}
    mirror=${mirror:-http://deb.debian.org/debian/}
    log="$root.debootstrap.log"
    echo "Creating the i386 $suite root in $root from $mirror (log: $log)"
    if ! debootstrap --arch=i386 --variant=minbase "$suite" "$root" "$mirror" >"$log" 2>&1; then
        tail -n 30 "$log" >&2
        exit 1
    fi
fi

# 3. What building and testing need inside the root: processes, devices, a private /tmp
#    for the test buses, and the source tree.
mkdir -p "$root$source_dir" "$root$build"
mount -t proc proc "$root/proc"
mount --bind /dev "$root/dev"
mount -t tmpfs -o mode=1777 tmpfs "$root/tmp"
mount --bind "$src" "$root$source_dir"
mount -o remount,bind,ro "$root$source_dir"

# 4. The build and test dependencies, unless all are installed already.
mapfile -t missing < <(missing_in_root)
if [ ${#missing[@]} -gt 0 ]; then
    echo "Installing in the root: ${missing[*]}"
    cp -L /etc/resolv.conf "$root/etc/resolv.conf"
    # Packages must not start services inside the root.
    printf '#!/bin/sh\nexit 101\n' >"$root/usr/sbin/policy-rc.d"
    chmod 755 "$root/usr/sbin/policy-rc.d"
    in_root apt-get update -qq
    # No pseudo-terminal for dpkg's log: the root has no /dev/pts of its own.
    in_root apt-get install -y -qq --no-install-recommends -o Dpkg::Use-Pty=0 "${missing[@]}" >/dev/null
    in_root apt-get clean
fi
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
