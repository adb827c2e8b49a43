# Steps and their verdicts. Lines for the host go to descriptor 3, everything else to the console.

steps_passed=0
steps_failed=0

tell_host() { echo "$*" >&3; }

# ask_host SECONDS REQUEST…: sends a request that the host answers with a line, and sets answer to it.
ask_host() {
    ask_seconds=$1
    shift
    rm -f /mnt/kept/answer
    tell_host "HOST $*"
    wait_for "$ask_seconds" [ -f /mnt/kept/answer ] || refuse "the host did not answer: $*"
    answer=$(cat /mnt/kept/answer)
}

# step NAME COMMAND…: runs COMMAND in a shell of its own that ends at the first command that fails.
step() {
    step_name=$1
    shift
    tell_host "STEP $step_name"
    echo "== $step_name"
    step_start=$(now)
    (
        set -e
        "$@"
    )
    step_status=$?
    step_seconds=$(seconds $(($(now) - step_start)))
    if [ $step_status -eq 0 ]; then
        steps_passed=$((steps_passed + 1))
        tell_host "PASS $step_seconds $step_name"
    else
        steps_failed=$((steps_failed + 1))
        tell_host "FAIL $step_seconds $step_name"
    fi
}

finish() { tell_host "DONE $steps_passed $steps_failed"; }

# refuse WHY…: ends the step as failed.
refuse() {
    echo "-- $*"
    exit 1
}

# wait_for SECONDS COMMAND…: polls until COMMAND succeeds; fails when the time is up.
wait_for() {
    wait_tenths=$(($1 * 10))
    shift
    while ! "$@"; do
        [ "$wait_tenths" -gt 0 ] || return 1
        wait_tenths=$((wait_tenths - 1))
        sleep 0.1
    done
}

# Hundredths of a second since the machine started.
now() { sed 's/^\([0-9]*\)\.\([0-9][0-9]\).*/\1\2/;s/^0*\(.\)/\1/' /proc/uptime; }

# Hundredths as seconds, with two decimals.
seconds() { printf '%d.%02d' $(($1 / 100)) $(($1 % 100)); }

# plugged SERIAL: the kernel has a device with that serial number, and udev is done with it.
plugged() {
    grep -qsx "$1" /sys/bus/usb/devices/*/serial && udevadm settle --timeout=5
}
gone() { ! grep -qsx "$1" /sys/bus/usb/devices/*/serial; }

# swap_camera OLD NEW: pulls out one camera and plugs in the other; OLD may be "-" for none.
swap_camera() {
    if [ "$1" != - ]; then
        tell_host "HOST unplug"
        wait_for 30 gone "$1" || refuse "camera $1 is still there"
    fi
    tell_host "HOST plug $2"
    wait_for 30 plugged "$2" || refuse "camera $2 did not turn up"
}
