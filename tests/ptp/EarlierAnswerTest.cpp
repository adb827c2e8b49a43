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
    EXPECT_FALSE(ask(100));
    EXPECT_FALSE(engine.isAnswerEarlier());
    answerNext(1);
    EXPECT_TRUE(ask());
    EXPECT_TRUE(engine.isAnswerEarlier());
    EXPECT_EQ(engine.lastTransactionFailure().toText(),
              "the camera's answer was to an earlier question");
    EXPECT_THAT(cancelled(), ElementsAre(2));

    answerNext(3);
    EXPECT_TRUE(ask());
    EXPECT_FALSE(engine.isAnswerEarlier());
    EXPECT_EQ(engine.lastTransactionFailure().toText(), "");
    EXPECT_THAT(cancelled(), ElementsAre(2));
}

TEST_F(EarlierAnswer, IsKnownAsLongAsTheCameraStaysBehind)
{
    device->cancelResult = UsbResult::PipeStalled;
    EXPECT_FALSE(ask(100));
    for (const std::uint32_t behind : {1U, 2U, 3U}) {
        answerNext(behind);
        EXPECT_TRUE(ask());
        EXPECT_TRUE(engine.isAnswerEarlier()) << behind;
    }
}

TEST_F(EarlierAnswer, IsNotSuspectedOfACameraThatNamesNoTransaction)
{
    EXPECT_FALSE(ask(100));
    answerNext(0);
    EXPECT_TRUE(ask());
    EXPECT_FALSE(engine.isAnswerEarlier());
    EXPECT_TRUE(cancelled().empty());
}

TEST_F(EarlierAnswer, IsNotOneThatWasAnsweredWithARefusal)
{
    pipes().answerWrite(1, {response(0x2019, 1)});  // Device Busy, and no data
    EXPECT_FALSE(ask(100));
    answerNext(1);
    EXPECT_TRUE(ask());
    EXPECT_FALSE(engine.isAnswerEarlier());
}

TEST_F(EarlierAnswer, IsForgottenWithTheConnection)
{
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
    EXPECT_FALSE(ask(100));  // makes the next one the second, which the stop can tell from it
    std::thread user([this] {
        while (pipes().written().size() < 2)
            std::this_thread::yield();
        // The engine notes the command right behind the write.
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        engine.cancelTransaction();
    });
    EXPECT_FALSE(ask());
    user.join();
    EXPECT_THAT(cancelled(), ElementsAre(2));
}

}  // namespace
