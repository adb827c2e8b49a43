# nivor_mocked_usb: a USB bus with cameras inside the process, under the real libusb.
include_guard(GLOBAL)

pkg_check_modules(umockdev REQUIRED IMPORTED_TARGET umockdev-1.0)

# An object library, because its open() and ioctl() must be the program's own: the linker would
# leave them in an archive, for the C library has them too.
add_library(nivor_mocked_usb OBJECT
    ${CMAKE_CURRENT_LIST_DIR}/EmulatedUsbfs.cpp
    ${CMAKE_CURRENT_LIST_DIR}/EmulatedUsbfsTransfers.cpp
    ${CMAKE_CURRENT_LIST_DIR}/MockedDeviceFiles.cpp
    ${CMAKE_CURRENT_LIST_DIR}/MockedUsbBus.cpp
    ${CMAKE_CURRENT_LIST_DIR}/MockedUsbCamera.cpp
    ${CMAKE_CURRENT_LIST_DIR}/MockedUsbDescription.cpp
    ${CMAKE_CURRENT_LIST_DIR}/MockedWire.cpp)
target_include_directories(nivor_mocked_usb PUBLIC "${CMAKE_CURRENT_LIST_DIR}/..")
target_link_libraries(nivor_mocked_usb
    PUBLIC nivor_usb PkgConfig::umockdev "-Wl,--no-as-needed" "-l:libumockdev-preload.so.0"
           ${CMAKE_DL_LIBS}
    PRIVATE nivor_options)

# A simulated camera on that bus. Link nivor_mocked_usb as well: objects are not passed on.
add_library(nivor_simulated_usb OBJECT ${CMAKE_CURRENT_LIST_DIR}/SimulatedOverUsbfs.cpp)
target_link_libraries(nivor_simulated_usb
    PUBLIC nivor_simulator nivor_mocked_usb
    PRIVATE nivor_options)
