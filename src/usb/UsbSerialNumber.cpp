#include "usb/UsbSerialNumber.h"

#include "foundation/ByteReader.h"

#include <fmt/format.h>

#include <array>
#include <fstream>

namespace nivor {

namespace {

constexpr std::size_t longestSerialNumber = 511;
constexpr std::chrono::milliseconds descriptorTimeout{1000};

std::optional<std::string> checkedLength(std::string text)
{
    if (text.size() > longestSerialNumber)
        return std::nullopt;
    return text;
}

#ifdef __linux__

/// The name of a device in the kernel's list, such as "1-4.2"; empty for a root hub.
std::string portPath(libusb_device* device)
{
    std::array<std::uint8_t, 7> ports{};
    const int depth = libusb_get_port_numbers(device, ports.data(), static_cast<int>(ports.size()));
    std::string path;
    for (int i = 0; i < depth; ++i)
        path +=
            fmt::format("{}{}", i == 0 ? fmt::format("{}-", libusb_get_bus_number(device)) : ".",
                        ports[static_cast<std::size_t>(i)]);
    return path;
}

std::optional<std::string> firstLine(const std::string& path)
{
    std::ifstream file(path);
    std::string line;
    if (!std::getline(file, line))
        return std::nullopt;
    return line;
}

#endif

std::optional<std::string> textKnownToSystem([[maybe_unused]] libusb_device* device,
                                             [[maybe_unused]] const char* name)
{
#ifdef __linux__
    const std::string port = portPath(device);
    if (port.empty())
        return std::nullopt;
    const std::string directory = "/sys/bus/usb/devices/" + port + "/";
    if (firstLine(directory + "devnum") != fmt::format("{}", libusb_get_device_address(device)))
        return std::nullopt;
    auto text = firstLine(directory + name);
    return text ? checkedLength(std::move(*text)) : std::nullopt;
#else
    return std::nullopt;
#endif
}

void appendUtf8(std::string& text, std::uint32_t character)
{
    const auto append = [&text](std::uint32_t byte) { text += static_cast<char>(byte); };
    if (character < 0x80) {
        append(character);
    } else if (character < 0x800) {
        append(0xC0 | (character >> 6));
        append(0x80 | (character & 0x3F));
    } else if (character < 0x10000) {
        append(0xE0 | (character >> 12));
        append(0x80 | ((character >> 6) & 0x3F));
        append(0x80 | (character & 0x3F));
    } else {
        append(0xF0 | (character >> 18));
        append(0x80 | ((character >> 12) & 0x3F));
        append(0x80 | ((character >> 6) & 0x3F));
        append(0x80 | (character & 0x3F));
    }
}

std::optional<ByteBuffer> stringDescriptor(LibusbHandle& handle, std::uint8_t index,
                                           std::uint16_t language)
{
    ByteBuffer bytes(255);
    ControlRequest request{.bmRequestType = LIBUSB_ENDPOINT_IN,
                           .bRequest = LIBUSB_REQUEST_GET_DESCRIPTOR,
                           .wValue = static_cast<std::uint16_t>((LIBUSB_DT_STRING << 8) | index),
                           .wIndex = language,
                           .data = bytes,
                           .timeouts = {descriptorTimeout, descriptorTimeout}};
    if (!succeeded(handle.controlRequest(request)))
        return std::nullopt;
    bytes.resize(request.transferred);
    return bytes;
}

}  // namespace

std::optional<std::string> textOfStringDescriptor(ByteView descriptor)
{
    ByteReader reader(descriptor);
    const std::size_t length = reader.u8();
    const std::uint8_t type = reader.u8();
    if (!reader.ok() || type != LIBUSB_DT_STRING || length > descriptor.size() || length < 2)
        return std::nullopt;
    std::string text;
    for (std::size_t left = (length - 2) / 2; left > 0; --left) {
        std::uint32_t unit = reader.u16();
        if (unit >= 0xD800 && unit < 0xE000) {
            const std::uint32_t low = left > 1 ? reader.u16() : 0U;
            if (unit >= 0xDC00 || low < 0xDC00 || low >= 0xE000)
                return std::nullopt;
            unit = 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
            --left;
        }
        appendUtf8(text, unit);
    }
    return checkedLength(std::move(text));
}

std::optional<std::string> serialNumberKnownToSystem(libusb_device* device)
{
    return textKnownToSystem(device, "serial");
}

std::optional<std::string> productNameKnownToSystem(libusb_device* device)
{
    return textKnownToSystem(device, "product");
}

std::optional<std::string> serialNumberFromDevice(LibusbHandle& handle, std::uint8_t stringIndex)
{
    // String 0 is the list of languages.
    const auto languages = stringDescriptor(handle, 0, 0);
    if (!languages || languages->size() < 4)
        return std::nullopt;
    ByteReader reader(*languages, 2);
    const auto descriptor = stringDescriptor(handle, stringIndex, reader.u16());
    return descriptor ? textOfStringDescriptor(*descriptor) : std::nullopt;
}

}  // namespace nivor
