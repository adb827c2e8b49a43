#include "foundation/Errors.h"
#include "ptp/CommandContainer.h"
#include "ptp/PTPTransactionCallback.h"
#include "support/EngineFixture.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <new>
#include <numeric>
#include <thread>

using namespace nivor;
using namespace nivor::test;
using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

namespace {

using Clock = std::chrono::steady_clock;
constexpr std::size_t wholeRead = 16'777'216;

/// Counts what it is given; says what it is told to.
class CountingSink : public PTPTransactionCallback {
public:
    bool callbackProc(std::uint64_t receivedSize, std::uint64_t completeDataSize,
                      const std::uint8_t* data, std::uint64_t dataSize) override
    {
        received.push_back(receivedSize);
        complete = completeDataSize;
        bytes.insert(bytes.end(), data, data + dataSize);
        return received.size() < refuseAt;
    }

    std::size_t refuseAt = SIZE_MAX;
    std::vector<std::uint64_t> received;
    std::uint64_t complete = 0;
    ByteBuffer bytes;
};

class Transaction : public EngineFixture {
protected:
    Transaction() { attachDirectly(); }

    bool run(bool isReceiveData, std::uint32_t timeout = 5000,
             PTPTransactionCallback* sink = nullptr, std::uint64_t expected = 0)
    {
        CommandContainer command(OperationCode::GetStorageIDs, 0);
        return engine.executePTPTransaction(command.bytes(), nullptr, &slot, expected, sink,
                                            isReceiveData, timeout);
    }

    static ByteBuffer pattern(std::size_t size)
    {
        ByteBuffer bytes(size);
        std::iota(bytes.begin(), bytes.end(), std::uint8_t{1});
        return bytes;
    }

