# The archive of the programs that measure, which is laid on that of the program under test.

readonly guest_bench_programs=(nivor-null-client nivor-client-bench nivor-gadget-camera)

# scenario_needs_bench SCENARIO
scenario_needs_bench() (
    needs_bench=
    # shellcheck source=/dev/null
    source "$vm_source/scenarios/$1/host.sh"
    [[ -n $needs_bench ]]
)

# Sets bench_image; builds it where what it holds has changed.
prepare_bench_image() {
    local name found programs=() libraries folder=$work/images root=$work/images/bench
    for name in "${guest_bench_programs[@]}" nivor-rates-table; do
        require_program "$bench_programs/$name"
    done
    programs=("${guest_bench_programs[@]/#/$bench_programs/}")
    found=$(shared_libraries "${programs[@]}" | grep -vxF -f <(printf '%s\n' "${program_libraries[@]}") \
        || true)
    libraries=()
    [[ -z $found ]] || mapfile -t libraries <<<"$found"

    bench_image=$folder/bench-$(content_key "$vm_source/host/image.sh" "$vm_source/host/bench.sh" \
        "${programs[@]}" "${libraries[@]}" "${program_libraries[@]}").cpio
    [[ ! -f $bench_image ]] || return 0
    note "packing the programs that measure with ${#libraries[@]} further shared libraries"
    rm -rf "$root" "$folder"/bench-*.cpio
    mkdir -p "$root/bin"
    cp -L "${programs[@]}" "$root/bin/"
    ((${#libraries[@]} == 0)) || install_files "$root" "${libraries[@]}"
    pack "$root" "$bench_image"
    rm -rf "$root"
}
