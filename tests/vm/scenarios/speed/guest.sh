# How long listing and copying take; the copies are compared afterwards, outside the measured time.

cameras=/mnt/cameras

camera_turns_up() {
    wait_for 30 plugged many || refuse "no camera on the bus"
}

list_many() {
    timed list-500-files nivor_exits 0 list
    lists_all $cameras/many
}

copy_many() {
    mkdir /tmp/many
    timed copy-500-files-of-60-kB nivor_exits 0 copy /tmp/many
    tell_host "TIMING copy-500-files-of-60-kB-rate $(rate 30000000) MB/s"
    copies_match many /tmp/many
}

copy_one() {
    rm -rf /tmp/many
    swap_camera many one
    mkdir /tmp/one
    timed copy-256-MiB-file nivor_exits 0 copy /tmp/one
    tell_host "TIMING copy-256-MiB-file-rate $(rate 268435456) MB/s"
    copies_match one /tmp/one
}

# rate BYTES: MB/s over the time last measured.
rate() { seconds $(($1 / elapsed / 100)); }

step "the camera turns up" camera_turns_up
step "list 500 files" list_many
step "copy 500 files of 60 kB" copy_many
step "copy one file of 256 MiB" copy_one
