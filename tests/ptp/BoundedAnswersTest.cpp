// Answers that are longer or slower than any answer can be.
#include "support/EngineFixture.h"

#include "datasets/ObjectInfoData.h"
#include "datasets/Thumbnail.h"

#include <chrono>

using namespace nivor;
using namespace nivor::test;
using namespace std::chrono_literals;
using ::testing::Contains;
using ::testing::HasSubstr;

namespace {

/// An engine twenty times as fast, so that its longest wait of a minute is three seconds.
class BoundedAnswers : public EngineFixture {
protected:
    BoundedAnswers()
    {
        quick.setUsbDevice(device);
        quick.setUsbInterface(device->interface);
        quick.setTransactionID(1);
        device->statuses = {statusOf(0x2001)};
    }

    /// The next command is answered with the beginning of a container that announces `length`.
    void announce(std::uint16_t operation, std::uint32_t length)
    {
        ByteBuffer first = container(2, operation, 1, ByteBuffer(5108), length);
        first.resize(5120);
        pipes().answerWrite(1, {first});
    }

    /// From then on every read finds another transfer of so many bytes.
    void goOnWith(std::size_t bytes, std::chrono::milliseconds each = 0ms)
    {
        pipes().onRead = [this, bytes, each] {
            std::this_thread::sleep_for(each);
            if (isSending)
                pipes().answer({.bytes = ByteBuffer(bytes), .afterWrites = 1});
        };
        device->onCancel = [this] { isSending = false; };
    }

    std::vector<std::string> received() const
    {
        return log.messagesOf("PTPCommunication setReceiveOperation:");
    }

    std::atomic<bool> isSending{true};
    PTPCommunication quick{{.host = host, .logger = &log.logger(), .agentPause = {}, .pace = 10}};
    const HandleBlock handle{{0x0A, 0x00, 0x01, 0x00}};
};

TEST_F(BoundedAnswers, AHandleListWithoutEndIsGivenUp)
{
    announce(0x1007, 0xFFFFFFFE);
    goOnWith(1 << 20);
    HandlesDict handles;
    EXPECT_FALSE(quick.getObjectHandles(1, handles));
    EXPECT_TRUE(handles.isEmpty());
    EXPECT_EQ(quick.lastTransactionFailure().toText(),
              "the camera's answer is too long to be true");
    EXPECT_THAT(received(),
                Contains("ReceiveBuffer (error = the camera's answer is too long to be "
                         "true, received = 4199424)"));
    EXPECT_THAT(received(), Contains("ReceiveCallback (cancel = success)"));
    ASSERT_EQ(device->controlRecords().size(), 2U);
    EXPECT_EQ(device->controlRecords()[0].request.bRequest, 0x64);
}

TEST_F(BoundedAnswers, AnObjectInfoThatIsAFilmIsGivenUp)
{
    announce(0x1008, 0x40000000);
    goOnWith(4096);
    std::shared_ptr<ObjectInfoData> object;
    EXPECT_FALSE(quick.getObjectInfo(handle, &object));
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(quick.lastTransactionFailure().cause, TransactionFailure::Cause::TooMuchData);
}

TEST_F(BoundedAnswers, AThumbnailOfOneMebibyteIsTakenAndNoByteMore)
{
    ByteBuffer bytes;
    for (const std::size_t size : {Thumbnail::largestFile, Thumbnail::largestFile + 1}) {
        const std::uint32_t transaction = quick.transactionID();
        pipes().answerWrite(
            1, {data(0x100A, ByteBuffer(size, 7), transaction), response(0x2001, transaction)});
        EXPECT_EQ(quick.getThumb(handle, size, &bytes), size == Thumbnail::largestFile);
        EXPECT_EQ(bytes.size(), Thumbnail::largestFile);
    }
    // All of it had come, so only its response was left to take out of the pipe.
    EXPECT_TRUE(device->controlRecords().empty());
    pipes().answerWrite(1, {data(0x1004, parameters({1, 0x10001})), response(0x2001)});
    std::vector<std::uint32_t> storageIDs;
    EXPECT_TRUE(quick.getStorageIDs(&storageIDs));
}

TEST_F(BoundedAnswers, AnAnswerThatTricklesEndsAfterAMinute)
{
    announce(0x1004, 0x10000);
    // A byte every 20 ms is one in 1.2 s of the engine's: each read within its time-out.
    goOnWith(1, 20ms);
    const auto began = std::chrono::steady_clock::now();
    std::vector<std::uint32_t> storageIDs;
    EXPECT_FALSE(quick.getStorageIDs(&storageIDs));
    EXPECT_GT(std::chrono::steady_clock::now() - began, 900ms);
    EXPECT_LT(std::chrono::steady_clock::now() - began, 20s);
    EXPECT_EQ(quick.lastTransactionFailure().toText(),
              "the camera's answer came too slowly and did not end");
    EXPECT_THAT(received(), Contains(HasSubstr("came too slowly and did not end, received = ")));
}

TEST_F(BoundedAnswers, AnObjectForMemoryMayBeAReadLongerThanExpected)
{
    // Nothing here is waited for, and to collect 16 MiB may take a sanitizer its time.
    PTPCommunication calm({.host = host, .logger = &log.logger(), .agentPause = {}});
    calm.setUsbDevice(device);
    calm.setUsbInterface(device->interface);
    calm.setTransactionID(1);
    ByteBuffer bytes;
    pipes().answerWrite(1, {data(0x1009, ByteBuffer(100'000)), response(0x2001)});
    EXPECT_TRUE(calm.getObject(handle, 10, &bytes, nullptr));
    EXPECT_EQ(bytes.size(), 100'000U);

    announce(0x1009, 0x80000000);
    goOnWith(1 << 20);
    EXPECT_FALSE(calm.getObject(handle, 10, &bytes, nullptr));
    EXPECT_EQ(calm.lastTransactionFailure().cause, TransactionFailure::Cause::TooMuchData);
    calm.setUsbDevice(nullptr);
    calm.setUsbInterface(nullptr);
}

}  // namespace
