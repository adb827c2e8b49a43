// What becomes of an object whose description is not what it should be: in the list, in the log and
// on the disk.
#include "datasets/ObjectInfoBytes.h"
#include "faults/FaultFixture.h"

#include "content/VisibleName.h"

using namespace nivor;
using namespace nivor::test;
using namespace std::string_literals;
using namespace std::string_view_literals;

namespace {

using Operation = OperationCode;
using Strings = std::vector<std::string>;

/// How the bytes of a description differ from a good one's.
struct Misdeed {
    std::u16string name{u"A.JPG\0"sv};
    std::u16string captured{u"20151231T235958\0"sv};
    std::u16string date{u"20160102T030405\0"sv};
    std::size_t cutAt = 0;                    ///< bytes of the dataset that are left; 0 = all
    std::optional<std::uint8_t> nameCount{};  ///< instead of the count of units
    std::size_t fillUpTo = 0;                 ///< bytes of 0xFF behind everything else
};

struct InfoRow {
    std::string name;
    Misdeed misdeed{};
    bool isListed = true;
    std::string shown = "A.JPG";               ///< on the screen
    std::string onDisk = "A.JPG";              ///< the copy's name
    std::string modified = "20160102T030405";  ///< empty = no date
    std::optional<std::u16string> captured{};  ///< none = as sent
    Strings log{};                             ///< records among those of the listing

