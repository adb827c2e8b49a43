/// The datasets that a responder sends, in their wire form (ISO 15740, clause 5).
#pragma once

#include "foundation/Bytes.h"
#include "simulator/CameraIdentity.h"
#include "simulator/Card.h"
#include "simulator/CardObject.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace nivor {

/// DeviceInfo (ISO 15740, 5.1.1).
ByteBuffer encodeDeviceInfo(const CameraIdentity& identity);

/// StorageInfo (ISO 15740, 5.2.2).
ByteBuffer encodeStorageInfo(const Card& card);

/// ObjectInfo (ISO 15740, 5.3.1); a size that 32 bits can't hold is sent as 0xFFFFFFFF.
ByteBuffer encodeObjectInfo(const CardObject& object, std::uint32_t storageID);

/// Offsets in the ObjectInfo dataset of the two sizes that a fault may falsify.
inline constexpr std::size_t objectInfoSizeOffset = 8;
inline constexpr std::size_t objectInfoThumbnailSizeOffset = 14;

/// An array of 32-bit values with its count (ISO 15740, 5.3.3).
ByteBuffer encodeArray(std::span<const std::uint32_t> values);

/// A string: count of UTF-16 units with terminator, the units (ISO 15740, 5.3.4). A text of more
/// than 254 units is cut there; empty text is the single byte 0.
void appendPtpString(ByteBuffer& buffer, std::u16string_view text);

}  // namespace nivor
