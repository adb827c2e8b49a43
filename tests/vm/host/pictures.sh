# The cameras' contents. Always the same bytes, so that a failure can be repeated.

# make_file FILE SIZE: every 16-byte line of it is found nowhere else in any of the files, so that
# bytes lost, doubled or swapped show; the digits are mapped to bytes that text tools trip over.
file_number=0
make_file() {
    local file=$1 size=$2
    file_number=$((file_number + 1))
    mkdir -p "${file%/*}"
    # seq ends by a broken pipe.
    { seq "$((100000000000000 + file_number * 1000000000000))" 900000000000000 2>/dev/null || true; } \
        | LC_ALL=C tr '0-9' '\000\377\001\376\200\177\015\032\100\033' | head -c "$size" >"$file"
    touch -d "2024-02-29 12:34:$((file_number % 60))" "$file"
}

# make_films FOLDER: five files for a stop in the second one, which is so big that a stop still falls
# into it when it comes a second late; and a small file.
make_films() {
    local number size
    for number in 1 2 3 4 5; do
        size=16
        ((number != 2)) || size=128
        make_file "$1/FILM$number.MOV" $((size * 1024 * 1024))
    done
    make_file "$1/AFTER.JPG" 12345
}

# Writes "SIZE PATH" for every file of the camera folder $1 to $2, paths relative, sorted.
write_manifest() {
    (cd "$1" && find . -type f -printf '%s %P\n' | LC_ALL=C sort -k 2) >"$2"
}
