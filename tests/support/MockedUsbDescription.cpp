#include "support/MockedUsbDescription.h"

#include "foundation/ByteWriter.h"

#include <algorithm>
#include <set>

namespace nivor::test {

namespace {

void append(ByteBuffer& to, std::initializer_list<unsigned> bytes)
{
    for (const unsigned byte : bytes)
        to.push_back(static_cast<std::uint8_t>(byte));
}

}  // namespace

ByteBuffer descriptorsOf(const MockedUsbDescription& description)
{
    ByteBuffer configuration;
    std::set<std::uint8_t> numbers;
    for (const MockedInterface& interface : description.interfaces) {
        numbers.insert(interface.number);
        append(configuration,
               {9, 4, interface.number, interface.alternateSetting,
                static_cast<unsigned>(interface.endpoints.size()), interface.interfaceClass,
                interface.interfaceSubClass, interface.interfaceProtocol, 0});
        for (const MockedEndpoint& endpoint : interface.endpoints) {
            append(configuration, {7, 5, endpoint.address, endpoint.attributes});
            appendLittleEndian(configuration, endpoint.maxPacketSize);
            append(configuration, {endpoint.attributes == 3 ? 8U : 0U});
        }
    }

    ByteBuffer bytes;
    append(bytes, {18, 1, 0x00, 0x02, 0, 0, 0, 64});
    appendLittleEndian(bytes, description.vendorID);
    appendLittleEndian(bytes, description.productID);
    append(bytes, {0, 1, 0, 0, description.serialNumber ? mockedSerialNumberIndex : 0U, 1});
    append(bytes, {9, 2});
    appendLittleEndian(bytes, static_cast<std::uint16_t>(9 + configuration.size()));
    append(bytes,
           {static_cast<unsigned>(numbers.size()), description.configurationValue, 0, 0x80, 250});
    bytes.insert(bytes.end(), configuration.begin(), configuration.end());
    if (description.spoil)
        description.spoil(bytes);
    return bytes;
}

ByteBuffer stringDescriptorOf(const std::string& text)
{
    ByteBuffer bytes;
    append(bytes, {static_cast<unsigned>(2 + 2 * text.size()), 3});
    for (const char character : text)
        append(bytes, {static_cast<unsigned>(character), 0});
    return bytes;
}

}  // namespace nivor::test