    friend void PrintTo(const InfoRow& row, std::ostream* out) { *out << row.name; }
};

constexpr std::size_t fileSize = 300;

ByteBuffer descriptionOf(const Misdeed& misdeed)
{
    ObjectInfoBytes info;
    info.objectCompressedSize = fileSize;
    info.thumbCompressedSize = 0;
    info.parentObject = 0;
    info.fileName = misdeed.name;
    info.captureDate = misdeed.captured;
    info.modificationDate = misdeed.date;
    ByteBuffer container = info.bytes();
    if (misdeed.nameCount)
        container[64] = *misdeed.nameCount;
    ByteBuffer dataset(container.begin() + 12, container.end());
    if (misdeed.cutAt != 0)
        dataset.resize(misdeed.cutAt);
    if (misdeed.fillUpTo != 0)
        dataset.resize(misdeed.fillUpTo, 0xFF);
    return dataset;
}

std::vector<InfoRow> infoRows()
{
    const std::u16string long255(254, u'L');
    const std::string longName(254, 'L');
    const auto withDate = [](const char* name, std::u16string date) {
        return InfoRow{.name = name, .misdeed = {.date = std::move(date)}, .modified = {}};
    };
    // This one is kept as a text; nothing is made of it.
    const auto withCaptureDate = [](const char* name, std::u16string date) {
        return InfoRow{.name = name, .misdeed = {.captured = std::move(date)}};
    };
    const auto cut = [](const char* name, std::size_t at) {
        return InfoRow{.name = name, .misdeed = {.cutAt = at}, .isListed = false};
    };
    return {
        {.name = "IsGood"},

        // Strings. 53 bytes into the dataset the units of the name begin.
        cut("EndsInItsFirstField", 3),
        cut("EndsBeforeTheName", 52),
        cut("EndsInTheName", 60),
        cut("EndsBehindTheName", 65),
        cut("EndsInTheCaptureDate", 80),
        cut("EndsBehindTheCaptureDate", 98),
        cut("EndsInTheDate", 110),
        {.name = "NameRunsPastTheEnd", .misdeed = {.nameCount = 255}, .isListed = false},
        {.name = "NameHasNoTerminator", .misdeed = {.name = u"A.JPG"}},
        {.name = "NameIsEmpty", .misdeed = {.name = u""}, .shown = "", .onDisk = "_"},
        {.name = "NameIsATerminator",
         .misdeed = {.name = u"\0"s},
         .shown = "\xE2\x90\x80",
         .onDisk = "_"},
        {.name = "NameGoesOnBehindItsTerminator", .misdeed = {.name = u"A.JPG\0B.EXE\0"s}},
        {.name = "NameIsOf255UnitsWithTerminator",
         .misdeed = {.name = long255 + u'\0'},
         .shown = longName,
         .onDisk = longName},
        {.name = "NameIsOf255UnitsWithoutTerminator",
         .misdeed = {.name = long255 + u'L'},
         .shown = longName + "L",
         .onDisk = longName + "L"},
        // What can't be decoded counts as empty, and what follows is looked for right behind: here
        // half of a unit is the count of the next string, which ends beyond the last byte.
        {.name = "NameIsHalfAPair",
         .misdeed = {.name = std::u16string{0xD800, 0x0000}},
         .isListed = false},
        {.name = "NameHasHalvesInTheWrongOrder",
         .misdeed = {.name = std::u16string{u'A', 0xDC00, 0xD800, 0x0000}},
         .isListed = false},
        // And here two empty dates.
        {.name = "NameIsHalfAPairOfZeroes",
         .misdeed = {.name = std::u16string{0xD800, 0x0000, 0x0000}, .fillUpTo = 2000},
         .shown = "",
         .onDisk = "_",
         .modified = {},
         .captured = u""},
        {.name = "NameClimbsOut",
         .misdeed = {.name = u"../../A.JPG\0"s},
         .shown = "../../A.JPG",
         .onDisk = ".._.._A.JPG"},
        {.name = "NameIsTheFolderAbove",
         .misdeed = {.name = u"..\0"s},
         .shown = "..",
         .onDisk = "_"},
        {.name = "NameIsAPath",
         .misdeed = {.name = u"/etc/passwd\0"s},
         .shown = "/etc/passwd",
         .onDisk = "_etc_passwd"},
        {.name = "NameSteersTheTerminal",
         .misdeed = {.name = u"\x1B[2J\r\nA\0"s},
         .shown = "\xE2\x90\x9B[2J\xE2\x90\x8D\xE2\x90\x8A"
                  "A",
         .onDisk = "_[2J__A"},
        {.name = "NameTurnsRoundWhatIsRead",
         .misdeed = {.name = u"A\x202EGPJ.EXE\0"s},
         .shown = "A\\u202eGPJ.EXE",
         .onDisk = "A_GPJ.EXE"},
        {.name = "HasManyBytesBehindIt", .misdeed = {.fillUpTo = 60'000}},

        // Dates.
        withDate("DateHasMonth13", u"20161302T030405\0"s),
        withDate("DateHasMonth0", u"20160002T030405\0"s),
        withDate("DateHasDay30OfFebruary", u"20160230T030405\0"s),
        withDate("DateHasHour24", u"20160102T240000\0"s),
        withDate("DateHasSecond61", u"20160102T030461\0"s),
        withDate("DateHasYear0", u"00000102T030405\0"s),
        withDate("DateHasTenths", u"20160102T030405.5\0"s),
        withDate("DateHasAZone", u"20160102T030405Z\0"s),
        withDate("DateIsEmpty", u""),
        withDate("DateIsOfWordsOfOnes", std::u16string(16, char16_t{0xFFFF})),
        withDate("DateIsOf255WordsOfOnes", std::u16string(255, char16_t{0xFFFF})),
        withDate("DateIsOfOtherDigits",
                 u"\x0662\x0660\x0661\x0666\x0660\x0661\x0660\x0662T"
                 u"\x0660\x0663\x0660\x0664\x0660\x0665\0"s),
        withCaptureDate("CaptureDateHasMonth13", u"20161302T030405\0"s),
        withCaptureDate("CaptureDateHasDay30OfFebruary", u"20160230T030405\0"s),
        withCaptureDate("CaptureDateHasYear0", u"00000102T030405\0"s),
        withCaptureDate("CaptureDateHasAZone", u"20160102T030405Z\0"s),
        withCaptureDate("CaptureDateIsEmpty", u""),
        withCaptureDate("CaptureDateIsATerminator", u"\0"s),
        withCaptureDate("CaptureDateHasNoTerminator", u"20160102T030405"),
        withCaptureDate("CaptureDateIsOfWordsOfOnes", std::u16string(16, char16_t{0xFFFF})),
        withCaptureDate("CaptureDateIsOf255WordsOfOnes", std::u16string(255, char16_t{0xFFFF})),
        // Half a pair counts as no text, and its first zero byte as an empty date.
        {.name = "CaptureDateIsHalfAPairOfZeroes",
         .misdeed = {.captured = {0xD800, 0x0000, 0x0000}, .fillUpTo = 2000},
         .modified = {},
         .captured = u""},
        {.name = "DateHasNoTerminator", .misdeed = {.date = u"20160102T030405"}},
    };
}

// In memory only: below libusb the simulated camera has handed on more than a real one's pipe holds
// when it is asked to stop, and that would stand before the next answer.
std::vector<InfoRow> endlessInfoRows()
{
    return {
        // Found out by the read that goes beyond 64 KiB.
        {.name = "HasAMegabyteBehindIt",
         .misdeed = {.fillUpTo = 1 << 20},
         .isListed = false,
         .log = {"ReceiveBuffer (error = the camera's answer is too long to be true, "
                 "received = 66560)",
                 "getObjectInfo (result = fail, objHdr = <01000000>, fileName = (null))"}},
    };
}

class ObjectInfoFaults : public FaultCells<InfoRow> { };

TEST_P(ObjectInfoFaults, LeaveAnObjectThatCanBeShownAndCopiedOrNone)
{
    const std::uint32_t first = card->addFile(u"A.JPG", fileSize);
    const std::uint32_t last = card->addFile(u"LAST.JPG", fileSize);
    connect(
        seam(),
        {.faults = FaultPlan().on(Operation::GetObjectInfo,
                                  answerWith(descriptionOf(row().misdeed)), Occurrences::nth(1))});
    const auto result = load();

    // Whatever the first one is, the other one is there.
    EXPECT_EQ(result.end, ContentLoader::End::Complete) << result.failure;
    ASSERT_EQ(result.listing.objects.size(), row().isListed ? 2U : 1U);
    EXPECT_EQ(result.failedObjects, row().isListed ? 0U : 1U);
    EXPECT_TRUE(logTells(row().log));
    if (row().isListed) {
        const ObjectInfoData& object = *result.listing.objects.front();
        EXPECT_EQ(visibleName(NVX_stringByTrimmingNullCharacters(object.fileName())).toStdString(),
                  row().shown);
        EXPECT_EQ(object.modifiedDate().toString(u"yyyyMMdd'T'HHmmss").toStdString(),
                  row().modified);
        EXPECT_EQ(object.dateCreated().toStdU16String(),
                  row().captured.value_or(row().misdeed.captured));
    }

    const CopyResult copied = copy(result.listing);
    EXPECT_EQ(copied.copiedCount(), result.listing.objects.size());
    EXPECT_TRUE(holdsObject(destination.path() / "LAST.JPG", last, fileSize));
    if (row().isListed) {
        EXPECT_TRUE(holdsObject(destination.path() / row().onDisk, first, fileSize));
    }
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(destination.path()), {}),
              row().isListed ? 2 : 1);
}

INSTANTIATE_TEST_SUITE_P(Cells, ObjectInfoFaults,
                         ::testing::Combine(bothSeams(), ::testing::ValuesIn(infoRows())),
                         nameOfCell<InfoRow>);
INSTANTIATE_TEST_SUITE_P(Endless, ObjectInfoFaults,
                         ::testing::Combine(::testing::Values(Seam::Memory),
                                            ::testing::ValuesIn(endlessInfoRows())),
                         nameOfCell<InfoRow>);

/// Two hundred files of the same name, and of names that come to the same on the disk.
class ManyNames : public FaultFixture { };

TEST_F(ManyNames, ThatAreTheSameAllGetAFileOfTheirOwn)
{
    constexpr int count = 200;
    for (int i = 0; i < count; ++i)
        card->addFile(i % 2 == 0 ? u"A/B.JPG" : u"A_B.JPG", 1);
    connect(Seam::Memory, {});
    const CopyResult copied = copy(load().listing);
    EXPECT_EQ(copied.copiedCount(), std::size_t{count});
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(destination.path()), {}), count);
}

}  // namespace
