#include "datasets/Thumbnail.h"

#include <QBuffer>
#include <QImageReader>

#include <limits>
#include <utility>

namespace nivor {
namespace {

/// The formats that cameras use. A decoder for anything else may be installed, but bytes from a
/// camera have no business in it.
bool isCameraFormat(const QByteArray& format)
{
    return format == "jpeg" || format == "png" || format == "gif" || format == "bmp"
        || format == "tiff";
}

}  // namespace

Thumbnail::Thumbnail(QByteArray file, QSize size)
    : file_(std::move(file))
    , size_(size)
{
}

std::shared_ptr<const Thumbnail> Thumbnail::fromFile(ByteView bytes)
{
    if (bytes.size() > static_cast<std::size_t>(std::numeric_limits<int>::max()))
        return nullptr;
    // A view first: what turns out to be no picture need not be copied.
    auto file = QByteArray::fromRawData(reinterpret_cast<const char*>(bytes.data()),
                                        static_cast<qsizetype>(bytes.size()));
    QBuffer buffer(&file);
    QImageReader reader(&buffer);
    if (!isCameraFormat(reader.format()))
        return nullptr;
    const QSize size = reader.size();
    if (size.isEmpty() || qint64{size.width()} * size.height() > mostPixels)
        return nullptr;
    file.detach();
    return std::shared_ptr<const Thumbnail>(new Thumbnail(std::move(file), size));
}

QImage Thumbnail::image() const
{
    QByteArray file = file_;
    QBuffer buffer(&file);
    return QImageReader(&buffer).read();
}

}  // namespace nivor
