# The guest as its own camera: umtp-responder on FunctionFS, on the dummy host and device controller.

gadget=/sys/kernel/config/usb_gadget/camera
card=/tmp/card

# load_gadget_modules [SPEED]: "high", or "super".
load_gadget_modules() {
    is_super=0
    [ "${1:-high}" = high ] || is_super=1
    modprobe dummy_hcd is_high_speed=1 is_super_speed=$is_super
    modprobe libcomposite
    modprobe usb_f_fs
    [ -d /sys/kernel/config/usb_gadget ] || mount -t configfs configfs /sys/kernel/config
}

# describe_gadget SERIAL: a still-image device of high speed with one function.
describe_gadget() {
    mkdir -p "$gadget/strings/0x409" "$gadget/configs/c.1/strings/0x409" "$gadget/functions/ffs.mtp"
    echo 0x1d6b >"$gadget/idVendor"
    echo 0x0100 >"$gadget/idProduct"
    echo "$1" >"$gadget/strings/0x409/serialnumber"
    echo "Test" >"$gadget/strings/0x409/manufacturer"
    echo "Camera" >"$gadget/strings/0x409/product"
    echo "PTP" >"$gadget/configs/c.1/strings/0x409/configuration"
    ln -s "$gadget/functions/ffs.mtp" "$gadget/configs/c.1/ffs.mtp"
}

configure_responder() {
    cat >/etc/umtprd/umtprd.conf <<END
loop_on_disconnect 1
storage "$card" "card" "rw"
manufacturer "Test"
product "Camera"
serial "$1"
firmware_version "1"
interface "MTP"
usb_vendor_id 0x1d6b
usb_product_id 0x0100
usb_class 0x6
usb_subclass 0x1
usb_protocol 0x1
usb_dev_version 0x3008
usb_functionfs_mode 0x1
usb_dev_path "/dev/ffs-mtp/ep0"
usb_epin_path "/dev/ffs-mtp/ep1"
usb_epout_path "/dev/ffs-mtp/ep2"
usb_epint_path "/dev/ffs-mtp/ep3"
usb_max_packet_size 0x200
END
}

# start_camera SERIAL: brings the responder up with what $card holds, and plugs it in.
start_camera() {
    configure_responder "$1"
    mkdir -p /dev/ffs-mtp
    mount -t functionfs mtp /dev/ffs-mtp
    umtprd >/tmp/umtprd.log 2>&1 3>&- &
    wait_for 30 [ -e /dev/ffs-mtp/ep2 ] || refuse "the responder did not start: $(cat /tmp/umtprd.log)"
    basename /sys/class/udc/* >"$gadget/UDC"
    wait_for 30 plugged "$1" || refuse "the responder did not turn up on the bus"
}

# stop_camera SERIAL PROCESS: pulls the device out, ends what answers for it, and forgets both.
stop_camera() {
    echo >"$gadget/UDC"
    wait_for 30 gone "$1" || refuse "the device is still on the bus"
    kill "$2"
    wait_for 10 [ ! -e "/proc/$2" ] || refuse "process $2 does not end"
    umount /dev/ffs-mtp
    rm "$gadget/configs/c.1/ffs.mtp"
    rmdir "$gadget/configs/c.1/strings/0x409" "$gadget/configs/c.1" "$gadget/functions/ffs.mtp" \
        "$gadget/strings/0x409" "$gadget"
    rmmod dummy_hcd
}
