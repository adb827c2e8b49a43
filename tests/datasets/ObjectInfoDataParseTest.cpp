#include "datasets/DateFormatter.h"
#include "datasets/ObjectInfoBytes.h"
#include "datasets/ObjectInfoData.h"
#include "support/HeapBytes.h"
#include "support/Text.h"

#include <gtest/gtest.h>

#include <random>

namespace nivor::test {
namespace {

bool parse(const ByteBuffer& bytes, ObjectInfoData& data)
{
    return ObjectInfoData::tryParse(HeapBytes(bytes).view(), data);
}

bool parse(const ObjectInfoBytes& fields, ObjectInfoData& data)
{
    return parse(fields.bytes(), data);
}

TEST(ObjectInfoDataParse, ReadsEveryFieldItKeeps)
{
    ObjectInfoData data;
    ASSERT_TRUE(parse(ObjectInfoBytes{}, data));

    EXPECT_EQ(data.storageID(), 0x00010001U);
    EXPECT_EQ(data.objectFormat(), 0x3801);
    EXPECT_FALSE(data.isAssociation());
    EXPECT_EQ(data.objectCompressedSize(), 0x00ABCDEFU);
    EXPECT_EQ(data.thumbFormat(), 0x3808);
    EXPECT_EQ(data.thumbCompressedSize(), 0x00001234U);
    EXPECT_EQ(data.parentObject(), QStringLiteral("268435457"));
    EXPECT_EQ(data.fileName(), text({u"DSC_0001.JPG\0", 13}));
    EXPECT_EQ(data.dateCreated(), text({u"20151231T235958\0", 16}));
    EXPECT_EQ(data.dateModified(), text({u"20160102T030405\0", 16}));
    EXPECT_EQ(data.modifiedDate(), QDateTime(QDate(2016, 1, 2), QTime(3, 4, 5)));
}

TEST(ObjectInfoDataParse, SetsNeitherHandleNorThumbnail)
{
    ObjectInfoData data;
    data.setMyHandle(QStringLiteral("42"));
    ASSERT_TRUE(parse(ObjectInfoBytes{}, data));

    EXPECT_EQ(data.myHandle(), QStringLiteral("42"));
    EXPECT_EQ(data.thumbnail(), nullptr);
}

TEST(ObjectInfoDataParse, TellsAFolder)
{
    ObjectInfoData data;
    ASSERT_TRUE(parse(ObjectInfoBytes{.objectFormat = 0x3001}, data));
    EXPECT_TRUE(data.isAssociation());
}

TEST(ObjectInfoDataParse, WritesAParentOfZeroAsZero)
{
    ObjectInfoData data;
    ASSERT_TRUE(parse(ObjectInfoBytes{.parentObject = 0}, data));
    EXPECT_EQ(data.parentObject(), QStringLiteral("0"));
}

TEST(ObjectInfoDataParse, WritesTheGreatestParentWithoutASign)
{
    ObjectInfoData data;
    ASSERT_TRUE(parse(ObjectInfoBytes{.parentObject = 0xFFFFFFFF}, data));
    EXPECT_EQ(data.parentObject(), QStringLiteral("4294967295"));
}

TEST(ObjectInfoDataParse, ExtendsTheGreatestSizeWithoutASign)
{
    ObjectInfoData data;
    ASSERT_TRUE(parse(ObjectInfoBytes{.objectCompressedSize = 0xFFFFFFFF}, data));
    EXPECT_EQ(data.objectCompressedSize(), 4'294'967'295U);
}

TEST(ObjectInfoDataParse, FindsTheCaptureDateAt65BehindAnEmptyFileName)
{
    const ObjectInfoBytes fields{.fileName = {}};
    ASSERT_EQ(fields.bytes()[64], 0);   // the count of Filename
    ASSERT_EQ(fields.bytes()[65], 16);  // the count of CaptureDate
    ObjectInfoData data;
    ASSERT_TRUE(parse(fields, data));

    EXPECT_EQ(data.fileName(), QLatin1String(""));
    EXPECT_FALSE(data.fileName().isNull());
    EXPECT_EQ(data.dateCreated(), text({u"20151231T235958\0", 16}));
    EXPECT_TRUE(data.modifiedDate().isValid());
}

TEST(ObjectInfoDataParse, FindsTheCaptureDateAt69BehindAFileNameOfOneCharacter)
{
    const ObjectInfoBytes fields{.fileName = {u"A\0", 2}};
    ASSERT_EQ(fields.bytes()[64], 2);   // the count of Filename
    ASSERT_EQ(fields.bytes()[69], 16);  // the count of CaptureDate
    ObjectInfoData data;
    ASSERT_TRUE(parse(fields, data));

    EXPECT_EQ(data.fileName().size(), 2);
    EXPECT_TRUE(data.fileName().endsWith(QChar(u'\0')));
    EXPECT_EQ(data.dateCreated(), text({u"20151231T235958\0", 16}));
}

TEST(ObjectInfoDataParse, KeepsTheTerminatorOfTheModificationDate)
{
    ObjectInfoData data;
    ASSERT_TRUE(parse(ObjectInfoBytes{.modificationDate = {u"20160102T030405\0", 16}}, data));

    EXPECT_EQ(data.dateModified().size(), 16);
    EXPECT_TRUE(data.dateModified().endsWith(QChar(u'\0')));
    EXPECT_EQ(data.modifiedDate(), QDateTime(QDate(2016, 1, 2), QTime(3, 4, 5), Qt::LocalTime));
}

TEST(ObjectInfoDataParse, HasNoDateForOneWithTenthsOfASecond)
{
    ObjectInfoData data;
    ASSERT_TRUE(parse(ObjectInfoBytes{.modificationDate = {u"20160102T030405.0\0", 18}}, data));

    EXPECT_FALSE(data.modifiedDate().isValid());
    EXPECT_EQ(data.dateModified(), text({u"20160102T030405.0\0", 18}));
}

TEST(ObjectInfoDataParse, HasNoDateForOneWithAZone)
{
    ObjectInfoData data;
    ASSERT_TRUE(parse(ObjectInfoBytes{.modificationDate = {u"20160102T030405Z\0", 17}}, data));

    EXPECT_FALSE(data.modifiedDate().isValid());
    EXPECT_EQ(data.dateModified(), text({u"20160102T030405Z\0", 17}));
}

TEST(ObjectInfoDataParse, HasNoDateForAnEmptyOne)
{
    ObjectInfoData data;
    data.setModifiedDate(QDateTime(QDate(2000, 1, 1), QTime(0, 0)));
    ASSERT_TRUE(parse(ObjectInfoBytes{.modificationDate = {}}, data));

    EXPECT_EQ(data.dateModified(), QLatin1String(""));
    EXPECT_FALSE(data.dateModified().isNull());
    EXPECT_FALSE(data.modifiedDate().isValid());
}

TEST(ObjectInfoDataParse, HasNoDateForATerminatorAlone)
{
    ObjectInfoData data;
    ASSERT_TRUE(parse(ObjectInfoBytes{.modificationDate = {u"\0", 1}}, data));

    EXPECT_EQ(data.dateModified(), text({u"\0", 1}));
    EXPECT_FALSE(data.modifiedDate().isValid());
}

TEST(ObjectInfoDataParse, ReadsADateWithoutATerminator)
{
    ObjectInfoData data;
    ASSERT_TRUE(parse(ObjectInfoBytes{.modificationDate = u"20160102T030405"}, data));
    EXPECT_EQ(data.modifiedDate(), QDateTime(QDate(2016, 1, 2), QTime(3, 4, 5)));
}

TEST(ObjectInfoDataParse, ReadsTheLongestStrings)
{
    std::u16string longest(254, u'n');
    longest += u'\0';
    ObjectInfoData data;
    ASSERT_TRUE(parse(ObjectInfoBytes{.fileName = longest}, data));

    EXPECT_EQ(data.fileName(), text(longest));
    EXPECT_TRUE(data.modifiedDate().isValid());
}

TEST(ObjectInfoDataParse, LooksForTheNextStringsAtTheWrongPlaceBehindAnUndecodableOne)
{
    // Half a surrogate pair in the name, which so decodes to nothing and counts as no units: the
    // capture date is looked for at 65, where the units of the name begin.
    const char16_t name[] = {0xD801, u'A'};
    const ObjectInfoBytes fields{.fileName = {name, 2}};
    const ByteBuffer bytes = fields.bytes();
    ASSERT_EQ(ByteBuffer(bytes.begin() + 64, bytes.begin() + 69),
              (ByteBuffer{0x02,        // the count of Filename
                          0x01,        // passes for the count of CaptureDate
                          0xD8, 0x41,  // pass for its unit, U+41D8
                          0x00}));     // passes for the count of ModificationDate
    ObjectInfoData data;
    data.setFileName(QStringLiteral("before"));
    ASSERT_TRUE(parse(bytes, data));

    EXPECT_TRUE(data.fileName().isNull());
    EXPECT_EQ(data.dateCreated(), QString(QChar(0x41D8)));
    EXPECT_EQ(data.dateModified(), QLatin1String(""));
    EXPECT_FALSE(data.modifiedDate().isValid());
}

TEST(ObjectInfoDataParse, FailsWhenTheWrongPlaceRunsPastTheEnd)
{
    // Behind the name that decodes to nothing, its own first byte passes for a count of 255.
    const char16_t name[] = {0xD8FF};
    ObjectInfoData data;
    EXPECT_FALSE(parse(ObjectInfoBytes{.fileName = {name, 1}}, data));
    EXPECT_TRUE(data.fileName().isNull());
}

TEST(ObjectInfoDataParse, TakesNothingForAnUndecodableModificationDate)
{
    const char16_t half[] = {u'2', 0xDC00, u'\0'};
    ObjectInfoData data;
    ASSERT_TRUE(parse(ObjectInfoBytes{.modificationDate = {half, 3}}, data));

    EXPECT_TRUE(data.dateModified().isNull());
    EXPECT_FALSE(data.modifiedDate().isValid());
}

TEST(ObjectInfoDataParse, IgnoresWhatFollowsTheModificationDate)
{
    ByteBuffer bytes = ObjectInfoBytes{}.bytes();
    bytes.resize(ObjectInfoBytes{}.sizeRead());
    ObjectInfoData data;
    EXPECT_TRUE(parse(bytes, data));

    bytes.push_back(0xFF);  // the count of Keywords, which are missing
    EXPECT_TRUE(parse(bytes, data));
}

TEST(ObjectInfoDataParse, FailsAtEveryLengthThatCutsAFieldOrAString)
{
    const ObjectInfoBytes fields;
    const ByteBuffer whole = fields.bytes();
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        const HeapBytes cut(ByteView(whole).first(length));
        ObjectInfoData data;
        EXPECT_EQ(ObjectInfoData::tryParse(cut.view(), data), length >= fields.sizeRead())
            << length;
    }
}

TEST(ObjectInfoDataParse, SetsNothingWhenAFixedFieldIsCut)
{
    ByteBuffer bytes = ObjectInfoBytes{}.bytes();
    bytes.resize(63);
    ObjectInfoData data;
    EXPECT_FALSE(parse(bytes, data));
    EXPECT_EQ(data.storageID(), 0U);
    EXPECT_TRUE(data.parentObject().isNull());
}

TEST(ObjectInfoDataParse, FailsWhenACountRunsPastTheEnd)
{
    for (const std::size_t countAt : {std::size_t{64}, std::size_t{91}, std::size_t{124}}) {
        ByteBuffer bytes = ObjectInfoBytes{}.bytes();
        bytes[countAt] = 0xFF;
        ObjectInfoData data;
        EXPECT_FALSE(parse(bytes, data)) << countAt;
    }
}

TEST(ObjectInfoDataParse, StaysInsideTheBufferWhateverTheBytesAre)
{
    std::mt19937 random(20160102);
    for (int round = 0; round < 5000; ++round) {
        ByteBuffer bytes = ObjectInfoBytes{}.bytes();
        bytes.resize(random() % (bytes.size() + 1));
        for (int i = 0; i < 8 && !bytes.empty(); ++i)
            bytes[random() % bytes.size()] = static_cast<std::uint8_t>(random());
        ObjectInfoData data;
        static_cast<void>(parse(bytes, data));
    }
}

TEST(ObjectInfoDataParse, MayFillARecordAgain)
{
    ObjectInfoData data;
    ASSERT_TRUE(parse(ObjectInfoBytes{}, data));
    ASSERT_TRUE(parse(ObjectInfoBytes{.storageID = 2, .modificationDate = {}}, data));

    EXPECT_EQ(data.storageID(), 2U);
    EXPECT_FALSE(data.modifiedDate().isValid());
}

}  // namespace
}  // namespace nivor::test
