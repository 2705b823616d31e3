#!/usr/bin/env bash
# Builds the Debian packages (Qt 5, Release), checks them with lintian, installs them into a
# bare Debian 12 root and uses them there as a user would: the examples built with
# find_package and with pkg-config and run, and measctl asking the packaged simulator.
# The bare root is made once with debootstrap and kept pristine; each run works in an
# overlay of it that is thrown away. Exits non-zero on any failure. Needs root.
#
# Environment:
#   DBUSINTERFACES_PACKAGE_ROOT    where the pristine root lives (default: build/package-root)
#   DBUSINTERFACES_DEBIAN_MIRROR   Debian mirror (default: the host's bookworm mirror)
set -euo pipefail

if [ "$(id -u)" -ne 0 ]; then
    echo "Running as root through sudo: debootstrap, chroot and mount need it."
    exec sudo --preserve-env=DBUSINTERFACES_PACKAGE_ROOT,DBUSINTERFACES_DEBIAN_MIRROR "$0" "$@"
fi

src=$(cd "$(dirname "$0")/.." && pwd)
pristine=$(realpath -m "${DBUSINTERFACES_PACKAGE_ROOT:-$src/build/package-root}")
build=$src/build/package
# What a user who builds against the packages has besides them: a compiler, CMake, pkg-config,
# a bus, and man.
user_packages=(cmake g++ make pkg-config dbus-daemon dbus-bin man-db)
started=$SECONDS

# shellcheck source=tools/debian-root.sh
source "$src/tools/debian-root.sh"

# 1. The packages.
"$src/tools/install-deps.sh" dpkg-dev file lintian
echo "=== packages"
# The API reference goes where Debian keeps a package's documents.
cmake -S "$src" -B "$build" -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX=/usr -DBUILD_TESTING=OFF \
    -DQT_MAJOR_VERSION=5 -DDBUSINTERFACES_WERROR=ON -DCMAKE_INSTALL_DOCDIR=share/doc/dbusinterfaces-doc >/dev/null
cmake --build "$build" -j "$(nproc)"
cmake --build "$build" --target docs >/dev/null
rm -f "$build"/*.deb
(cd "$build" && cpack -G DEB >/dev/null)
debs=("$build"/*.deb)
for deb in "${debs[@]}"; do
    dpkg-deb --field "$deb" Package Version Depends | sed 's/^/  /'
done
# No errors; the warnings are shown. A first release closes no bug reports.
lintian --fail-on error --suppress-tags initial-upload-closes-no-bugs "${debs[@]}"

# 2. The pristine root, with only what a user has.
debian_root_host_tools
mkdir -p "$(dirname "$pristine")"
exec 9>"$pristine.lock"
flock 9
root=$pristine
debian_root_release_mounts
debian_root_create "$(dpkg --print-architecture)"
debian_root_install "${user_packages[@]}"
[ -s "$root/etc/machine-id" ] || in_root dbus-uuidgen --ensure=/etc/machine-id

# 3. A throw-away overlay of it; downloaded packages are kept beside the root for the next run.
work=$(mktemp -d /var/tmp/dbusinterfaces-package-test.XXXXXX)
root=$work/root
finish() {
    debian_root_release_mounts
    ! mountpoint -q "$root" || umount "$root"
    rm -rf --one-file-system "$work"
}
trap finish EXIT
trap 'exit 130' INT
trap 'exit 143' TERM
mkdir -p "$work/upper" "$work/overlay-work" "$root" "$pristine.apt-archives/partial"
mount -t overlay overlay -o "lowerdir=$pristine,upperdir=$work/upper,workdir=$work/overlay-work" "$root"
mount -t proc proc "$root/proc"
mount --bind /dev "$root/dev"
mount -t tmpfs -o mode=1777 tmpfs "$root/tmp"
mount --bind "$pristine.apt-archives" "$root/var/cache/apt/archives"
mkdir -p "$root/packages"
cp "${debs[@]}" "$src/tools/package-test-in-root.sh" "$root/packages/"
debs_in_root=()
for deb in "${debs[@]}"; do
    debs_in_root+=("/packages/${deb##*/}")
done

# 4. Install them as a user does, dependencies from Debian, and use them.
echo "=== installing ${debs[*]##*/} in a bare $debian_suite root"
cp -L /etc/resolv.conf "$root/etc/resolv.conf"
in_root apt-get update -qq
in_root apt-get install -y -qq --no-install-recommends -o Dpkg::Use-Pty=0 "${debs_in_root[@]}" >/dev/null
in_root bash /packages/package-test-in-root.sh
echo "package test passed in $((SECONDS - started)) s"
