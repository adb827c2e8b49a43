# Debian's kernel: the package, the uncompressed kernel image and the modules that the guest loads.

# What the guest asks modprobe for; what these need comes along by modules.dep.
readonly guest_modules=(
    virtio_pci virtio_console 9pnet_virtio 9p
    xhci-pci
    dummy_hcd libcomposite usb_f_fs
    loop vfat nls_cp437 nls_ascii nls_utf8 usb-storage sd_mod
)

# Prints the number of $3 bytes at offset $2 of file $1.
read_number() {
    od -A n -t "u$3" -j "$2" -N "$3" "$1" | tr -d ' '
}

# Cuts the kernel proper out of the compressed image $1 and writes it to $2: it starts three times
# as fast under software emulation, where unpacking itself is slow.
extract_vmlinux() {
    local image=$1 target=$2 setup_sectors offset length magic
    setup_sectors=$(read_number "$image" $((0x1f1)) 1)
    offset=$(((setup_sectors + 1) * 512 + $(read_number "$image" $((0x248)) 4)))
    # The last four bytes give the unpacked size and are not part of the stream.
    length=$(($(read_number "$image" $((0x24c)) 4) - 4))
    magic=$(od -A n -t x1 -j "$offset" -N 6 "$image" | tr -d ' ')
    local unpack
    case $magic in
    fd377a585a00) unpack=(xz -dc) ;;
    28b52ffd*) unpack=(zstd -dc) ;;
    1f8b*) unpack=(gzip -dc) ;;
    *) die "$image: unknown compression (starts with $magic)" ;;
    esac
    command -v "${unpack[0]}" >/dev/null || die "not installed: ${unpack[0]}, to unpack the kernel"
    dd status=none if="$image" bs=1M iflag=skip_bytes,count_bytes skip="$offset" count="$length" \
        | "${unpack[@]}" >"$target" \
        || die "$image: could not be unpacked"
}

# Copies the guest's modules, what they need and the matching part of modules.dep
# from the unpacked package $1 to $2.
collect_modules() {
    local package=$1 target=$2 version name file rest dependency
    version=$(basename "$package"/lib/modules/*)
    busybox depmod -b "$package" "$version" || die "depmod failed"

    local -A needs=() path_of=() wanted=()
    while IFS=: read -r file rest; do
        needs[$file]=$rest
        name=${file##*/}
        name=${name%%.ko*}
        path_of[${name//-/_}]=$file
    done <"$package/lib/modules/$version/modules.dep"

    for name in "${guest_modules[@]}"; do
        file=${path_of[${name//-/_}]:-}
        if [[ -z $file ]]; then
            grep -q "/${name//[-_]/[-_]}\.ko$" "$package/lib/modules/$version/modules.builtin" \
                || die "the kernel package has no module $name"
            continue
        fi
        for dependency in "$file" ${needs[$file]}; do
            wanted[$dependency]=yes
        done
    done

    local folder=lib/modules/$version
    mkdir -p "$target/$folder"
    for file in "${!wanted[@]}"; do
        mkdir -p "$target/$folder/${file%/*}"
        cp "$package/$folder/$file" "$target/$folder/$file"
        printf '%s:%s\n' "$file" "${needs[$file]}"
    done | sort >"$target/$folder/modules.dep"
    cp "$package/$folder/modules.builtin" "$target/$folder/"
}

# The name of the package behind the running suite's linux-image-amd64.
kernel_package_name() {
    apt-cache show --no-all-versions linux-image-amd64 2>/dev/null \
        | sed -n 's/^Depends:.*\(linux-image-[^ ,(]*\).*/\1/p'
}

# Fetches the kernel's package unless it is there, and sets kernel_package to its path.
fetch_kernel_package() {
    local folder=$work/packages name packages
    mkdir -p "$folder/partial"
    packages=("$folder"/linux-image-*.deb)
    if [[ ! -f ${packages[0]} ]]; then
        name=$(kernel_package_name)
        if [[ -z $name && $EUID -eq 0 ]]; then
            # A fresh machine has no lists of packages.
            apt-get -qq update >/dev/null || true
            name=$(kernel_package_name)
        fi
        [[ -n $name ]] || die "apt knows no linux-image-amd64 (run apt-get update)"
        note "fetching $name"
        (cd "$folder/partial" && rm -f -- *.deb && apt-get -qq -o APT::Sandbox::User=root download "$name") \
            || die "apt-get download $name failed"
        mv "$folder"/partial/linux-image-*.deb "$folder/"
        packages=("$folder"/linux-image-*.deb)
    fi
    kernel_package=${packages[-1]}
}

# Sets kernel to a folder with vmlinux and, under modules/, the guest's modules.
prepare_kernel() {
    local kernel_package unpacked
    fetch_kernel_package
    kernel=$work/kernel/$(content_key "$kernel_package" "$vm_source/host/kernel.sh")
    [[ -f $kernel/vmlinux ]] && return

    note "unpacking ${kernel_package##*/}"
    rm -rf "$work/kernel"
    unpacked=$work/kernel/unpacked
    mkdir -p "$unpacked" "$kernel/modules"
    dpkg -x "$kernel_package" "$unpacked"
    collect_modules "$unpacked" "$kernel/modules"
    extract_vmlinux "$unpacked"/boot/vmlinuz-* "$work/kernel/vmlinux"
    rm -rf "$unpacked"
    # Last, for its presence says that the folder is complete.
    mv "$work/kernel/vmlinux" "$kernel/vmlinux"
}
