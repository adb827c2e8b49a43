# What every target of the project is compiled with.

set(NIVOR_USB_VENDOR_ID "" CACHE STRING
    "USB vendor ID of the camera maker, such as 0x1234; empty accepts any maker's camera")
set(NIVOR_SANITIZE "" CACHE STRING "Sanitizers to build with, such as address,undefined")
option(NIVOR_WARNINGS_AS_ERRORS "Stop at the first warning" OFF)
option(NIVOR_TESTS "Build the tests" ON)
option(NIVOR_SOAK "Build the soak without the other tests" OFF)
option(NIVOR_BENCH "Build the benchmarks" OFF)
option(NIVOR_FUZZ "Build the fuzzers (clang only)" OFF)
option(NIVOR_WINDOW_SCRIPT_PROGRAM
    "Build the window program once more, for the tests: with a script in the user's place" OFF)

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")

# Files of 2 GiB and more on every platform, 32-bit ones included.
add_compile_definitions(_FILE_OFFSET_BITS=64)

add_library(nivor_options INTERFACE)
target_include_directories(nivor_options INTERFACE "${CMAKE_SOURCE_DIR}/src")
target_compile_options(nivor_options INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wold-style-cast
    -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align -Wcast-qual -Wformat=2 -Wundef
    -Wnull-dereference -Wdouble-promotion -Wimplicit-fallthrough
    $<$<CXX_COMPILER_ID:GNU>:-Wduplicated-cond -Wduplicated-branches -Wlogical-op>
    $<$<BOOL:${NIVOR_WARNINGS_AS_ERRORS}>:-Werror>)
target_compile_definitions(nivor_options INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING QT_NO_KEYWORDS
    QT_STRICT_ITERATORS QT_DISABLE_DEPRECATED_BEFORE=0x060400)

if(NIVOR_SANITIZE)
    add_compile_options(-fsanitize=${NIVOR_SANITIZE} -fno-omit-frame-pointer
                        -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${NIVOR_SANITIZE})
endif()
