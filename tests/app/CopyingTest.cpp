#include "app/AppFixture.h"

#include <QLabel>
#include <QProgressBar>

#include <fcntl.h>

#include <cerrno>

using namespace nivor;
using namespace nivor::test;
using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
namespace fs = std::filesystem;

namespace {

class AppCopying : public AppFixture {
protected:
    /// Five films of 2 MB at a pace at which the second is on its way after half a second.
    void listFiveFilms(FaultPlan faults = {})
    {
        addFiles({u"1.MOV", u"2.MOV", u"3.MOV", u"4.MOV", u"5.MOV"}, filmSize);
        list({.pace = {.megabytesPerSecond = 4}, .faults = std::move(faults)});
    }

    std::function<bool()> isInSecondFilm() const { return hasArrived("2.MOV", 1); }

    std::string lastCopyRecord() const { return log.messagesOf(copyRecord).back(); }

    static constexpr std::uint64_t filmSize = 2'000'000;
};

class FailingDisk : public FileHandle {
public:
    FailingDisk(const fs::path& path, int error)
        : FileHandle(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600), path)
        , error_(error)
    {
    }

protected:
    ssize_t writeSome(ByteView /*bytes*/) override
    {
        errno = error_;
        return -1;
    }

private:
    const int error_;
};

TEST_F(AppCopying, FilesArriveUnderAPanelThatIsGoneAfterwards)
{
    addFiles({u"A.JPG", u"B.JPG"}, 1'000'000);
    list({.pace = {.megabytesPerSecond = 1}});
    QString message;
    QString amount;
    bool isModal = false;
    once(hasArrived("B.JPG", 1), [&] {
        message = panel()->messageField().text();
        amount = panel()->amountField().text();
        isModal = panel()->isModal();
    });
    copyAll();
    EXPECT_EQ(message.toStdString(), "Copying 2 / 2 to “" + folder().filename().string() + "”");
    EXPECT_TRUE(amount.endsWith(english(" of 2 MB"))) << amount.toStdString();
    EXPECT_TRUE(isModal);
    EXPECT_EQ(panel(), nullptr);
    EXPECT_TRUE(holdsObject(folder() / "A.JPG", handles.at(0), 1'000'000));
    EXPECT_TRUE(holdsObject(folder() / "B.JPG", handles.at(1), 1'000'000));
    EXPECT_THAT(log.messagesOf(copyRecord),
                ElementsAre("startCopyingItems (copyItemCount = 2)",
                            "startCopyingItem (result = success)"));
    EXPECT_THAT(alerts.shown, IsEmpty());
    EXPECT_FALSE(app.isError());
    EXPECT_TRUE(app.receivedComplete());
    EXPECT_FALSE(app.isRunUnderWay());
}

TEST_F(AppCopying, ThreeFilesOfOneNameAreNumbered)
{
    for (const char16_t* name : {u"X", u"Y", u"Z"})
        card->addFile(u"IMG.JPG", 10, card->addFolder(name));
    list();
    copyAll();
    EXPECT_THAT(filesInFolder(), ElementsAre("IMG.JPG", "IMG_1.JPG", "IMG_2.JPG"));
}

TEST_F(AppCopying, NamesThatAreTakenAreCountedAcrossTheRun)
{
    writeText(folder() / "IMG.JPG", "mine");
    writeText(folder() / "IMG_1.JPG", "mine");
    for (const char16_t* name : {u"X", u"Y"})
        card->addFile(u"IMG.JPG", 10, card->addFolder(name));
    list();
    copyAll();
    EXPECT_THAT(filesInFolder(), ElementsAre("IMG.JPG", "IMG_1.JPG", "IMG_2.JPG", "IMG_3.JPG"));
}

TEST_F(AppCopying, ANameWithoutExtensionGetsADotBehindItsNumber)
{
    writeText(folder() / "README", "mine");
    addFiles({u"README"});
    list();
    copyAll();
    EXPECT_THAT(filesInFolder(), ElementsAre("README", "README_1."));
    EXPECT_EQ(AppDelegate::makeCopyFileName({english("IMG1.JPG"), english("IMG1.JPG")},
                                            english("IMG1.JPG")),
              english("IMG1_2.JPG"));
}

/// Reads the panel's first line when the panel appears.
class PanelWatch : public QObject {
public:
    PanelWatch() { qApp->installEventFilter(this); }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        auto* panel = dynamic_cast<CopyProgressPanel*>(watched);
        if (panel != nullptr && event->type() == QEvent::Show)
            firstLine = panel->messageField().text().toStdString();
        return false;
    }

    std::string firstLine;
};

TEST_F(AppCopying, OnlyFoldersShowNoFileAndWriteNothing)
{
    card->addFolder(u"DCIM");
    list();
    const PanelWatch watch;
    copyAll();
    EXPECT_EQ(watch.firstLine, "Copying 0 to “" + folder().filename().string() + "”");
    EXPECT_THAT(filesInFolder(), IsEmpty());
    EXPECT_THAT(log.messagesOf(copyRecord),
                ElementsAre("startCopyingItems (copyItemCount = 1)",
                            "startCopyingItem (result = success)"));
    EXPECT_THAT(alerts.shown, IsEmpty());
}

