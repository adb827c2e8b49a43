#include "datasets/Thumbnail.h"

#include "foundation/ByteReader.h"

#include <QBuffer>
#include <QImageReader>

#include <array>
#include <utility>

namespace nivor {
namespace {

/// The format that the bytes begin as, of those that cameras use; empty for any other. A decoder
/// for it may be installed, but bytes from a camera have no business in it. To let the decoders
/// themselves decide would take longer than all the rest of a listing.
QByteArray cameraFormat(const QByteArray& file)
{
    struct Beginning {
        QByteArrayView bytes;
        const char* format;
    };
    static constexpr std::array<Beginning, 6> beginnings{{
        {QByteArrayView("\xFF\xD8\xFF", 3), "jpeg"},
        {QByteArrayView("\x89PNG", 4), "png"},
        {QByteArrayView("GIF8", 4), "gif"},
        {QByteArrayView("BM", 2), "bmp"},
        {QByteArrayView("II*\0", 4), "tiff"},
        {QByteArrayView("MM\0*", 4), "tiff"},
    }};
    for (const Beginning& beginning : beginnings) {
        if (file.startsWith(beginning.bytes))
            return beginning.format;
    }
    return {};
}

bool isTooLarge(const QSize& size)
{
    return qint64{size.width()} * size.height() > Thumbnail::mostPixels;
}

/// The size that a picture is decoded at. A GIF tells its first frame's before that, and is decoded
/// at its screen's (GIF89a, 18).
QSize decodedSize(const QByteArray& file, const QByteArray& format, const QSize& told)
{
    constexpr std::size_t screenAt = 6;
    if (format != "gif")
        return told;
    ByteReader screen({reinterpret_cast<const std::uint8_t*>(file.constData()),
                       static_cast<std::size_t>(file.size())},
                      screenAt);
    const int width = screen.u16();
    const int height = screen.u16();
    return told.expandedTo({width, height});
}

std::unique_ptr<QImageReader> readerOf(QBuffer& file, const QByteArray& format)
{
    auto reader = std::make_unique<QImageReader>(&file, format);
    reader->setAutoDetectImageFormat(false);
    return reader;
}

}  // namespace

Thumbnail::Thumbnail(QByteArray file, QSize size)
    : file_(std::move(file))
    , size_(size)
{
}

std::shared_ptr<const Thumbnail> Thumbnail::fromFile(ByteView bytes)
{
    if (bytes.size() > largestFile)
        return nullptr;
    // A view first: what turns out to be no picture need not be copied.
    auto file = QByteArray::fromRawData(reinterpret_cast<const char*>(bytes.data()),
                                        static_cast<qsizetype>(bytes.size()));
    const QByteArray format = cameraFormat(file);
    if (format.isEmpty())
        return nullptr;
    QBuffer buffer(&file);
    const QSize size = readerOf(buffer, format)->size();
    if (size.isEmpty() || isTooLarge(decodedSize(file, format, size)))
        return nullptr;
    file.detach();
    return std::shared_ptr<const Thumbnail>(new Thumbnail(std::move(file), size));
}

QImage Thumbnail::image() const
{
    QByteArray file = file_;
    QBuffer buffer(&file);
    QImage image = readerOf(buffer, cameraFormat(file))->read();
    // Whatever a decoder has made of it, no more is kept.
    return isTooLarge(image.size()) ? QImage() : image;
}

}  // namespace nivor
