# Disks that are small, full, picky, read-only or gone, under the copy command. Whatever happens, a
# file that is called copied is whole.

cameras=/mnt/cameras
films=$cameras/films
names=$cameras/names

. /guest/shared-steps.sh

# make_fat NAME MEGABYTES: an empty FAT file system, mounted as /tmp/NAME.
make_fat() {
    truncate -s "$2M" "/tmp/$1.image"
    mkdosfs "/tmp/$1.image" >/dev/null
    mkdir "/tmp/$1"
    mount -t vfat -o loop,utf8 "/tmp/$1.image" "/tmp/$1"
}

# whole NAME…: these copies in $target are the camera's files.
whole() {
    for name in "$@"; do
        /bin/cmp "$films/$name" "$target/$name"
    done
}

# begins NAME: the copy in $target is a true beginning of the camera's file, and not all of it.
begins() {
    size=$(stat -c %s "$target/$1")
    [ "$size" -lt "$(stat -c %s "$films/$1")" ] || refuse "$1 is whole"
    [ "$size" -eq 0 ] || /bin/cmp -n "$size" "$films/$1" "$target/$1"
}

# true_of NAME…: each of them either failed by name in the last output, or is whole; sets copied to how
# many are.
true_of() {
    copied=0
    for name in "$@"; do
        grep -qF -e "nivor: $name: " "$output" && continue
        whole "$name"
        copied=$((copied + 1))
    done
    says "Copied $copied file"
}

camera_turns_up() {
    wait_for 30 plugged films || refuse "no camera on the bus"
    for module in loop vfat nls_cp437 nls_ascii nls_utf8 sd_mod usb-storage; do
        modprobe "$module"
    done
}

a_disk_fills_up() {
    target=/tmp/small
    mkdir $target
    mount -t tmpfs -o size=10m tmpfs $target
    nivor_exits 1 copy $target BEFORE.JPG FILM1.MOV FILM2.MOV AFTER.JPG
    cat "$output"
    says "FILM1.MOV: Could not write to $target/FILM1.MOV: No space left on device"
    says "FILM2.MOV: Could not copy to $target: No space left on device"
    says "AFTER.JPG: Could not copy to $target: No space left on device"
    says "Copied 1 file "
    says "3 files could not be copied"
    log_holds "startCopyingItems (copyItemCount = 4)" \
        "ReceiveCallback (error = Could not write to $target/FILM1.MOV: No space left on device)" \
        "getObject (result = fail" \
        "startCopyingItems (not asked for, error = Could not copy to $target: No space left on device)" \
        "startCopyingItem (result = fail)"
    holds $target 2
    whole BEFORE.JPG
    begins FILM1.MOV

    # Nothing of that is left with the camera.
    rm $target/FILM1.MOV
    nivor_exits 0 copy $target FILM3.MOV
    whole FILM3.MOV
    umount $target
}

a_fat_disk_gets_names_that_it_takes() {
    swap_camera films names
    make_fat names 16
    target=/tmp/names
    nivor_exits 0 copy --verify $target
    cat "$output"
    says "every byte is the same"
    holds $target 9
    # Whichever twin comes first has the name.
    if /bin/cmp -s $names/IMG.JPG $target/IMG.JPG; then
        /bin/cmp $names/img.jpg $target/img_1.jpg
    else
        /bin/cmp $names/img.jpg $target/img.jpg
        /bin/cmp $names/IMG.JPG $target/IMG_1.JPG
    fi
    /bin/cmp "$names/a:b.JPG" $target/a_b.JPG
    /bin/cmp "$names/C:\\x" $target/C__x
    /bin/cmp "$names/what?.JPG" $target/what_.JPG
    /bin/cmp "$names/<\"|*>.JPG" $target/_____.JPG
    /bin/cmp "$names/blank " $target/blank_
    # A FAT disk drops the dot itself unless it has been replaced by then.
    [ -f $target/dot_ ] || [ -f $target/dot ] || refuse "no copy of 'dot.': $(ls $target)"
    /bin/cmp "$names/-rf" "$target/-rf"
    umount $target
}

