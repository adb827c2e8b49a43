#include "simulator/MemoryCard.h"
#include "simulator/PatternContent.h"
#include "simulator/SimulatorHost.h"

#include <gmock/gmock.h>

#include <future>
#include <thread>

namespace nivor::test {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

class BulkInPipeTest : public testing::Test {
protected:
    /// Starts the transfer of an object whose data container has this many bytes.
    void getContainerOf(std::size_t bytes)
    {
        const std::uint32_t handle = card->addFile(u"A.JPG", bytes - containerHeaderSize);
        host.openSession();
        ASSERT_EQ(host.send(OperationCode::GetObject, {handle}), UsbResult::Success);
    }

    std::shared_ptr<MemoryCard> card = std::make_shared<MemoryCard>();
    SimulatorHost host{card};
};

TEST_F(BulkInPipeTest, EndsAReadAtAShortPacket)
{
    getContainerOf(700);
    EXPECT_EQ(host.read().bytes.size(), 700U);
    EXPECT_TRUE(host.read().isResponse());
}

TEST_F(BulkInPipeTest, EndsAReadAtTheEmptyPacketBehindWholePackets)
{
    getContainerOf(1024);
    EXPECT_EQ(host.read().bytes.size(), 1024U);
    EXPECT_TRUE(host.read().isResponse());
}

TEST_F(BulkInPipeTest, LeavesTheEmptyPacketToTheNextReadWhenTheBufferIsFull)
{
    getContainerOf(1024);
    EXPECT_EQ(host.read(1024).bytes.size(), 1024U);
    const Received empty = host.read();
    EXPECT_EQ(empty.result, UsbResult::Success);
    EXPECT_EQ(empty.bytes.size(), 0U);
    EXPECT_TRUE(host.read().isResponse());
}

TEST_F(BulkInPipeTest, FillsTheBufferAndGoesOnWithTheNextRead)
{
    getContainerOf(5120 + 100);
    EXPECT_EQ(host.read(5120).bytes.size(), 5120U);
    EXPECT_EQ(host.read(5120).bytes.size(), 100U);
    EXPECT_TRUE(host.read().isResponse());
}

TEST_F(BulkInPipeTest, OverrunsABufferThatEndsWithinAPacket)
{
    getContainerOf(1300);
    const Received overrun = host.read(600);
    EXPECT_EQ(overrun.result, UsbResult::Overrun);
    EXPECT_EQ(overrun.bytes.size(), 0U);
    EXPECT_EQ(host.read().bytes.size(), 1300U - 1024U);
    EXPECT_TRUE(host.read().isResponse());
}

TEST_F(BulkInPipeTest, TouchesNoByteBeyondThoseReceived)
{
    getContainerOf(100);
    ByteBuffer buffer(5120, 0xAB);
    std::size_t received = 0;
    ASSERT_EQ(host.interface->readPipe(buffer, received, patient), UsbResult::Success);
    EXPECT_EQ(received, 100U);
    EXPECT_EQ(std::count(buffer.begin() + 100, buffer.end(), 0xAB), 5020);
}

TEST_F(BulkInPipeTest, TimesOutWhenNothingArrives)
{
    const auto start = Clock::now();
    const Received nothing = host.read(5120, {40ms, 2000ms});
    EXPECT_EQ(nothing.result, UsbResult::TransactionTimeout);
    EXPECT_EQ(nothing.bytes.size(), 0U);
    EXPECT_GE(Clock::now() - start, 40ms);
    EXPECT_EQ(host.read(5120, {2000ms, 40ms}).result, UsbResult::TransactionTimeout);
}

TEST_F(BulkInPipeTest, WaitsForAnAnswerThatComesLater)
{
    auto reading = std::async(std::launch::async, [&] { return host.read(); });
    std::this_thread::sleep_for(20ms);
    ASSERT_EQ(host.send(OperationCode::OpenSession, {1}), UsbResult::Success);
    EXPECT_TRUE(reading.get().isResponse());
}

TEST_F(BulkInPipeTest, DeliversBytesOverTimeAtAPace)
{
    host.camera->setPace({.megabytesPerSecond = 2});
    getContainerOf(100'000);
    const auto start = Clock::now();
    EXPECT_EQ(host.read(102'400).bytes.size(), 100'000U);
    const auto taken = Clock::now() - start;
    EXPECT_GE(taken, 35ms);  // 50 ms less what a camera's buffer may hold
    EXPECT_LE(taken, 2s);
}

TEST_F(BulkInPipeTest, LosesNothingWhenATimeOutCutsAReadShort)
{
    host.camera->setPace({.megabytesPerSecond = 0.1});
    getContainerOf(100'000);
    ByteBuffer all;
    int reads = 0;
    while (all.size() < 100'000) {
        const Received part = host.read(102'400, {1000ms, 150ms});
        ASSERT_EQ(part.result, UsbResult::Success);
        ASSERT_EQ(part.bytes.size() < 90'000, true);
        all.insert(all.end(), part.bytes.begin(), part.bytes.end());
        ++reads;
    }
    EXPECT_GT(reads, 1);
    EXPECT_TRUE(PatternContent(1).matches(0, ByteView(all).subspan(containerHeaderSize)));
    EXPECT_TRUE(host.read().isResponse());
}

TEST_F(BulkInPipeTest, WaitsBeforeEachAnswerAtAPace)
{
    host.camera->setPace({.perTransaction = 40ms});
    const auto start = Clock::now();
    host.openSession();
    EXPECT_GE(Clock::now() - start, 40ms);
}

TEST_F(BulkInPipeTest, StreamsFiveGibibytesWithTheRightBytesAtTheEnds)
{
    constexpr std::uint64_t size = std::uint64_t{5} << 30;
    const PatternContent content(42);
    // Only the ends are worth the time.
    const auto handle = card->add({.name = u"BIG.MOV", .size = size},
                                  [&](std::uint64_t offset, std::span<std::uint8_t> out) {
                                      if (offset < 4096 || offset + out.size() + 4096 > size)
                                          content.fill(offset, out);
                                  });
    host.openSession();
    ASSERT_EQ(host.send(OperationCode::GetObject, {handle}), UsbResult::Success);

    const Received head = host.read(1024);
    EXPECT_EQ(head.length(), 0xFFFFFFFFU);
    EXPECT_TRUE(content.matches(0, head.payload()));

    ByteBuffer buffer(std::size_t{16} << 20);
    std::uint64_t total = head.bytes.size();
    std::size_t received = buffer.size();
    while (received == buffer.size()) {
        ASSERT_EQ(host.interface->readPipe(buffer, received, patient), UsbResult::Success);
        total += received;
    }
    EXPECT_EQ(total, size + containerHeaderSize);
    EXPECT_TRUE(content.matches(size - 100, ByteView(buffer).subspan(received - 100, 100)));
    EXPECT_TRUE(host.read().isResponse());
    EXPECT_GE(host.camera->record().bytesSent, size);
}

TEST_F(BulkInPipeTest, KeepsTheTrueLengthJustBelow32Bits)
{
    const auto lengthOf = [&](std::uint64_t size) {
        const std::uint32_t handle = card->addFile(u"X.MOV", size);
        EXPECT_EQ(host.send(OperationCode::GetObject, {handle}), UsbResult::Success);
        const std::uint32_t length = host.read(512).length();
        EXPECT_EQ(host.cancel(host.transactionID), UsbResult::Success);
        return length;
    };
    host.openSession();
    EXPECT_EQ(lengthOf(0xFFFFFFFE - 12), 0xFFFFFFFEU);
    EXPECT_EQ(lengthOf(0xFFFFFFFF - 12), 0xFFFFFFFFU);
    EXPECT_EQ(lengthOf(0x100000000), 0xFFFFFFFFU);
}

TEST(BulkInPipePackets, FollowTheirLargestSize)
{
    auto card = std::make_shared<MemoryCard>();
    const std::uint32_t handle = card->addFile(u"A.JPG", 64 - containerHeaderSize);
    SimulatorHost host(card, {.maxPacketSize = 64});
    host.openSession();
    ASSERT_EQ(host.send(OperationCode::GetObject, {handle}), UsbResult::Success);
    EXPECT_EQ(host.read(64).bytes.size(), 64U);
    EXPECT_EQ(host.read(64).bytes.size(), 0U);
    EXPECT_TRUE(host.read(64).isResponse());
}

}  // namespace nivor::test
