# Everyday use, deleting, stopping and pulling the cable, against QEMU's usb-mtp device.

cameras=/mnt/cameras
pictures=$cameras/pictures

camera_turns_up() {
    wait_for 30 plugged pictures || refuse "no camera on the bus"
}

devices_names_the_camera() {
    nivor_exits 0 devices
    says 46f4
}

list_names_every_file() {
    nivor_exits 0 list
    lists_all "$pictures"
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
    swap_camera bare big-film
    mkdir /tmp/busy
    during_copy /tmp/busy 4000000 second_program
    nivor_exits 5 copy /tmp/busy FILM.MOV
    wait
    [ "$(cat /tmp/second-code)" = 4 ] || refuse "it exited with $(cat /tmp/second-code), not 4"
}
second_program() {
    code=0
    nivor list --log-directory /tmp/second-logs || code=$?
    echo "$code" >/tmp/second-code
    interrupt_nivor
}

stop_in_mid_copy() {
    rm -rf /tmp/busy
    mkdir /tmp/stopped
    during_copy /tmp/stopped 4000000 interrupt_nivor
    start=$(now)
    nivor_exits 5 copy /tmp/stopped
    wait
    cat "$output"
    log_holds "cancelTransaction (result = "
    [ $(($(now) - start)) -lt 2000 ] || refuse "it took $(seconds $(($(now) - start))) s"
}

works_after_the_stop() {
    rm -rf /tmp/stopped
    nivor_exits 0 list
    lists_all "$cameras/big-film"
    mkdir /tmp/after
    nivor_exits 0 copy /tmp/after AFTER.JPG
    cmp "$cameras/big-film/AFTER.JPG" /tmp/after/AFTER.JPG
}

unplug_in_mid_copy() {
    mkdir /tmp/pulled
    during_copy /tmp/pulled 4000000 pull_the_cable
    nivor_exits 1 copy /tmp/pulled
    ended=$(now)
    wait
    pulled=$(cat /tmp/pulled-at)
    cat "$output"
    [ $((ended - pulled)) -lt 1500 ] || refuse "it ended $(seconds $((ended - pulled))) s after the cable"
    says FILM.MOV
    log_holds "getObject (result = fail"
}
pull_the_cable() {
    now >/tmp/pulled-at
    tell_host "HOST unplug"
}

no_camera() {
    wait_for 30 gone big-film || refuse "the camera is still there"
    rm -rf /tmp/pulled
    nivor_exits 3 list
}

works_after_replug() {
    swap_camera - big-film
    nivor_exits 0 list
    lists_all "$cameras/big-film"
    mkdir /tmp/again
    nivor_exits 0 copy /tmp/again
    copies_match big-film /tmp/again
}

step "the camera turns up" camera_turns_up
step "devices names the camera" devices_names_the_camera
step "list names every file" list_names_every_file
step "list --json" list_as_json
step "copy everything, every byte compared" copy_everything
rm -rf /tmp/all
step "copies get names that are free" copy_one_into_taken_names
step "copy by path and by pattern" copy_by_path_and_glob
step "delete one file" delete_one
step "an empty file fails and is named" an_empty_file_fails_by_name
step "a camera with nothing on it" a_bare_camera
step "a second program is kept out while one copies" a_second_program_is_kept_out
step "SIGINT in the middle of a copy" stop_in_mid_copy
step "the camera works after the stop" works_after_the_stop
step "the cable is pulled in the middle of a copy" unplug_in_mid_copy
step "no camera" no_camera
step "the camera works when plugged in again" works_after_replug
