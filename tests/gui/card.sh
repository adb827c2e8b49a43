# The card of the simulated camera, and what must have become of its files.

# Its files in the order of their names; the rows above are those of the two folders.
readonly film=2 coast=3 first=4 fourth=5 fifth=6 percent=7 photo=8
declare -A name_of=(
    [$film]=FILM.MOV
    [$coast]='IMG 0002 Küste.JPG'
    [$first]=IMG_0001.JPG
    [$fourth]=IMG_0004.JPG
    [$fifth]=IMG_0005.JPG
    [$percent]='Zürich 100% #1.JPG'
    [$photo]='写真 0003.JPG'
)
readonly -a by_name=("$film" "$coast" "$first" "$fourth" "$fifth" "$percent" "$photo")
# Every second row is drawn on another ground. Here a file stays on its own in either order, so its
# row looks the same.
readonly -a by_size=("$fifth" "$fourth" "$photo" "$percent" "$first" "$coast" "$film")
readonly -a by_size_down=("$film" "$coast" "$first" "$percent" "$photo" "$fourth" "$fifth")
readonly file_total=${#by_name[@]} row_total=$((folder_rows + ${#by_name[@]}))
readonly film_size=60000000 megabytes_per_second=25

make_card() {
    card=$work/card
    originals=$work/originals
    local folder=$card/DCIM/100NIVOR rank row file extents
    mkdir -p "$folder"
    for rank in "${!by_size[@]}"; do
        row=${by_size[rank]}
        file="$folder/${name_of[$row]}"
        if ((row == film)); then
            head -c "$film_size" /dev/urandom >"$file"
        else
            extents=$((row % 3 ? 640 : 360))x480
            convert -size "$extents" -seed "$row" plasma: -quality 80 "jpg:$file"
            truncate -s $((150000 + rank * 12345)) "$file"
        fi
        touch -d "2026-05-1$rank 14:03:2$row" "$file"
    done
    touch -d '2026-05-10 14:00' "$folder" "$card/DCIM"
    cp -r "$folder" "$originals"
}

# --- Copies ---------------------------------------------------------------------------------------

# has_begun FILE: whether a good part of the film is there.
has_begun() { [[ -f $1 ]] && (($(stat -c %s "$1") > film_size / 10)); }

# is_copied ROW FOLDER [NAME]
is_copied() { cmp -s "$originals/${name_of[$1]}" "$2/${3-${name_of[$1]}}"; }

# require_copied FOLDER COUNT ROW…: those files, and no others than so many in all.
require_copied() {
    local folder=$1 count=$2 row there
    shift 2
    for row in "$@"; do
        is_copied "$row" "$folder" || die "not as on the card: ${name_of[$row]}"
    done
    there=$(find "$folder" -mindepth 1 | wc -l)
    ((there == count)) || die "$there files in the folder: $(ls -lA "$folder")"
}
