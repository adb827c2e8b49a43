/// The numbers of the USB Still Image class: its interface triple, container header and requests.
#pragma once

#include <cstddef>
#include <cstdint>

namespace nivor {

/// Class, subclass and protocol of an interface (USB 2.0, 9.6.5).
struct InterfaceTriple {
    std::uint8_t interfaceClass;
    std::uint8_t interfaceSubClass;
    std::uint8_t interfaceProtocol;

    friend bool operator==(const InterfaceTriple&, const InterfaceTriple&) = default;
};

/// Still image capture over PIMA 15740 bulk-only transport (USB Still Image class, 4.3).
inline constexpr InterfaceTriple stillImageTriple{6, 1, 1};

/// Bytes of the header that begins every container (USB Still Image class, 7.1).
inline constexpr std::size_t containerHeaderSize = 12;

/// The length field of a data container that is too long for 32 bits.
inline constexpr std::uint32_t containerLengthUnknown = 0xFFFFFFFF;

/// bmRequestType of a class request to an interface, host to device and back (USB 2.0, 9.3.1).
inline constexpr std::uint8_t classRequestOut = 0x21;
inline constexpr std::uint8_t classRequestIn = 0xA1;

}  // namespace nivor
