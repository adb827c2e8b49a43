# Running the program with a window, which a script uses in the user's place.

window_script=/tmp/window-script
window_lines=/tmp/window-lines
window_complaints=/tmp/window-complaints
window_code=/tmp/window-code
window_runtime=/tmp/window-runtime

# start_window: in the background; standard input has the commands, one a line.
start_window() {
    cat >"$window_script"
    rm -f "$window_code"
    : >"$window_lines"
    mkdir -p "$window_runtime"
    chmod 700 "$window_runtime"
    (
        export QT_QPA_PLATFORM=offscreen QT_PLUGIN_PATH=/lib/qt-plugins XDG_RUNTIME_DIR="$window_runtime"
        export NIVOR_WINDOW_SCRIPT="$window_script"
        code=0
        nivor-file-transfer-scripted --log-directory "$log_directory" \
            >"$window_lines" 2>"$window_complaints" </dev/null || code=$?
        echo "$code" >"$window_code"
    ) 3>&- &
}

# window_does COMMAND: waits until the script has carried that out.
window_does() {
    wait_for 90 window_is_beyond "$*" || true
    grep -qxF -e "ok $*" "$window_lines" || refuse "the window has not done '$*': $(window_state)"
}
window_is_beyond() { grep -qxF -e "ok $1" "$window_lines" || [ -f "$window_code" ]; }

# window_ends CODE: it ends by itself, with that exit code.
window_ends() {
    wait_for 30 [ -f "$window_code" ] || refuse "the window is still there: $(window_state)"
    [ "$(cat "$window_code")" -eq "$1" ] || refuse "not exit code $1: $(window_state)"
}

window_state() {
    cat "$window_lines" "$window_complaints"
    [ ! -f "$window_code" ] || echo "exit code $(cat "$window_code")"
}
