// Thumbnails that are none, or that would take more than a picture is worth.
#include "datasets/Thumbnail.h"
#include "faults/FaultFixture.h"
#include "support/PeakMemory.h"

#include <QBuffer>
#include <QImage>

using namespace nivor;
using namespace nivor::test;

namespace {

using Operation = OperationCode;
using Strings = std::vector<std::string>;

enum class Shown : std::uint8_t { Nothing, Damaged, Picture };

struct ThumbnailRow {
    std::string name;
    FaultPlan faults{};
    Shown shown = Shown::Nothing;
    Strings log{"getThumb (result = success, objHdr = <01000000>)"};

    friend void PrintTo(const ThumbnailRow& row, std::ostream* out) { *out << row.name; }
};

ByteBuffer picture(const char* format)
{
    QImage image({160, 120}, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qRgb(x, y, x * y));
    }
    QByteArray file;
    QBuffer buffer(&file);
    EXPECT_TRUE(image.save(&buffer, format));
    return {file.begin(), file.end()};
}

ByteBuffer cut(ByteBuffer bytes, std::size_t size)
{
    bytes.resize(size);
    return bytes;
}

ByteBuffer text(std::string_view characters)
{
    return {characters.begin(), characters.end()};
}

/// A JPEG of a few bytes whose frame header (ITU-T T.81, B.2.2) claims that many pixels.
ByteBuffer jpegClaiming(std::uint16_t width, std::uint16_t height)
{
    const auto high = [](std::uint16_t value) { return static_cast<std::uint8_t>(value >> 8); };
    const auto low = [](std::uint16_t value) { return static_cast<std::uint8_t>(value); };
    return {0xFF, 0xD8,            // SOI
            0xFF, 0xC0, 0, 11, 8,  // SOF0, its length, bits of a
                                   // sample
            high(height), low(height), high(width), low(width), 1, 1, 0x11, 0,  // one component
            0xFF, 0xDA, 0, 8, 1, 1, 0, 0, 63, 0,                                // SOS
            0xFF, 0xD9};                                                        // EOI
}

/// The same for the header of a PNG (PNG, 11.2.2).
ByteBuffer pngClaiming(std::uint32_t width, std::uint32_t height)
{
    ByteBuffer file = picture("PNG");
    for (std::size_t i = 0; i < 4; ++i) {
        file[16 + i] = static_cast<std::uint8_t>(width >> (24 - 8 * i));
        file[20 + i] = static_cast<std::uint8_t>(height >> (24 - 8 * i));
    }
    return file;
}

ByteBuffer bmpClaiming(std::uint32_t width, std::uint32_t height)
{
    ByteBuffer file = picture("BMP");
    putLittleEndian(std::span<std::uint8_t>(file), 18, width);
    putLittleEndian(std::span<std::uint8_t>(file), 22, height);
    return file;
}

/// The camera sends these bytes as the first object's thumbnail.
FaultPlan sends(const ByteBuffer& file)
{
    return FaultPlan().on(Operation::GetThumb, answerWith(file), Occurrences::nth(1));
}

FaultPlan claims(std::uint32_t size)
{
    return FaultPlan().on(Operation::GetObjectInfo, fault::UntrueObjectInfo{.thumbnailSize = size},
                          Occurrences::nth(1));
}

FaultPlan does(fault::Effect effect)
{
    return FaultPlan().on(Operation::GetThumb, std::move(effect), Occurrences::nth(1));
}

