// Cameras that name more than a list can hold.
#include "content/SimulatedCameraFixture.h"
#include "datasets/Thumbnail.h"

#include <QBuffer>
#include <QImage>

using namespace nivor;
using namespace nivor::test;
using ::testing::ElementsAre;

namespace {

using End = ContentLoader::End;
using Limits = ListingBudget::Limits;

class ListingBudgetTest : public SimulatedCameraFixture {
protected:
    ContentLoader::Result loadWithin(const Limits& limits)
    {
        return ContentLoader(engine, {}, {}, {}, ListingBudget(limits)).load();
    }

    std::uint64_t requests(OperationCode operation) const
    {
        return camera->record().requestsOf(operation);
    }

    static ByteBuffer jpeg()
    {
        QImage image(16, 16, QImage::Format_RGB32);
        image.fill(Qt::red);
        QByteArray bytes;
        QBuffer buffer(&bytes);
        image.save(&buffer, "JPG");
        return {bytes.begin(), bytes.end()};
    }
};

TEST_F(ListingBudgetTest, ListsSoManyObjectsAndAsksForNoFurtherOne)
{
    for (const char16_t* name : {u"A", u"B", u"C", u"D"})
        card->addFile(name, 10);
    connect();
    const auto result = loadWithin({.objects = 3});
    EXPECT_EQ(result.end, End::TooMuch);
    EXPECT_FALSE(result.isComplete());
    EXPECT_THAT(namesOf(result.listing.objects), ElementsAre("A", "B", "C"));
    EXPECT_EQ(requests(OperationCode::GetObjectInfo), 3U);
}

TEST_F(ListingBudgetTest, ExactlySoManyObjectsAreAllOfThem)
{
    for (const char16_t* name : {u"A", u"B", u"C"})
        card->addFile(name, 10);
    connect();
    const auto result = loadWithin({.objects = 3});
    EXPECT_EQ(result.end, End::Complete);
    EXPECT_EQ(result.listing.objects.size(), 3U);
}

TEST_F(ListingBudgetTest, LongNamesUseItUpSooner)
{
    for (int i = 0; i < 20; ++i)
        card->addFile(std::u16string(250, u'N'), 10);
    connect();
    // A name of 251 units takes 502 bytes beside the record itself.
    const auto result = loadWithin({.recordBytes = 10 * 502});
    EXPECT_EQ(result.end, End::TooMuch);
    EXPECT_GT(result.listing.objects.size(), 1U);
    EXPECT_LT(result.listing.objects.size(), 10U);
}

TEST_F(ListingBudgetTest, WithoutRoomForThumbnailsTheFilesAreStillListed)
{
    const ByteBuffer thumbnail = jpeg();
    for (const char16_t* name : {u"A", u"B", u"C"})
        card->setThumbnail(card->addFile(name, 10), thumbnail);
    connect();
    const auto result = loadWithin({.thumbnailBytes = thumbnail.size() + 1});
    EXPECT_EQ(result.end, End::Complete);
    ASSERT_EQ(result.listing.objects.size(), 3U);
    EXPECT_NE(result.listing.objects.at(1)->thumbnail(), nullptr);
    EXPECT_EQ(result.listing.objects.at(2)->thumbnail(), nullptr);
    EXPECT_EQ(requests(OperationCode::GetThumb), 2U);
}

TEST_F(ListingBudgetTest, KeepsSoManyHandlesOfWhatFoldersName)
{
    for (const char16_t* name : {u"100MEDIA", u"101MEDIA"}) {
        const std::uint32_t folder = card->addFolder(name);
        card->addFile(u"A", 10, folder);
        card->addFile(u"B", 10, folder);
    }
    connect({.listing = ListingStyle::RootOnly});
    const auto result = loadWithin({.handles = 3});
    EXPECT_EQ(result.listing.handles.size(), 3);
    EXPECT_EQ(result.listing.objects.size(), 3U);
}

TEST_F(ListingBudgetTest, CountsWhatFoldersHoldToo)
{
    const std::uint32_t folder = card->addFolder(u"DCIM");
    card->addFile(u"A", 10, folder);
    card->addFile(u"B", 10, folder);
    connect({.listing = ListingStyle::RootOnly});
    const auto result = loadWithin({.objects = 2});
    EXPECT_EQ(result.end, End::TooMuch);
    EXPECT_THAT(namesOf(result.listing.objects), ElementsAre("DCIM", "A"));
}

}  // namespace
