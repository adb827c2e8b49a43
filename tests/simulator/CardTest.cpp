#include "simulator/BuiltInCard.h"
#include "simulator/FixedSizeJpeg.h"
#include "simulator/MemoryCard.h"
#include "simulator/PatternContent.h"

#include <QImage>

#include <gmock/gmock.h>

#include <map>
#include <set>
#include <string_view>

namespace nivor::test {

using testing::ElementsAre;

namespace {

QImage decoded(const ByteBuffer& jpeg)
{
    return QImage::fromData(jpeg.data(), static_cast<int>(jpeg.size()), "JPEG");
}

std::map<std::uint32_t, CardObject> objectsOf(const Card& card)
{
    std::map<std::uint32_t, CardObject> all;
    for (const std::uint32_t handle : card.handles())
        all.emplace(handle, card.object(handle).value());
    return all;
}

}  // namespace

TEST(BuiltInCardTest, HasItsInventory)
{
    const BuiltInCard card;
    std::multiset<std::u16string> names;
    int folders = 0;
    int pictures = 0;
    int films = 0;
    for (const auto& [handle, object] : objectsOf(card)) {
        names.insert(object.name);
        EXPECT_EQ(object.captureDate.size(), 15U);
        EXPECT_EQ(object.captureDate.at(8), u'T');
        if (object.isFolder()) {
            ++folders;
        } else if (object.format == ObjectFormatCode::EXIFJPEG) {
            ++pictures;
            EXPECT_EQ(object.imageWidth, 2 * object.imageHeight);
        } else {
            ++films;
            EXPECT_EQ(object.format, ObjectFormatCode::QuickTime);
            EXPECT_EQ(object.size, std::uint64_t{48} * 1024 * 1024);
        }
    }
    EXPECT_EQ(folders, 3);
    EXPECT_EQ(pictures, 40);
    EXPECT_EQ(films, 2);
    EXPECT_EQ(names.count(u"夕焼けのパノラマ.JPG"), 1U);
    EXPECT_EQ(names.count(u"PANO0020.JPG"), 2U);
}

TEST(BuiltInCardTest, KeepsItsPicturesInTwoFoldersBelowDCIM)
{
    const BuiltInCard card;
    const auto root = card.childrenOf(noHandle);
    ASSERT_EQ(root.size(), 1U);
    EXPECT_EQ(card.object(root.at(0))->name, u"DCIM");
    const auto folders = card.childrenOf(root.at(0));
    ASSERT_EQ(folders.size(), 2U);
    EXPECT_EQ(card.childrenOf(folders.at(0)).size(), 21U);
    EXPECT_EQ(card.childrenOf(folders.at(1)).size(), 21U);
}

TEST(BuiltInCardTest, GivesEveryPictureAThumbnailOfItsOwn)
{
    BuiltInCard card;
    std::set<ByteBuffer> different;
    for (const auto& [handle, object] : objectsOf(card)) {
        const auto bytes = card.thumbnail(handle);
        EXPECT_EQ(bytes.has_value(), object.thumbnailSize != 0);
        if (!bytes)
            continue;
        EXPECT_EQ(bytes->size(), object.thumbnailSize);
        EXPECT_EQ(decoded(*bytes).size(), QSize(160, 80));
        different.insert(*bytes);
    }
    EXPECT_EQ(different.size(), 41U);  // the pictures' and one film's
}

TEST(BuiltInCardTest, DrawsPicturesOfTheAnnouncedSizes)
{
    BuiltInCard card;
    for (const std::uint32_t handle : {std::uint32_t{4}, std::uint32_t{44}}) {
        const CardObject object = card.object(handle).value();
        ByteBuffer bytes(object.size);
        ASSERT_TRUE(card.read(handle, 0, bytes));
        const QImage picture = decoded(bytes);
        EXPECT_EQ(picture.width(), static_cast<int>(object.imageWidth));
        EXPECT_EQ(picture.height(), static_cast<int>(object.imageHeight));
        ByteBuffer tail(100);
        ASSERT_TRUE(card.read(handle, object.size - 100, tail));
        EXPECT_TRUE(std::equal(tail.begin(), tail.end(), bytes.end() - 100));
        EXPECT_FALSE(card.read(handle, object.size - 99, tail));
    }
}

TEST(BuiltInCardTest, DrawsTheSamePictureEveryTime)
{
    BuiltInCard one;
    BuiltInCard other;
    ByteBuffer first(one.object(4)->size);
    ByteBuffer second(first.size());
    ASSERT_TRUE(one.read(4, 0, first));
    ASSERT_TRUE(other.read(4, 0, second));
    EXPECT_EQ(first, second);
}

TEST(BuiltInCardTest, BeginsFilmsWithTheirFileType)
{
    BuiltInCard card;
    const std::uint32_t film = 24;
    ASSERT_EQ(card.object(film)->name, u"FILM0001.MOV");
    ByteBuffer head(64);
    ASSERT_TRUE(card.read(film, 0, head));
    EXPECT_EQ(std::string_view(reinterpret_cast<const char*>(head.data()) + 4, 8), "ftypqt  ");
    ByteBuffer part(16);
    ASSERT_TRUE(card.read(film, 48, part));
    EXPECT_TRUE(std::equal(part.begin(), part.end(), head.begin() + 48));
    ASSERT_TRUE(card.read(film, BuiltInCard::filmSize - 16, part));
    EXPECT_FALSE(card.read(film, BuiltInCard::filmSize - 15, part));
}

TEST(BuiltInCardTest, DeletesPicturesButNoFolderThatHoldsAny)
{
    BuiltInCard card;
    EXPECT_EQ(card.remove(4), CardRemoval::Removed);
    EXPECT_EQ(card.remove(4), CardRemoval::NotFound);
    EXPECT_EQ(card.remove(2), CardRemoval::NotEmpty);
    EXPECT_FALSE(card.object(4).has_value());
    EXPECT_EQ(card.handles().size(), 44U);
}

TEST(MemoryCardTest, TakesParentsThatAreMissingOrFormCycles)
{
    MemoryCard card;
    const std::uint32_t orphan = card.addFile(u"A.JPG", 1, 999);
    card.add({.handle = 50, .parent = 51, .format = ObjectFormatCode::Association}, ByteBuffer{});
    card.add({.handle = 51, .parent = 50, .format = ObjectFormatCode::Association}, ByteBuffer{});
    EXPECT_THAT(card.handles(), ElementsAre(orphan, 50, 51));
    EXPECT_THAT(card.childrenOf(51), ElementsAre(50));
}

TEST(MemoryCardTest, ReadsWithinItsObjectsOnly)
{
    MemoryCard card;
    const std::uint32_t handle = card.add({.name = u"A"}, ByteBuffer{1, 2, 3});
    ByteBuffer two(2);
    EXPECT_TRUE(card.read(handle, 1, two));
    EXPECT_THAT(two, ElementsAre(2, 3));
    EXPECT_FALSE(card.read(handle, 2, two));
    EXPECT_FALSE(card.read(handle, 0xFFFFFFFFFFFFFFFF, two));
    EXPECT_FALSE(card.read(handle + 1, 0, two));
}

TEST(PatternContentTest, IsTheSameWhereverAReadBegins)
{
    const PatternContent content(3);
    ByteBuffer whole(100);
    content.fill(0x100000003, whole);
    for (std::size_t begin = 0; begin < 20; ++begin) {
        for (std::size_t size = 0; size < 20; ++size) {
            ByteBuffer part(size);
            content.fill(0x100000003 + begin, part);
            EXPECT_TRUE(std::equal(part.begin(), part.end(),
                                   whole.begin() + static_cast<std::ptrdiff_t>(begin)));
        }
    }
    EXPECT_TRUE(content.matches(0x100000003, whole));
    EXPECT_FALSE(content.matches(0x100000002, whole));
    EXPECT_FALSE(PatternContent(4).matches(0x100000003, whole));
}

TEST(FixedSizeJpegTest, MeetsAnySizeThatIsLargeEnough)
{
    QImage image(64, 32, QImage::Format_RGB888);
    image.fill(Qt::darkCyan);
    const std::size_t smallest = encodeJpeg(image, 5000)->size();
    EXPECT_EQ(smallest, 5000U);
    for (const std::size_t size : {5001UL, 5002UL, 5003UL, 5004UL, 70'000UL, 140'007UL}) {
        const auto jpeg = encodeJpeg(image, size);
        ASSERT_TRUE(jpeg.has_value());
        EXPECT_EQ(jpeg->size(), size);
        EXPECT_EQ(decoded(*jpeg).size(), image.size());
    }
    EXPECT_EQ(encodeJpeg(image, 150), std::nullopt);
}

}  // namespace nivor::test
