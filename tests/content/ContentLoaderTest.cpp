#include "content/SimulatedCameraFixture.h"
#include "datasets/Thumbnail.h"

#include <QBuffer>
#include <QImage>

using namespace nivor;
using namespace nivor::test;
using ::testing::ElementsAre;

namespace {

using End = ContentLoader::End;
using Operation = OperationCode;

class ContentLoaderTest : public SimulatedCameraFixture {
protected:
    std::uint64_t requests(Operation operation) const
    {
        return camera->record().requestsOf(operation);
    }

    void addFileAt(std::uint32_t handle, std::u16string name, std::uint64_t size = 100)
    {
        card->add({.handle = handle, .name = std::move(name), .size = size});
    }
};

TEST_F(ContentLoaderTest, AnEmptyCardGivesAnEmptyList)
{
    connect();
    const auto result = load();
    EXPECT_EQ(result.end, End::Complete);
    EXPECT_TRUE(result.listing.objects.empty());
    EXPECT_EQ(result.failedObjects, 0U);
}

TEST_F(ContentLoaderTest, FilesAndFoldersAreListedWithTheirHandles)
{
    const std::uint32_t folder = card->addFolder(u"DCIM");
    const std::uint32_t file = card->addFile(u"IMG.JPG", 1234, folder);
    connect();
    const auto result = load();
    EXPECT_THAT(namesOf(result.listing.objects), ElementsAre("DCIM", "IMG.JPG"));
    const ObjectInfoData& object = *result.listing.objects.at(1);
    EXPECT_EQ(object.myHandle(), QString::number(file));
    EXPECT_EQ(object.parentObject(), QString::number(folder));
    EXPECT_EQ(object.objectCompressedSize(), 1234U);
    EXPECT_EQ(result.listing.handles.value(object.myHandle()).number(), file);
    EXPECT_EQ(requests(Operation::GetObjectHandles), 1U);
}

TEST_F(ContentLoaderTest, NoStorageEndsTheListing)
{
    connectWith(FaultPlan().on(Operation::GetStorageIDs, answerWithArray({})));
    EXPECT_EQ(load().end, End::NoStorage);
    EXPECT_EQ(requests(Operation::GetObjectHandles), 0U);
}

TEST_F(ContentLoaderTest, OnlyTheFirstOfTwoStoragesIsListed)
{
    card->addFile(u"A.JPG", 1);
    connectWith(
        FaultPlan().on(Operation::GetStorageIDs, answerWithArray({0x00010001, 0x00020001})));
    EXPECT_EQ(load().listing.objects.size(), 1U);
    EXPECT_EQ(requests(Operation::GetObjectHandles), 1U);
}

TEST_F(ContentLoaderTest, HandlesAreReadByTheirNumber)
{
    addFileAt(10, u"ten");
    addFileAt(100, u"hundred");
    addFileAt(9, u"nine");
    addFileAt(0x7FFFFFFF, u"largest signed");
    addFileAt(0xFFFFFFF0, u"far beyond");
    addFileAt(0x80000001, u"beyond");
    connect();
    EXPECT_THAT(namesOf(load().listing.objects),
                ElementsAre("nine", "ten", "hundred", "largest signed", "beyond", "far beyond"));
}

TEST_F(ContentLoaderTest, OneObjectThatFailsIsPassedOver)
{
    for (const char16_t* name : {u"A", u"B", u"C"})
        card->addFile(name, 1);
    connectWith(FaultPlan().on(Operation::GetObjectInfo, damagedAnswer(), Occurrences::nth(2)));
    const auto result = load();
    EXPECT_THAT(namesOf(result.listing.objects), ElementsAre("A", "C"));
    EXPECT_EQ(result.end, End::Complete);
    EXPECT_EQ(result.failedObjects, 1U);
    EXPECT_EQ(result.listing.handles.size(), 3);
}

TEST_F(ContentLoaderTest, FailuresThatAreNotInARowDoNotAddUp)
{
    for (const char16_t* name : {u"A", u"B", u"C", u"D"})
        card->addFile(name, 1);
    connectWith(FaultPlan()
                    .on(Operation::GetObjectInfo, damagedAnswer(), Occurrences::nth(1))
                    .on(Operation::GetObjectInfo, damagedAnswer(), Occurrences::nth(3)));
    EXPECT_THAT(namesOf(load().listing.objects), ElementsAre("B", "D"));
}

TEST_F(ContentLoaderTest, TwoFailuresInARowEndTheListing)
{
    for (const char16_t* name : {u"A", u"B", u"C", u"D"})
        card->addFile(name, 1);
    connectWith(FaultPlan().on(Operation::GetObjectInfo, damagedAnswer(), {2, 3}));
    const auto result = load();
    EXPECT_THAT(namesOf(result.listing.objects), ElementsAre("A"));
    EXPECT_EQ(result.end, End::TooManyFailures);
    EXPECT_EQ(result.failedObjects, 2U);
}

TEST_F(ContentLoaderTest, ASizeBeyond32BitsComesFromTheProperty)
{
    constexpr std::uint64_t size = 5'000'000'000;
    addFileAt(1, u"FILM.MOV", size);
    addFileAt(2, u"IMG.JPG", 0xFFFFFFFE);
    connect();
    const auto result = load();
    EXPECT_EQ(result.listing.objects.at(0)->objectCompressedSize(), size);
    EXPECT_EQ(result.listing.objects.at(1)->objectCompressedSize(), 0xFFFFFFFEU);
    EXPECT_EQ(requests(Operation::GetObjectPropValue), 1U);
}

TEST_F(ContentLoaderTest, ASizeThatCannotBeToldIsZero)
{
    addFileAt(1, u"FILM.MOV", 5'000'000'000);
    // One byte short of a value.
    connectWith(FaultPlan().on(Operation::GetObjectPropValue, answerWith(ByteBuffer(7))));
    const auto result = load();
    ASSERT_EQ(result.listing.objects.size(), 1U);
    EXPECT_EQ(result.listing.objects.front()->objectCompressedSize(), 0U);
    EXPECT_EQ(result.end, End::Complete);
}

TEST_F(ContentLoaderTest, ThumbnailsAreGivenUpAfterFiveFailuresInARow)
{
    for (int i = 0; i < 8; ++i)
        card->setThumbnail(card->addFile(u"A.JPG", 10), {1, 2, 3});
    connectWith(FaultPlan().on(Operation::GetThumb, answerWith({})));
    const auto result = load();
    EXPECT_TRUE(result.isComplete());
    EXPECT_EQ(result.listing.objects.size(), 8U);
    EXPECT_EQ(requests(Operation::GetThumb), 5U);
}

TEST_F(ContentLoaderTest, ThumbnailsThatFailNowAndThenDoNotAddUp)
{
    for (int i = 0; i < 12; ++i)
        card->setThumbnail(card->addFile(u"A.JPG", 10), {1, 2, 3});
    connectWith(FaultPlan()
                    .on(Operation::GetThumb, answerWith({}), Occurrences::firstTimes(4))
                    .on(Operation::GetThumb, answerWith({}), {6, 9}));
    load();
    EXPECT_EQ(requests(Operation::GetThumb), 12U);
}

TEST_F(ContentLoaderTest, ThumbnailsAreFetchedOnlyWhereTheyAreAndWanted)
{
    const std::uint32_t picture = card->addFile(u"A.JPG", 10);
    card->addFile(u"B.TXT", 10);
    const std::uint32_t broken = card->addFile(u"C.JPG", 10);
    QByteArray file;
    QBuffer buffer(&file);
    QImage(8, 4, QImage::Format_RGB32).save(&buffer, "PNG");
    card->setThumbnail(picture, ByteBuffer(file.begin(), file.end()));
    card->setThumbnail(broken, {1, 2, 3});
    connect();

    EXPECT_EQ(load({.thumbnails = false}).listing.objects.at(0)->thumbnail(), nullptr);
    EXPECT_EQ(requests(Operation::GetThumb), 0U);

    const auto result = load();
    EXPECT_EQ(requests(Operation::GetThumb), 2U);
    ASSERT_NE(result.listing.objects.at(0)->thumbnail(), nullptr);
    EXPECT_EQ(result.listing.objects.at(0)->thumbnail()->size(), QSize(8, 4));
    EXPECT_EQ(result.listing.objects.at(1)->thumbnail(), nullptr);
    EXPECT_EQ(result.listing.objects.at(2)->thumbnail(), nullptr);
}

TEST_F(ContentLoaderTest, HandlesThatCameBeforeAnErrorAreUsed)
{
    const std::uint32_t file = card->addFile(u"A.JPG", 1);
    connectWith(FaultPlan().on(Operation::GetObjectHandles, answerWithArray({file}, 3)));
    const auto result = load();
    EXPECT_THAT(namesOf(result.listing.objects), ElementsAre("A.JPG"));
    EXPECT_TRUE(result.handlesFailed);
    EXPECT_FALSE(result.failure.empty());
}

TEST_F(ContentLoaderTest, TheObserverHearsOfEachObjectAndTheListingStopsWhenTold)
{
    for (const char16_t* name : {u"A", u"B", u"C"})
        card->addFile(name, 1);
    connect();
    std::vector<std::size_t> done;
    std::size_t listed = 0;
    ContentLoader loader(
        engine, {},
        [&](const ContentLoader::Progress& progress) {
            EXPECT_EQ(progress.total, 3U);
            done.push_back(progress.done);
            listed = progress.listing->objects.size();
        },
        [&done] { return done.size() == 2; });
    const auto result = loader.load();
    EXPECT_THAT(done, ElementsAre(1U, 2U));
    EXPECT_EQ(listed, 2U);
    EXPECT_EQ(result.end, End::Stopped);
    EXPECT_THAT(namesOf(result.listing.objects), ElementsAre("A", "B"));
}

TEST_F(ContentLoaderTest, ACameraThatVanishesEndsTheListingSoon)
{
    for (int i = 0; i < 20; ++i)
        card->addFile(u"A" + std::u16string(1, static_cast<char16_t>(u'a' + i)), 1);
    connectWith(FaultPlan().on(Operation::GetObjectInfo, fault::Vanish{}, Occurrences::nth(3)));
    const auto began = std::chrono::steady_clock::now();
    const auto result = load();
    EXPECT_EQ(result.end, End::TooManyFailures);
    EXPECT_EQ(result.listing.objects.size(), 2U);
    EXPECT_LT(std::chrono::steady_clock::now() - began, std::chrono::seconds(4));
}

TEST_F(ContentLoaderTest, ALoaderMayBeUsedAgain)
{
    card->addFile(u"A", 1);
    connect();
    ContentLoader loader(engine, {});
    EXPECT_EQ(loader.load().listing.objects.size(), 1U);
    EXPECT_EQ(loader.load().listing.objects.size(), 1U);
}

}  // namespace
