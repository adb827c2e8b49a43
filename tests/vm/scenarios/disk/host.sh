# QEMU's own camera-like device, and disks of many kinds to copy to.

first_camera=films

# For the disk that is pulled out: a stick.
stick_size=$((64 * 1024 * 1024))

make_cameras() {
    local films=$run/cameras/films names=$run/cameras/names name
    make_file "$films/BEFORE.JPG" 1000000
    make_file "$films/FILM1.MOV" $((16 * 1024 * 1024))
    make_file "$films/FILM2.MOV" $((16 * 1024 * 1024 + 7))
    make_file "$films/FILM3.MOV" $((8 * 1024 * 1024))
    make_file "$films/AFTER.JPG" 1000001
    # One byte more than FAT takes; nobody reads it.
    truncate -s $((4 * 1024 * 1024 * 1024)) "$films/HUGE.MOV"

    # For FAT, the two first are one name, and most others are none. QEMU keeps back names with a dot
    # in front.
    for name in IMG.JPG img.jpg 'a:b.JPG' 'C:\x' 'what?.JPG' '<"|*>.JPG' 'blank ' 'dot.' -rf; do
        make_file "$names/$name" $((1000 + file_number))
    done
}
