// Answers that come when nobody waits for them any more.
#include "support/EngineFixture.h"

using namespace nivor;
using namespace nivor::test;
using ::testing::ElementsAre;

namespace {

class EarlierAnswer : public EngineFixture {
protected:
    EarlierAnswer()
    {
        attachDirectly();
        device->statuses = {statusOf(0x2001)};
    }

    /// Asks for the storages; transactions count from 1.
    bool ask(std::uint32_t timeout = 5000)
    {
        ByteBuffer command = container(1, 0x1004, 0, {});
        PTPCommunication::ReceiveSlot received;
        return engine.executePTPTransaction(command, nullptr, &received, 0, nullptr, true, timeout);
    }

    void learnThatTheCameraNamesTransactions()
    {
        answerNext(1);
        ASSERT_TRUE(ask());
        ASSERT_FALSE(engine.isAnswerEarlier());
    }

    void answerNext(std::uint32_t transactionID)
    {
        pipes().answerWrite(1,
                            {data(0x1004, parameters({1, 0x10001}), transactionID),
                             response(0x2001, transactionID)});
    }

    /// The transactions that the camera was asked to cancel.
    std::vector<std::uint8_t> cancelled() const
    {
        std::vector<std::uint8_t> transactions;
        for (const ControlRecord& record : device->controlRecords()) {
            if (record.request.bRequest == 0x64)
                transactions.push_back(record.sent.at(2));
        }
        return transactions;
    }
};

TEST_F(EarlierAnswer, IsTakenAndKnownAsSuchAndTheOneStillOwedIsCancelled)
{
    learnThatTheCameraNamesTransactions();
    EXPECT_FALSE(ask(100));
    EXPECT_FALSE(engine.isAnswerEarlier());
    answerNext(2);
    EXPECT_TRUE(ask());
    EXPECT_TRUE(engine.isAnswerEarlier());
    EXPECT_EQ(engine.lastTransactionFailure().toText(),
              "the camera's answer was to an earlier question");
    EXPECT_THAT(cancelled(), ElementsAre(3));
    EXPECT_EQ(log.last().message, "Late answer (cancel = success)");

    answerNext(4);
    EXPECT_TRUE(ask());
    EXPECT_FALSE(engine.isAnswerEarlier());
    EXPECT_EQ(engine.lastTransactionFailure().toText(), "");
    EXPECT_THAT(cancelled(), ElementsAre(3));
}

TEST_F(EarlierAnswer, IsKnownAsLongAsTheCameraStaysBehind)
{
    device->cancelResult = UsbResult::PipeStalled;
    learnThatTheCameraNamesTransactions();
    EXPECT_FALSE(ask(100));
    for (const std::uint32_t behind : {2U, 3U, 4U}) {
        answerNext(behind);
        EXPECT_TRUE(ask());
        EXPECT_TRUE(engine.isAnswerEarlier()) << behind;
    }
}

TEST_F(EarlierAnswer, LeavesDataThatNameTheirOwnTransactionAlone)
{
    learnThatTheCameraNamesTransactions();
    EXPECT_FALSE(ask(100));
    // A late response without data, and then the true answer.
    pipes().answerWrite(1, {response(0x201F, 2), data(0x1004, parameters({1, 0x10001}), 3)});
    EXPECT_TRUE(ask());
    EXPECT_FALSE(engine.isAnswerEarlier());
    EXPECT_EQ(engine.lastTransactionFailure().toText(), "");
    // Its own response is still to come, and would answer the next command.
    EXPECT_THAT(cancelled(), ElementsAre(3));
}

TEST_F(EarlierAnswer, IsTheResponseWhereNoDataIsExpected)
{
    learnThatTheCameraNamesTransactions();
    pipes().answerWrite(1, {response(0x2001, 1)});  // the first one's, doubled
    EXPECT_TRUE(engine.deleteObject(HandleBlock{{1, 0, 0, 0}}));
    EXPECT_TRUE(engine.isAnswerEarlier());
    EXPECT_THAT(cancelled(), ElementsAre(2));
}

TEST_F(EarlierAnswer, IsNotSuspectedOfACameraThatNamesNoTransaction)
{
    answerNext(0);
    EXPECT_TRUE(ask());
    EXPECT_FALSE(ask(100));
    answerNext(0);
    EXPECT_TRUE(ask());
    EXPECT_FALSE(engine.isAnswerEarlier());
    EXPECT_TRUE(cancelled().empty());
}

TEST_F(EarlierAnswer, IsNotSuspectedOfACameraThatNamesAnyTransaction)
{
    for (const std::uint32_t named : {900U, 77U, 900U, 1U}) {
        answerNext(named);
        EXPECT_TRUE(ask());
        EXPECT_FALSE(engine.isAnswerEarlier()) << named;
    }
}

TEST_F(EarlierAnswer, IsForgottenWithTheConnection)
{
    learnThatTheCameraNamesTransactions();
    for (int i = 0; i < 3; ++i)
        EXPECT_FALSE(ask(100));
    pipes().answerWrite(1, {response(0x2001, 1)});  // OpenSession counts from 1 again
    EXPECT_TRUE(engine.connect(anyVendorID));
    EXPECT_FALSE(engine.isAnswerEarlier());
    EXPECT_TRUE(engine.sessionOpen());
}

TEST_F(EarlierAnswer, IsCancelledWhenAStopWasConfirmedBeforeTheCommandWasWritten)
{
    pipes().onWrite = [this] {
        if (!engine.isStopCopyFlg())
            engine.cancelTransaction();
    };
    EXPECT_FALSE(ask());
    EXPECT_EQ(engine.lastTransactionFailure().cause, TransactionFailure::Cause::Stopped);
    // By the stop, and once more when the camera had the command.
    EXPECT_THAT(cancelled(), ElementsAre(1, 1));
}

TEST_F(EarlierAnswer, IsCancelledOnceByAStopThatTheCommandPreceded)
{
    // A read that begins behind the record of the write sends the stop.
    pipes().onRead = [this] {
        const auto records = log.messagesOf("PTPCommunication writePipe:");
        if (records.size() > 1 && !engine.isStopCopyFlg()) {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            engine.cancelTransaction();
        }
    };
    EXPECT_FALSE(ask());
    EXPECT_THAT(cancelled(), ElementsAre(1));
}

}  // namespace
