# Configures and builds; sourced by ./run and ./check.

# build_preset PRESET [TARGET…]: quiet unless something has to be done or fails.
build_preset() {
    local preset=$1
    shift
    local log="build/$preset.log"
    mkdir -p build
    local targets=()
    [ $# -gt 0 ] && targets=(--target "$@")
    # Nothing to do is the usual case, and needs no word.
    if is_configured_here "$preset" \
        && [[ $(cmake --build --preset "$preset" "${targets[@]}" -- -n 2>/dev/null) == *"no work to do"* ]]; then
        return 0
    fi
    echo "Building (log: $log)" >&2
    if ! is_configured_here "$preset"; then
        cmake --fresh --preset "$preset" >"$log" 2>&1 || { cat "$log" >&2; return 1; }
    fi
    cmake --build --preset "$preset" "${targets[@]}" >"$log" 2>&1 || {
        grep -E 'error|warning|FAILED|undefined' -A 12 "$log" | head -n 80 >&2
        echo "The build failed; all of its output is in $log" >&2
        return 1
    }
}

# Whether the preset is configured as it stands, and for this folder: the project may have been moved
# or copied.
is_configured_here() {
    local folder
    [ -f "build/$1/build.ninja" ] || return 1
    [ ! CMakePresets.json -nt "build/$1/CMakeCache.txt" ] || return 1
    folder=$(sed -n 's/^CMAKE_HOME_DIRECTORY:INTERNAL=//p' "build/$1/CMakeCache.txt" 2>/dev/null)
    [ "$folder" -ef . ]
}