    PTPCommunication::ReceiveSlot slot;
};

TEST_F(Transaction, EndsWithTheResponseWhenNoDataIsExpected)
{
    pipes().answerWrite(1, {response(0x2001)});
    const auto start = Clock::now();
    EXPECT_TRUE(run(false, 5000));
    EXPECT_LT(Clock::now() - start, 2s);
    EXPECT_EQ(engine.lastResponseCode(), 0x2001);
    EXPECT_TRUE(engine.isReceivedResponse());
    EXPECT_TRUE(engine.isReceivedFinish());
}

TEST_F(Transaction, StampsTheCommandAndTheOutgoingDataWithItsID)
{
    engine.setTransactionID(0x01020304);
    pipes().answerWrite(2, {response(0x2001)});
    CommandContainer command(OperationCode::GetStorageIDs, 0);
    ByteBuffer outgoing = container(2, 0x1004, 0, {0xAA});
    EXPECT_TRUE(
        engine.executePTPTransaction(command.bytes(), &outgoing, nullptr, 0, nullptr, false, 1000));
    ASSERT_EQ(pipes().written().size(), 2U);
    EXPECT_THAT(pipes().written()[0],
                ElementsAre(12, 0, 0, 0, 1, 0, 0x04, 0x10,  // command
                            0x04, 0x03, 0x02, 0x01));       // ID
    EXPECT_THAT(pipes().written()[1],
                ElementsAre(13, 0, 0, 0, 2, 0, 0x04, 0x10,  // data
                            0x04, 0x03, 0x02, 0x01,         // ID
                            0xAA));                         // payload
}

TEST_F(Transaction, RecordsEveryStepInTheLog)
{
    pipes().answerWrite(1, {data(0x1004, {0x00, 0x00, 0x00, 0x00}), response(0x2001)});
    EXPECT_TRUE(run(true));
    EXPECT_THAT(log.messagesOf("PTPCommunication writePipe:"),
                ElementsAre("WritePipe : len = 12, data = 0c 00 00 00 01 00 04 10 01 00 00 00 ",
                            "WritePipe (result = success)"));
    const std::vector<std::string> reads = log.messagesOf("PTPCommunication setReceiveOperation:");
    EXPECT_THAT(reads, ::testing::IsSupersetOf({"ReadPipe : len = 16", "ReadPipe : len = 12"}));
}

TEST_F(Transaction, ReadsWithTheTwoTimeOuts)
{
    pipes().answerWrite(1, {response(0x2001)});
    EXPECT_TRUE(run(false));
    EXPECT_EQ(pipes().lastTimeouts().noData, 600ms);
    EXPECT_EQ(pipes().lastTimeouts().completion, 2000ms);
    EXPECT_EQ(pipes().readSizes().front(), 5120U);
}

TEST_F(Transaction, CompletesADataContainerOfOneRead)
{
    const ByteBuffer whole = data(0x1009, pattern(5108));  // 5120 bytes with its header
    pipes().answerWrite(1, {whole, response(0x2001)});
    EXPECT_TRUE(run(true));
    ASSERT_TRUE(slot);
    EXPECT_EQ(*slot, whole);
}

TEST_F(Transaction, AdvancesTheIDAfterSuccessAndFailureAlike)
{
    pipes().answerWrite(1, {response(0x2001)});
    EXPECT_TRUE(run(false));
    EXPECT_EQ(engine.transactionID(), 2U);
    EXPECT_FALSE(run(false, 100));
    EXPECT_EQ(engine.transactionID(), 3U);
}

TEST_F(Transaction, WrapsTheIDFromTheHighestToOne)
{
    engine.setTransactionID(0xFFFFFFFD);
    pipes().answerWrite(1, {response(0x2001)});
    pipes().answerWrite(2, {response(0x2001)});
    EXPECT_TRUE(run(false));
    EXPECT_EQ(engine.transactionID(), 0xFFFFFFFEU);
    EXPECT_TRUE(run(false));
    EXPECT_EQ(engine.transactionID(), 1U);
}

TEST_F(Transaction, SendsNothingWhenNotConnected)
{
    engine.setUsbInterface(nullptr);
    const std::size_t before = log.records().size();
    EXPECT_FALSE(run(true));
    EXPECT_TRUE(pipes().written().empty());
    EXPECT_EQ(engine.transactionID(), 1U);
    EXPECT_FALSE(engine.isReceivedFinish());
    EXPECT_EQ(log.records().size(), before);
}

TEST_F(Transaction, TimesOutOnARefusalInsteadOfDataAndKeepsItsCode)
{
    pipes().answerWrite(1, {response(0x2009)});
    const auto start = Clock::now();
    EXPECT_FALSE(run(true, 2000));
    EXPECT_GE(Clock::now() - start, 2000ms);
    EXPECT_EQ(engine.lastResponseCode(), 0x2009);
    EXPECT_THAT(log.messagesOf("PTPCommunication setReceiveOperation:"),
                ::testing::Contains("ReadPipe : timeout1 retry"));
    EXPECT_EQ(engine.lastTransactionFailure().toText(),
              "the camera refused: Invalid ObjectHandle (0x2009)");
}

TEST_F(Transaction, IsNotJudgedByItsResponseCode)
{
    pipes().answerWrite(1, {response(0x200F)});
    EXPECT_TRUE(run(false));
    EXPECT_EQ(engine.lastResponseCode(), 0x200F);
}

TEST_F(Transaction, FailsAtOnceWithATimeOutOfZero)
{
    pipes().silence = 1ms;
    EXPECT_FALSE(run(false, 0));
    EXPECT_EQ(pipes().written().size(), 1U);
}

TEST_F(Transaction, EndsByTimeOutWhenTheWriteFails)
{
    pipes().writeResult = UsbResult::PipeStalled;
    EXPECT_FALSE(run(false, 100));
    EXPECT_EQ(log.messagesOf("PTPCommunication writePipe:").back(), "WritePipe (result = fail)");
}

TEST_F(Transaction, CountsTheTimeOutInStepsOfAHundred)
{
    EXPECT_FALSE(run(false, 250));
    EXPECT_EQ(engine.timeoutTimer(), 300U);
}

TEST_F(Transaction, FailsWhenTheFirstReadFails)
{
    pipes().answer({.bytes = {}, .result = UsbResult::NoDevice, .afterWrites = 1});
    const auto start = Clock::now();
    EXPECT_FALSE(run(true, 5000));
    EXPECT_LT(Clock::now() - start, 2s);
    EXPECT_EQ(log.messagesOf("PTPCommunication setReceiveOperation:").back(), "ReadPipe : len = 0");
    EXPECT_EQ(engine.lastTransactionFailure().usbResult, UsbResult::NoDevice);
}

TEST_F(Transaction, FailsWithoutARecordWhenAContinuationReadFails)
{
    ByteBuffer whole = data(0x1009, pattern(9000));
    whole.resize(5120);
    pipes().answerWrite(1, {whole});
    pipes().answer({.bytes = {}, .result = UsbResult::IOError, .afterWrites = 1});
    EXPECT_FALSE(run(true, 5000));
    EXPECT_TRUE(engine.isReceivedData());
    EXPECT_EQ(log.messagesOf("PTPCommunication setReceiveOperation:").back(),
              "ReadPipe : len = 5120");
}

TEST_F(Transaction, AppendsToTheBufferThatTheSlotHolds)
{
    slot = std::make_shared<ByteBuffer>(ByteBuffer{0xEE});
    const std::shared_ptr<ByteBuffer> own = slot;
    pipes().answerWrite(1, {data(0x1004, {0x05}), response(0x2001)});
    EXPECT_TRUE(run(true));
    EXPECT_EQ(slot, own);
    EXPECT_THAT(*own,
                ElementsAre(0xEE,                    // what was there
                            13, 0, 0, 0, 2, 0,       // length 13, data block
                            0x04, 0x10, 1, 0, 0, 0,  // GetStorageIDs, ID 1
                            0x05));                  // payload
}

TEST_F(Transaction, FillsAnEmptySlotAfterAFailureToo)
{
    EXPECT_FALSE(run(true, 100));
    ASSERT_TRUE(slot);
    EXPECT_TRUE(slot->empty());
}

TEST_F(Transaction, GivesTheSlotWhatArrivedBeforeATimeOut)
{
    ByteBuffer part = data(0x1009, pattern(9000));
    part.resize(5120);
    pipes().answerWrite(1, {part});
    EXPECT_FALSE(run(true, 200));
    ASSERT_TRUE(slot);
    EXPECT_EQ(*slot, part);
    EXPECT_THAT(log.messagesOf("PTPCommunication setReceiveOperation:"),
                ::testing::Contains("ReadPipe : timeout2 retry"));
}

TEST_F(Transaction, TakesAResponseWithParameters)
{
    ByteBuffer answer = container(3, 0x2001, 1, parameters({7, 8, 9}));
    pipes().answerWrite(1, {answer});
    EXPECT_TRUE(run(false));
    EXPECT_EQ(engine.lastResponseCode(), 0x2001);
}

TEST_F(Transaction, TakesAResponseOfAnotherTransactionAsItsOwn)
{
    pipes().answerWrite(1, {response(0x2001, 0xDEAD)});
    EXPECT_TRUE(run(false));
}

TEST_F(Transaction, PassesOverAnEvent)
{
    pipes().answerWrite(1, {container(4, 0x4002, 1, parameters({5})), response(0x2001)});
    EXPECT_TRUE(run(false));
    EXPECT_EQ(engine.lastResponseCode(), 0x2001);
}

TEST_F(Transaction, PassesOverAContainerOfUnknownType)
{
    pipes().answerWrite(1, {container(0xFFFF, 0x2009, 1, {}), response(0x2001)});
    EXPECT_TRUE(run(false));
    EXPECT_EQ(engine.lastResponseCode(), 0x2001);
}

TEST_F(Transaction, DoesNotTakeAnEmptyPacketForTheHeaderBeforeIt)
{
    // Were the data container's header still in the buffer, the empty packet would repeat it.
    pipes().answerWrite(1, {data(0x1004, {1, 0, 0, 0}), ByteBuffer{}, response(0x2001)});
    CountingSink sink;
    EXPECT_TRUE(run(true, 5000, &sink));
    EXPECT_THAT(sink.received, ElementsAre(16U));
    EXPECT_EQ(engine.lastResponseCode(), 0x2001);
}

TEST_F(Transaction, IsOverAsSoonAsTheResponseIsThere)
{
    auto shortest = Clock::duration::max();
    for (int i = 0; i < 20; ++i) {
        pipes().answerWrite(1, {response(0x2001)});
        const auto begin = Clock::now();
        EXPECT_TRUE(run(false));
        shortest = std::min(shortest, Clock::now() - begin);
    }
    // Noticed only at the end of a step, each of them would have taken 100 ms.
    EXPECT_LT(shortest, 60ms);
}

TEST_F(Transaction, NamesTheSinksErrorAlthoughTheCameraThenHangs)
{
    class FullDisk : public PTPTransactionCallback {
        bool callbackProc(std::uint64_t, std::uint64_t, const std::uint8_t*, std::uint64_t) override
        {
            throw FileError(ENOSPC, "Could not write film.mov");
        }
    } sink;
    device->onCancel = [] { std::this_thread::sleep_for(1500ms); };
    pipes().answerWrite(1, {container(2, 0x1009, 1, pattern(100), 100'000)});
    EXPECT_FALSE(run(true, 1000, &sink));
    EXPECT_EQ(engine.lastTransactionFailure().cause, TransactionFailure::Cause::SinkError);
    EXPECT_THAT(engine.lastTransactionFailure().toText(), HasSubstr("film.mov"));
}

TEST_F(Transaction, EndsAsFailedWhenTheSinkRaisesSomethingElse)
{
    class Odd : public PTPTransactionCallback {
        bool callbackProc(std::uint64_t, std::uint64_t, const std::uint8_t*, std::uint64_t) override
        {
            throw 1;
        }
    } sink;
    pipes().answerWrite(1, {data(0x1009, {1}), response(0x2001)});
    EXPECT_FALSE(run(true, 300, &sink));
    EXPECT_EQ(engine.lastTransactionFailure().cause, TransactionFailure::Cause::SinkError);
}

TEST_F(Transaction, TakesTheResponseBehindAnEmptyPacketAfterARefusalToo)
{
    CountingSink sink;
    sink.refuseAt = 1;
    pipes().answerWrite(1, {data(0x1009, {1}), ByteBuffer{}, response(0x2001)});
    EXPECT_FALSE(run(true, 300, &sink));
    pipes().answerWrite(1, {response(0x2002)});
    EXPECT_TRUE(run(false));
    EXPECT_EQ(engine.lastResponseCode(), 0x2002);
}

TEST_F(Transaction, EndsItsReceptionWhenTheWriteRaises)
{
    pipes().onWrite = [] { throw std::bad_alloc(); };
    EXPECT_THROW(run(false, 60'000), std::bad_alloc);
    EXPECT_TRUE(engine.isReceivedFinish());
    pipes().onWrite = {};
    pipes().answerWrite(1, {response(0x2001)});
    EXPECT_TRUE(run(false));
}

TEST_F(Transaction, PassesOverAShortRead)
{
    pipes().answerWrite(1, {ByteBuffer{0x0C, 0x00, 0x00, 0x00}, response(0x2001)});
    EXPECT_TRUE(run(false));
}

TEST_F(Transaction, ReadsAContainerOfUnknownLengthUpToTheExpectedSize)
{
    const ByteBuffer whole = container(2, 0x1009, 1, pattern(6000), 0xFFFFFFFF);
    pipes().answerWrite(1, {whole, response(0x2001)});
    EXPECT_TRUE(run(true, 5000, nullptr, 6012));
    EXPECT_EQ(*slot, whole);
}

TEST_F(Transaction, EndsAContainerOfUnknownLengthAfterOneReadWhenTwelveBytesAreExpected)
{
    const ByteBuffer whole = container(2, 0x1009, 1, pattern(100), 0xFFFFFFFF);
    pipes().answerWrite(1, {whole, response(0x2001)});
    EXPECT_TRUE(run(true, 5000, nullptr, 12));
    EXPECT_EQ(*slot, whole);
}

TEST_F(Transaction, TakesBytesBeyondTheCompleteSizeForData)
{
    ByteBuffer glued = data(0x1004, {1, 2, 3, 4});
    const ByteBuffer behind = response(0x2001);
    glued.insert(glued.end(), behind.begin(), behind.end());
    pipes().answerWrite(1, {glued});
    EXPECT_FALSE(run(true, 200));
    EXPECT_EQ(slot->size(), 28U);
    EXPECT_FALSE(engine.isReceivedResponse());
}

TEST_F(Transaction, ReadsWholeBuffersWhileOneIsLeftAndSmallOnesForTheTail)
{
    CountingSink sink;
    const std::size_t payload = wholeRead + 6000;  // 16 MiB and a tail behind the first read
    const ByteBuffer whole = data(0x1009, pattern(payload));
    pipes().answerWrite(1, {whole, response(0x2001)});
    EXPECT_TRUE(run(true, 5000, &sink, 0));

    // 5120, then 16 MiB, then 892 bytes asked for with 5120, then the response.
    const std::vector<std::size_t> sizes = pipes().readSizes();
    EXPECT_THAT(std::vector(sizes.end() - 4, sizes.end()),
                ElementsAre(5120U, wholeRead, 5120U, 5120U));
    EXPECT_THAT(sink.received, ElementsAre(5120U, 5120U + wholeRead, whole.size()));
    EXPECT_EQ(sink.complete, whole.size());
    EXPECT_EQ(sink.bytes, whole);
    EXPECT_TRUE(slot == nullptr || slot->empty());
}

TEST_F(Transaction, DoesNotTimeOutWhileDataKeepsComing)
{
    ByteBuffer rest = data(0x1009, pattern(5108 + 3 * 1000));
    ByteBuffer first(rest.begin(), rest.begin() + 5120);
    pipes().answerWrite(1, {first});
    std::thread camera([this] {
        for (int piece = 0; piece < 3; ++piece) {
            std::this_thread::sleep_for(800ms);
            pipes().answer({.bytes = ByteBuffer(1000)});
        }
        pipes().answer({.bytes = response(0x2001)});
    });
    EXPECT_TRUE(run(true, 2000));
    camera.join();
}

TEST_F(Transaction, TimesOutOnEmptyPacketsWithoutEnd)
{
    ByteBuffer first = data(0x1009, pattern(9000));
    first.resize(5120);
    pipes().answerWrite(1, {first});
    pipes().onRead = [this] {
        std::this_thread::sleep_for(1ms);
        pipes().answer({.bytes = {}, .afterWrites = 1});
    };
    EXPECT_FALSE(run(true, 300));
}

TEST_F(Transaction, GivesTheSinkNothingMoreOnceItHasRefused)
{
    CountingSink sink;
    sink.refuseAt = 2;
    const ByteBuffer whole = data(0x1009, pattern(20000));
    pipes().answerWrite(1, {whole, response(0x2001)});
    device->statuses = {statusOf(0x2001)};
    EXPECT_FALSE(run(true, 5000, &sink));
    EXPECT_EQ(sink.received.size(), 2U);
    EXPECT_TRUE(engine.isReceivedData());
}

TEST_F(Transaction, LeavesTheDataPhaseOpenWhenTheSinkRefusesTheFirstPiece)
{
    CountingSink sink;
    sink.refuseAt = 1;
    pipes().answerWrite(1, {data(0x1009, {}), response(0x2001)});
    EXPECT_FALSE(run(true, 5000, &sink));
    EXPECT_FALSE(engine.isReceivedData());
}

TEST_F(Transaction, TakesTheResponseOfARefusedObjectOutOfThePipe)
{
    CountingSink sink;
    sink.refuseAt = 1;
    pipes().answerWrite(1, {data(0x1009, {}), response(0x2001)});
    EXPECT_FALSE(run(true, 5000, &sink));

    pipes().answerWrite(1, {response(0x200D)});
    EXPECT_TRUE(run(false, 5000));
    EXPECT_EQ(engine.lastResponseCode(), 0x200D);
}

TEST_F(Transaction, AsksTheCameraToStopWhatTheSinkNoLongerTakes)
{
    CountingSink sink;
    sink.refuseAt = 1;
    ByteBuffer first = data(0x1009, pattern(9000));
    first.resize(5120);
    pipes().answerWrite(1, {first});
    device->statuses = {statusOf(0x2001)};
    engine.setTransactionID(7);
    EXPECT_FALSE(run(true, 5000, &sink));
    ASSERT_EQ(device->controlRecords().size(), 2U);
    EXPECT_THAT(device->controlRecords()[0].sent,
                ElementsAre(0x01, 0x40,    // cancel
                            7, 0, 0, 0));  // this one
    EXPECT_FALSE(engine.isStopCopyFlg());
}

TEST_F(Transaction, EndsAsFailedWithARecordWhenTheSinkRaises)
{
    class FullDisk : public PTPTransactionCallback {
        bool callbackProc(std::uint64_t, std::uint64_t, const std::uint8_t*, std::uint64_t) override
        {
            throw FileError(ENOSPC, "Could not write to film.mov");
        }
    } sink;
    pipes().answerWrite(1, {data(0x1009, {1, 2, 3}), response(0x2001)});
    EXPECT_FALSE(run(true, 5000, &sink));
    EXPECT_THAT(log.messagesOf("PTPCommunication setReceiveOperation:"),
                ::testing::Contains("ReceiveCallback (error = Could not write to film.mov: "
                                    "No space left on device)"));
    EXPECT_EQ(engine.lastTransactionFailure().toText(),
              "Could not write to film.mov: No space left on device");
}

TEST_F(Transaction, RecordsThatTheBaseSinkMustBeOverridden)
{
    PTPTransactionCallback base;
    pipes().answerWrite(1, {data(0x1009, {1}), response(0x2001)});
    EXPECT_FALSE(run(true, 5000, &base));
    EXPECT_THAT(log.messagesOf("PTPCommunication setReceiveOperation:"),
                ::testing::Contains(HasSubstr("Must override "
                                              "callbackProc:completeDataSize:data:dataSize: in "
                                              "your subclass")));
}

TEST(PTPTransactionCallback, RaisesUntilItIsOverridden)
{
    PTPTransactionCallback base;
    const std::uint8_t byte = 0;
    try {
        base.callbackProc(1, 1, &byte, 1);
        FAIL() << "nothing was raised";
    } catch (const InternalInconsistencyError& error) {
        EXPECT_STREQ(error.what(),
                     "Must override callbackProc:completeDataSize:data:dataSize: in your subclass");
    }
}

TEST_F(Transaction, FailsWhenThereIsNoMemoryToReceiveInto)
{
    PTPCommunication poor({.host = host,
                           .logger = &log.logger(),
                           .allocateReceiveBuffer = [] { return ReceiveBuffer(); },
                           .agentPause = {}});
    poor.setUsbInterface(device->interface);
    CommandContainer command(OperationCode::GetStorageIDs, 0);
    EXPECT_FALSE(
        poor.executePTPTransaction(command.bytes(), nullptr, nullptr, 0, nullptr, true, 5000));
    EXPECT_EQ(poor.lastTransactionFailure().cause, TransactionFailure::Cause::NoMemory);
    EXPECT_TRUE(pipes().readSizes().empty());
    poor.setUsbInterface(nullptr);
}

TEST_F(Transaction, LeavesALateResponseToTheNextTransaction)
{
    EXPECT_FALSE(run(false, 100));
    pipes().answer({.bytes = response(0x2009)});  // late, of the first
    EXPECT_TRUE(run(false, 5000));
    EXPECT_EQ(engine.lastResponseCode(), 0x2009);
}

}  // namespace
