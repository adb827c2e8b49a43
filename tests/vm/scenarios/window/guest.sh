# The window: listing, stopping, pulling the cable, another camera, deleting and copying, against
# QEMU's usb-mtp device.
#
# The script runs on while the steps look at what has come of it. It waits twice for what a step
# does with the cable.

cameras=/mnt/cameras
rows=$(find $cameras/pictures -mindepth 1 | wc -l)

. /guest/window.sh

camera_turns_up() {
    wait_for 30 plugged films || refuse "no camera on the bus"
}

window_lists() {
    mkdir /tmp/stopped /tmp/after /tmp/all
    start_window <<END
wait-for-list 2
expect-rows 2
picture /mnt/kept/window-films.png
select FILM.MOV
stop-after 4000000
copy /tmp/stopped
select AFTER.JPG
copy /tmp/after
wait-for-no-camera
picture /mnt/kept/window-no-camera.png
wait-for-list $rows
expect-rows $rows
sort size
sort modified
sort name
select SIZE512.JPG
delete
expect-rows $((rows - 1))
select-all
picture /mnt/kept/window-pictures.png
copy /tmp/all
picture /mnt/kept/window-end.png
close
END
    window_does expect-rows 2
}

stop_button_ends_a_copy() {
    window_does copy /tmp/stopped
    holds /tmp/stopped 1
    arrived=$(stat -c %s /tmp/stopped/FILM.MOV)
    whole=$(stat -c %s $cameras/films/FILM.MOV)
    echo "-- $arrived of $whole bytes arrived"
    [ "$arrived" -ge 4000000 ] || refuse "it was stopped too early"
    [ "$arrived" -lt "$whole" ] || refuse "the whole film is there"
    /bin/cmp -n "$arrived" $cameras/films/FILM.MOV /tmp/stopped/FILM.MOV
    rm -rf /tmp/stopped
}

copies_after_the_stop() {
    window_does copy /tmp/after
    holds /tmp/after 1
    /bin/cmp $cameras/films/AFTER.JPG /tmp/after/AFTER.JPG
}

list_empties() {
    tell_host "HOST unplug"
    wait_for 30 gone films || refuse "the camera is still there"
    window_does wait-for-no-camera
}

window_lists_the_next() {
    swap_camera - pictures
    window_does expect-rows "$rows"
    window_does sort size
    window_does sort modified
    window_does sort name
}

window_deletes() {
    window_does delete
    window_does expect-rows $((rows - 1))
    [ ! -e $cameras/pictures/SIZE512.JPG ] || refuse "the file is still on the camera"
    [ "$(find $cameras/pictures -mindepth 1 | wc -l)" -eq $((rows - 1)) ] \
        || refuse "more is gone: $(find $cameras/pictures)"
}

window_copies_everything() {
    window_does copy /tmp/all
    copies_match pictures /tmp/all
}

window_closes() {
    window_does close
    window_ends 0
    log_holds "Application start" \
        "startCopyingItems (copyItemCount = 1)" "cancelTransaction (result = success)" \
        "startCopyingItem (result = fail)" \
        "startDeletingItems (deleteItemCount = 1)" "startDeletingItem (result = success)" \
        "startCopyingItems (copyItemCount = $((rows - 1)))" "startCopyingItem (result = success)" \
        "Application end"
}

step "the camera turns up" camera_turns_up
step "the window lists every file" window_lists
step "its stop button ends a copy" stop_button_ends_a_copy
step "it copies after the stop" copies_after_the_stop
step "its list empties when the cable is pulled" list_empties
step "it lists and sorts another camera" window_lists_the_next
step "it deletes a file" window_deletes
step "it copies everything, every byte compared" window_copies_everything
step "it closes" window_closes
