/// One file or folder on a simulated camera's card.
#pragma once

#include "codes/ObjectFormatCode.h"

#include <cstdint>
#include <string>

namespace nivor {

/// The parent of an object in the card's root, and no object's handle.
inline constexpr std::uint32_t noHandle = 0;

/// What GetObjectInfo tells about an object (ISO 15740, 5.3.1); the fields are the card's truth.
struct CardObject {
    std::uint32_t handle = noHandle;
    std::uint32_t parent = noHandle;
    std::u16string name{};  ///< UTF-16 units without terminator; only the first 254 reach the wire
    ObjectFormatCode format = ObjectFormatCode::Undefined;
    std::uint64_t size = 0;             ///< bytes
    std::u16string captureDate{};       ///< "YYYYMMDDThhmmss" (ISO 15740, 5.3.5.1), may be empty
    std::u16string modificationDate{};  ///< the same
    std::uint32_t thumbnailSize = 0;    ///< bytes; 0 = no thumbnail
    std::uint32_t thumbnailWidth = 0;   ///< pixels, 0 = unknown
    std::uint32_t thumbnailHeight = 0;  ///< pixels, 0 = unknown
    std::uint32_t imageWidth = 0;       ///< pixels, 0 = unknown or no image
    std::uint32_t imageHeight = 0;      ///< pixels, 0 = unknown or no image
    bool isProtected = false;           ///< refuses deletion

    [[nodiscard]] bool isFolder() const { return format == ObjectFormatCode::Association; }
};

}  // namespace nivor
