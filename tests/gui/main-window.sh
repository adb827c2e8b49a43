# The program's window as a user sees it who is a script: where its parts are and what they show.
#
# Places are counted from the upper left corner of the window's inside, in pixels, with the smallest
# thumbnails and 900 x 600 pixels in all.

readonly list_top=76 row_height=17 large_row_height=50 folder_rows=2
readonly toolbar_y=38 header_y=66
# Beside the names, where nothing is drawn but the ground.
readonly ground_x=560
readonly plain_title='^NIVOR File Transfer$' camera_title='^Simulated Camera — NIVOR File Transfer$'
log_mark=0

# start_main_window PROGRAM OPTION…
start_main_window() { start_program program "$@" --log-directory "$work/log"; }

settings_file() { echo "$XDG_CONFIG_HOME/KAVRO/NIVOR File Transfer.conf"; }

# --- Parts of the window --------------------------------------------------------------------------

press() {
    case $1 in
    select-all) click 48 "$toolbar_y" ;;
    copy) click 165 "$toolbar_y" ;;
    esac
}

# click_header COLUMN [OFFSET]: the offset tells two clicks in a row from a double click.
click_header() {
    case $1 in
    name) click $((300 + ${2-0})) "$header_y" ;;
    size) click $((830 + ${2-0})) "$header_y" ;;
    esac
}

# To its right end.
drag_slider() {
    local from=$((window_x + 725)) to=$((window_x + 880)) y=$((window_y + toolbar_y))
    point_at "$from" "$y"
    xdotool mousedown 1
    glide "$from" "$y" "$to" "$y"
    xdotool mouseup 1
}

row_y() { echo $((list_top + $1 * row_height + row_height / 2)); }

# click_row ROW [shift|menu]
click_row() {
    case ${2-} in
    shift)
        xdotool keydown shift
        click 200 "$(row_y "$1")"
        xdotool keyup shift
        ;;
    menu) click 200 "$(row_y "$1")" 3 ;;
    *) click 200 "$(row_y "$1")" ;;
    esac
}

# answer_folder FOLDER [STEP]: to the folder chooser that is about to open.
answer_folder() {
    wait_until 20 "the folder chooser" is_active '^Choose a Folder to Copy To$'
    [[ -z ${2-} ]] || done_with "$2"
    xdotool key ctrl+a
    xdotool type --delay 2 "$1"
    xdotool key Return
}

# choose_simulation NUMBER: that item of the menu for a camera that isn't real, from 0 on.
choose_simulation() {
    local i
    remember_part 125 22 150 40
    xdotool key alt+s
    wait_until 10 "the menu" has_changed
    for ((i = 0; i < $1; ++i)); do xdotool key Down; done
    xdotool key Return
}

# --- What it shows --------------------------------------------------------------------------------

# Whether there is no other window, and the keyboard belongs to this one.
is_alone() { has_windows 1 && is_active "$camera_title"; }

# remember_part X Y WIDTH HEIGHT
remember_part() {
    part=("$@")
    part_picture=$(see "$@" -format '%#' info:)
}

has_changed() { [[ $(see "${part[@]}" -format '%#' info:) != "$part_picture" ]]; }

# has_files COUNT HEIGHT: whether the list has so many files, in rows of that height.
has_files() {
    local top=$((list_top + folder_rows * row_height)) colours
    # One row more, which must be empty.
    mapfile -t colours < <(see 10 "$top" 330 $((($1 + 1) * $2)) \
        -crop "330x$2" +repage -format '%k\n' info:)
    ((${colours[$1]-0} == 1)) || return 1
    unset "colours[$1]"
    ! printf '%s\n' "${colours[@]}" | grep -qx 1
}

# Folders included, which are taken for granted.
has_rows() { has_files $(($1 - folder_rows)) "$row_height"; }
has_large_rows() { has_files $(($1 - folder_rows)) "$large_row_height"; }

# Prints a line for each row of a file, which stands for what its other columns show.
row_pictures() {
    see 610 $((list_top + folder_rows * row_height)) 280 $((file_total * row_height)) \
        -crop "280x$row_height" +repage -format '%#\n' info:
}

# The rows as they are now have their own numbers.
remember_rows() {
    mapfile -t -O "$folder_rows" remembered_rows < <(row_pictures)
}

# has_order ROW…: whether those rows of before follow each other now.
has_order() {
    local row
    for row in "$@"; do echo "${remembered_rows[row]}"; done | cmp -s - <(row_pictures)
}

# Whether the rows with these numbers are selected, and no others.
has_selected() {
    local rows
    rows=$(see "$ground_x" "$list_top" 1 $((20 * row_height)) txt:- \
        | sed -n 's/^0,\([0-9]*\): (\([0-9]*\),[0-9]*,\([0-9]*\).*/\1 \2 \3/p' \
        | awk -v height="$row_height" \
            '$1 % height == int(height / 2) && $3 > $2 + 50 { print int($1 / height) }')
    [[ ${rows//$'\n'/ } == "$1" ]]
}

# Instead of the list, whose header would be there.
shows_hint() { ! has_drawing 10 62 880 10; }
remember_hint() { hint=$(see 0 60 900 510 -format '%#' info:); }
shows_remembered_hint() { [[ $(see 0 60 900 510 -format '%#' info:) == "$hint" ]]; }

# --- What the log tells ---------------------------------------------------------------------------

log_text() { cat "$work"/log/*.log 2>/dev/null || true; }
mark_log() { log_mark=$(log_text | wc -l); }

# Since the mark.
records_of() { log_text | tail -n +$((log_mark + 1)) | grep -acF -- "$1" || true; }
has_record() { (($(records_of "$1") > 0)); }
