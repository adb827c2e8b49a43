# The window, against QEMU's own camera-like device: one camera to stop in, one to go through.

first_camera=films
needs_window=yes

make_cameras() {
    # So big that a stop still falls into it when it comes a second late.
    make_file "$run/cameras/films/FILM.MOV" $((128 * 1024 * 1024))
    make_file "$run/cameras/films/AFTER.JPG" 12345

    local pictures=$run/cameras/pictures size
    for size in 1 500 512 5108 5120 1048583; do
        make_file "$pictures/SIZE$size.JPG" "$size"
    done
    make_file "$pictures/DCIM/100NIVOR/NVR_0001.JPG" 70001
    make_file "$pictures/DCIM/100NIVOR/NVR_0002.JPG" 70002
    make_file "$pictures/DCIM/100NIVOR/NVR_0003.MOV" 16777204
    make_file "$pictures/DCIM/101NIVOR/NVR_0001.JPG" 70004
    # By name, by date and by size these two stand in different orders.
    make_file "$pictures/DCIM/101NIVOR/NVR_0010.JPG" 1000
    make_file "$pictures/DCIM/101NIVOR/NVR_0009.JPG" 2000
    make_file "$pictures/MISC/two  blanks & 'quotes'.WAV" 654
    mkdir -p "$pictures/EMPTY FOLDER"
}

check_kept() {
    local picture
    for picture in films no-camera pictures end; do
        if [[ ! -s $run/kept/window-$picture.png ]]; then
            echo "there is no picture of the window: $picture"
            return 1
        fi
    done
}