std::vector<ThumbnailRow> thumbnailRows()
{
    const Strings fail{"getThumb (result = fail, objHdr = <01000000>)"};
    const auto nth = Occurrences::nth(1);
    return {
        {.name = "IsGood", .shown = Shown::Picture},
        {.name = "IsAPNG", .faults = sends(picture("PNG")), .shown = Shown::Picture},

        {.name = "ClaimsFourGibibytes", .faults = claims(0xFFFFFFFF), .shown = Shown::Picture},
        {.name = "ClaimsOneByte", .faults = claims(1), .shown = Shown::Picture},
        {.name = "ClaimsFourGibibytesInItsContainerToo",
         .faults = claims(0xFFFFFFFF)
                       .on(Operation::GetThumb, fault::ContainerLength{.value = 0xFFFFFFFE}, nth),
         .log = fail},
        {.name = "ClaimsFourGibibytesAndSaysNotHowMany",
         .faults = claims(0xFFFFFFFF)
                       .on(Operation::GetThumb, fault::ContainerLength{.value = 0xFFFFFFFF}, nth),
         .log = fail},
        {.name = "ClaimsNone", .faults = claims(0), .log = {}},

        {.name = "IsEmpty", .faults = sends({}), .log = fail},
        {.name = "IsOfOneByte", .faults = sends({0xFF})},
        {.name = "IsRefused",
         .faults = does(fault::Refuse{.code = ResponseCode::NoThumbnailPresent}),
         .log = fail},
        {.name = "IsNotSent", .faults = does(fault::Silence{}), .log = fail},
        {.name = "StopsInTheMiddle",
         .faults = does(fault::CutData{.bytes = 600, .thenSilence = true}),
         .log = fail},

        {.name = "IsAJPEGOf60000By60000", .faults = sends(jpegClaiming(60'000, 60'000))},
        {.name = "IsAJPEGOf65535By1", .faults = sends(jpegClaiming(65'535, 1))},
        {.name = "IsAJPEGOfNoPixels", .faults = sends(jpegClaiming(0, 0))},
        {.name = "IsAPNGOf60000By60000", .faults = sends(pngClaiming(60'000, 60'000))},
        {.name = "IsAPNGOfFourBillionPixelsAcross", .faults = sends(pngClaiming(0xFFFFFFFF, 1))},
        {.name = "IsABMPOf60000By60000", .faults = sends(bmpClaiming(60'000, 60'000))},
        {.name = "IsABMPThatStandsOnItsHead", .faults = sends(bmpClaiming(160, 0x80000000))},

        {.name = "IsAJPEGCutInItsHeader", .faults = sends(cut(picture("JPEG"), 100))},
        {.name = "IsAJPEGCutInItsPicture",
         .faults = sends(cut(picture("JPEG"), 1000)),
         .shown = Shown::Picture},
        {.name = "IsAPNGCutInItsHeader", .faults = sends(cut(picture("PNG"), 20))},
        {.name = "IsAPNGCutInItsPicture",
         .faults = sends(cut(picture("PNG"), 200)),
         .shown = Shown::Damaged},
        {.name = "IsOnlyTheBeginningOfAJPEG", .faults = sends({0xFF, 0xD8, 0xFF})},

        {.name = "IsADrawing",
         .faults = sends(text("<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>"))},
        {.name = "IsAProgram",
         .faults = sends(text("\x7F"
                              "ELF\x02\x01\x01"))},
        {.name = "IsAText", .faults = sends(text("No picture."))},
        {.name = "IsAnXPixmap",
         .faults = sends(text("/* XPM */ static char* a[] = {\"1 1 1 1\"};"))},
        {.name = "IsZeroes", .faults = sends(ByteBuffer(5000))},
    };
}

class ThumbnailFaults : public FaultCells<ThumbnailRow> { };

TEST_P(ThumbnailFaults, LeaveTheFileInTheListAndTakeNoMemory)
{
    for (const char16_t* name : {u"A.JPG", u"B.JPG"}) {
        const std::uint32_t handle = card->addFile(name, 300);
        card->setThumbnail(handle, picture("JPEG"));
    }
    connect(seam(), {.faults = row().faults});

    const PeakMemory memory;
    const auto result = load(true);
    EXPECT_EQ(result.end, ContentLoader::End::Complete) << result.failure;
    EXPECT_EQ(result.failedObjects, 0U);
    ASSERT_THAT(namesOf(result.listing.objects), ::testing::ElementsAre("A.JPG", "B.JPG"));
    const auto first = result.listing.objects[0]->thumbnail();
    ASSERT_EQ(first != nullptr, row().shown != Shown::Nothing);
    if (first) {
        EXPECT_EQ(first->image().isNull(), row().shown == Shown::Damaged);
    }
    ASSERT_NE(result.listing.objects[1]->thumbnail(), nullptr);
    EXPECT_EQ(result.listing.objects[1]->thumbnail()->image().size(), QSize(160, 120));
    EXPECT_LT(memory.mebibytes(), 200);
    EXPECT_TRUE(logTells(row().log));
    EXPECT_EQ(copy(result.listing).copiedCount(), 2U);
}

INSTANTIATE_TEST_SUITE_P(Cells, ThumbnailFaults,
                         ::testing::Combine(bothSeams(), ::testing::ValuesIn(thumbnailRows())),
                         nameOfCell<ThumbnailRow>);

}  // namespace
