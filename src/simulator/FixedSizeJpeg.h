/// JPEG files of a size that is known before they exist.
#pragma once

#include "foundation/Bytes.h"

#include <QImage>

#include <cstddef>
#include <optional>

namespace nivor {

/// The picture as a JPEG of exactly `size` bytes: in the best quality that fits, filled up with
/// comment segments (ITU-T T.81, B.2.4.5). Nothing when it fits in no quality. Any thread.
std::optional<ByteBuffer> encodeJpeg(const QImage& image, std::size_t size);

}  // namespace nivor
