#include "simulator/FilmContent.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <limits>

namespace nivor {

FilmContent::FilmContent(std::uint64_t size, std::uint64_t seed)
    : size_(size)
    , noise_(seed)
{
    assert(size >= 64 && size <= std::numeric_limits<std::uint32_t>::max());
}

void FilmContent::fill(std::uint64_t offset, std::span<std::uint8_t> out) const
{
    constexpr std::uint32_t fileTypeSize = 20;
    const auto mediaSize = static_cast<std::uint32_t>(size_ - fileTypeSize);
    // Boxes are big-endian.
    const std::array<std::uint8_t, fileTypeSize + 8> header{
        0,
        0,
        0,
        fileTypeSize,  // size of the file type box
        'f',
        't',
        'y',
        'p',
        'q',
        't',
        ' ',
        ' ',  // major brand
        0x20,
        0x05,
        0x03,
        0x00,  // its version
        'q',
        't',
        ' ',
        ' ',  // the one compatible brand
        static_cast<std::uint8_t>(mediaSize >> 24),
        static_cast<std::uint8_t>(mediaSize >> 16),
        static_cast<std::uint8_t>(mediaSize >> 8),
        static_cast<std::uint8_t>(mediaSize),
        'm',
        'd',
        'a',
        't'};

    noise_.fill(offset, out);
    for (std::uint64_t i = offset; i < std::min<std::uint64_t>(header.size(), offset + out.size());
         ++i)
        out[i - offset] = header[i];
}

}  // namespace nivor
