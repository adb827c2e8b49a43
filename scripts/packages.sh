# Debian 12 packages by purpose, and the one function that installs what is missing.
# Sourced by ./run and ./check.

packages_build=(
    g++ cmake ninja-build pkg-config
    qt6-base-dev qt6-tools-dev qt6-tools-dev-tools qt6-l10n-tools libqt6widgets6
    fonts-dejavu-core qt6-translations-l10n libqt6svg6 libxcb1-dev libusb-1.0-0-dev libfmt-dev libcli11-dev nlohmann-json3-dev
    libgtest-dev libgmock-dev libudev-dev libumockdev-dev umockdev
)
packages_check=(
    clang-format clang-tidy cppcheck valgrind libc6-dbg
    clang libclang-rt-14-dev
    xvfb xauth xdotool openbox thunar pcmanfm dbus-daemon x11-utils wmctrl imagemagick
    qemu-system-x86 busybox-static umtp-responder udev kmod cpio xz-utils
)

# require_packages PACKAGE…: returns at once when all are installed; else installs them with apt
# as root or through sudo; else prints the one line to type and gives up.
require_packages() {
    local installed missing=() package
    # Removed packages are listed as well, with another status.
    installed=$(dpkg-query -W -f='${Package} ${db:Status-Status}\n' "$@" 2>/dev/null || true)
    for package in "$@"; do
        grep -Fxq "$package installed" <<<"$installed" || missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return 0

    if ! command -v apt-get >/dev/null; then
        echo "These Debian packages are needed, or their like: ${missing[*]}" >&2
        exit 1
    fi
    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        if ! sudo -n true 2>/dev/null && ! { [ -t 0 ] && command -v sudo >/dev/null; }; then
            ask_for_packages "Some packages are missing." "${missing[@]}"
        fi
        as_root=(sudo)
    fi
    echo "Installing ${missing[*]}" >&2
    install_packages "${missing[@]}" || ask_for_packages "They could not be installed." "${missing[@]}"
}

# Uses the caller's as_root.
install_packages() {
    local apt=(apt-get -o DPkg::Lock::Timeout=300)
    # A sudo that refuses would only ask once more.
    [ ${#as_root[@]} -eq 0 ] || "${as_root[@]}" true || return 1
    "${as_root[@]}" "${apt[@]}" -q update >/dev/null || true
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive "${apt[@]}" -q -y \
        install --no-install-recommends "$@" >/dev/null
}

# ask_for_packages REASON PACKAGE…: prints the line to type, and gives up.
ask_for_packages() {
    local reason=$1
    shift
    local sudo='sudo '
    [ "$(id -u)" -ne 0 ] || sudo=
    echo "$reason Please type:" >&2
    echo "  ${sudo}apt-get install --no-install-recommends $*" >&2
    exit 1
}
