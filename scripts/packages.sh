# Debian 12 packages by purpose, and the one function that installs what is missing.
# Sourced by ./run and ./check.

packages_build=(
    g++ cmake ninja-build pkg-config
    qt6-base-dev libusb-1.0-0-dev libfmt-dev libcli11-dev nlohmann-json3-dev
    libbenchmark-dev libgtest-dev libgmock-dev libudev-dev libumockdev-dev umockdev
)
packages_check=(
    clang-format
    clang libclang-rt-14-dev
    qemu-system-x86 busybox-static umtp-responder udev kmod cpio xz-utils
)

# require_packages PACKAGE…: returns at once when all are installed; else installs them with apt
# as root or through sudo; else prints the one line to type and gives up.
require_packages() {
    local missing=() package
    for package in "$@"; do
        [ -e "/var/lib/dpkg/info/$package.list" ] || [ -e "/var/lib/dpkg/info/$package:$(dpkg_arch).list" ] \
            || missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return 0

    local apt=(apt-get -o DPkg::Lock::Timeout=300)
    if ! command -v apt-get >/dev/null; then
        echo "These Debian packages are needed, or their like: ${missing[*]}" >&2
        exit 1
    fi
    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        if ! sudo -n true 2>/dev/null && ! { [ -t 0 ] && command -v sudo >/dev/null; }; then
            echo "Some packages are missing. Please type:" >&2
            echo "  sudo apt-get install --no-install-recommends ${missing[*]}" >&2
            exit 1
        fi
        as_root=(sudo)
    fi
    echo "Installing ${missing[*]}"
    "${as_root[@]}" "${apt[@]}" -q update >/dev/null || true
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive "${apt[@]}" -q -y \
        install --no-install-recommends "${missing[@]}" >/dev/null
}

dpkg_arch() {
    [ -n "${DPKG_ARCH:-}" ] || DPKG_ARCH=$(dpkg --print-architecture 2>/dev/null || echo amd64)
    echo "$DPKG_ARCH"
}
