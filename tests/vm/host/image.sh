# The guest's root: archives, one after the other, which the kernel unpacks into one tree.
#   base     busybox, the udev daemon, the gadget responder, the modules; changes hardly ever
#   program  the program under test and its shared libraries
#   window   the one with a window; only for the scenarios that need it
#   bench    the programs that measure; likewise
#   scripts  the guest's own scripts; made anew for every run

# Prints the shared libraries of the programs given, the dynamic loader included.
shared_libraries() {
    local listing
    listing=$(ldd "$@" 2>&1) || die "ldd $*: $listing"
    if grep 'not found' <<<"$listing" >&2; then
        die "a shared library is missing (above)"
    fi
    sed -n 's/^.*=> \(\/[^ ]*\) (.*$/\1/p; s/^[[:space:]]*\(\/[^ ]*\) (.*$/\1/p' <<<"$listing" | sort -u
}

# Copies the files given to the same place under folder $1.
install_files() {
    local root=$1 file
    shift
    for file in "$@"; do
        mkdir -p "$root${file%/*}"
        cp -L "$file" "$root$file"
    done
}

# Packs folder $1 into archive $2.
pack() {
    (cd "$1" && find . -print0 | LC_ALL=C sort -z | cpio --quiet --null -o -H newc -R 0:0) >"$2.partial" \
        || die "cpio failed for $1"
    mv "$2.partial" "$2"
}

build_base_image() {
    local root=$1
    mkdir -p "$root"/{bin,dev,etc/umtprd,lib,mnt,proc,root,run,sbin,sys,tmp,usr/bin,usr/lib,var}
    cp -L "$(command -v busybox)" "$root/bin/busybox"
    # The tools that scripts name, as links; the shell among them.
    local applet tool
    for applet in $(busybox --list); do
        [[ -e $root/bin/$applet ]] || ln -s busybox "$root/bin/$applet"
    done
    for tool in "${base_tools[@]}"; do
        cp -L --remove-destination "$tool" "$root/bin/"
    done
    ln -s udevadm "$root/bin/systemd-udevd"
    install_files "$root" "${base_libraries[@]}"
    cp -r /usr/lib/locale/C.utf8 --parents "$root"
    cp -r "$kernel/modules/." "$root/"
}

# Sets base_image, program_image and program_libraries; builds the one image or the other where what
# it holds has changed.
prepare_images() {
    local base_tools base_libraries root found
    local folder=$work/images
    mkdir -p "$folder"

    # By way of a variable, whose assignment fails where the command does.
    found=$(type -P udevadm umtprd cp cmp)
    mapfile -t base_tools <<<"$found"
    found=$(shared_libraries "${base_tools[@]}")
    mapfile -t base_libraries <<<"$found"
    base_image=$folder/base-$(content_key "$vm_source/host/image.sh" "$kernel" "$(command -v busybox)" \
        "${base_tools[@]}" "${base_libraries[@]}").cpio
    if [[ ! -f $base_image ]]; then
        note "building the guest's base image"
        root=$folder/base
        rm -rf "$root" "$folder"/base-*.cpio
        build_base_image "$root"
        pack "$root" "$base_image"
        rm -rf "$root"
    fi

    found=$(shared_libraries "$program")
    mapfile -t program_libraries <<<"$found"
    program_image=$folder/program-$(content_key "$vm_source/host/image.sh" "$program" \
        "${program_libraries[@]}").cpio
    if [[ ! -f $program_image ]]; then
        note "packing $program with ${#program_libraries[@]} shared libraries"
        root=$folder/program
        rm -rf "$root" "$folder"/program-*.cpio
        mkdir -p "$root/bin"
        cp -L "$program" "$root/bin/nivor"
        install_files "$root" "${program_libraries[@]}"
        pack "$root" "$program_image"
        rm -rf "$root"
    fi
}

# Writes the complete image of scenario $1 to $2, with the further archives that come behind.
assemble_image() {
    local scenario=$1 target=$2 root=$2.scripts
    shift 2
    rm -rf "$root"
    mkdir -p "$root/guest"
    install -m 755 "$vm_source/guest/init" "$root/init"
    cp "$vm_source"/guest/*.sh "$vm_source/scenarios/$scenario/guest.sh" "$root/guest/"
    pack "$root" "$target.scripts.cpio"
    cat "$base_image" "$program_image" "$@" "$target.scripts.cpio" >"$target"
    rm -rf "$root" "$target.scripts.cpio"
}
