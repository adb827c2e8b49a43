# Debian's umtp-responder, running inside the guest as a USB gadget on a looped-back controller.

first_camera=

make_cameras() {
    local card=$run/cameras/card size
    for size in 1 499 500 501 511 512 513 5107 5108 5109 5120 5121 10228 1048583; do
        make_file "$card/SIZE$size.JPG" "$size"
    done
    make_file "$card/DCIM/100NIVOR/NVR_0001.JPG" 70001
    make_file "$card/DCIM/100NIVOR/NVR_0002.MOV" 300003
    make_file "$card/DCIM/101NIVOR/NVR_0001.JPG" 70004
    make_file "$card/MISC/Füße am Meer.JPG" 4321
    make_file "$card/MISC/写真の日.JPG" 5432
    write_manifest "$card" "$run/card.manifest"

    make_films "$run/cameras/films"
}

check_kept() {
    cmake -DLISTING="$run/kept/list.json" -DMANIFEST="$run/card.manifest" \
        -P "$vm_source/host/CheckListing.cmake"
}
