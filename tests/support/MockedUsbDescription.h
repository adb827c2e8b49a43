/// What a mocked USB device says of itself.
#pragma once

#include "foundation/Bytes.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace nivor::test {

struct MockedEndpoint {
    std::uint8_t address;
    std::uint8_t attributes = 2;  ///< 2 bulk, 3 interrupt
    std::uint16_t maxPacketSize = 512;
};

/// One alternate setting of an interface; a still image camera's unless said otherwise.
struct MockedInterface {
    std::uint8_t number = 0;
    std::uint8_t alternateSetting = 0;
    std::uint8_t interfaceClass = 6;
    std::uint8_t interfaceSubClass = 1;
    std::uint8_t interfaceProtocol = 1;
    std::vector<MockedEndpoint> endpoints = {{0x81}, {0x02}, {0x83, 3, 28}};
};

struct MockedUsbDescription {
    unsigned bus = 1;
    unsigned address = 5;
    unsigned port = 1;
    std::uint16_t vendorID = 0x1209;
    std::uint16_t productID = 0x0001;
    std::string speed = "480";                ///< in Mb/s, as the kernel writes it
    std::optional<std::string> serialNumber;  ///< ASCII
    bool kernelKnowsSerialNumber = true;      ///< there is a sysfs attribute for it
    std::uint8_t configurationValue = 1;
    bool isConfigured = true;  ///< its configuration is the active one
    std::vector<MockedInterface> interfaces = {MockedInterface{}};
    std::function<void(ByteBuffer&)>
        spoil{};  ///< changes the descriptors' bytes before anyone sees
};

/// The device descriptor and its one configuration (USB 2.0, 9.6), as sysfs holds them.
ByteBuffer descriptorsOf(const MockedUsbDescription& description);

/// A string descriptor (USB 2.0, 9.6.7) of ASCII text.
ByteBuffer stringDescriptorOf(const std::string& text);

/// The index of the serial number among the string descriptors.
inline constexpr std::uint8_t mockedSerialNumberIndex = 3;

}  // namespace nivor::test
