#include "cli/CliFixture.h"

using namespace nivor;
using namespace nivor::test;
using nlohmann::json;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

class Delete : public CliFixture {
protected:
    std::uint64_t deletions() const
    {
        return camera->record().requestsOf(OperationCode::DeleteObject);
    }
};

TEST_F(Delete, WithYesNobodyIsAsked)
{
    addUsualCard();
    attach();
    const RunResult result = run({"delete", "IMG_0001.JPG", "--yes"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "Deleted 2 files\n");
    EXPECT_EQ(result.err,
              "DCIM/100NIVOR/IMG_0001.JPG deleted\nDCIM/101NIVOR/IMG_0001.JPG deleted\n");
    EXPECT_FALSE(card->object(firstPicture));
    EXPECT_TRUE(card->object(film));
    EXPECT_THAT(log.messagesOf("AppDelegate startDeletingItems:"),
                ElementsAre("startDeletingItems (deleteItemCount = 2)",
                            "startDeletingItem (result = success)"));
}

TEST_F(Delete, WithoutATerminalThereIsNobodyToAsk)
{
    addUsualCard();
    attach();
    typed = "y\n";
    const RunResult result = run({"delete", "*"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.err, HasSubstr("--yes"));
    EXPECT_EQ(camera->record().sessionsOpened, 0U);
}

TEST_F(Delete, OnATerminalTheUserDecides)
{
    addUsualCard();
    attach();
    isInputTerminal = true;
    for (const char* answer : {"", "\n", "n\n", "yess\n", "  \n"}) {
        typed = answer;
        const RunResult result = run({"delete", "*.MOV"});
        EXPECT_EQ(result.exitCode, 5) << answer;
        EXPECT_THAT(result.err, HasSubstr("Delete 1 file (2.5 MB) from the camera?"));
        EXPECT_THAT(result.err, HasSubstr("  DCIM/100NIVOR/IMG_0002.MOV\n"));
        EXPECT_THAT(result.err, HasSubstr("nothing was deleted"));
        EXPECT_THAT(result.out, IsEmpty());
    }
    EXPECT_EQ(deletions(), 0U);
    EXPECT_THAT(log.messagesOf("AppDelegate startDeletingItems:"), IsEmpty());

    typed = " YES \n";
    EXPECT_EQ(run({"delete", "*.MOV"}).exitCode, 0);
    EXPECT_FALSE(card->object(film));
}

TEST_F(Delete, TheQuestionStaysShort)
{
    for (int i = 0; i < 25; ++i)
        card->addFile(std::u16string(1, static_cast<char16_t>(u'a' + i)), 1);
    attach();
    isInputTerminal = true;
    EXPECT_THAT(run({"delete", "*"}).err, HasSubstr("  j\n  and 15 more\nDelete 25 files"));
}

TEST_F(Delete, AFolderMeansItsFilesAndStaysItself)
{
    addUsualCard();
    attach();
    EXPECT_EQ(run({"delete", "DCIM", "-y"}).exitCode, 0);
    EXPECT_EQ(card->handles().size(), 3U);
}

TEST_F(Delete, OneWordThatMatchesNothingKeepsEverything)
{
    addUsualCard();
    attach();
    const RunResult result = run({"delete", "-y", "*.MOV", "NOPE"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.err, HasSubstr("NOPE: nothing on the camera matches"));
    EXPECT_THAT(result.err, HasSubstr("nothing was deleted"));
    EXPECT_EQ(deletions(), 0U);
}

TEST_F(Delete, ARefusalIsNamedAndTheOthersGo)
{
    addUsualCard();
    attachWith(FaultPlan().on(OperationCode::DeleteObject,
                              fault::Refuse{ResponseCode::ObjectWriteProtected},
                              Occurrences::nth(2)));
    const RunResult result = run({"delete", "DCIM", "-y"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(
        result.err,
        HasSubstr("nivor: DCIM/100NIVOR/IMG_0002.MOV: the camera refused: Object WriteProtected"));
    EXPECT_THAT(result.err, HasSubstr("1 file could not be deleted"));
    EXPECT_EQ(result.out, "Deleted 2 files\n");
    EXPECT_TRUE(card->object(film));
}

TEST_F(Delete, AsJson)
{
    addUsualCard();
    attachWith(FaultPlan().on(OperationCode::DeleteObject,
                              fault::Refuse{ResponseCode::StoreReadOnly}, Occurrences::nth(1)));
    const RunResult result = run({"delete", "IMG_0001.JPG", "-y", "--json"});
    EXPECT_EQ(result.exitCode, 1);
    const json report = json::parse(result.out);
    EXPECT_EQ(report["deleted"],
              json::array({{{"handle", secondPicture},
                            {"name", "IMG_0001.JPG"},
                            {"path", "DCIM/101NIVOR/IMG_0001.JPG"}}}));
    EXPECT_EQ(report["failed"][0]["handle"], firstPicture);
    EXPECT_EQ(report["stopped"], false);
}

TEST_F(Delete, WhenAWordMatchesNothingTheJsonSaysSo)
{
    addUsualCard();
    attach();
    const RunResult result = run({"delete", "-y", "--json", "*.MOV", "NOPE"});
    EXPECT_EQ(result.exitCode, 1);
    const json report = json::parse(result.out);
    EXPECT_EQ(report["deleted"], json::array());
    EXPECT_EQ(report["failed"], json::array());
    EXPECT_EQ(report["unmatched"], json::array({"NOPE"}));
    EXPECT_EQ(report["stopped"], false);
    EXPECT_EQ(report["notBegun"], 1);
    EXPECT_EQ(deletions(), 0U);
}

TEST_F(Delete, OfTwoNamesThatLookTheSameOnlyTheTypedOneGoes)
{
    const std::uint32_t composed = card->addFile(u"\u00e9.txt", 1);
    const std::uint32_t decomposed = card->addFile(u"e\u0301.txt", 1);
    attach();
    EXPECT_EQ(run({"delete", "-y", "\u00e9.txt"}).exitCode, 0);
    EXPECT_FALSE(card->object(composed));
    EXPECT_TRUE(card->object(decomposed));
    // With nothing called exactly so, the other spelling is meant.
    EXPECT_EQ(run({"delete", "-y", "\u00e9.txt"}).exitCode, 0);
    EXPECT_FALSE(card->object(decomposed));
}

TEST_F(Delete, CtrlCEndsTheRunBetweenFiles)
{
    addUsualCard();
    attach();
    isInterrupted = [this] { return deletions() == 1; };
    const RunResult result = run({"delete", "DCIM", "-y"});
    EXPECT_EQ(result.exitCode, 5);
    EXPECT_THAT(result.err, HasSubstr("stopped; 2 files not deleted"));
    EXPECT_EQ(result.out, "Deleted 1 file\n");
    EXPECT_EQ(deletions(), 1U);
}

}  // namespace
