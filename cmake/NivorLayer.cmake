# nivor_layer(NAME SOURCES … LINKS …): one static library per layer, linked to what it may use.
function(nivor_layer name)
    cmake_parse_arguments(layer "" "" "SOURCES;LINKS" ${ARGN})
    add_library(nivor_${name} STATIC ${layer_SOURCES})
    target_link_libraries(nivor_${name} PUBLIC ${layer_LINKS} PRIVATE nivor_options)
    target_include_directories(nivor_${name} PUBLIC "${CMAKE_SOURCE_DIR}/src")
endfunction()
