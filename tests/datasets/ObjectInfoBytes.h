/// The container of a GetObjectInfo answer, field by field.
#pragma once

#include "foundation/ByteWriter.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace nivor::test {

/// Appends a PTP string of exactly these units; write the terminator yourself.
inline void appendString(ByteBuffer& bytes, std::u16string_view units)
{
    bytes.push_back(static_cast<std::uint8_t>(units.size()));
    for (const char16_t unit : units)
        appendLittleEndian(bytes, static_cast<std::uint16_t>(unit));
}

/// What a test wants a GetObjectInfo answer to say. Every field has a value of its own, so that one
/// read at the wrong place shows.
struct ObjectInfoBytes {
    std::uint32_t storageID = 0x00010001;
    std::uint16_t objectFormat = 0x3801;
    std::uint32_t objectCompressedSize = 0x00ABCDEF;
    std::uint16_t thumbFormat = 0x3808;
    std::uint32_t thumbCompressedSize = 0x00001234;
    std::uint32_t parentObject = 0x10000001;
    std::u16string_view fileName{u"DSC_0001.JPG\0", 13};
    std::u16string_view captureDate{u"20151231T235958\0", 16};
    std::u16string_view modificationDate{u"20160102T030405\0", 16};

    [[nodiscard]] ByteBuffer bytes() const
    {
        ByteBuffer bytes;
        appendLittleEndian(bytes, std::uint32_t{0});       // 0: container length, filled in below
        appendLittleEndian(bytes, std::uint16_t{2});       // 4: container type, data
        appendLittleEndian(bytes, std::uint16_t{0x1008});  // 6: GetObjectInfo
        appendLittleEndian(bytes, std::uint32_t{7});       // 8: transaction ID
        appendLittleEndian(bytes, storageID);              // 12: StorageID
        appendLittleEndian(bytes, objectFormat);           // 16: ObjectFormat
        appendLittleEndian(bytes, std::uint16_t{0xA1A2});  // 18: ProtectionStatus
        appendLittleEndian(bytes, objectCompressedSize);   // 20: ObjectCompressedSize
        appendLittleEndian(bytes, thumbFormat);            // 24: ThumbFormat
        appendLittleEndian(bytes, thumbCompressedSize);    // 26: ThumbCompressedSize
        appendLittleEndian(bytes, std::uint32_t{0xB1B2B3B4});  // 30: ThumbPixWidth
        appendLittleEndian(bytes, std::uint32_t{0xC1C2C3C4});  // 34: ThumbPixHeight
        appendLittleEndian(bytes, std::uint32_t{0xD1D2D3D4});  // 38: ImagePixWidth
        appendLittleEndian(bytes, std::uint32_t{0xE1E2E3E4});  // 42: ImagePixHeight
        appendLittleEndian(bytes, std::uint32_t{0xF1F2F3F4});  // 46: ImageBitDepth
        appendLittleEndian(bytes, parentObject);               // 50: ParentObject
        appendLittleEndian(bytes, std::uint16_t{0x9192});      // 54: AssociationType
        appendLittleEndian(bytes, std::uint32_t{0x81828384});  // 56: AssociationDesc
        appendLittleEndian(bytes, std::uint32_t{0x71727374});  // 60: SequenceNumber
        appendString(bytes, fileName);                         // 64: Filename
        appendString(bytes, captureDate);                      // CaptureDate
        appendString(bytes, modificationDate);                 // ModificationDate
        appendString(bytes, {u"Keywords\0", 9});               // Keywords
        putLittleEndian(bytes, 0, static_cast<std::uint32_t>(bytes.size()));
        return bytes;
    }

    /// Bytes of the container without the Keywords, which nobody reads.
    [[nodiscard]] std::size_t sizeRead() const { return bytes().size() - (1 + 2 * 9); }
};

}  // namespace nivor::test
