# Everyday use, deleting and stopping, against umtp-responder.

. /guest/gadget.sh

cameras=/mnt/cameras

camera_turns_up() {
    cp -r $cameras/card $card
    load_gadget_modules
    describe_gadget umtp-responder
    start_camera umtp-responder
}

devices_names_the_camera() {
    nivor_exits 0 devices
    says 1d6b
}

list_names_every_file() {
    nivor_exits 0 list
    lists_all $cameras/card
}

list_as_json() {
    nivor list --json --log-directory "$log_directory" >/mnt/kept/list.json 2>"$output" || {
        cat "$output"
        return 1
    }
}

copy_everything() {
    mkdir /tmp/all
    nivor_exits 0 copy /tmp/all
    copies_match card /tmp/all
}

delete_one() {
    nivor_exits 0 delete --yes DCIM/100NIVOR/NVR_0001.JPG
    [ ! -e $card/DCIM/100NIVOR/NVR_0001.JPG ] || refuse "the file is still on the camera"
    [ -e $card/DCIM/101NIVOR/NVR_0001.JPG ] || refuse "its namesake is gone as well"
    nivor_exits 0 list --json
    ! lists_path DCIM/100NIVOR/NVR_0001.JPG || refuse "the file is still listed"
    lists_path DCIM/101NIVOR/NVR_0001.JPG || refuse "its namesake is not listed"
}

# The responder may be left in a state in which it answers no more; then the program must say so.
stop_in_mid_copy() {
    /bin/cp $cameras/film/FILM.MOV $card/FILM.MOV
    wait_for 30 film_is_listed || refuse "FILM.MOV is not listed"
    mkdir /tmp/stopped
    during_copy /tmp/stopped 2000000 interrupt_nivor
    nivor_exits 5 copy /tmp/stopped FILM.MOV
    wait
    cat "$output"
    log_holds "cancelTransaction (result = "
    [ "$(copied_bytes /tmp/stopped)" -lt 209715200 ] || refuse "the whole file arrived"
}
film_is_listed() {
    nivor_exits 0 list && says FILM.MOV
}

works_after_the_stop() {
    nivor_exits 0 list
    lists_all $card
    mkdir /tmp/after
    nivor_exits 0 copy /tmp/after SIZE1048583.JPG
    cmp $card/SIZE1048583.JPG /tmp/after/SIZE1048583.JPG
}

step "the camera turns up" camera_turns_up
step "devices names the camera" devices_names_the_camera
step "list names every file" list_names_every_file
step "list --json" list_as_json
step "copy everything, every byte compared" copy_everything
rm -rf /tmp/all
step "delete one file" delete_one
step "SIGINT in the middle of a copy" stop_in_mid_copy
step "the camera works after the stop" works_after_the_stop
cp /tmp/umtprd.log /mnt/kept/