TEST_F(AppCopying, TheSelectionIsCopiedInTheOrderOfItsRows)
{
    addFiles({u"A", u"B", u"C"});
    list();
    selectRows({0, 2});
    app.startCopyingSelectedItems();
    EXPECT_THAT(filesInFolder(), ElementsAre("A", "C"));
    EXPECT_EQ(chooser.questions, 1);
}

TEST_F(AppCopying, ARightClickOnAnUnselectedRowCopiesThatRowAlone)
{
    addFiles({u"A", u"B", u"C"});
    list();
    selectRows({0, 2});
    window.clicked = 1;
    app.startCopyingSelectedItems();
    EXPECT_THAT(filesInFolder(), ElementsAre("B"));
}

TEST_F(AppCopying, ARightClickInTheSelectionCopiesTheWholeOfIt)
{
    addFiles({u"A", u"B", u"C"});
    list();
    selectRows({0, 2});
    window.clicked = 2;
    EXPECT_THAT(app.indexesToProcessForContexualMenu(), ElementsAre(0, 2));
}

TEST_F(AppCopying, CancellingTheChoiceOfAFolderDoesNothing)
{
    addFiles({u"A"});
    list();
    selectRows({0});
    chooser.answer.reset();
    app.startCopyingSelectedItems();
    EXPECT_EQ(chooser.questions, 1);
    EXPECT_THAT(filesInFolder(), IsEmpty());
    EXPECT_THAT(log.messagesOf(copyRecord), IsEmpty());
}

TEST_F(AppCopying, AStopInTheSecondOfFiveFilesEndsTheRunWithoutAnAlert)
{
    listFiveFilms();
    bool isDisabled = false;
    once(isInSecondFilm(), [&] {
        panel()->stopButton().click();
        isDisabled = !panel()->stopButton().isEnabled();
    });
    copyAll();
    EXPECT_TRUE(isDisabled);
    EXPECT_THAT(filesInFolder(), ElementsAre("1.MOV", "2.MOV"));
    EXPECT_TRUE(holdsObject(folder() / "1.MOV", handles.at(0), filmSize));
    const ByteBuffer part = bytesOf(folder() / "2.MOV");
    EXPECT_LT(part.size(), filmSize);
    EXPECT_TRUE(PatternContent(handles.at(1)).matches(0, part));
    EXPECT_EQ(camera->record().cancelRequests, 1U);
    EXPECT_EQ(lastCopyRecord(), "startCopyingItem (result = fail)");
    EXPECT_THAT(alerts.shown, IsEmpty());
    EXPECT_TRUE(app.isError());
    EXPECT_FALSE(engine.isStopCopyFlg());

    camera->setPace({});
    app.startCopyingItems({window.shown.back()}, urlOf(folder()));
    EXPECT_TRUE(holdsObject(folder() / "5.MOV", handles.at(4), filmSize));
}

TEST_F(AppCopying, EscAndClosingThePanelMeanStop)
{
    for (const bool isEsc : {true, false}) {
        card = std::make_shared<GatedCard>();
        addFiles({u"FILM.MOV"}, 20'000'000);
        list({.pace = {.megabytesPerSecond = 4}});
        bool isStillThere = false;
        once(hasArrived("FILM.MOV", 1), [&] {
            isEsc ? panel()->reject() : static_cast<void>(panel()->close());
            isStillThere = panel() != nullptr;
        });
        copyAll();
        EXPECT_TRUE(isStillThere);
        EXPECT_EQ(camera->record().cancelRequests, 1U);
        EXPECT_LT(fs::file_size(folder() / "FILM.MOV"), 20'000'000U);
        fs::remove(folder() / "FILM.MOV");
        host->detach(camera);
        tick();
    }
}

TEST_F(AppCopying, AStopThatTheCameraNeverConfirmsLetsTheFileEnd)
{
    listFiveFilms(FaultPlan().usb(UsbStep::CancelRequest, UsbResult::PipeStalled));
    once(isInSecondFilm(), [] { panel()->stopButton().click(); });
    copyAll();
    EXPECT_THAT(filesInFolder(), ElementsAre("1.MOV", "2.MOV"));
    EXPECT_TRUE(holdsObject(folder() / "2.MOV", handles.at(1), filmSize));
    EXPECT_THAT(log.messagesOf("PTPCommunication cancelTransaction"),
                ElementsAre("cancelTransaction (result = fail)"));
    EXPECT_EQ(lastCopyRecord(), "startCopyingItem (result = success)");
    EXPECT_THAT(alerts.shown, IsEmpty());
}

