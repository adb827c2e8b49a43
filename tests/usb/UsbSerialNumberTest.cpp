#include "usb/UsbSerialNumber.h"

#include <gtest/gtest.h>

namespace nivor {
namespace {

ByteBuffer descriptor(std::initializer_list<std::uint16_t> units)
{
    ByteBuffer bytes{static_cast<std::uint8_t>(2 + 2 * units.size()), 3};
    for (const std::uint16_t unit : units) {
        bytes.push_back(static_cast<std::uint8_t>(unit));
        bytes.push_back(static_cast<std::uint8_t>(unit >> 8));
    }
    return bytes;
}

TEST(UsbSerialNumberTest, AsciiStaysAsItIs)
{
    EXPECT_EQ(textOfStringDescriptor(descriptor({'A', '1', '0'})), "A10");
    EXPECT_EQ(textOfStringDescriptor(descriptor({})), "");
}

TEST(UsbSerialNumberTest, OtherCharactersBecomeUtf8)
{
    EXPECT_EQ(textOfStringDescriptor(descriptor({0xE9})), "\xC3\xA9");
    EXPECT_EQ(textOfStringDescriptor(descriptor({0x65E5})), "\xE6\x97\xA5");
    EXPECT_EQ(textOfStringDescriptor(descriptor({0xD83D, 0xDCF7})), "\xF0\x9F\x93\xB7");
}

TEST(UsbSerialNumberTest, HalfASurrogatePairIsNoText)
{
    EXPECT_EQ(textOfStringDescriptor(descriptor({0xD83D})), std::nullopt);
    EXPECT_EQ(textOfStringDescriptor(descriptor({0xD83D, 'A'})), std::nullopt);
    EXPECT_EQ(textOfStringDescriptor(descriptor({0xDCF7, 0xD83D})), std::nullopt);
}

TEST(UsbSerialNumberTest, WhatIsNoStringDescriptorIsNoText)
{
    EXPECT_EQ(textOfStringDescriptor({}), std::nullopt);
    EXPECT_EQ(textOfStringDescriptor(ByteBuffer{2}), std::nullopt);
    EXPECT_EQ(textOfStringDescriptor(ByteBuffer{1, 3}), std::nullopt);
    EXPECT_EQ(textOfStringDescriptor(ByteBuffer{4, 2, 'A', 0}), std::nullopt);
    EXPECT_EQ(textOfStringDescriptor(ByteBuffer{6, 3, 'A', 0}), std::nullopt);
}

TEST(UsbSerialNumberTest, AnOddByteAtTheEndIsIgnored)
{
    EXPECT_EQ(textOfStringDescriptor(ByteBuffer{5, 3, 'A', 0, 'B'}), "A");
}

TEST(UsbSerialNumberTest, TheLongestDescriptorFits)
{
    ByteBuffer bytes{254, 3};
    std::string text;
    for (int i = 0; i < 126; ++i) {
        bytes.insert(bytes.end(), {0xE5, 0x65});
        text += "\xE6\x97\xA5";
    }
    EXPECT_EQ(textOfStringDescriptor(bytes), text);
}

}  // namespace
}  // namespace nivor
