#include "simulator/FolderPicture.h"

#include "simulator/FixedSizeJpeg.h"

#include <QFile>
#include <QImage>
#include <QImageReader>

#include <utility>

namespace nivor {

FolderPicture::FolderPicture(FileDescriptor file)
    : file_(std::move(file))
{
    QFile input;
    if (!file_ || !input.open(file_.get(), QIODevice::ReadOnly))
        return;
    const QSize size = QImageReader(&input).size();
    const std::int64_t pixels = std::int64_t{size.width()} * size.height();
    if (size.isValid() && pixels > 0 && pixels <= mostPixels)
        extent_ = size;
}

QSize FolderPicture::thumbnailExtents() const
{
    if (extent_.isEmpty())
        return {};
    return extent_.scaled(thumbnailExtent, thumbnailExtent, Qt::KeepAspectRatio)
        .expandedTo(QSize(1, 1));
}

std::optional<ByteBuffer> FolderPicture::thumbnail()
{
    QFile input;
    if (extent_.isEmpty() || !input.open(file_.get(), QIODevice::ReadOnly) || !input.seek(0))
        return std::nullopt;
    QImageReader reader(&input);
    reader.setScaledSize(thumbnailExtents());
    QImage image;
    if (!reader.read(&image))
        return std::nullopt;
    return encodeJpeg(image.convertToFormat(QImage::Format_RGB888), thumbnailSize);
}

}  // namespace nivor
