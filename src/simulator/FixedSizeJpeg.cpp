#include "simulator/FixedSizeJpeg.h"

#include <QBuffer>
#include <QByteArray>
#include <QImageWriter>

#include <algorithm>

namespace nivor {

namespace {

// 0xFF bytes before a marker are padding too (T.81, B.1.1.2), for gaps that no segment fits into.
constexpr std::uint8_t fillByte = 0xFF;
constexpr std::uint8_t commentMarker = 0xFE;
constexpr std::size_t segmentOverhead = 4;         // marker and length field
constexpr std::size_t longestSegment = 2 + 65535;  // marker; the length field counts itself

QByteArray encoded(const QImage& image, int quality)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "jpeg");
    writer.setQuality(quality);
    writer.write(image);
    return bytes;
}

ByteBuffer padding(std::size_t size)
{
    ByteBuffer bytes;
    bytes.reserve(size);
    while (size >= segmentOverhead) {
        const std::size_t segment = std::min(size, longestSegment);
        const std::size_t length = segment - 2;
        bytes.insert(bytes.end(),
                     {0xFF, commentMarker, static_cast<std::uint8_t>(length >> 8),
                      static_cast<std::uint8_t>(length & 0xFF)});
        bytes.resize(bytes.size() + segment - segmentOverhead, ' ');
        size -= segment;
    }
    bytes.resize(bytes.size() + size, fillByte);
    return bytes;
}

/// Where the first segment ends: JFIF wants its own to stay the first.
std::ptrdiff_t afterFirstSegment(const ByteBuffer& jpeg)
{
    const std::size_t length = static_cast<std::size_t>(jpeg[4]) << 8 | jpeg[5];
    constexpr std::size_t markers = 4;  // of the start and of the segment
    return static_cast<std::ptrdiff_t>(std::min(markers + length, jpeg.size()));
}

}  // namespace

std::optional<ByteBuffer> encodeJpeg(const QImage& image, std::size_t size)
{
    constexpr std::size_t smallestJpeg = 100;
    for (const int quality : {90, 84, 76, 66, 50, 30, 10}) {
        const QByteArray bytes = encoded(image, quality);
        const auto encodedSize = static_cast<std::size_t>(bytes.size());
        if (encodedSize < smallestJpeg)
            return std::nullopt;
        if (encodedSize > size)
            continue;
        ByteBuffer jpeg(bytes.begin(), bytes.end());
        const ByteBuffer filling = padding(size - encodedSize);
        jpeg.insert(jpeg.begin() + afterFirstSegment(jpeg), filling.begin(), filling.end());
        return jpeg;
    }
    return std::nullopt;
}

}  // namespace nivor
