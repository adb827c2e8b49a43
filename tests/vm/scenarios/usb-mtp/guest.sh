# Everyday use, deleting, stopping and pulling the cable, against QEMU's usb-mtp device.

cameras=/mnt/cameras
pictures=$cameras/pictures

. /guest/shared-steps.sh

camera_turns_up() {
    wait_for 30 plugged pictures || refuse "no camera on the bus"
}

copy_everything() {
    mkdir /tmp/all
    nivor_exits 0 copy /tmp/all
    copies_match pictures /tmp/all
}

copy_one_into_taken_names() {
    mkdir /tmp/taken
    for attempt in 1 2 3; do
        nivor_exits 0 copy /tmp/taken SIZE513.JPG
    done
    for name in SIZE513.JPG SIZE513_1.JPG SIZE513_2.JPG; do
        cmp "$pictures/SIZE513.JPG" "/tmp/taken/$name"
    done
    holds /tmp/taken 3
}

copy_by_path_and_glob() {
    mkdir /tmp/some
    nivor_exits 0 copy /tmp/some DCIM/101NIVOR/NVR_0002.JPG '*.MOV'
    cmp "$pictures/DCIM/101NIVOR/NVR_0002.JPG" /tmp/some/NVR_0002.JPG
    cmp "$pictures/DCIM/100NIVOR/NVR_0003.MOV" /tmp/some/NVR_0003.MOV
    holds /tmp/some 2
}

delete_one() {
    [ -f "$pictures/SIZE511.JPG" ] || refuse "SIZE511.JPG is not there to be deleted"
    nivor_exits 0 delete --yes SIZE511.JPG
    [ ! -e "$pictures/SIZE511.JPG" ] || refuse "SIZE511.JPG is still on the camera"
    nivor_exits 0 list --json
    ! lists_path SIZE511.JPG || refuse "SIZE511.JPG is still listed"
    lists_path SIZE512.JPG || refuse "SIZE512.JPG is not listed"
    [ -f "$pictures/SIZE512.JPG" ] || refuse "its neighbour is gone as well"
}

an_empty_file_fails_by_name() {
    swap_camera pictures empty-file
    mkdir /tmp/empty
    nivor_exits 1 copy /tmp/empty
    says NOTHING.JPG
    cmp "$cameras/empty-file/FULL1.JPG" /tmp/empty/FULL1.JPG
    cmp "$cameras/empty-file/FULL2.JPG" /tmp/empty/FULL2.JPG
}

a_bare_camera() {
    swap_camera empty-file bare
    nivor_exits 0 list
    mkdir /tmp/bare
    nivor_exits 0 copy /tmp/bare
    holds /tmp/bare 0
}

a_second_program_is_kept_out() {
    swap_camera bare films
    mkdir /tmp/busy
    during_copy /tmp/busy 4000000 second_program
    nivor_exits 0 copy /tmp/busy
    wait
    [ "$(cat /tmp/second-code)" = 4 ] || refuse "it exited with $(cat /tmp/second-code), not 4"
    copies_match films /tmp/busy
}
second_program() {
    code=0
    nivor list --log-directory /tmp/second-logs || code=$?
    echo "$code" >/tmp/second-code
}

unplug_in_mid_copy() {
    mkdir /tmp/pulled
    during_copy /tmp/pulled 4000000 pull_the_cable
    nivor_exits 1 copy /tmp/pulled FILM2.MOV FILM3.MOV
    ended=$(now)
    wait
    pulled=$(cat /tmp/pulled-at)
    cat "$output"
    [ $((ended - pulled)) -lt 1500 ] || refuse "it ended $(seconds $((ended - pulled))) s after the cable"
    says "FILM2.MOV: reading from the camera failed"
    says "FILM3.MOV: the camera is gone"
    log_holds "getObject (result = fail" "startCopyingItem (result = fail)"
}
pull_the_cable() {
    now >/tmp/pulled-at
    tell_host "HOST unplug"
}

no_camera() {
    wait_for 30 gone films || refuse "the camera is still there"
    rm -rf /tmp/pulled
    nivor_exits 3 list
}

works_after_replug() {
    swap_camera - films
    camera_works "$cameras/films"
}

step "the camera turns up" camera_turns_up
step "devices names the camera" devices_names 46f4
step "list names every file" list_names_every_file $pictures
step "list --json" list_as_json
step "copy everything, every byte compared" copy_everything
rm -rf /tmp/all
step "copies get names that are free" copy_one_into_taken_names
step "copy by path and by pattern" copy_by_path_and_glob
step "delete one file" delete_one
step "an empty file fails and is named" an_empty_file_fails_by_name
step "a camera with nothing on it" a_bare_camera
step "a second program is kept out while one copies" a_second_program_is_kept_out
rm -rf /tmp/busy
step "SIGINT in the second of five files" stop_in_the_second_of_five $cameras/films \
    "the camera did not confirm the stop; waiting for the end of this file" \
    "FILM2.MOV: the camera did not answer in time" "stopped; the camera did not confirm it."
rm -rf /tmp/stopped
step "the camera works after the stop" camera_works $cameras/films
step "the cable is pulled in the middle of a copy" unplug_in_mid_copy
step "no camera" no_camera
step "the camera works when plugged in again" works_after_replug
