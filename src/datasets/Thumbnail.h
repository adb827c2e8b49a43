/// The camera's small picture of an object, kept as the file that the camera sent.
#pragma once

#include "foundation/Bytes.h"

#include <QByteArray>
#include <QImage>
#include <QSize>

#include <cstddef>
#include <memory>

namespace nivor {

/// Decoded only when somebody looks at it: a card may hold thousands, and a decoded picture takes
/// ten times the memory of its file. Immutable, so any thread may use it.
class Thumbnail {
public:
    /// A picture of more pixels is none: decoding it would take more memory than any list is worth.
    static constexpr qint64 mostPixels = qint64{1} << 22;

    /// Nor is a file of more bytes: every object of a card keeps its own.
    static constexpr std::size_t largestFile = std::size_t{1} << 20;

    /// Null when the bytes don't begin as a JPEG, PNG, GIF, BMP or TIFF picture of 1 to
    /// `mostPixels` pixels, or are more than `largestFile`. The rest of the file is not looked at.
    static std::shared_ptr<const Thumbnail> fromFile(ByteView bytes);

    /// Width and height in pixels, as the file says before it is decoded.
    [[nodiscard]] QSize size() const { return size_; }

    /// Size of the file in bytes.
    [[nodiscard]] std::size_t fileSize() const { return static_cast<std::size_t>(file_.size()); }

    /// The picture, decoded anew at each call; null when the file turns out to be damaged, or to
    /// have more than `mostPixels` after all.
    [[nodiscard]] QImage image() const;

private:
    Thumbnail(QByteArray file, QSize size);

    QByteArray file_;
    QSize size_;
};

}  // namespace nivor
