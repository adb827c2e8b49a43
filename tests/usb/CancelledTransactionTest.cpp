// What a cancelled transaction leaves behind in the queue.
#include "support/ConnectedCamera.h"

#include <atomic>

namespace nivor {
namespace {

using namespace test;

class CancelledTransactionTest : public testing::Test {
protected:
    void SetUp() override
    {
        camera_.camera.onControl(
            [this](const MockedSetup& setup, ByteView) -> std::optional<ByteBuffer> {
                if (setup.bRequest == 0x64)
                    return ByteBuffer();
                if (setup.bRequest == 0x67)
                    return statusBlock_;
                return std::nullopt;
            });
        ASSERT_EQ(camera_.open(), UsbResult::Success);
    }

    ReadResult quickRead() { return camera_.read(5120, 30ms); }
    ReadResult patientRead() { return camera_.read(5120, 10s, 10s); }

    ConnectedCamera camera_;
    ByteBuffer statusBlock_ = deviceStatusBlock(0x2001);
    const ByteBuffer command_ = numberedBytes(12, 77);
};

TEST_F(CancelledTransactionTest, OnceConfirmedWhatWasReadAheadIsGone)
{
    camera_.camera.send(numberedBytes(300'000));
    EXPECT_EQ(camera_.read(5120).bytes, numberedBytes(5120));
    EXPECT_EQ(camera_.cancelRequest(), UsbResult::Success);
    EXPECT_EQ(camera_.deviceStatus(), UsbResult::Success);
    EXPECT_EQ(quickRead(), (ReadResult{UsbResult::TransactionTimeout, {}}));
}

TEST_F(CancelledTransactionTest, WhatComesAfterwardsIsGoneUntilTheNextWrite)
{
    camera_.cancelRequest();
    camera_.deviceStatus();
    camera_.camera.send(numberedBytes(6'000'000));
    EXPECT_TRUE(happens([this] { return camera_.camera.usbfs().unsentBytes() == 0; }));
    EXPECT_EQ(quickRead().result, UsbResult::TransactionTimeout);
    camera_.camera.onBulkOut([this](ByteView) { camera_.camera.send(numberedBytes(12, 9)); });
    EXPECT_EQ(camera_.interface->writePipe(command_), UsbResult::Success);
    EXPECT_EQ(patientRead(), (ReadResult{UsbResult::Success, numberedBytes(12, 9)}));
}

TEST_F(CancelledTransactionTest, BytesInAHalfFilledTransferAreGoneToo)
{
    camera_.camera.send(numberedBytes(1024), WireEnd::Open);
    camera_.cancelRequest();
    camera_.deviceStatus();
    camera_.camera.onBulkOut([this](ByteView) { camera_.camera.send(numberedBytes(12, 9)); });
    EXPECT_EQ(camera_.interface->writePipe(command_), UsbResult::Success);
    EXPECT_EQ(patientRead().bytes, numberedBytes(12, 9));
    EXPECT_EQ(camera_.camera.usbfs().waitingForIn(), 15U);
}

TEST_F(CancelledTransactionTest, AReadThatWaitsMeanwhileEndsSoon)
{
    std::jthread cancelling([this] {
        std::this_thread::sleep_for(50ms);
        camera_.cancelRequest();
        camera_.deviceStatus();
    });
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(camera_.read(5120, 20s, 20s).result, UsbResult::TransactionTimeout);
    EXPECT_LT(std::chrono::steady_clock::now() - start, 5s);
    cancelling.join();

    camera_.camera.onBulkOut([this](ByteView) { camera_.camera.send(numberedBytes(12, 9)); });
    EXPECT_EQ(camera_.interface->writePipe(command_), UsbResult::Success);
    EXPECT_EQ(camera_.read(5120, 10s, 10s).bytes, numberedBytes(12, 9));
}

TEST_F(CancelledTransactionTest, AReadThatBeginsBeforeTheNextWriteGetsItsAnswer)
{
    camera_.cancelRequest();
    camera_.deviceStatus();
    camera_.camera.onBulkOut([this](ByteView) { camera_.camera.send(numberedBytes(12, 9)); });
    ReadResult result{UsbResult::TransactionTimeout, {}};
    std::jthread reader([&] {
        // As the engine does, which asks again after a time-out.
        while (result.result == UsbResult::TransactionTimeout)
            result = camera_.read(5120, 10s, 10s);
    });
    std::this_thread::sleep_for(50ms);
    EXPECT_EQ(camera_.interface->writePipe(command_), UsbResult::Success);
    reader.join();
    EXPECT_EQ(result, (ReadResult{UsbResult::Success, numberedBytes(12, 9)}));
}

TEST_F(CancelledTransactionTest, AStallThatIsPartOfTheCancellingIsGoneAndCleared)
{
    camera_.camera.failIn(EPIPE);
    camera_.cancelRequest();
    camera_.deviceStatus();
    camera_.camera.onBulkOut([this](ByteView) { camera_.camera.send(numberedBytes(12, 9)); });
    EXPECT_EQ(camera_.interface->writePipe(command_), UsbResult::Success);
    EXPECT_EQ(patientRead(), (ReadResult{UsbResult::Success, numberedBytes(12, 9)}));
    EXPECT_EQ(camera_.camera.usbfs().counters().clearedHalts, 1U);
}

TEST_F(CancelledTransactionTest, UnconfirmedNothingIsDropped)
{
    statusBlock_ = deviceStatusBlock(0x2019);
    camera_.camera.send(numberedBytes(600));
    camera_.cancelRequest();
    for (int i = 0; i < 10; ++i)
        camera_.deviceStatus();
    EXPECT_EQ(patientRead().bytes, numberedBytes(600));
}

TEST_F(CancelledTransactionTest, AStatusTooShortForACodeConfirmsNothing)
{
    for (const std::size_t size : {0U, 2U, 3U}) {
        statusBlock_ = deviceStatusBlock(0x2001);
        statusBlock_.resize(size);
        camera_.camera.send(numberedBytes(600));
        camera_.cancelRequest();
        EXPECT_EQ(camera_.deviceStatus(), UsbResult::Success);
        EXPECT_EQ(camera_.transferred, size);
        EXPECT_EQ(patientRead().bytes, numberedBytes(600));
    }
}

TEST_F(CancelledTransactionTest, AStatusOfOkWithoutARequestDropsNothing)
{
    camera_.camera.send(numberedBytes(600));
    camera_.deviceStatus();
    EXPECT_EQ(patientRead().bytes, numberedBytes(600));
}

TEST_F(CancelledTransactionTest, ARefusedRequestDropsNothing)
{
    camera_.camera.onControl([](const MockedSetup& setup, ByteView) {
        return setup.bRequest == 0x67 ? std::optional(deviceStatusBlock(0x2001)) : std::nullopt;
    });
    camera_.camera.send(numberedBytes(600));
    EXPECT_EQ(camera_.cancelRequest(), UsbResult::PipeStalled);
    camera_.deviceStatus();
    EXPECT_EQ(patientRead().bytes, numberedBytes(600));
}

TEST_F(CancelledTransactionTest, AConfirmationAfterTheNextWriteIsTooLate)
{
    camera_.cancelRequest();
    EXPECT_EQ(camera_.interface->writePipe(command_), UsbResult::Success);
    camera_.camera.send(numberedBytes(600));
    camera_.deviceStatus();
    EXPECT_EQ(patientRead().bytes, numberedBytes(600));
}

TEST_F(CancelledTransactionTest, ManyTimesInTheMiddleOfATransfer)
{
    for (int i = 0; i < 40; ++i) {
        std::atomic<bool> stop = false;
        camera_.camera.send(numberedBytes(500'000));
        std::jthread reader([&] {
            while (!stop)
                camera_.read(5120, 20ms);
        });
        camera_.cancelRequest();
        camera_.deviceStatus();
        std::this_thread::sleep_for(1ms);
        stop = true;
        reader.join();
        camera_.camera.onBulkOut([this](ByteView) { camera_.camera.send(numberedBytes(12, 9)); });
        ASSERT_EQ(camera_.interface->writePipe(command_), UsbResult::Success);
        ASSERT_EQ(camera_.read(5120).bytes, numberedBytes(12, 9)) << i;
    }
}

}  // namespace
}  // namespace nivor
