// Stopping a transaction on a camera that answers the stop wrongly, over both wires.
#include "faults/CancelFault.h"
#include "faults/FaultedConnection.h"
#include "faults/ObjectOperations.h"
#include "faults/Outcomes.h"
#include "faults/ProcessCount.h"
#include "foundation/ByteWriter.h"
#include "support/ConnectedCamera.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <future>
#include <ostream>

using namespace nivor;
using namespace nivor::test;
using namespace std::chrono_literals;
using ::testing::ElementsAre;

namespace {

using Reply = std::optional<ByteBuffer>;

constexpr unsigned stopHurry = 20;

ByteBuffer half(const Answer& answer)
{
    return firstOf(answer.data, 12 + halfOfObject);
}

struct CancelCell {
    WireKind wire;
    const CancelFault* fault;

    friend void PrintTo(const CancelCell& cell, std::ostream* out) { *out << cell.fault->name; }
};

class CancelFaults : public ::testing::TestWithParam<CancelCell> {
protected:
    static const CancelFault& fault() { return *GetParam().fault; }

    // Only where a time-out has to run out is it shortened.
    static unsigned pace() { return fault().isConfirmed || fault().arrives ? 1 : stopHurry; }

    void runCell()
    {
        FaultedConnection connection(GetParam().wire, pace());
        PTPCommunication& engine = connection.engine;
        ASSERT_TRUE(connection.connects());
        const std::size_t recorded = connection.log.records().size();
        const GetObjectToFile operation;
        const Answer answer = operation.answer();
        layCamera(connection, answer);

        std::future<OperationRun> running = std::async(
            std::launch::async, [&] { return operation.run(engine, answer, folder_.path()); });
        EXPECT_TRUE(happens([&] { return fileSize() >= halfOfObject; }));
        const auto begin = std::chrono::steady_clock::now();
        EXPECT_FALSE(engine.cancelTransaction());
        checkSilence(std::chrono::steady_clock::now() - begin);
        EXPECT_EQ(engine.isStopCopyFlg(), fault().isConfirmed);
        if (!fault().isConfirmed)
            send(connection, answer);
        // Only a stop or an end of the data ends what makes progress all the time.
        if (isFlood() && !fault().isConfirmed)
            connection.wire->forget();
        const OperationRun run = running.get();
        EXPECT_LT(std::chrono::steady_clock::now() - begin, 10 * 5000ms / pace() + 2s);
        if (fault().isConfirmed)
            send(connection, answer);

        checkOutcome(run, engine, answer);
        EXPECT_THAT(connection.log.messagesSince(recorded, "PTPCommunication cancelTransaction"),
                    ElementsAre(fault().record));
        engine.stopCopyFlgInit();
        const bool leavesSomething = fault().flood == CancelFault::Flood::ForEver
            || (GetParam().wire == WireKind::Memory && fault().leavesSomethingInMemory);
        if (!leavesSomething) {
            EXPECT_TRUE(connection.nextIsSound()) << "the next command has read leftovers";
        }
        EXPECT_TRUE(connection.recovers());
    }

private:
    static bool isFlood() { return fault().flood != CancelFault::Flood::None; }

    static Script begun(const Answer& answer)
    {
        if (!isFlood())
            return {sent(half(answer))};
        ByteBuffer first = firstOf(answer.data, 5120);
        putLittleEndian(first, 0, 0xFFFFFFFEU);
        return {sentOpen(first), sentForEver(ByteBuffer(5120, 0x5A), WireEnd::Open)};
    }

    static void layCamera(FaultedConnection& connection, const Answer& answer)
    {
        connection.player.answerNextWith(begun(answer));
        Wire* const wire = connection.wire.get();
        wire->ignoreControl(cancelCode, fault().ignoredCancels);
        wire->ignoreControl(statusCode, fault().ignoredStatuses);
        auto polls = std::make_shared<std::atomic<unsigned>>(0);
        connection.wire->onControl([polls, wire](std::uint8_t request) -> Reply {
            if (request == cancelCode) {
                if (fault().flood == CancelFault::Flood::UntilCancel)
                    wire->forget();
                return fault().refusesCancel ? Reply() : Reply(ByteBuffer());
            }
            return fault().status((*polls)++);
        });
    }

    static void send(FaultedConnection& connection, const Answer& answer)
    {
        for (const Step& step : fault().sends(answer)) {
            if (step.what == Step::What::Fail)
                connection.wire->fail(step.failure);
            else
                connection.wire->send(step.bytes, step.end);
        }
    }

    // Two seconds for each request without an answer, and ten milliseconds behind each status.
    static void checkSilence(std::chrono::steady_clock::duration took)
    {
        constexpr std::size_t mostStatusPolls = 10;
        const auto requests = std::min<std::size_t>(fault().ignoredCancels, 1)
            + std::min(fault().ignoredStatuses, mostStatusPolls);
        EXPECT_GE(took, requests * 2000ms / pace());
        EXPECT_LT(took, requests * 2010ms / pace() + 2s);
    }

    static void checkOutcome(const OperationRun& run, const PTPCommunication& engine,
                             const Answer& answer)
    {
        using Cause = TransactionFailure::Cause;
        EXPECT_EQ(run.success, fault().arrives);
        EXPECT_EQ(engine.lastTransactionFailure().cause,
                  fault().isConfirmed   ? Cause::Stopped
                      : fault().arrives ? Cause::None
                                        : Cause::TimedOut);
        if (isFlood()) {
            EXPECT_GE(run.bytes.size(), halfOfObject);
            return;
        }
        const ByteView object = answer.payload();
        const ByteView arrived = fault().arrives ? object : object.first(halfOfObject);
        EXPECT_TRUE(std::ranges::equal(run.bytes, arrived)) << run.bytes.size() << " bytes";
    }

    [[nodiscard]] std::uintmax_t fileSize() const
    {
        std::error_code missing;
        const auto size = std::filesystem::file_size(folder_.path() / "object", missing);
        return missing ? 0 : size;
    }

    TemporaryDirectory folder_;
};

TEST_P(CancelFaults, EndAsTheTableSays)
{
    ASSERT_TRUE(isWarm(GetParam().wire));
    const ProcessCount before;
    runCell();
    EXPECT_TRUE(happens([&] { return ProcessCount().isWithin(before); }))
        << before << " before, " << ProcessCount() << " after";
}

std::vector<CancelCell> cancelsOver(WireKind wire)
{
    std::vector<CancelCell> cells;
    for (const CancelFault& fault : cancelFaults())
        cells.push_back({wire, &fault});
    return cells;
}

std::string nameOfCancel(const ::testing::TestParamInfo<CancelCell>& info)
{
    return std::string("CancelTransaction_") + info.param.fault->name;
}

INSTANTIATE_TEST_SUITE_P(Memory, CancelFaults, ::testing::ValuesIn(cancelsOver(WireKind::Memory)),
                         nameOfCancel);
INSTANTIATE_TEST_SUITE_P(Libusb, CancelFaults, ::testing::ValuesIn(cancelsOver(WireKind::Libusb)),
                         nameOfCancel);

}  // namespace
