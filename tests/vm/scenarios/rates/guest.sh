# The null client and the program, in turn, on every camera that there is; what was written is
# compared each time, outside the measured time.

. /guest/gadget.sh

cameras=/mnt/cameras
pairs=5

# figures WORKLOAD COMMAND…: hands on what COMMAND has measured.
figures() {
    figures_workload=$1
    shift
    "$@" >/tmp/figures || refuse "$* failed"
    [ -s /tmp/figures ] || refuse "$* measured nothing"
    cat /tmp/figures
    sed "s/^/FIGURE $figures_workload|/" /tmp/figures >&3
}

# listing_in_turn WORKLOAD: the first pair only brings everything into memory.
listing_in_turn() {
    nivor-null-client list
    nivor-client-bench list "$log_directory"
    for pair in $(seq $pairs); do
        figures "$1" nivor-null-client list
        figures "$1" nivor-client-bench list "$log_directory"
    done
}

# reading_in_turn WORKLOAD ORIGINAL WAY…: how the null client may read, see there.
reading_in_turn() {
    reading_workload=$1 original=$2
    shift 2
    mkdir -p /tmp/copy
    for pair in $(seq $pairs); do
        figures "$reading_workload" nivor-null-client read "$@"
        figures "$reading_workload" nivor-null-client read --into /tmp/copy/null "$@"
        /bin/cmp "$original" /tmp/copy/null
        rm /tmp/copy/null
        figures "$reading_workload" nivor-client-bench copy "$log_directory" /tmp/copy
        /bin/cmp "$original" "/tmp/copy/${original##*/}"
        rm "/tmp/copy/${original##*/}"
    done
}

# has_speed MEGABITS: the device with a still-image interface runs at that speed.
has_speed() {
    for interface in /sys/bus/usb/devices/*:*; do
        [ "$(cat "$interface/bInterfaceClass")" = 06 ] || continue
        [ "$(cat "${interface%:*}/speed")" = "$1" ] && return
    done
    return 1
}

list_from_usb_mtp() {
    wait_for 30 plugged many || refuse "no camera on the bus"
    listing_in_turn "usb-mtp, 302 objects"
    tell_host "HOST unplug"
    # The host takes its own time, of which the guest's clock knows nothing.
    wait_for 300 gone many || refuse "the camera is still there"
}

list_from_umtp_responder() {
    cp -r $cameras/many $card
    load_gadget_modules
    describe_gadget umtp-responder
    start_camera umtp-responder
    listing_in_turn "umtp-responder, 302 objects"
}

read_from_umtp_responder() {
    cp $cameras/film/FILM.MOV $card/
    has_speed 480 || refuse "not at high speed"
    reading_in_turn "umtp-responder at high speed, 64 MiB" $card/FILM.MOV 1x512 8x64 16x128
    stop_camera umtp-responder "$(pidof umtprd)"
}

# A device that sends as fast as the looped-back controller takes.
start_fast_camera() {
    load_gadget_modules "$1"
    describe_gadget "$1"
    mkdir -p /dev/ffs-mtp
    mount -t functionfs mtp /dev/ffs-mtp
    nivor-gadget-camera /dev/ffs-mtp $cameras_film 3>&- &
    wait_for 30 [ -e /dev/ffs-mtp/ep2 ] || refuse "the gadget camera did not start"
    basename /sys/class/udc/* >"$gadget/UDC"
    wait_for 30 plugged "$1" || refuse "the gadget camera did not turn up on the bus"
}
cameras_film=/tmp/film

# read_from_fast_camera SPEED MEGABITS
read_from_fast_camera() {
    start_fast_camera "$1"
    has_speed "$2" || refuse "not at $2 Mb/s: $(cat /sys/bus/usb/devices/*/speed)"
    reading_in_turn "fast device at $1 speed, 64 MiB" $cameras_film/FILM.MOV 1x512 8x64 16x128 8x512
    stop_camera "$1" "$(pidof nivor-gadget-camera)"
}

step "usb-mtp: listing" list_from_usb_mtp
step "umtp-responder: listing" list_from_umtp_responder
step "umtp-responder: reading" read_from_umtp_responder
rm -rf $card
cp -r $cameras/film $cameras_film
step "fast device: reading at high speed" read_from_fast_camera high 480
step "fast device: reading at super speed" read_from_fast_camera super 5000
cp /tmp/umtprd.log /mnt/kept/
