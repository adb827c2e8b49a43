# One run: a machine that boots the image, answers the guest's requests and gathers its verdicts.
#
# The guest speaks by lines over the virtio serial port "results":
#   STEP NAME             a step begins
#   PASS SECONDS NAME     it passed
#   FAIL SECONDS NAME     it failed; the console log tells why
#   TIMING NAME VALUE UNIT
#   FIGURE WORKLOAD|WHO|VALUE|UNIT
#                         what one client measured; the host makes a table of them at the end
#   HOST plug CAMERA      plug in the camera whose content is the folder of that name
#   HOST unplug           pull it out
#   HOST plug-stick       plug in an empty USB stick; once a run, for a scenario with a stick_size
#   HOST unplug-stick     pull it out
#   HOST compare CAMERA FOLDER
#                         compare that camera's files with the copies in kept/FOLDER; the verdict
#                         comes as the file kept/answer
#   DONE PASSED FAILED    the last line; without it the run has failed

readonly camera_options=bus=xhci.0,id=cam,port=1,readonly=false

tell_monitor() {
    printf '%s\n' "$1" >&"$monitor"
}

answer_guest() {
    local verb=$1 camera=${2:-} folder=${3:-}
    case $verb in
    plug | compare)
        [[ $camera =~ ^[a-z0-9-]+$ && -d $run/cameras/$camera ]] || die "there is no camera '$camera'"
        ;;&
    plug)
        tell_monitor "device_add usb-mtp,$camera_options,serial=$camera,rootdir=$run/cameras/$camera"
        ;;
    unplug) tell_monitor "device_del cam" ;;
    plug-stick) tell_monitor "device_add usb-storage,bus=xhci.0,id=stick,port=2,drive=stick" ;;
    unplug-stick) tell_monitor "device_del stick" ;;
    compare)
        compare_copies "$run/cameras/$camera" "$run/kept/$folder" >"$run/answer"
        mv "$run/answer" "$run/kept/answer"
        ;;
    *) die "the guest asked for '$verb', which the host does not know" ;;
    esac
}

# Reads the guest's lines from descriptor $1 until the machine ends; sets
# steps_failed and done_line.
follow_guest() {
    local line verdict seconds name
    while IFS= read -r -u "$1" line; do
        printf '%s\n' "$line" >>"$run/results.log"
        case $line in
        'STEP '* | 'FIGURE '*) ;;
        'PASS '* | 'FAIL '*)
            read -r verdict seconds name <<<"$line"
            [[ $verdict == PASS ]] || steps_failed=$((steps_failed + 1))
            printf '  %s  %6s s  %s\n' "$verdict" "$seconds" "$name"
            ;;
        'TIMING '*) printf '%s\n' "$line" ;;
        'HOST '*)
            # shellcheck disable=SC2086
            answer_guest ${line#HOST }
            ;;
        'DONE '*) done_line=$line ;;
        *) printf '  guest: %s\n' "$line" ;;
        esac
    done
}

stop_machine() {
    if [[ -n ${machine_pid:-} ]]; then
        kill "$machine_pid" 2>/dev/null || true
        wait "$machine_pid" 2>/dev/null || true
        machine_pid=
    fi
    if [[ -n ${monitor_log_pid:-} ]]; then
        kill "$monitor_log_pid" 2>/dev/null || true
        wait "$monitor_log_pid" 2>/dev/null || true
        monitor_log_pid=
    fi
}

