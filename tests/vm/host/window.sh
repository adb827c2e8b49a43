# The archive of the program with a window, which is laid on that of the program under test.

# scenario_needs_window SCENARIO
scenario_needs_window() (
    needs_window=
    # shellcheck source=/dev/null
    source "$vm_source/scenarios/$1/host.sh"
    [[ -n $needs_window ]]
)

# Sets window_image; builds it where what it holds has changed.
prepare_window_image() {
    local widgets font file found folder=$work/images root=$work/images/window
    local plugins libraries
    require_program "$window_program"

    found=$(shared_libraries "$window_program")
    widgets=$(grep '/libQt6Widgets\.' <<<"$found") || die "$window_program is not one with a window"
    # The program finds these by itself when it runs, so no list of libraries has them.
    plugins=("${widgets%/*}"/qt6/plugins/{platforms/libqoffscreen,imageformats/libqsvg,imageformats/libqjpeg}.so)
    font=/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf
    for file in "${plugins[@]}" "$font"; do
        [[ -f $file ]] || die "no $file: apt-get install libqt6gui6 libqt6svg6 fonts-dejavu-core"
    done
    found=$(shared_libraries "$window_program" "${plugins[@]}" \
        | grep -vxF -f <(printf '%s\n' "${program_libraries[@]}"))
    mapfile -t libraries <<<"$found"

    window_image=$folder/window-$(content_key "$vm_source/host/image.sh" "$vm_source/host/window.sh" \
        "$window_program" "${program_libraries[@]}" "${libraries[@]}" "${plugins[@]}" "$font").cpio
    [[ ! -f $window_image ]] || return 0
    note "packing $window_program with ${#libraries[@]} further shared libraries"
    rm -rf "$root" "$folder"/window-*.cpio
    mkdir -p "$root"/{bin,etc/fonts,lib/qt-plugins/{platforms,imageformats}}
    cp -L "$window_program" "$root/bin/nivor-file-transfer-scripted"
    install_files "$root" "${libraries[@]}" "$font"
    # Where the program would look for them depends on how Qt was built, so it is told.
    for file in "${plugins[@]}"; do
        cp -L "$file" "$root/lib/qt-plugins/${file#*/qt6/plugins/}"
    done
    cat >"$root/etc/fonts/fonts.conf" <<END
<?xml version="1.0"?>
<fontconfig><dir>${font%/*}</dir><cachedir>/tmp/font-cache</cachedir></fontconfig>
END
    pack "$root" "$window_image"
    rm -rf "$root"
}
