#include "ptp/CommandContainer.h"
#include "ptp/PTPTransactionCallback.h"
#include "support/EngineFixture.h"

#include <atomic>
#include <chrono>
#include <future>
#include <thread>

using namespace nivor;
using namespace nivor::test;
using namespace std::chrono_literals;
using ::testing::ElementsAre;

namespace {

using Clock = std::chrono::steady_clock;
constexpr char event[] = "PTPCommunication cancelTransaction";

/// A transaction that another thread stops.
class Cancel : public EngineFixture {
protected:
    Cancel() { attachDirectly(); }

    std::future<bool> start(std::uint32_t timeout)
    {
        engine.setTimeoutTimer(0);
        auto running = std::async(std::launch::async, [this, timeout] {
            CommandContainer command(OperationCode::GetObject, 1);
            command.append(1);
            return engine.executePTPTransaction(command.bytes(), nullptr, nullptr, 0, nullptr, true,
                                                timeout);
        });
        // Only when it waits for the answer has it taken note that the camera has the command.
        while (engine.timeoutTimer() < 100
               && running.wait_for(1ms) == std::future_status::timeout) { }
        return running;
    }

    std::size_t statusRequests() const
    {
        std::size_t count = 0;
        for (const ControlRecord& record : device->controlRecords())
            count += record.request.bRequest == 0x67 ? 1U : 0U;
        return count;
    }
};

TEST_F(Cancel, StopsTheTransactionWhenTheCameraConfirmsAtOnce)
{
    device->statuses = {statusOf(0x2001)};
    std::future<bool> running = start(60'000);
    const auto begin = Clock::now();
    EXPECT_FALSE(engine.cancelTransaction());
    EXPECT_FALSE(running.get());
    EXPECT_LT(Clock::now() - begin, 10s);  // of the 60 that it would wait
    EXPECT_TRUE(engine.isStopCopyFlg());
    EXPECT_EQ(statusRequests(), 1U);
    EXPECT_THAT(log.messagesOf(event), ElementsAre("cancelTransaction (result = success)"));
    EXPECT_EQ(engine.lastTransactionFailure().cause, TransactionFailure::Cause::Stopped);
}

TEST_F(Cancel, SendsTheRequestsOfTheStillImageClass)
{
    device->statuses = {statusOf(0x2001)};
    engine.setTransactionID(0x00030201);
    std::future<bool> running = start(60'000);
    engine.cancelTransaction();
    running.get();

    const std::vector<ControlRecord> records = device->controlRecords();
    ASSERT_EQ(records.size(), 2U);
    const ControlRequest& cancel = records[0].request;
    EXPECT_EQ(cancel.bmRequestType, 0x21);
    EXPECT_EQ(cancel.bRequest, 0x64);
    EXPECT_EQ(cancel.wValue, 0);
    EXPECT_EQ(cancel.wIndex, 0);
    EXPECT_EQ(cancel.timeouts.noData, 2000ms);
    EXPECT_EQ(cancel.timeouts.completion, 2000ms);
    EXPECT_THAT(records[0].sent,
                ElementsAre(0x01, 0x40,                // CancelTransaction
                            0x01, 0x02, 0x03, 0x00));  // the running ID
    const ControlRequest& status = records[1].request;
    EXPECT_EQ(status.bmRequestType, 0xA1);
    EXPECT_EQ(status.bRequest, 0x67);
    EXPECT_EQ(status.wIndex, 0);
    EXPECT_EQ(status.data.size(), 128U);
}

TEST_F(Cancel, StopsAfterThreePolls)
{
    device->statuses = {statusOf(0x2019), statusOf(0x2019), statusOf(0x2001)};
    std::future<bool> running = start(60'000);
    engine.cancelTransaction();
    EXPECT_FALSE(running.get());
    EXPECT_EQ(statusRequests(), 3U);
    EXPECT_TRUE(engine.isStopCopyFlg());
    EXPECT_EQ(log.messagesOf(event).back(), "cancelTransaction (result = success)");
}

TEST_F(Cancel, GivesUpAfterTenPollsAndLetsTheTransactionRun)
{
    device->statuses = {statusOf(0x2019)};
    std::future<bool> running = start(60'000);
    engine.cancelTransaction();
    EXPECT_EQ(statusRequests(), 10U);
    EXPECT_FALSE(engine.isStopCopyFlg());
    // The last poll itself succeeded, and that is what the record tells.
    EXPECT_EQ(log.messagesOf(event).back(), "cancelTransaction (result = success)");

    pipes().answer({.bytes = data(0x1009, {1})});
    pipes().answer({.bytes = response(0x2001)});
    EXPECT_TRUE(running.get());
}

TEST_F(Cancel, RecordsAFailWhenTheLastOfTenPollsFailed)
{
    device->statuses = {{.bytes = {}, .result = UsbResult::PipeStalled}};
    std::future<bool> running = start(2000);
    engine.cancelTransaction();
    EXPECT_EQ(log.messagesOf(event).back(), "cancelTransaction (result = fail)");
    EXPECT_FALSE(engine.isStopCopyFlg());
    EXPECT_FALSE(running.get());
}

TEST_F(Cancel, LetsTheTransactionRunWhenTheRequestFails)
{
    device->cancelResult = UsbResult::PipeStalled;
    std::future<bool> running = start(60'000);
    engine.cancelTransaction();
    EXPECT_EQ(statusRequests(), 0U);
    EXPECT_FALSE(engine.isStopCopyFlg());
    EXPECT_THAT(log.messagesOf(event), ElementsAre("cancelTransaction (result = fail)"));

    pipes().answer({.bytes = data(0x1009, {1})});
    pipes().answer({.bytes = response(0x2001)});
    EXPECT_TRUE(running.get());
}

TEST_F(Cancel, DoesNotTakeAnEmptyStatusForAnOldOne)
{
    // OK once; a reply buffer that is used again would remember it.
    device->statuses = {statusOf(0x2001), {.bytes = {}, .result = UsbResult::Success}};
    std::future<bool> first = start(60'000);
    engine.cancelTransaction();
    EXPECT_FALSE(first.get());
    ASSERT_TRUE(engine.isStopCopyFlg());
    engine.stopCopyFlgInit();

    std::future<bool> second = start(2000);
    engine.cancelTransaction();
    EXPECT_EQ(statusRequests(), 11U);
    EXPECT_FALSE(engine.isStopCopyFlg());
    EXPECT_FALSE(second.get());
}

TEST_F(Cancel, KeepsThePieceThatArrivesAfterTheStopFromTheSink)
{
    class Sizes : public PTPTransactionCallback {
    public:
        bool callbackProc(std::uint64_t, std::uint64_t, const std::uint8_t*,
                          std::uint64_t size) override
        {
            sizes.push_back(size);
            return true;
        }
        std::vector<std::uint64_t> sizes;
    } sink;
    device->statuses = {statusOf(0x2001)};
    pipes().answerWrite(1, {container(2, 0x1009, 1, ByteBuffer(9'988))});
    // 5120 bytes, then the stop in the middle of the second read, whose bytes still arrive.
    int reads = 0;
    pipes().onRead = [this, &reads] {
        if (++reads != 2)
            return;
        engine.cancelTransaction();
        while (!engine.isReceivedError())
            std::this_thread::sleep_for(1ms);
    };
    CommandContainer command(OperationCode::GetObject, 1);
    command.append(1);
    EXPECT_FALSE(
        engine.executePTPTransaction(command.bytes(), nullptr, nullptr, 0, &sink, true, 60'000));
    EXPECT_THAT(sink.sizes, ElementsAre(5120U));
    EXPECT_EQ(engine.lastTransactionFailure().cause, TransactionFailure::Cause::Stopped);
}

TEST_F(Cancel, StopsBeforeAnyDataArrived)
{
    device->statuses = {statusOf(0x2001)};
    std::future<bool> running = start(60'000);
    engine.cancelTransaction();
    EXPECT_FALSE(running.get());
    EXPECT_FALSE(engine.isReceivedData());
}

TEST_F(Cancel, FailsEveryLaterTransactionUntilTheFlagIsCleared)
{
    device->statuses = {statusOf(0x2001)};
    std::future<bool> running = start(60'000);
    engine.cancelTransaction();
    running.get();

    const std::size_t sent = pipes().written().size();
    EXPECT_FALSE(start(60'000).get());
    EXPECT_EQ(pipes().written().size(), sent + 1);  // its command is sent all the same

    engine.stopCopyFlgInit();
    pipes().answerWrite(1, {data(0x1009, {1}), response(0x2001)});
    EXPECT_TRUE(start(60'000).get());
}

TEST_F(Cancel, FailsWithoutACamera)
{
    engine.setUsbDevice(nullptr);
    EXPECT_FALSE(engine.cancelTransaction());
    EXPECT_EQ(log.messagesOf(event).back(), "cancelTransaction (result = fail)");
}

TEST_F(Cancel, DoesNotWaitForTheEnginesLock)
{
    device->statuses = {statusOf(0x2001)};
    std::promise<void> release;
    std::thread holder([this, held = release.get_future()] {
        const std::lock_guard guard(engine.lock());
        held.wait();
    });
    EXPECT_FALSE(engine.cancelTransaction());
    EXPECT_TRUE(engine.isStopCopyFlg());
    release.set_value();
    holder.join();
}

TEST_F(Cancel, LetsTheCallersEventLoopTurnBetweenPolls)
{
    std::atomic<int> slices = 0;
    PTPCommunication patient({.host = host,
                              .logger = &log.logger(),
                              .runLoopSlice =
                                  [&slices](std::chrono::milliseconds duration) {
                                      EXPECT_EQ(duration, 10ms);
                                      ++slices;
                                  },
                              .agentPause = {}});
    patient.setUsbDevice(device);
    device->statuses = {statusOf(0x2019), statusOf(0x2019), statusOf(0x2001)};
    patient.cancelTransaction();
    EXPECT_EQ(slices, 2);
    patient.setUsbDevice(nullptr);
}

}  // namespace