# Boots scenario $1 and follows it to its end; sets machine_status besides what follow_guest sets.
run_machine() {
    local scenario=$1 monitor results processor_thread=multi
    [[ -z $is_clock_counted ]] || processor_thread=single
    local arguments=(
        -nodefaults -no-user-config -display none -no-reboot
        -accel "tcg,thread=$processor_thread" -machine q35 -cpu qemu64 -smp 1 -m 1024
        -kernel "$kernel/vmlinux" -initrd "$run/image.cpio"
        -append "console=ttyS0 quiet panic=-1 mitigations=off nokaslr cryptomgr.notests \
tsc=reliable no_timer_check rcupdate.rcu_expedited=1 random.trust_cpu=on audit=0"
        -serial "file:$run/console.log"
        -chardev "pipe,id=monitor,path=$run/monitor" -mon "chardev=monitor,mode=readline"
        -device virtio-serial-pci
        -chardev "file,id=results,path=/dev/stdout"
        -device "virtserialport,chardev=results,name=results"
        -virtfs "local,path=$run/cameras,mount_tag=cameras,security_model=none,multidevs=remap,readonly=on"
        -virtfs "local,path=$run/kept,mount_tag=kept,security_model=none,multidevs=remap"
        -device "qemu-xhci,id=xhci"
    )
    if [[ -n $is_clock_counted ]]; then
        # A nanosecond an instruction, and none while all that runs is waiting.
        arguments+=(-icount "shift=0,sleep=off")
    fi
    if [[ -n $first_camera ]]; then
        arguments+=(-device "usb-mtp,$camera_options,serial=$first_camera,rootdir=$run/cameras/$first_camera")
    fi
    if [[ -n $stick_size ]]; then
        truncate -s "$stick_size" "$run/stick"
        arguments+=(-drive "if=none,id=stick,format=raw,cache=unsafe,file=$run/stick")
    fi
    printf '%q ' qemu-system-x86_64 "${arguments[@]}" >"$run/qemu-command"

    mkfifo "$run/monitor.in" "$run/monitor.out"
    # For reading and writing, so that opening waits for nobody.
    exec {monitor}<>"$run/monitor.in"
    cat <>"$run/monitor.out" >"$run/monitor.log" 2>/dev/null &
    monitor_log_pid=$!
    trap stop_machine EXIT

    exec {results}< <(exec timeout --kill-after=5 "$time_limit" \
        qemu-system-x86_64 "${arguments[@]}" 2>"$run/qemu.log" {monitor}>&- {lock}>&-)
    machine_pid=$!
    follow_guest "$results"
    machine_status=0
    wait "$machine_pid" || machine_status=$?
    machine_pid=
    exec {results}<&- {monitor}>&-
    stop_machine
    trap - EXIT
}

show_log() {
    [[ -s $2 ]] || return 0
    printf -- '---- %s (%s)\n' "$1" "$2"
    tail -n "${3:-400}" "$2"
    printf -- '---- end of %s\n' "$1"
}

# Runs one scenario; fails if any step of it did.
run_scenario() {
    local scenario=$1 run=$work/runs/$1 first_camera='' needs_window='' needs_bench='' stick_size=''
    local is_clock_counted=''
    local steps_failed=0 done_line='' machine_status=0 started
    rm -rf "$run"
    mkdir -p "$run/cameras" "$run/kept"
    : >"$run/results.log"

    note "$scenario: making the camera's content"
    make_cameras() { :; }
    check_kept() { :; }
    # shellcheck source=/dev/null
    source "$vm_source/scenarios/$scenario/host.sh"
    make_cameras
    assemble_image "$scenario" "$run/image.cpio" ${needs_window:+"$window_image"} \
        ${needs_bench:+"$bench_image"}

    note "$scenario: booting"
    started=$SECONDS
    run_machine "$scenario"
    note "$scenario: the machine ran for $((SECONDS - started)) s"
    rm -f "$run/image.cpio" "$run/stick" "$run/monitor.in" "$run/monitor.out"

    local problem=''
    if [[ -z $done_line ]]; then
        problem="the guest did not reach its end"
        ((machine_status == 124 || machine_status == 137)) && problem+=" within $time_limit s"
        problem+=" (last: $(tail -n 1 "$run/results.log"))"
    elif ((steps_failed > 0)); then
        problem="$steps_failed step(s) failed"
    elif [[ $done_line == "DONE 0 "* ]]; then
        problem="the guest ran no step"
    elif ! check_kept; then
        problem="what the guest handed over is not right (above)"
    fi
    if [[ -n $problem ]]; then
        show_log "the machine's complaints" "$run/qemu.log"
        show_log "the monitor" "$run/monitor.log"
        show_log "the guest's kernel log" "$run/kept/dmesg.log" 60
        show_log "the guest's console" "$run/console.log"
        printf 'vm: FAILED: %s: %s; everything is in %s\n' "$scenario" "$problem" "$run" >&2
        return 1
    fi
    [[ -n $keep ]] || rm -rf "$run/cameras"
    # shellcheck disable=SC2086
    set -- $done_line
    note "$scenario: passed, $2 steps"
}
