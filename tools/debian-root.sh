# Sourced by the scripts that work in a Debian 12 root made with debootstrap
# (run-tests-i386.sh, run-package-test.sh). They set $root before calling these; all need root.
# shellcheck shell=bash

debian_suite=bookworm

# shellcheck disable=SC2016 # $(...) below are apt's own format fields
debian_host_mirror() {
    apt-get indextargets --no-release-info --format '$(RELEASE) $(REPO_URI)' 'Target-Of: deb' 2>/dev/null |
        awk -v suite="$debian_suite" '$1 == suite { print $2; exit }'
}

# Unmounts whatever is mounted below the root, innermost first; also what a killed run left.
debian_root_release_mounts() {
    local target
    findmnt -rn -o TARGET | awk -v prefix="$root/" 'index($0, prefix) == 1' | sort -r | while read -r target; do
        umount "$target" 2>/dev/null || umount -l "$target"
    done
}

# Runs a command in the root with a clean environment; a lock held on fd 9 stays outside.
in_root() {
    chroot "$root" /usr/bin/env -i PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin \
        HOME=/root LANG=C.UTF-8 TMPDIR=/tmp DEBIAN_FRONTEND=noninteractive "$@" 9>&-
}

# debootstrap and its keyring on the host.
debian_root_host_tools() {
    local missing=()
    command -v debootstrap >/dev/null || missing+=(debootstrap)
    [ -f /usr/share/keyrings/debian-archive-keyring.gpg ] || missing+=(debian-archive-keyring)
    if [ ${#missing[@]} -gt 0 ]; then
        echo "Installing on the host: ${missing[*]}"
        apt-get update -qq
        DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
    fi
}

# debian_root_create ARCH: a minbase root at $root, unless a finished one is there.
# debootstrap leaves its "debootstrap" directory behind only when it did not finish.
debian_root_create() {
    local arch=$1 mirror log
    if [ -d "$root/debootstrap" ]; then
        echo "Removing the unfinished root $root"
        rm -rf --one-file-system "$root"
    fi
    [ -x "$root/usr/bin/apt-get" ] && return 0
    if [ -e "$root" ] && [ -n "$(ls -A "$root")" ]; then
        echo "$root exists, is not empty and holds no Debian root; choose another place for it." >&2
        return 1
    fi
    mirror=${DBUSINTERFACES_DEBIAN_MIRROR:-$(debian_host_mirror)}
    mirror=${mirror:-http://deb.debian.org/debian/}
    log="$root.debootstrap.log"
    echo "Creating the $arch $debian_suite root in $root from $mirror (log: $log)"
    if ! debootstrap --arch="$arch" --variant=minbase "$debian_suite" "$root" "$mirror" >"$log" 2>&1; then
        tail -n 30 "$log" >&2
        return 1
    fi
}

# debian_root_install PACKAGE...: installs those of the packages that the root lacks.
# shellcheck disable=SC2016 # ${Status} is dpkg's format field
debian_root_install() {
    local package missing=()
    for package in "$@"; do
        in_root dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed" ||
            missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    echo "Installing in the root: ${missing[*]}"
    cp -L /etc/resolv.conf "$root/etc/resolv.conf"
    # Packages must not start services inside the root.
    printf '#!/bin/sh\nexit 101\n' >"$root/usr/sbin/policy-rc.d"
    chmod 755 "$root/usr/sbin/policy-rc.d"
    in_root apt-get update -qq
    # No pseudo-terminal for dpkg's log: the root has no /dev/pts of its own.
    in_root apt-get install -y -qq --no-install-recommends -o Dpkg::Use-Pty=0 "${missing[@]}" >/dev/null
    in_root apt-get clean
}
