# What the program's listing and reading reach beside a client that does nothing else.

first_camera=many
needs_bench=yes

# The guest's clock counts the instructions that its processor has carried out. What the clock of an
# emulated machine says otherwise depends on what else the host does, by a multiple; and emulation
# makes some instructions slow that no processor is slow at. So a figure is what a processor of a
# thousand million instructions a second would reach, and comes out nearly the same each time.
is_clock_counted=yes

film_size=$((64 * 1024 * 1024))

make_cameras() {
    local number
    for number in {1..300}; do
        make_file "$run/cameras/many/DCIM/100NIVOR/NVR_$(printf %04d "$number").JPG" 2000
    done
    make_file "$run/cameras/film/FILM.MOV" "$film_size"
    make_file "$run/cameras/film/NVR_0001.JPG" 12345
}

check_kept() {
    "$bench_programs/nivor-rates-table" <"$run/results.log"
}
