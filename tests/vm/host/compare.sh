# Whether a folder holds true copies of a camera's files.

# claim_copy ORIGINAL: finds a true copy of it among the names that its copy may get, which are NAME,
# STEM_1.EXT, STEM_2.EXT and so on, each one taken before the next is; claims that copy.
claim_copy() {
    local name=${1##*/} stem extension='' number=0
    stem=$name
    if [[ $name == *.* ]]; then
        stem=${name%.*}
        extension=.${name##*.}
    fi
    while [[ -f $copies/$name ]]; do
        if [[ -z ${claimed[$name]:-} ]] && cmp -s "$1" "$copies/$name"; then
            claimed[$name]=yes
            return
        fi
        number=$((number + 1))
        name=${stem}_$number$extension
    done
    return 1
}

# compare_copies ORIGINALS COPIES: prints "same" if the second folder holds every file of the first
# one's tree, byte for byte, each once, under a name that the naming rule allows, and nothing else;
# prints what is wrong otherwise.
compare_copies() {
    local originals=$1 copies=$2 original present
    local -A claimed=()
    while IFS= read -r -d '' original; do
        if ! claim_copy "$original"; then
            printf 'no true copy of %s (%d bytes) in %s\n' "${original#"$originals"/}" \
                "$(stat -c %s "$original")" "$(cd "$copies" && stat -c '%n:%s' -- * | tr '\n' ' ')"
            return
        fi
    done < <(find "$originals" -type f -print0)
    present=$(find "$copies" -mindepth 1 | wc -l)
    if ((${#claimed[@]} == 0 || present != ${#claimed[@]})); then
        printf '%d entries for %d files\n' "$present" "${#claimed[@]}"
        return
    fi
    echo same
}
