#include "datasets/DateFormatter.h"
#include "datasets/ObjectInfoBytes.h"
#include "datasets/ObjectInfoData.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <memory>
#include <thread>
#include <type_traits>
#include <vector>

namespace nivor::test {
namespace {

static_assert(sizeof(ObjectInfoData) <= 192, "a camera holds tens of thousands of objects");
static_assert(!std::is_copy_constructible_v<ObjectInfoData>);
static_assert(!std::is_copy_assignable_v<ObjectInfoData>);

TEST(ObjectInfoDataProperties, AreZeroOrNothingInANewRecord)
{
    const ObjectInfoData data;
    EXPECT_EQ(data.storageID(), 0U);
    EXPECT_EQ(data.objectFormat(), 0);
    EXPECT_FALSE(data.isAssociation());
    EXPECT_EQ(data.objectCompressedSize(), 0U);
    EXPECT_EQ(data.thumbFormat(), 0);
    EXPECT_EQ(data.thumbCompressedSize(), 0U);
    EXPECT_TRUE(data.parentObject().isNull());
    EXPECT_TRUE(data.fileName().isNull());
    EXPECT_TRUE(data.dateCreated().isNull());
    EXPECT_TRUE(data.dateModified().isNull());
    EXPECT_FALSE(data.modifiedDate().isValid());
    EXPECT_TRUE(data.myHandle().isNull());
    EXPECT_EQ(data.thumbnail(), nullptr);
}

TEST(ObjectInfoDataProperties, AreKeptAsSet)
{
    const QDateTime date(QDate(2016, 1, 2), QTime(3, 4, 5));
    // Never looked into, so it need not be an image.
    const auto something = std::make_shared<int>(0);
    const std::shared_ptr<const Thumbnail> image(something, nullptr);

    ObjectInfoData data;
    data.setStorageID(0xFFFFFFFF);
    data.setObjectFormat(0x3001);
    data.setObjectCompressedSize(0xFFFFFFFFFFFFFFFF);
    data.setThumbFormat(0xFFFF);
    data.setThumbCompressedSize(0xFFFFFFFE);
    data.setParentObject(QStringLiteral("1"));
    data.setFileName(QStringLiteral("2"));
    data.setDateCreated(QStringLiteral("3"));
    data.setDateModified(QStringLiteral("4"));
    data.setModifiedDate(date);
    data.setMyHandle(QStringLiteral("5"));
    data.setThumbnail(image);

    EXPECT_EQ(data.storageID(), 0xFFFFFFFFU);
    EXPECT_EQ(data.objectFormat(), 0x3001);
    EXPECT_TRUE(data.isAssociation());
    EXPECT_EQ(data.objectCompressedSize(), 0xFFFFFFFFFFFFFFFFU);
    EXPECT_EQ(data.thumbFormat(), 0xFFFF);
    EXPECT_EQ(data.thumbCompressedSize(), 0xFFFFFFFEU);
    EXPECT_EQ(data.parentObject(), QStringLiteral("1"));
    EXPECT_EQ(data.fileName(), QStringLiteral("2"));
    EXPECT_EQ(data.dateCreated(), QStringLiteral("3"));
    EXPECT_EQ(data.dateModified(), QStringLiteral("4"));
    EXPECT_EQ(data.modifiedDate(), date);
    EXPECT_EQ(data.myHandle(), QStringLiteral("5"));
    EXPECT_EQ(something.use_count(), 3);

    data.setThumbnail(nullptr);
    EXPECT_EQ(something.use_count(), 2);
}

TEST(ObjectInfoDataProperties, AreWholeWhileAnotherThreadParses)
{
    const ByteBuffer bytes = ObjectInfoBytes{}.bytes();
    const ByteBuffer others =
        ObjectInfoBytes{.fileName = {u"A\0", 2}, .modificationDate = {}}.bytes();
    ObjectInfoData data;
    ASSERT_TRUE(ObjectInfoData::tryParse(bytes, data));

    std::atomic<bool> done{false};
    std::vector<std::thread> readers;
    for (int i = 0; i < 3; ++i) {
        readers.emplace_back([&] {
            while (!done) {
                const qsizetype length = data.fileName().size();
                EXPECT_TRUE(length == 13 || length == 2) << length;
                const QDateTime date = data.modifiedDate();
                EXPECT_TRUE(!date.isValid() || date.date().year() == 2016);
                EXPECT_EQ(data.storageID(), 0x00010001U);
            }
        });
    }
    for (int i = 0; i < 500; ++i) {
        EXPECT_TRUE(ObjectInfoData::tryParse(i % 2 == 0 ? others : bytes, data));
        data.setThumbnail(nullptr);
    }
    done = true;
    for (std::thread& reader : readers)
        reader.join();
}

TEST(ObjectInfoDataProperties, ShareOneFormatterAmongAllThreads)
{
    std::array<const DateFormatter*, 4> seen{};
    std::vector<std::thread> threads;
    for (const DateFormatter*& one : seen)
        threads.emplace_back([&one] { one = &ObjectInfoData::sharedDateFormatter(); });
    for (std::thread& thread : threads)
        thread.join();

    for (const DateFormatter* one : seen)
        EXPECT_EQ(one, &ObjectInfoData::sharedDateFormatter());
}

}  // namespace
}  // namespace nivor::test