TEST_F(AppCopying, ACameraThatVanishesInTheSecondOfFiveFilesIsTold)
{
    listFiveFilms(FaultPlan().on(OperationCode::GetObject, fault::Vanish{.afterBytes = 300'000},
                                 Occurrences::nth(2)));
    camera->setPace({});
    copyAll();
    EXPECT_THAT(filesInFolder(), ElementsAre("1.MOV", "2.MOV"));
    EXPECT_EQ(lastCopyRecord(), "startCopyingItem (result = fail)");
    ASSERT_EQ(alerts.shown.size(), 1U);
    EXPECT_EQ(alerts.shown.front().detailedText.toStdString(),
              "2.MOV: reading from the camera failed: the device is gone (0xe00002c0)\n"
              "3.MOV: the camera is gone\n"
              "4.MOV: the camera is gone\n"
              "5.MOV: the camera is gone");
}

TEST_F(AppCopying, AFailureOfTheLastFileIsTold)
{
    addFiles({u"A"});
    addFiles({u"EMPTY"}, 0);
    list();
    copyAll();
    EXPECT_EQ(lastCopyRecord(), "startCopyingItem (result = fail)");
    ASSERT_EQ(alerts.shown.size(), 1U);
    const Alert& alert = alerts.shown.front();
    EXPECT_EQ(alert.style, Alert::Style::Warning);
    EXPECT_EQ(alert.messageText, english("Some files could not be processed."));
    EXPECT_TRUE(alert.informativeText.isEmpty());
    EXPECT_EQ(alert.buttons, QStringList(english("OK")));
    EXPECT_EQ(alert.detailedText,
              english("EMPTY: it holds 0 bytes, and the camera sends nothing for it"));
}

TEST_F(AppCopying, AFailureBeforeASuccessIsNotTold)
{
    addFiles({u"EMPTY"}, 0);
    addFiles({u"A"});
    list();
    copyAll();
    EXPECT_EQ(lastCopyRecord(), "startCopyingItem (result = success)");
    EXPECT_THAT(alerts.shown, IsEmpty());
    EXPECT_FALSE(app.isError());
    // The status line does not keep it back.
    EXPECT_EQ(window.message, "1 of 2 files copied");
}

// --- The disk -----------------------------------------------------------------------------------

TEST_F(AppCopying, AFullDiskIsNamed)
{
    addFiles({u"A"});
    list();
    createFile = [](const fs::path& path) { return std::make_shared<FailingDisk>(path, ENOSPC); };
    copyAll();
    ASSERT_EQ(alerts.shown.size(), 1U);
    EXPECT_THAT(alerts.shown.front().detailedText.toStdString(),
                HasSubstr("No space left on device"));
}

TEST_F(AppCopying, AFolderThatIsGoneIsNamed)
{
    addFiles({u"A"});
    list();
    app.startCopyingItems(window.shown, urlOf(folder() / "gone"));
    ASSERT_EQ(alerts.shown.size(), 1U);
    EXPECT_THAT(alerts.shown.front().detailedText.toStdString(),
                HasSubstr("No such file or directory"));
    EXPECT_EQ(lastCopyRecord(), "startCopyingItem (result = fail)");
}

TEST_F(AppCopying, AFolderRemovedDuringTheRunFailsTheFilesThatAreLeft)
{
    addFiles({u"A", u"B"}, 1'000'000);
    list({.pace = {.megabytesPerSecond = 1}});
    const fs::path target = folder() / "target";
    fs::create_directory(target);
    once(hasArrived("target/A", 1), [&] { fs::remove_all(target); });
    app.startCopyingItems(window.shown, urlOf(target));
    ASSERT_EQ(alerts.shown.size(), 1U);
    const QStringList lines = alerts.shown.front().detailedText.split(u'\n');
    ASSERT_EQ(lines.size(), 2);
    // The first one's bytes went to a file that nobody can find any more.
    EXPECT_TRUE(lines.at(0).startsWith(english("A: "))) << lines.at(0).toStdString();
    EXPECT_TRUE(lines.at(1).endsWith(english("was moved, replaced or removed meanwhile")))
        << lines.at(1).toStdString();
}

TEST_F(AppCopying, AFolderThatMayNotBeWrittenToIsNamed)
{
    addFiles({u"A"});
    list();
    // The superuser may write everywhere but where no disk is.
    const fs::path readOnly = ::geteuid() == 0 ? fs::path("/proc") : folder() / "read-only";
    if (::geteuid() != 0) {
        fs::create_directory(readOnly);
        fs::permissions(readOnly, fs::perms::owner_read | fs::perms::owner_exec);
    }
    app.startCopyingItems(window.shown, urlOf(readOnly));
    ASSERT_EQ(alerts.shown.size(), 1U);
    EXPECT_THAT(alerts.shown.front().detailedText.toStdString(), HasSubstr("Could not create"));
    EXPECT_EQ(requests(OperationCode::GetObject), 0U);
}

TEST_F(AppCopying, ANameThatIsTooLongIsShortened)
{
    const std::u16string longName(250, u'\u00E9');
    addFiles({(longName + u".JPG").c_str()});
    list();
    copyAll();
    ASSERT_EQ(filesInFolder().size(), 1U);
    EXPECT_LE(filesInFolder().front().size(), 255U);
    EXPECT_TRUE(filesInFolder().front().ends_with(".JPG"));
    EXPECT_THAT(alerts.shown, IsEmpty());
}

}  // namespace
