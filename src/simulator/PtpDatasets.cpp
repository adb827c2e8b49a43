#include "simulator/PtpDatasets.h"

#include "codes/EventCode.h"
#include "codes/ObjectFormatCode.h"
#include "codes/OperationCode.h"
#include "foundation/ByteWriter.h"

#include <algorithm>
#include <array>
#include <limits>
#include <string>

namespace nivor {

namespace {

constexpr std::size_t longestString = 254;  // UTF-16 units; the count byte counts a terminator too

template <typename Code, std::size_t count>
void appendCodes(ByteBuffer& buffer, const std::array<Code, count>& codes)
{
    appendLittleEndian(buffer, static_cast<std::uint32_t>(count));
    for (const Code code : codes)
        appendLittleEndian(buffer, static_cast<std::uint16_t>(code));
}

void appendEmptyArray(ByteBuffer& buffer)
{
    appendLittleEndian(buffer, std::uint32_t{0});
}

std::uint32_t in32Bits(std::uint64_t size)
{
    return static_cast<std::uint32_t>(
        std::min<std::uint64_t>(size, std::numeric_limits<std::uint32_t>::max()));
}

}  // namespace

void appendPtpString(ByteBuffer& buffer, std::u16string_view text)
{
    text = text.substr(0, longestString);
    if (text.empty()) {
        buffer.push_back(0);
        return;
    }
    buffer.push_back(static_cast<std::uint8_t>(text.size() + 1));
    for (const char16_t unit : text)
        appendLittleEndian(buffer, static_cast<std::uint16_t>(unit));
    appendLittleEndian(buffer, std::uint16_t{0});
}

ByteBuffer encodeArray(std::span<const std::uint32_t> values)
{
    ByteBuffer buffer;
    buffer.reserve(sizeof(std::uint32_t) * (values.size() + 1));
    appendLittleEndian(buffer, static_cast<std::uint32_t>(values.size()));
    for (const std::uint32_t value : values)
        appendLittleEndian(buffer, value);
    return buffer;
}

ByteBuffer encodeDeviceInfo(const CameraIdentity& identity)
{
    constexpr std::array operations{
        OperationCode::GetDeviceInfo,    OperationCode::OpenSession,
        OperationCode::CloseSession,     OperationCode::GetStorageIDs,
        OperationCode::GetStorageInfo,   OperationCode::GetNumObjects,
        OperationCode::GetObjectHandles, OperationCode::GetObjectInfo,
        OperationCode::GetObject,        OperationCode::GetThumb,
        OperationCode::DeleteObject,     OperationCode::GetObjectPropValue};
    constexpr std::array events{EventCode::CancelTransaction};
    constexpr std::array formats{ObjectFormatCode::Association, ObjectFormatCode::EXIFJPEG,
                                 ObjectFormatCode::QuickTime};
    constexpr std::uint16_t standardVersion = 100;  // hundredths
    constexpr std::uint32_t mtpExtension = 6;       // GetObjectPropValue is MTP's

    ByteBuffer buffer;
    appendLittleEndian(buffer, standardVersion);
    appendLittleEndian(buffer, mtpExtension);
    appendLittleEndian(buffer, std::uint16_t{100});  // VendorExtensionVersion
    appendPtpString(buffer, {});                     // VendorExtensionDesc
    appendLittleEndian(buffer, std::uint16_t{0});    // FunctionalMode
    appendCodes(buffer, operations);
    appendCodes(buffer, events);
    appendEmptyArray(buffer);  // DevicePropertiesSupported
    appendEmptyArray(buffer);  // CaptureFormats
    appendCodes(buffer, formats);
    appendPtpString(buffer, u"NIVOR File Transfer");  // Manufacturer
    appendPtpString(buffer, u"Simulated camera");     // Model
    appendPtpString(buffer, u"1.0");                  // DeviceVersion
    const std::string serial = identity.serialNumber.value_or(std::string());
    appendPtpString(buffer, std::u16string(serial.begin(), serial.end()));
    return buffer;
}

ByteBuffer encodeStorageInfo(const Card& card)
{
    constexpr std::uint16_t removableMemory = 4;
    constexpr std::uint16_t cameraFileSystem = 3;
    const std::uint16_t access = card.isReadOnly() ? 1 : 0;

    std::uint64_t used = 0;
    for (const std::uint32_t handle : card.handles()) {
        if (const auto object = card.object(handle))
            used += object->size;
    }
    ByteBuffer buffer;
    appendLittleEndian(buffer, removableMemory);
    appendLittleEndian(buffer, cameraFileSystem);
    appendLittleEndian(buffer, access);
    appendLittleEndian(buffer, card.capacity());
    appendLittleEndian(buffer, card.capacity() - std::min(used, card.capacity()));
    appendLittleEndian(buffer, std::numeric_limits<std::uint32_t>::max());  // FreeSpaceInImages
    appendPtpString(buffer, u"Simulated card");                             // StorageDescription
    appendPtpString(buffer, {});                                            // VolumeLabel
    return buffer;
}

ByteBuffer encodeObjectInfo(const CardObject& object, std::uint32_t storageID)
{
    constexpr std::uint16_t genericFolder = 1;
    const bool hasThumbnail = object.thumbnailSize != 0;
    const bool isImage = object.imageWidth != 0;

    ByteBuffer buffer;
    appendLittleEndian(buffer, storageID);
    appendLittleEndian(buffer, static_cast<std::uint16_t>(object.format));
    appendLittleEndian(buffer, static_cast<std::uint16_t>(object.isProtected ? 1 : 0));
    appendLittleEndian(buffer, in32Bits(object.size));
    appendLittleEndian(buffer,
                       hasThumbnail ? static_cast<std::uint16_t>(ObjectFormatCode::JFIF)
                                    : std::uint16_t{0});
    appendLittleEndian(buffer, object.thumbnailSize);
    appendLittleEndian(buffer, object.thumbnailWidth);
    appendLittleEndian(buffer, object.thumbnailHeight);
    appendLittleEndian(buffer, object.imageWidth);
    appendLittleEndian(buffer, object.imageHeight);
    appendLittleEndian(buffer, std::uint32_t{isImage ? 24U : 0U});  // ImageBitDepth
    appendLittleEndian(buffer, object.parent);
    appendLittleEndian(buffer, object.isFolder() ? genericFolder : std::uint16_t{0});
    appendLittleEndian(buffer, std::uint32_t{0});  // AssociationDesc
    appendLittleEndian(buffer, std::uint32_t{0});  // SequenceNumber
    appendPtpString(buffer, object.name);
    appendPtpString(buffer, object.captureDate);
    appendPtpString(buffer, object.modificationDate);
    appendPtpString(buffer, {});  // Keywords
    return buffer;
}

}  // namespace nivor
