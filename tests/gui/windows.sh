# Windows and the pointer, for a user who is a script.

# Sets window_id.
find_window() {
    window_id=$(xdotool search --onlyvisible --name "$1" 2>/dev/null | head -n 1)
    [[ -n $window_id ]]
}

# Whether a window with that title has the keyboard.
is_active() { [[ $(xdotool getactivewindow getwindowname 2>/dev/null) =~ $1 ]]; }

# Whether that many windows are managed: dialogs count, what is shown under the pointer does not.
has_windows() {
    (($(xprop -root _NET_CLIENT_LIST | grep -o '0x[0-9a-f]*' | wc -l) == $1))
}

# Sets window_x and window_y, where the inside of the window begins on the screen.
locate_window() {
    local facts
    facts=$(xwininfo -id "$window_id" 2>/dev/null) || return 1
    window_x=$(sed -n 's/^ *Absolute upper-left X: *//p' <<<"$facts")
    window_y=$(sed -n 's/^ *Absolute upper-left Y: *//p' <<<"$facts")
    window_width=$(sed -n 's/^ *Width: *//p' <<<"$facts")
}

# The window manager puts its frame around it, so the inside begins a little further.
is_placed() {
    locate_window || return 1
    ((window_x >= $1 && window_x < $1 + 40 && window_y >= $2 && window_y < $2 + 60)) || return 1
    ((window_width == $3))
}

# place_window TITLE X Y WIDTH HEIGHT: waits for the window and moves it there.
place_window() {
    wait_until 30 "a window called \"$1\"" find_window "$1"
    xdotool windowsize "$window_id" "$4" "$5" windowmove "$window_id" "$2" "$3"
    wait_until 10 "the window \"$1\" in its place" is_placed "$2" "$3" "$4"
}

# close_window NAME WINDOW: as the user does it; the program must end, and well.
close_window() {
    local group=${process_of[$1]}
    wmctrl -i -c "$2"
    wait_until 30 "the end of $1" is_gone "$group"
    wait "$group" || die "$1 ended with exit code $?"
    unset "process_of[$1]"
}

point_at() { xdotool mousemove "$1" "$2"; }

# click X Y [BUTTON]: at a place in the window.
click() {
    point_at "$((window_x + $1))" "$((window_y + $2))"
    xdotool click "${3-1}"
}

# glide X Y X Y: in small steps, as a hand does; programs take note of the way.
glide() {
    local steps=16 i
    for ((i = 1; i <= steps; ++i)); do
        point_at $(($1 + ($3 - $1) * i / steps)) $(($2 + ($4 - $2) * i / steps))
    done
}

# wiggle COUNT X Y
wiggle() {
    local i
    for ((i = 0; i < $1; ++i)); do
        point_at $(($2 - i % 3)) $(($3 - i % 2))
        sleep 0.025
    done
}

# wiggle_until SECONDS WHAT X Y COMMAND…
wiggle_until() {
    local end=$((SECONDS + $1)) what=$2 x=$3 y=$4
    shift 4
    until "$@"; do
        ((SECONDS <= end)) || die "waited in vain for $what"
        wiggle 6 "$x" "$y"
    done
}

# --- What is to be seen ---------------------------------------------------------------------------

# see X Y WIDTH HEIGHT OPERATION…: does something with that part of the window's picture.
see() {
    local part="$3x$4+$1+$2"
    shift 4
    import -window "$window_id" -crop "$part" +repage -depth 8 "$@"
}

# Whether something is drawn in that part of the window, on a ground of one colour.
has_drawing() { (($(see "$@" -format %k info:) > 1)); }
