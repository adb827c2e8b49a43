# Many small files and one big one, on QEMU's own camera-like device.

first_camera=many

make_cameras() {
    local number
    for number in {1..500}; do
        make_file "$run/cameras/many/NVR_$(printf %04d "$number").JPG" 60000
    done
    make_file "$run/cameras/one/FILM.MOV" $((256 * 1024 * 1024))
}