a_fat_disk_refuses_four_gibibytes_at_once() {
    make_fat large 48
    target=/tmp/large
    nivor_exits 1 copy $target HUGE.MOV FILM3.MOV
    cat "$output"
    says "HUGE.MOV: Could not make room for $target/HUGE.MOV: File too large"
    says "Copied 1 file "
    [ "$(stat -c %s $target/HUGE.MOV)" -eq 0 ] || refuse "something of the film is there"
    whole FILM3.MOV

    # To look for room takes none.
    nivor_exits 0 copy $target FILM1.MOV FILM2.MOV AFTER.JPG
    cat "$output"
    whole FILM1.MOV FILM2.MOV AFTER.JPG
    umount $target
}

a_disk_becomes_read_only() {
    make_fat locked 48
    target=/tmp/locked
    damage_a_file
    during_copy $target 4000000 stumble_over_the_damage
    nivor_exits 1 copy $target FILM1.MOV FILM2.MOV BEFORE.JPG AFTER.JPG
    wait
    cat "$output"
    # The film under way may be written to its end or not.
    true_of FILM1.MOV FILM2.MOV BEFORE.JPG AFTER.JPG
    [ "$copied" -le 2 ] || refuse "files are there that could not be created"
    says "Could not create $target/"
    says "AFTER.JPG: Could not copy to $target: Read-only file system"
    log_holds "startCopyingItems (not asked for, error = Could not copy to $target: Read-only file system)"
    [ ! -e $target/AFTER.JPG ] || refuse "AFTER.JPG is there"
    umount $target
}
# Clusters that lead to cluster 1, which does not exist. The kernel makes a FAT disk read-only as soon
# as it comes across one, whatever files are open.
damage_a_file() {
    dd if=/dev/zero of=$target/DAMAGED bs=64k count=1 2>/dev/null
    umount $target
    # Behind the reserved sectors, four bytes each; cluster 3 is the first behind the root folder.
    reserved=$(od -A n -t u2 -j 14 -N 2 $target.image | tr -d ' ')
    for cluster in 3 4 5 6 7 8 9 10; do
        printf '\001\000\000\000'
    done | dd of=$target.image bs=4 seek=$((reserved * 512 / 4 + 3)) conv=notrunc 2>/dev/null
    mount -t vfat -o loop,utf8 $target.image $target
}
stumble_over_the_damage() {
    ! cat $target/DAMAGED >/dev/null || echo "-- there is no damage"
}

a_stick_is_pulled_out() {
    tell_host "HOST plug-stick"
    wait_for 30 [ -b /dev/sda ] || refuse "no stick turned up"
    mkdosfs /dev/sda >/dev/null
    target=/tmp/stick
    mkdir $target
    mount -t vfat -o utf8 /dev/sda $target
    nivor_exits 0 copy $target BEFORE.JPG
    whole BEFORE.JPG
    during_copy $target 6000000 tell_host "HOST unplug-stick"
    nivor_exits 1 copy $target FILM1.MOV FILM2.MOV FILM3.MOV
    wait
    cat "$output"
    # What is gone can't be compared: nothing but a film that was whole before may be called copied.
    says "FILM3.MOV: Could not"
    grep -F ": Could not" "$output" | grep -qF -e "Input/output error" -e "No such device" \
        || refuse "the reason is not named"
    says "Copied 0 files" || says "Copied 1 file "
    log_holds "startCopyingItems (copyItemCount = 3)" "startCopyingItem (result = fail)"
    umount -l $target
    target=/tmp/rescue
    mkdir $target
    nivor_exits 0 copy $target FILM1.MOV AFTER.JPG
    whole FILM1.MOV AFTER.JPG
}

step "the camera turns up" camera_turns_up
step "a disk fills up" a_disk_fills_up
step "a FAT disk gets names that it takes" a_fat_disk_gets_names_that_it_takes
swap_camera names films
step "a FAT disk refuses four gibibytes at once" a_fat_disk_refuses_four_gibibytes_at_once
step "a disk becomes read-only in the middle of a copy" a_disk_becomes_read_only
step "a stick is pulled out in the middle of a copy" a_stick_is_pulled_out
