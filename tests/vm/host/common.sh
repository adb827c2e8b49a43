# Messages, checks and cache keys for the other parts of vm-test.

note() { printf 'vm: %s\n' "$*"; }

die() {
    printf 'vm: FAILED: %s\n' "$*" >&2
    exit 1
}

# Every tool that is not in a bare Debian, with the package that brings it.
require_tools() {
    local missing=() entry
    for entry in qemu-system-x86_64=qemu-system-x86 busybox=busybox-static cpio=cpio xz=xz-utils \
        udevadm=udev umtprd=umtp-responder cmake=cmake flock=util-linux cmp=diffutils; do
        command -v "${entry%%=*}" >/dev/null || missing+=("${entry#*=}")
    done
    ((${#missing[@]} == 0)) || die "not installed: apt-get install ${missing[*]}"
    if ldd "$(command -v busybox)" >/dev/null 2>&1; then
        die "this busybox needs shared libraries: apt-get install busybox-static"
    fi
}

require_program() {
    [[ -x $1 && ! -d $1 ]] \
        || die "no program at $1 (build it: cmake --preset release && cmake --build --preset release)"
}

# A short name for what the given files and words hold.
content_key() {
    local item
    for item in "$@"; do
        if [[ -f $item ]]; then
            sha256sum <"$item"
        else
            printf '%s\n' "$item"
        fi
    done | sha256sum | cut -c1-16
}
