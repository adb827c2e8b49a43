#include "content/CopyRunFixture.h"

#include <chrono>

using namespace nivor;
using namespace nivor::test;
using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

namespace {

class CopyRunStop : public CopyRunFixture { };

TEST_F(CopyRunStop, AStopInTheSecondFileEndsTheRun)
{
    prepareStopInSecondFile();
    const CopyResult result = copyAll();
    ASSERT_EQ(result.files.size(), 2U);
    EXPECT_TRUE(result.files.at(0).isCopied);
    EXPECT_FALSE(result.files.at(1).isCopied);
    EXPECT_EQ(result.files.at(1).failure, "stopped");
    EXPECT_TRUE(result.isStopped);
    EXPECT_TRUE(result.isCancelSent);
    EXPECT_TRUE(result.isStopConfirmed);
    EXPECT_EQ(result.filesNotBegun, 3U);
    EXPECT_THAT(observer.confirmations, ElementsAre(true));
    EXPECT_EQ(camera->record().cancelRequests, 1U);

    EXPECT_TRUE(holdsObject(folder() / "1.MOV", handles.at(0), fileSize));
    const ByteBuffer part = bytesOf(folder() / "2.MOV");
    EXPECT_GT(part.size(), 0U);
    EXPECT_LT(part.size(), fileSize);
    EXPECT_TRUE(PatternContent(handles.at(1)).matches(0, part));
    EXPECT_EQ(filesInFolder(), 2U);
    EXPECT_EQ(log.messagesOf(copyEvent).back(), "startCopyingItem (result = fail)");
    EXPECT_FALSE(engine.isStopCopyFlg());
}

TEST_F(CopyRunStop, AfterAStopTheNextRunWorks)
{
    prepareStopInSecondFile();
    copyAll();
    observer.stopWhen = {};
    camera->setPace({});
    const CopyResult result = copyAll();
    EXPECT_EQ(result.copiedCount(), 5U);
    EXPECT_TRUE(holdsObject(folder() / "2_1.MOV", handles.at(1), fileSize));
}

TEST_F(CopyRunStop, AnUnconfirmedStopLetsTheFileEndAndBeginsNoOther)
{
    prepareStopInSecondFile(FaultPlan().usb(UsbStep::CancelRequest, UsbResult::PipeStalled));
    const CopyResult result = copyAll();
    ASSERT_EQ(result.files.size(), 2U);
    EXPECT_TRUE(result.isStopped);
    EXPECT_FALSE(result.isStopConfirmed);
    EXPECT_TRUE(result.files.at(1).isCopied);
    EXPECT_THAT(observer.confirmations, ElementsAre(false));
    EXPECT_TRUE(holdsObject(folder() / "2.MOV", handles.at(1), fileSize));
    EXPECT_THAT(log.messagesOf("PTPCommunication cancelTransaction"),
                ElementsAre("cancelTransaction (result = fail)"));
}

TEST_F(CopyRunStop, AStopBetweenFilesNeedsNoCancel)
{
    card->addFile(u"A.JPG", 10);
    card->addFile(u"B.JPG", 10);
    connect();
    observer.stopWhen = [this] { return observer.received == 1; };
    const CopyResult result = copyAll();
    EXPECT_EQ(result.files.size(), 1U);
    EXPECT_TRUE(result.isStopped);
    EXPECT_FALSE(result.isCancelSent);
    EXPECT_EQ(result.filesNotBegun, 1U);
    EXPECT_EQ(camera->record().cancelRequests, 0U);
}

TEST_F(CopyRunStop, ACameraThatVanishesFailsTheRestAtOnce)
{
    for (const char16_t* name : {u"1", u"2", u"3", u"4", u"5"})
        card->addFile(name, 1'000'000);
    connectWith(FaultPlan().on(OperationCode::GetObject, fault::Vanish{.afterBytes = 300'000},
                               Occurrences::nth(2)));
    const auto began = std::chrono::steady_clock::now();
    const CopyResult result = copyAll();
    EXPECT_LT(std::chrono::steady_clock::now() - began, 5s);
    ASSERT_EQ(result.files.size(), 5U);
    EXPECT_EQ(result.copiedCount(), 1U);
    EXPECT_THAT(result.files.at(1).failure, HasSubstr("the device is gone"));
    EXPECT_EQ(result.files.at(4).failure, "the camera is gone");
    // No empty files for what was never asked for.
    EXPECT_EQ(filesInFolder(), 2U);
    EXPECT_EQ(log.messagesOf(copyEvent).back(), "startCopyingItem (result = fail)");
}

}  // namespace
