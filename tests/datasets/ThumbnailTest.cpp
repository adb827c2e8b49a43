#include "datasets/Thumbnail.h"

#include <QBuffer>

#include <gtest/gtest.h>

using namespace nivor;

namespace {

ByteBuffer pictureFile(const char* format, QSize size = {8, 4})
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::red);
    QByteArray file;
    QBuffer buffer(&file);
    EXPECT_TRUE(image.save(&buffer, format));
    return {file.begin(), file.end()};
}

TEST(Thumbnail, KnowsItsSizeAndIsDecodedOnDemand)
{
    for (const char* format : {"JPEG", "PNG", "BMP"}) {
        const auto thumbnail = Thumbnail::fromFile(pictureFile(format));
        ASSERT_NE(thumbnail, nullptr) << format;
        EXPECT_EQ(thumbnail->size(), QSize(8, 4));
        EXPECT_EQ(thumbnail->image().size(), QSize(8, 4));
        EXPECT_GT(thumbnail->image().pixelColor(3, 2).red(), 240);
    }
}

TEST(Thumbnail, OutlivesTheBytesItWasMadeOf)
{
    auto bytes = std::make_unique<ByteBuffer>(pictureFile("PNG"));
    const auto thumbnail = Thumbnail::fromFile(*bytes);
    bytes.reset();
    EXPECT_FALSE(thumbnail->image().isNull());
}

TEST(Thumbnail, WhatIsNoPictureIsNoThumbnail)
{
    EXPECT_EQ(Thumbnail::fromFile({}), nullptr);
    EXPECT_EQ(Thumbnail::fromFile(ByteBuffer{1, 2, 3}), nullptr);
    const std::string drawing = "<svg xmlns='http://www.w3.org/2000/svg' width='4' height='4'/>";
    EXPECT_EQ(Thumbnail::fromFile(ByteBuffer(drawing.begin(), drawing.end())), nullptr);
}

TEST(Thumbnail, AFileThatEndsEarlyShowsWhatIsThereOrNothing)
{
    ByteBuffer bytes = pictureFile("PNG", {64, 64});
    bytes.resize(bytes.size() - 30);  // the header is whole
    const auto thumbnail = Thumbnail::fromFile(bytes);
    ASSERT_NE(thumbnail, nullptr);
    EXPECT_TRUE(thumbnail->image().isNull());
}

TEST(Thumbnail, APictureBeyondTheBoundIsNotDecoded)
{
    EXPECT_NE(Thumbnail::fromFile(pictureFile("PNG", {2048, 2048})), nullptr);
    EXPECT_EQ(Thumbnail::fromFile(pictureFile("PNG", {2048, 2049})), nullptr);

    // A PNG header that claims 60,000 x 60,000.
    ByteBuffer bomb = pictureFile("PNG");
    const ByteBuffer huge{0, 0, 0xEA, 0x60};
    std::copy(huge.begin(), huge.end(), bomb.begin() + 16);
    std::copy(huge.begin(), huge.end(), bomb.begin() + 20);
    EXPECT_EQ(Thumbnail::fromFile(bomb), nullptr);
}

/// A GIF whose one frame is 1 x 1, on a screen of that size.
ByteBuffer gifOnScreen(std::uint16_t width, std::uint16_t height)
{
    ByteBuffer bytes{'G', 'I', 'F', '8', '9', 'a'};
    for (const std::uint16_t side : {width, height}) {
        bytes.push_back(static_cast<std::uint8_t>(side));
        bytes.push_back(static_cast<std::uint8_t>(side >> 8));
    }
    const ByteBuffer rest{0x80, 0, 0,                             // palette of two colours
                          0,    0, 0, 0xFF, 0xFF, 0xFF,           // black, white
                          0x2C, 0, 0, 0,    0,    1,    0, 1, 0,  // a frame at 0, 0 of 1 x 1
                          0,    2, 2, 0x44, 1,    0,              // its one pixel
                          0x3B};
    bytes.insert(bytes.end(), rest.begin(), rest.end());
    return bytes;
}

TEST(Thumbnail, AScreenBeyondTheBoundBehindASmallFrameIsNotDecoded)
{
    const auto small = Thumbnail::fromFile(gifOnScreen(4, 2));
    ASSERT_NE(small, nullptr);
    EXPECT_EQ(small->image().size(), QSize(4, 2));

    // 2,000 x 2,097 pixels are the most, and one row more is too many.
    EXPECT_NE(Thumbnail::fromFile(gifOnScreen(2000, 2097)), nullptr);
    for (const std::uint16_t height : {std::uint16_t{2098}, std::uint16_t{0xFFFF}})
        EXPECT_EQ(Thumbnail::fromFile(gifOnScreen(2000, height)), nullptr);
}

}  // namespace
