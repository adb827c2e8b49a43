# Configures and builds; sourced by ./run and ./check.

# build_preset PRESET [TARGET…]: quiet unless something has to be done or fails.
build_preset() {
    local preset=$1
    shift
    local log="build/$preset.log"
    mkdir -p build
    if [ ! -f "build/$preset/build.ninja" ]; then
        cmake --preset "$preset" >"$log" 2>&1 || { cat "$log" >&2; return 1; }
    fi
    local targets=()
    [ $# -gt 0 ] && targets=(--target "$@")
    cmake --build --preset "$preset" "${targets[@]}" >"$log" 2>&1 || {
        grep -E 'error|warning|FAILED|undefined' -A 12 "$log" | head -n 80 >&2
        echo "The build failed; all of its output is in $log" >&2
        return 1
    }
}
