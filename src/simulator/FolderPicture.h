/// A picture file of the user's: its extents and a thumbnail of it.
#pragma once

#include "foundation/Bytes.h"
#include "simulator/FileDescriptor.h"

#include <QSize>

#include <cstdint>
#include <optional>

namespace nivor {

/// Reads foreign picture files within bounds. Not for use from several threads at a time.
class FolderPicture {
public:
    /// Larger pictures count as none: decoding them takes too much memory and time.
    static constexpr std::int64_t mostPixels = 100'000'000;

    static constexpr int thumbnailExtent = 160;                ///< pixels of the longer side
    static constexpr std::uint32_t thumbnailSize = 20 * 1024;  ///< bytes, of every thumbnail

    /// Takes an open file; none makes no picture.
    explicit FolderPicture(FileDescriptor file);

    /// Pixels, as the file's header says; empty when it is no picture, or too large a one.
    [[nodiscard]] QSize extent() const { return extent_; }

    /// Pixels of the thumbnail.
    [[nodiscard]] QSize thumbnailExtents() const;

    /// A JPEG of `thumbnailSize` bytes, or nothing.
    std::optional<ByteBuffer> thumbnail();

private:
    FileDescriptor file_;
    QSize extent_;
};

}  // namespace nivor
