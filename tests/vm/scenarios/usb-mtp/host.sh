# QEMU's own camera-like device, with one folder tree per camera to plug in.

first_camera=pictures

make_cameras() {
    local pictures=$run/cameras/pictures size

    # Around one packet, one read of 5120 bytes and the container header of 12 bytes: the data
    # containers of 500, 5108, 10228, 16777204 and 20971508 bytes end with a full packet.
    for size in 1 499 500 501 511 512 513 5107 5108 5109 5120 5121 10228 10229 16384 1048583 \
        16777204 16777216 20971508 20971520; do
        make_file "$pictures/SIZE$size.JPG" "$size"
    done
    make_file "$pictures/DCIM/100NIVOR/NVR_0001.JPG" 70001
    make_file "$pictures/DCIM/100NIVOR/NVR_0002.JPG" 70002
    make_file "$pictures/DCIM/100NIVOR/NVR_0003.MOV" 300003
    make_file "$pictures/DCIM/101NIVOR/NVR_0001.JPG" 70004
    make_file "$pictures/DCIM/101NIVOR/NVR_0002.JPG" 70002
    make_file "$pictures/DCIM/NVR_0001.JPG" 70006
    make_file "$pictures/DCIM/101NIVOR/NOEXTENSION" 777
    make_file "$pictures/MISC/two  blanks & 'quotes'.JPG" 654
    # QEMU runs in the C locale and gives names beyond ASCII as "Oops": the other camera has those.
    mkdir -p "$pictures/EMPTY FOLDER"
    write_manifest "$pictures" "$run/pictures.manifest"

    make_file "$run/cameras/empty-file/FULL1.JPG" 1000
    make_file "$run/cameras/empty-file/NOTHING.JPG" 0
    make_file "$run/cameras/empty-file/FULL2.JPG" 2000

    make_films "$run/cameras/films"

    mkdir -p "$run/cameras/bare"
}

check_kept() {
    cmake -DLISTING="$run/kept/list.json" -DMANIFEST="$run/pictures.manifest" \
        -P "$vm_source/host/CheckListing.cmake"
}
