# Running the program under test and looking at what it did.

log_directory=/tmp/logs
log_file="$log_directory/NIVOR File TransferLog.1.log"
output=/tmp/output
mkdir -p "$log_directory"

# nivor_exits CODE ARGUMENTS…: runs the program; its output lands in $output.
nivor_exits() {
    wanted_code=$1
    shift
    code=0
    nivor "$@" --log-directory "$log_directory" >"$output" 2>&1 </dev/null || code=$?
    [ "$code" -eq "$wanted_code" ] && return
    echo "-- nivor $* exited with $code, not $wanted_code; it said:"
    tail -n 40 "$output"
    return 1
}

# says TEXT…: the last output holds TEXT.
says() {
    grep -qiF -e "$*" "$output" && return
    echo "-- not in the output: $*"
    tail -n 40 "$output"
    return 1
}

# copied_bytes FOLDER: what has arrived in it so far.
copied_bytes() {
    find "$1" -type f -exec stat -c %s {} + 2>/dev/null | awk '{ sum += $1 } END { printf "%d", sum }'
}

# has_copied FOLDER BYTES
has_copied() { [ "$(copied_bytes "$1")" -ge "$2" ]; }

# during_copy FOLDER BYTES COMMAND…: in the background, runs COMMAND once so much has arrived.
during_copy() {
    (
        folder=$1 bytes=$2
        shift 2
        wait_for 60 has_copied "$folder" "$bytes" || exit 1
        "$@"
    ) &
}

interrupt_nivor() { kill -INT "$(pidof nivor)"; }

# copies_match CAMERA DESTINATION: the destination holds every file of that camera, byte for byte.
# The host compares, for it is many times as fast. The real cp is named by its path: the shell
# prefers its own, which moves 4 KiB at a time, slowly on a shared folder.
copies_match() {
    /bin/cp -r "$2" /mnt/kept/copies
    ask_host 60 compare "$1" copies
    rm -rf /mnt/kept/copies
    [ "$answer" = same ] || refuse "the copies are not the camera's files: $answer"
}

# holds FOLDER COUNT: the folder holds that many entries.
holds() {
    [ "$(find "$1" -mindepth 1 | wc -l)" -eq "$2" ] || refuse "not $2 entries in $(ls -la "$1")"
}

# lists_all ORIGINALS: the last output names every file of the tree of originals.
lists_all() {
    find "$1" -type f | sed 's/.*\///' | sort -u >/tmp/names
    grep -oF -f /tmp/names "$output" | sort -u >/tmp/names-listed
    cmp -s /tmp/names /tmp/names-listed || refuse "not listed: $(diff /tmp/names /tmp/names-listed)"
}

# lists_path PATH: the last output, from `list --json`, has that path.
lists_path() { grep -qF -e "\"$1\"" "$output"; }

# log_holds TEXT…: the log of the program's last run has a record with each of them, in this order.
log_holds() {
    run_start=$(grep -nF 'Application start' "$log_file" | tail -n 1)
    [ -n "$run_start" ] || refuse "no run in $log_file: $(ls -la "$log_directory")"
    tail -n "+${run_start%%:*}" "$log_file" >/tmp/records
    for text in "$@"; do
        awk -v text="$text" 'found { print } index($0, text) { found = 1 } END { exit !found }' \
            /tmp/records >/tmp/records-after \
            || refuse "not in the log, or out of order: $text; its end: $(tail -n 24 "$log_file")"
        mv /tmp/records-after /tmp/records
    done
}

# timed NAME COMMAND…: runs COMMAND, which must succeed, and sets elapsed to the hundredths it took.
timed() {
    timing_name=$1
    shift
    timing_start=$(now)
    "$@"
    elapsed=$(($(now) - timing_start))
    [ "$elapsed" -gt 0 ] || elapsed=1
    tell_host "TIMING $timing_name $(seconds "$elapsed") s"
}
