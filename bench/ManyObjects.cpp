#include "ManyObjects.h"

#include <QBuffer>
#include <QImage>
#include <QString>

#include <fmt/format.h>

namespace nivor::bench {
namespace {

constexpr int objectsPerFolder = 100;

/// Different for each `number` up to 2^20, and without an order.
unsigned scattered(int number)
{
    constexpr unsigned odd = 0x9E3B1;
    return static_cast<unsigned>(number) * odd % (1U << 20);
}

CardObject file(int number, std::uint64_t size, std::uint32_t folder)
{
    const unsigned place = scattered(number);
    const std::string name = fmt::format("IMG_{}.JPG", place);
    const std::string date = fmt::format("2024{:02}{:02}T{:02}{:02}{:02}", place % 12 + 1,
                                         place % 28 + 1, place % 24, place % 60, place / 60 % 60);
    return {.parent = folder,
            .name = std::u16string(name.begin(), name.end()),
            .format = ObjectFormatCode::EXIFJPEG,
            .size = size + place % 100,
            .captureDate = std::u16string(date.begin(), date.end()),
            .modificationDate = std::u16string(date.begin(), date.end())};
}

}  // namespace

void fill(MemoryCard& card, const ManyObjects& objects)
{
    const ByteBuffer thumbnail = thumbnailFile();
    std::uint32_t folder = noHandle;
    for (int i = 0; i < objects.total; ++i) {
        if (i % objectsPerFolder == 0) {
            folder = card.addFolder(u"FOLDER");
            continue;
        }
        const std::uint32_t handle = card.add(file(i, objects.fileSize, folder));
        if (i / objectsPerFolder < objects.foldersWithThumbnails)
            card.setThumbnail(handle, thumbnail);
    }
}

ByteBuffer thumbnailFile()
{
    QImage image(160, 120, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qRgb(x, 2 * y, (x * y) % 256));
    }
    QByteArray file;
    QBuffer buffer(&file);
    image.save(&buffer, "JPEG", 80);
    return {file.begin(), file.end()};
}

}  // namespace nivor::bench
