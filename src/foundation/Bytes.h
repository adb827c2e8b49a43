/// The byte containers that every layer shares.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace nivor {

/// A growable run of bytes that owns its storage.
using ByteBuffer = std::vector<std::uint8_t>;

/// Bytes that somebody else owns, read only.
using ByteView = std::span<const std::uint8_t>;

}  // namespace nivor
