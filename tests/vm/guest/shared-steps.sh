# Steps that scenarios have in common.
#
# The real cmp is named by its path: the shell prefers its own, which is slow with big files.

# devices_names VENDOR
devices_names() {
    nivor_exits 0 devices
    says "$1"
}

# list_names_every_file ORIGINALS
list_names_every_file() {
    nivor_exits 0 list
    lists_all "$1"
}

# The host holds the listing against the camera's files.
list_as_json() {
    nivor list --json --log-directory "$log_directory" >/mnt/kept/list.json 2>"$output" || {
        cat "$output"
        return 1
    }
}

# stop_in_the_second_of_five FILMS TEXT…: one is whole, one is cut off, none follows; the output
# holds each TEXT, for cameras differ in what they make of a stop.
stop_in_the_second_of_five() {
    films=$1
    shift
    mkdir /tmp/stopped
    first=$(stat -c %s "$films/FILM1.MOV")
    second=$(stat -c %s "$films/FILM2.MOV")
    during_copy /tmp/stopped $((first + 4000000)) interrupt_nivor
    start=$(now)
    nivor_exits 5 copy /tmp/stopped FILM1.MOV FILM2.MOV FILM3.MOV FILM4.MOV FILM5.MOV
    took=$(($(now) - start))
    wait
    cat "$output"
    for text in "$@"; do
        says "$text"
    done
    says "Partly written: /tmp/stopped/FILM2.MOV. Not begun: 3 files"
    log_holds "startCopyingItems (copyItemCount = 5)" "cancelTransaction (result = success)" \
        "getObject (result = fail" "startCopyingItem (result = fail)"
    holds /tmp/stopped 2
    arrived=$(stat -c %s /tmp/stopped/FILM2.MOV)
    echo "-- $arrived of $second bytes of the second file, after $(seconds $took) s"
    [ "$arrived" -gt 0 ] || refuse "nothing of the second file is there"
    [ "$arrived" -lt "$second" ] || refuse "the whole second file is there"
    /bin/cmp "$films/FILM1.MOV" /tmp/stopped/FILM1.MOV
    /bin/cmp -n "$arrived" "$films/FILM2.MOV" /tmp/stopped/FILM2.MOV
    [ $took -lt 2000 ] || refuse "it took $(seconds $took) s"
}

# camera_works FILMS: listing and copying do what they should, whatever happened before.
camera_works() {
    nivor_exits 0 list
    lists_all "$1"
    mkdir /tmp/after
    nivor_exits 0 copy /tmp/after AFTER.JPG FILM3.MOV
    for name in AFTER.JPG FILM3.MOV; do
        /bin/cmp "$1/$name" "/tmp/after/$name"
    done
    holds /tmp/after 2
    rm -rf /tmp/after
}
