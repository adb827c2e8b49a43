/// An object handle in the form in which it travels: the camera's own four bytes.
#pragma once

#include "foundation/Bytes.h"

#include <QHash>
#include <QString>

#include <array>
#include <cstdint>
#include <string>

namespace nivor {

/// The 4 bytes of a 32-bit ObjectHandle exactly as the camera sent them (little-endian).
/// Object commands carry them unchanged.
struct HandleBlock {
    std::array<std::uint8_t, 4> bytes{};

    /// The block of a handle that is known as a number.
    static HandleBlock fromNumber(std::uint32_t handle);

    [[nodiscard]] std::uint32_t number() const;

    /// Unsigned decimal text, the key of a `HandlesDict`.
    [[nodiscard]] QString key() const;

    /// The bytes in hexadecimal, such as "<0a000100>", as the log shows them.
    [[nodiscard]] std::string text() const;

    friend bool operator==(const HandleBlock&, const HandleBlock&) = default;
};

/// Every handle of a storage, keyed by its unsigned decimal text.
using HandlesDict = QHash<QString, HandleBlock>;

}  // namespace nivor
