# Everyday use, deleting and stopping, against umtp-responder.

. /guest/gadget.sh
. /guest/shared-steps.sh

cameras=/mnt/cameras

camera_turns_up() {
    cp -r $cameras/card $card
    load_gadget_modules
    describe_gadget umtp-responder
    start_camera umtp-responder
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

films_turn_up() {
    # From the shared folder: the guest's memory is for the copies.
    mkdir $card/FILMS
    mount --bind $cameras/films $card/FILMS
    wait_for 30 last_film_is_listed || refuse "the films are not listed"
}
last_film_is_listed() {
    nivor_exits 0 list && says FILM5.MOV
}

step "the camera turns up" camera_turns_up
step "devices names the camera" devices_names 1d6b
step "list names every file" list_names_every_file $cameras/card
step "list --json" list_as_json
step "copy everything, every byte compared" copy_everything
rm -rf /tmp/all
step "delete one file" delete_one
step "films turn up" films_turn_up
step "SIGINT in the second of five files" stop_in_the_second_of_five $card/FILMS \
    "FILM2.MOV: stopped" "stopped; the camera confirmed it."
rm -rf /tmp/stopped
step "the camera works after the stop" camera_works $card/FILMS
cp /tmp/umtprd.log /mnt/kept/
