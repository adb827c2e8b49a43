#include "cli/CliFixture.h"

using namespace nivor;
using namespace nivor::test;
using nlohmann::json;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

class List : public CliFixture { };

TEST_F(List, ShowsATree)
{
    addUsualCard();
    card->add({.handle = 77,
               .name = u"\u5199\u771F.JPG",
               .size = 812,
               .modificationDate = u"20160102T030405"});
    attach();
    const RunResult result = run({"list"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.err, IsEmpty());
    EXPECT_EQ(result.out,
              "    Handle       Size  Modified          Name\n"
              "         1     folder  2024-01-02 03:04  DCIM/\n"
              "         2     folder  2024-01-02 03:04    100NIVOR/\n"
              "         4     1.0 kB  2024-02-03 04:05      IMG_0001.JPG\n"
              "         5     2.5 MB  2024-02-03 04:05      IMG_0002.MOV\n"
              "         3     folder  2024-01-02 03:04    101NIVOR/\n"
              "         6     3.0 kB  2024-02-03 04:05      IMG_0001.JPG\n"
              "        77      812 B  2016-01-02 03:04  写真.JPG\n"
              "4 files, 3 folders, 2.5 MB\n");
}

TEST_F(List, AsJson)
{
    addUsualCard();
    card->add({.handle = 77,
               .name = u"A\n.JPG",
               .format = ObjectFormatCode::EXIFJPEG,
               .size = 5'000'000'000,
               .modificationDate = u"20160102T030405"});
    card->setThumbnail(77, {1, 2, 3});
    attach();
    const json objects = json::parse(run({"list", "--json"}).out);
    ASSERT_EQ(objects.size(), 7U);
    EXPECT_EQ(objects[2],
              json({{"handle", firstPicture},
                    {"parent", 2},
                    {"name", "IMG_0001.JPG"},
                    {"path", "DCIM/100NIVOR/IMG_0001.JPG"},
                    {"folder", false},
                    {"format", objects[2]["format"]},
                    {"size", 1000},
                    {"modified", "2024-02-03T04:05:06"},
                    {"thumbnailSize", 0}}));
    EXPECT_EQ(objects[0]["folder"], true);
    EXPECT_EQ(objects[0]["format"], 0x3001);
    EXPECT_EQ(objects[6],
              json({{"handle", 77},
                    {"parent", 0},
                    {"name", "A\n.JPG"},
                    {"path", "A\n.JPG"},
                    {"folder", false},
                    {"format", 0x3801},
                    {"size", 5'000'000'000},
                    {"modified", "2016-01-02T03:04:05"},
                    {"thumbnailSize", 3}}));
}

TEST_F(List, ADateThatIsUnknownStaysOut)
{
    card->add({.name = u"A.JPG", .size = 1});
    attach();
    EXPECT_THAT(run({"list"}).out, HasSubstr("         1        1 B                    A.JPG\n"));
    EXPECT_EQ(json::parse(run({"list", "--json"}).out)[0]["modified"], nullptr);
}

TEST_F(List, NeedsNoThumbnails)
{
    card->setThumbnail(card->addFile(u"A.JPG", 10), {1, 2, 3});
    attach();
    run({"list"});
    EXPECT_EQ(camera->record().requestsOf(OperationCode::GetThumb), 0U);
}

TEST_F(List, NamesCannotSteerTheTerminal)
{
    card->addFile(u"A\x1b[2J\n.JPG", 10);
    attach();
    EXPECT_THAT(run({"list"}).out, HasSubstr("A␛[2J␊.JPG\n"));
}

TEST_F(List, AnEmptyCardIsNoFailure)
{
    attach();
    const RunResult result = run({"list"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "0 files, 0 folders, 0 B\n");
    EXPECT_EQ(run({"list", "--json"}).out, "[]\n");
}

TEST_F(List, NoStorageIsToldInWords)
{
    attachWith(FaultPlan().on(OperationCode::GetStorageIDs, answerWithArray({})));
    const RunResult result = run({"list", "--json"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "[]\n");
    EXPECT_THAT(result.err, HasSubstr("no storage"));
}

TEST_F(List, WhatCouldNotBeReadIsCounted)
{
    for (const char16_t* name : {u"A", u"B", u"C"})
        card->addFile(name, 1);
    attachWith(FaultPlan().on(OperationCode::GetObjectInfo, damagedAnswer(), Occurrences::nth(2)));
    const RunResult result = run({"list"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.out, HasSubstr("2 files"));
    EXPECT_THAT(result.err, HasSubstr("1 object could not be read"));
}

TEST_F(List, AListingThatBreaksOffIsNotPassedOffAsWhole)
{
    for (const char16_t* name : {u"A", u"B", u"C"})
        card->addFile(name, 1);
    attachWith(FaultPlan().on(OperationCode::GetObjectInfo, damagedAnswer(), Occurrences::from(2)));
    const RunResult result = run({"list"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.err, HasSubstr("only a part"));
}

TEST_F(List, ACameraThatNamesOnlyTheTopIsListedWhole)
{
    addUsualCard();
    attach({.listing = ListingStyle::RootOnly});
    EXPECT_THAT(run({"list"}).out, HasSubstr("3 files, 3 folders"));
}

TEST_F(List, CtrlCStopsTheListing)
{
    addUsualCard();
    attach();
    isInterrupted = [this] {
        return camera->record().requestsOf(OperationCode::GetObjectInfo) >= 2;
    };
    const RunResult result = run({"list"});
    EXPECT_EQ(result.exitCode, 5);
    EXPECT_THAT(result.err, HasSubstr("stopped"));
}

TEST_F(List, TheProgressIsOnTerminalsOnlyAndLeavesNothingBehind)
{
    addUsualCard();
    attach();
    isErrorTerminal = true;
    const RunResult result = run({"list"});
    EXPECT_THAT(result.err, HasSubstr("\rReading the camera  1 / 6\x1b[K"));
    EXPECT_TRUE(result.err.ends_with("\r\x1b[K"));
}

}  // namespace
