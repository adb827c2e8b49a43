#include "cli/CliFixture.h"

#include <unistd.h>

using namespace nivor;
using namespace nivor::test;
using nlohmann::json;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
namespace fs = std::filesystem;

namespace {

class Copy : public CliFixture {
protected:
    bool isCopied(const char* name, std::uint32_t handle, std::uint64_t size) const
    {
        return holdsObject(destination.path() / name, handle, size);
    }

    /// Interrupts once so many bytes of objects have been sent.
    void interruptAfter(std::uint64_t bytes)
    {
        isInterrupted = [this, bytes] { return camera->record().bytesSent > bytes; };
    }
};

/// Takes away the superuser's right to write everywhere, for as long as it lives.
class OrdinaryUser {
public:
    OrdinaryUser()
    {
        if (::geteuid() == 0)
            isChanged_ = ::seteuid(65534) == 0;
    }
    ~OrdinaryUser()
    {
        if (isChanged_)
            static_cast<void>(::seteuid(0));
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

private:
    bool isChanged_ = false;
};

TEST_F(Copy, EverythingByDefault)
{
    addUsualCard();
    attach();
    const RunResult result = run({"copy", folder()});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_TRUE(isCopied("IMG_0001.JPG", firstPicture, 1000));
    EXPECT_TRUE(isCopied("IMG_0002.MOV", film, 2'500'000));
    EXPECT_TRUE(isCopied("IMG_0001_1.JPG", secondPicture, 3000));
    EXPECT_EQ(filesInFolder().size(), 3U);
    EXPECT_THAT(result.out, HasSubstr("Copied 3 files (2.5 MB) to " + folder()));
    EXPECT_EQ(result.err,
              "1 / 3  IMG_0001.JPG  1.0 kB\n"
              "2 / 3  IMG_0002.MOV  2.5 MB\n"
              "3 / 3  IMG_0001.JPG as IMG_0001_1.JPG  3.0 kB\n");
    EXPECT_THAT(log.messagesOf("AppDelegate startCopyingItems:toDestination:"),
                ElementsAre("startCopyingItems (copyItemCount = 3)",
                            "startCopyingItem (result = success)"));
}

TEST_F(Copy, ByNamePathHandleAndPattern)
{
    addUsualCard();
    attach();
    EXPECT_EQ(run({"copy", folder(), "*.MOV"}).exitCode, 0);
    EXPECT_THAT(filesInFolder(), ElementsAre("IMG_0002.MOV"));
    EXPECT_EQ(run({"copy", folder() + "/a", "DCIM/101NIVOR/IMG_0001.JPG"}).exitCode, 0);
    EXPECT_TRUE(isCopied("a/IMG_0001.JPG", secondPicture, 3000));
    EXPECT_EQ(run({"copy", folder() + "/b", std::to_string(firstPicture)}).exitCode, 0);
    EXPECT_TRUE(isCopied("b/IMG_0001.JPG", firstPicture, 1000));
    EXPECT_EQ(run({"copy", folder() + "/c", "DCIM/100NIVOR"}).exitCode, 0);
    EXPECT_TRUE(isCopied("c/IMG_0002.MOV", film, 2'500'000));
    EXPECT_FALSE(fs::exists(destination.path() / "c" / "IMG_0001_1.JPG"));
}

TEST_F(Copy, TheFolderIsMadeWithItsParents)
{
    addUsualCard();
    attach();
    EXPECT_EQ(run({"copy", folder() + "/new/deep", "*.MOV"}).exitCode, 0);
    EXPECT_TRUE(isCopied("new/deep/IMG_0002.MOV", film, 2'500'000));
}

TEST_F(Copy, AFileIsNoDestination)
{
    writeText(destination.path() / "file", "mine");
    attach();
    const RunResult result = run({"copy", folder() + "/file"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.err, HasSubstr("is not a folder"));
    EXPECT_EQ(camera->record().sessionsOpened, 0U);
    EXPECT_EQ(run({"copy", folder() + "/file/below", "x"}).exitCode, 1);
}

TEST_F(Copy, TakenNamesAreNotOverwritten)
{
    addUsualCard();
    writeText(destination.path() / "IMG_0001.JPG", "mine");
    writeText(destination.path() / "IMG_0001_1.JPG", "mine too");
    attach();
    EXPECT_EQ(run({"copy", folder(), "IMG_0001.JPG"}).exitCode, 0);
    EXPECT_EQ(fs::file_size(destination.path() / "IMG_0001.JPG"), 4U);
    EXPECT_TRUE(isCopied("IMG_0001_2.JPG", firstPicture, 1000));
    EXPECT_TRUE(isCopied("IMG_0001_3.JPG", secondPicture, 3000));
}

TEST_F(Copy, AWordThatMatchesNothingFailsAndTheOthersAreCopied)
{
    addUsualCard();
    const std::uint32_t empty = card->addFolder(u"EMPTY");
    EXPECT_NE(empty, 0U);
    attach();
    const RunResult result = run({"copy", folder(), "NOPE*", "EMPTY", "*.MOV"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.err, HasSubstr("nivor: NOPE*: nothing on the camera matches\n"));
    EXPECT_THAT(result.err, HasSubstr("nivor: EMPTY: there is no file in it\n"));
    EXPECT_THAT(filesInFolder(), ElementsAre("IMG_0002.MOV"));
}

TEST_F(Copy, WhenNothingMatchesNoFolderIsMade)
{
    addUsualCard();
    attach();
    EXPECT_EQ(run({"copy", folder() + "/new", "NOPE"}).exitCode, 1);
    EXPECT_THAT(filesInFolder(), IsEmpty());
}

TEST_F(Copy, AnEmptyObjectFailsAndIsNamed)
{
    card->addFile(u"EMPTY.TXT", 0);
    card->addFile(u"FULL.TXT", 5);
    attach();
    const RunResult result = run({"copy", folder()});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.err, HasSubstr("nivor: EMPTY.TXT: it holds 0 bytes"));
    EXPECT_THAT(result.err, HasSubstr("1 file could not be copied"));
    EXPECT_THAT(result.out, HasSubstr("Copied 1 file (5 B)"));
}

TEST_F(Copy, AFolderThatMayNotBeWrittenIsTheReason)
{
    addUsualCard();
    attach();
    fs::permissions(destination.path(),
                    fs::perms::owner_read | fs::perms::owner_exec | fs::perms::others_read
                        | fs::perms::others_exec);
    const OrdinaryUser ordinary;
    const RunResult result = run({"copy", folder(), "*.MOV"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.err, HasSubstr("nivor: DCIM/100NIVOR/IMG_0002.MOV: "));
    EXPECT_THAT(result.err, HasSubstr("Permission denied"));
}

TEST_F(Copy, AHostileNameNeitherLeavesTheFolderNorSteersTheTerminal)
{
    card->addFile(u"../\x1b[31mx\n", 10);
    attach();
    const RunResult result = run({"copy", folder()});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(filesInFolder(),
                ElementsAre(".._"
                            "_[31mx_"));
    EXPECT_EQ(result.err,
              "1 / 1  ../␛[31mx␊ as .._"
              "_[31mx_  10 B\n");
}

TEST_F(Copy, CtrlCStopsAndSaysThatTheCameraConfirmed)
{
    for (const char16_t* name : {u"1.MOV", u"2.MOV", u"3.MOV"})
        card->addFile(name, 2'000'000);
    attach({.pace = {.megabytesPerSecond = 2}});
    interruptAfter(2'500'000);
    const RunResult result = run({"copy", folder()});
    EXPECT_EQ(result.exitCode, 5);
    EXPECT_THAT(result.err, HasSubstr("nivor: 2.MOV: stopped"));
    EXPECT_THAT(result.err, HasSubstr("stopped; the camera confirmed it"));
    EXPECT_THAT(result.err, HasSubstr("Partly written: " + folder() + "/2.MOV"));
    EXPECT_THAT(result.err, HasSubstr("Not begun: 1 file"));
    EXPECT_THAT(result.out, HasSubstr("Copied 1 file"));
    EXPECT_THAT(filesInFolder(), ElementsAre("1.MOV", "2.MOV"));
    EXPECT_EQ(camera->record().cancelRequests, 1U);
    EXPECT_EQ(log.messagesOf("AppDelegate startCopyingItems:toDestination:").back(),
              "startCopyingItem (result = fail)");
    EXPECT_THAT(log.messagesOf("PTPCommunication cancelTransaction"),
                ElementsAre("cancelTransaction (result = success)"));
}

TEST_F(Copy, CtrlCThatTheCameraIgnoresIsToldSo)
{
    card->addFile(u"1.MOV", 2'000'000);
    card->addFile(u"2.MOV", 2'000'000);
    attach({.pace = {.megabytesPerSecond = 2},
            .faults = FaultPlan().usb(UsbStep::CancelRequest, UsbResult::PipeStalled)});
    interruptAfter(500'000);
    const RunResult result = run({"copy", folder(), "--json"});
    EXPECT_EQ(result.exitCode, 5);
    EXPECT_THAT(result.err, HasSubstr("the camera did not confirm the stop; waiting"));
    EXPECT_THAT(result.err, HasSubstr("stopped; the camera did not confirm it"));
    const json report = json::parse(result.out);
    EXPECT_EQ(report["stopped"], true);
    EXPECT_EQ(report["stopConfirmed"], false);
    EXPECT_EQ(report["notBegun"], 1);
    EXPECT_EQ(report["copied"].size(), 1U);
}

TEST_F(Copy, CanCompareEveryByteWithTheCamera)
{
    addUsualCard();
    attach();
    const RunResult result = run({"copy", folder(), "--verify"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.out, HasSubstr("Copied 3 files"));
    EXPECT_THAT(result.out, HasSubstr("Compared 3 files with the camera: every byte is the same"));
}

TEST_F(Copy, NamesACopyThatDiffersFromTheCamera)
{
    card->addFile(u"A.JPG", 1000);
    card->addFile(u"B.JPG", 5);
    attachWith(
        FaultPlan().on(OperationCode::GetObject, answerWith({1, 2, 3, 4, 5}), Occurrences::nth(4)));
    const RunResult result = run({"copy", folder(), "--verify"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.err,
                HasSubstr("B.JPG: the copy differs from the camera's file, from byte 0 on"));
    EXPECT_THAT(result.out, HasSubstr("Compared 2 files with the camera: 1 the same, 1 different"));
    EXPECT_THAT(result.err, HasSubstr("nivor: 1 file differs\n"));
}

TEST_F(Copy, ADifferingCopyIsAmongTheFailedInJson)
{
    card->addFile(u"B.JPG", 5);
    attachWith(
        FaultPlan().on(OperationCode::GetObject, answerWith({1, 2, 3, 4, 5}), Occurrences::nth(2)));
    const RunResult result = run({"copy", folder(), "--verify", "--json"});
    EXPECT_EQ(result.exitCode, 1);
    const json report = json::parse(result.out);
    EXPECT_THAT(report["copied"], IsEmpty());
    EXPECT_EQ(report["failed"][0]["reason"],
              "the copy differs from the camera's file, from byte 0 on");
    EXPECT_EQ(report["failed"][0]["verified"], false);
}

TEST_F(Copy, TheJsonTellsWhatIsVerified)
{
    addUsualCard();
    attach();
    const json verified = json::parse(run({"copy", folder(), "--verify", "--json"}).out);
    EXPECT_EQ(verified["copied"][0]["verified"], true);
    EXPECT_EQ(verified["copied"][0]["path"], "DCIM/100NIVOR/IMG_0001.JPG");
    const json unverified = json::parse(run({"copy", folder(), "--json"}).out);
    EXPECT_TRUE(unverified["copied"][0]["verified"].is_null());
}

TEST_F(Copy, WhatWasNotCopiedAndWhatDiffersAreCountedApart)
{
    card->addFile(u"EMPTY.TXT", 0);
    card->addFile(u"A.JPG", 1000);
    card->addFile(u"B.JPG", 5);
    attachWith(
        FaultPlan().on(OperationCode::GetObject, answerWith({1, 2, 3, 4, 5}), Occurrences::nth(5)));
    const RunResult result = run({"copy", folder(), "--verify"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.err, HasSubstr("nivor: 1 file could not be copied; 1 file differs\n"));
}

TEST_F(Copy, ACameraThatVanishesWhileComparingLeavesTheRestNotCompared)
{
    for (const char16_t* name : {u"1", u"2", u"3"})
        card->addFile(name, 1'000'000);
    attachWith(FaultPlan().on(OperationCode::GetObject, fault::Vanish{.afterBytes = 300'000},
                              Occurrences::nth(5)));
    const RunResult result = run({"copy", folder(), "--verify"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.out, HasSubstr("Compared 1 of 3 files with the camera, all the same\n"));
    EXPECT_THAT(result.err, HasSubstr("nivor: 3: could not be compared: the camera is gone\n"));
    EXPECT_THAT(result.err, HasSubstr("nivor: 2 files could not be compared\n"));
}

TEST_F(Copy, CtrlCWhileComparingSaysSo)
{
    card->addFile(u"1.MOV", 2'000'000);
    attach({.pace = {.megabytesPerSecond = 2}});
    interruptAfter(2'500'000);
    const RunResult result = run({"copy", folder(), "--verify"});
    EXPECT_EQ(result.exitCode, 5);
    EXPECT_THAT(result.err,
                HasSubstr("stopped; the camera confirmed it; not everything is compared"));
    EXPECT_THAT(result.out, HasSubstr("Compared 0 of 1 file with the camera\n"));
    EXPECT_TRUE(isCopied("1.MOV", 1, 2'000'000));
}

TEST_F(Copy, OnATerminalCtrlCIsAnsweredAtOnce)
{
    card->addFile(u"1.MOV", 2'000'000);
    attach({.pace = {.megabytesPerSecond = 2}});
    isErrorTerminal = true;
    interruptAfter(500'000);
    const RunResult result = run({"copy", folder()});
    EXPECT_EQ(result.exitCode, 5);
    EXPECT_THAT(result.err, HasSubstr("\rStopping…\x1b[K"));
}

TEST_F(Copy, AShortCopyHasNoRate)
{
    card->addFile(u"1.JPG", 1000);
    attach();
    EXPECT_THAT(run({"copy", folder()}).out, ::testing::EndsWith(" in 0:00\n"));
}

TEST_F(Copy, AVanishedCameraFailsTheRestQuickly)
{
    for (const char16_t* name : {u"1", u"2", u"3", u"4"})
        card->addFile(name, 1'000'000);
    attachWith(FaultPlan().on(OperationCode::GetObject, fault::Vanish{.afterBytes = 300'000},
                              Occurrences::nth(2)));
    const auto began = std::chrono::steady_clock::now();
    const RunResult result = run({"copy", folder()});
    EXPECT_LT(std::chrono::steady_clock::now() - began, std::chrono::seconds(6));
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.err, HasSubstr("nivor: 2: "));
    EXPECT_THAT(result.err, HasSubstr("nivor: 4: the camera is gone"));
    EXPECT_THAT(result.err, HasSubstr("3 files could not be copied"));
}

TEST_F(Copy, AsJson)
{
    addUsualCard();
    const std::uint32_t empty = card->addFile(u"EMPTY.TXT", 0);
    attach();
    const RunResult result = run({"copy", "--json", folder(), "*.MOV", "EMPTY.TXT", "NOPE"});
    EXPECT_EQ(result.exitCode, 1);
    const json report = json::parse(result.out);
    EXPECT_EQ(report["copied"],
              json::array({{{"handle", film},
                            {"name", "IMG_0002.MOV"},
                            {"path", "DCIM/100NIVOR/IMG_0002.MOV"},
                            {"verified", nullptr},
                            {"file", folder() + "/IMG_0002.MOV"},
                            {"size", 2'500'000}}}));
    ASSERT_EQ(report["failed"].size(), 1U);
    EXPECT_EQ(report["failed"][0]["handle"], empty);
    EXPECT_THAT(report["failed"][0]["reason"].get<std::string>(), HasSubstr("0 bytes"));
    EXPECT_EQ(report["unmatched"], json::array({"NOPE"}));
    EXPECT_EQ(report["stopped"], false);
    EXPECT_THAT(result.err, Not(HasSubstr("IMG_0002.MOV")));
}

TEST_F(Copy, AnEmptyCardIsNoFailure)
{
    attach();
    const RunResult result = run({"copy", folder()});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.err, HasSubstr("there is no file on the camera"));
    EXPECT_THAT(result.out, IsEmpty());
}

TEST_F(Copy, OnATerminalOneLineFollowsTheCopy)
{
    card->addFile(u"LONG_LONG_LONG_LONG_LONG_LONG_NAME.MOV", 4'000'000);
    card->addFile(u"B.MOV", 4'000'000);
    attach({.pace = {.megabytesPerSecond = 6}});
    isErrorTerminal = true;
    width = 60;
    const auto began = std::chrono::steady_clock::now();
    const RunResult result = run({"copy", folder()});
    const auto took = std::chrono::steady_clock::now() - began;
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.err, HasSubstr("1 / 2"));
    EXPECT_THAT(result.err, HasSubstr("2 / 2"));
    EXPECT_THAT(result.err, HasSubstr("of 8.0 MB"));
    EXPECT_THAT(result.err, HasSubstr("MB/s"));
    EXPECT_THAT(result.err, HasSubstr("left"));
    EXPECT_THAT(result.err, Not(HasSubstr("\n")));
    EXPECT_TRUE(result.err.ends_with("\r\x1b[K"));

    const auto lines = std::count(result.err.begin(), result.err.end(), '\r');
    EXPECT_LE(lines, took / std::chrono::milliseconds(100) + 6);
    std::istringstream stream(result.err);
    for (std::string line; std::getline(stream, line, '\r');)
        EXPECT_LE(QString::fromStdString(line).remove(QStringLiteral("\x1b[K")).size(), 59);
}

}  // namespace
