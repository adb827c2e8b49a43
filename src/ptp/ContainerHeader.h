/// The 12-byte header that begins every container on the bulk pipes.
#pragma once

#include "codes/ContainerType.h"
#include "foundation/Bytes.h"

#include <cstdint>

namespace nivor {

/// Decoded header fields (USB Still Image class, 7.1). The type is kept as received, since a
/// camera may send any number.
struct ContainerHeader {
    std::uint32_t length = 0;
    std::uint16_t type = 0;
    std::uint16_t code = 0;
    std::uint32_t transactionID = 0;

    /// Reads the first 12 of `bytes`; fields beyond their end are 0.
    static ContainerHeader parse(ByteView bytes);

    [[nodiscard]] bool isOfType(ContainerType wanted) const
    {
        return type == static_cast<std::uint16_t>(wanted);
    }

    /// Bytes of the whole container: its length field, or `expectedSize` where the field can't
    /// hold the length of a standard container.
    [[nodiscard]] std::uint64_t completeSize(std::uint64_t expectedSize) const;
};

}  // namespace nivor
