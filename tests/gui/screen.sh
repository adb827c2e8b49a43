# A screen, a window manager and a session bus that only the test sees, and the programs on them.
# Everything that is started here is ended when the script ends.
#
# Who sources this sets "screenshots", the folder for them, and "screenshot_prefix", what their
# names begin with.

note() { printf '%s: %s\n' "${0##*/}" "$*"; }

die() {
    note "FAILED: $*" >&2
    screenshot failed || true
    local log
    for log in "$work"/*.log "$work"/log/*.log; do
        [[ -s $log ]] || continue
        echo "--- ${log##*/}" >&2
        tail -n 30 "$log" >&2
    done
    exit 1
}

# wait_until SECONDS WHAT COMMAND…: asks again and again, at most that long.
wait_until() {
    local end=$((SECONDS + $1)) what=$2
    shift 2
    until "$@"; do
        ((SECONDS <= end)) || die "waited in vain for $what"
        sleep 0.05
    done
}

require_tools() {
    local missing=() entry
    for entry in Xvfb=xvfb xdotool=xdotool openbox=openbox dbus-daemon=dbus-daemon \
        xwininfo=x11-utils wmctrl=wmctrl import=imagemagick; do
        command -v "${entry%%=*}" >/dev/null || missing+=("${entry#*=}")
    done
    ((${#missing[@]} == 0)) || die "not installed: apt-get install ${missing[*]}"
}

declare -A process_of=()
started=()

# start_program NAME COMMAND…: in a process group of its own; its output goes to NAME.log.
start_program() {
    local name=$1
    shift
    setsid "$@" >"$work/$name.log" 2>&1 </dev/null &
    process_of[$name]=$!
    started+=("$name")
}

is_gone() { ! kill -0 -- "-$1" 2>/dev/null; }

stop_program() {
    local group=${process_of[$1]-}
    [[ -n $group ]] || return 0
    unset "process_of[$1]"
    kill -- "-$group" 2>/dev/null || kill "$group" 2>/dev/null || return 0
    kill -CONT -- "-$group" 2>/dev/null || return 0  # one that stands still gets nothing else
    local tries
    for ((tries = 0; tries < 60; ++tries)); do
        is_gone "$group" && return 0
        sleep 0.05
    done
    kill -KILL -- "-$group" 2>/dev/null || true
}

close_screen() {
    local i
    # The screen goes last: who loses it complains.
    for ((i = ${#started[@]}; i-- > 0;)); do
        stop_program "${started[i]}"
    done
    rm -rf "$work"
}

# Sets DISPLAY, and everything that keeps the programs away from the user's own settings.
open_screen() {
    work=$(mktemp -d "${TMPDIR:-/tmp}/nivor-gui-XXXXXX")
    trap close_screen EXIT
    trap 'exit 1' INT TERM HUP
    # Nothing may ever reach the screen of the user who runs this.
    unset DISPLAY WAYLAND_DISPLAY
    require_tools

    start_program screen sh -c "exec Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp \
        3>'$work/display'"
    wait_until 20 "the screen" test -s "$work/display"
    DISPLAY=:$(<"$work/display")

    HOME=$work/home
    XDG_CONFIG_HOME=$HOME/.config
    XDG_CACHE_HOME=$HOME/.cache
    XDG_DATA_HOME=$HOME/.local/share
    XDG_RUNTIME_DIR=$work/runtime
    LC_ALL=C.UTF-8
    QT_QPA_PLATFORM=xcb
    GDK_BACKEND=x11
    # What file managers would start besides.
    NO_AT_BRIDGE=1
    GIO_USE_VFS=local
    GSETTINGS_BACKEND=memory
    export DISPLAY HOME LC_ALL QT_QPA_PLATFORM GDK_BACKEND
    export NO_AT_BRIDGE GIO_USE_VFS GSETTINGS_BACKEND
    export XDG_CONFIG_HOME XDG_CACHE_HOME XDG_DATA_HOME XDG_RUNTIME_DIR
    unset QT_STYLE_OVERRIDE QT_QPA_PLATFORMTHEME QT_SCALE_FACTOR QT_FONT_DPI SESSION_MANAGER
    unset XDG_CURRENT_DESKTOP DESKTOP_SESSION LANGUAGE
    mkdir -p "$XDG_CONFIG_HOME/fontconfig" "$XDG_CACHE_HOME" "$XDG_DATA_HOME"
    # Where things are in a window depends on its font.
    cat >"$XDG_CONFIG_HOME/fontconfig/fonts.conf" <<'FONTS'
<?xml version="1.0"?>
<!DOCTYPE fontconfig SYSTEM "fonts.dtd">
<fontconfig>
  <match>
    <test name="family"><string>sans-serif</string></test>
    <edit name="family" mode="prepend" binding="strong"><string>DejaVu Sans</string></edit>
  </match>
</fontconfig>
FONTS
    mkdir -m 700 "$XDG_RUNTIME_DIR"

    start_program bus dbus-daemon --session --nofork --address="unix:path=$XDG_RUNTIME_DIR/bus"
    wait_until 20 "the session bus" test -S "$XDG_RUNTIME_DIR/bus"
    export DBUS_SESSION_BUS_ADDRESS=unix:path=$XDG_RUNTIME_DIR/bus
    start_program manager openbox
    wait_until 20 "the window manager" has_window_manager
}

has_window_manager() { xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id'; }

# screenshot NAME
screenshot() {
    [[ -n ${DISPLAY-} ]] || return 0
    mkdir -p "$screenshots"
    import -window root "$screenshots/$screenshot_prefix$1.png"
}
