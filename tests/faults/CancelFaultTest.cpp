// Stopping a transaction on a camera that answers the stop wrongly, over both wires.
#include "faults/FaultedConnection.h"
#include "faults/ObjectOperations.h"
#include "faults/Outcomes.h"
#include "faults/ProcessCount.h"
#include "foundation/ByteWriter.h"
#include "support/ConnectedCamera.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>

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

constexpr std::uint8_t cancelCode = 0x64;
constexpr std::size_t halfOfObject = 10'000;
constexpr unsigned stopHurry = 20;

ByteBuffer half(const Answer& answer)
{
    return firstOf(answer.data, 12 + halfOfObject);
}

/// What the camera makes of a Cancel Request while the first half of an object has been sent.
struct CancelFault {
    const char* name;

    /// The reply to the n-th Get Device Status, from 0; none is a stall.
    Reply (*status)(unsigned n);

    /// The Cancel Request itself stalls.
    bool refusesCancel = false;

    /// What is sent when `cancelTransaction` has returned, and the transaction has ended if the
    /// camera has confirmed that.
    Script (*sends)(const Answer&) = [](const Answer&) { return Script(); };

    /// Data comes without end, until the camera is asked to stop or beyond that.
    enum class Flood { None, UntilCancel, ForEver } flood = Flood::None;

    bool isConfirmed = false;
    const char* record = "cancelTransaction (result = success)";

    /// The object has arrived all the same.
    bool arrives = false;

    /// Over the seam in memory nobody reads ahead, so nobody drops what a camera sends behind its
    /// own confirmation; over libusb that is gone with the next command.
    bool leavesSomethingInMemory = false;

    friend void PrintTo(const CancelFault& fault, std::ostream* out) { *out << fault.name; }
};

Reply ok(unsigned /*n*/)
{
    return deviceStatusBlock(0x2001);
}

Reply busy(unsigned /*n*/)
{
    return deviceStatusBlock(0x2019);
}

Reply stalled(unsigned /*n*/)
{
    return std::nullopt;
}

template <std::size_t size> Reply cutTo(unsigned /*n*/)
{
    ByteBuffer status = deviceStatusBlock(0x2001);
    status.resize(size);
    return status;
}

Script theRest(const Answer& answer)
{
    return {sent(behind(answer.data, 12 + halfOfObject)), sent(answer.response)};
}

constexpr char failed[] = "cancelTransaction (result = fail)";

const CancelFault cancelFaults[] = {
    {.name = "ConfirmedAtOnce", .status = &ok, .isConfirmed = true},
    {.name = "ConfirmedAtTheTenthPoll",
     .status = [](unsigned n) { return n < 9 ? busy(n) : ok(n); },
     .isConfirmed = true},
    {.name = "ConfirmedAtTheEleventhPoll",
     .status = [](unsigned n) { return n < 10 ? busy(n) : ok(n); }},
    {.name = "BusyForEver", .status = &busy},
    {.name = "BusyForEverAndTheObjectArrives", .status = &busy, .sends = &theRest, .arrives = true},
    {.name = "StatusStallsOnce",
     .status = [](unsigned n) { return n == 0 ? stalled(n) : ok(n); },
     .isConfirmed = true},
    {.name = "StatusStallsForEver", .status = &stalled, .record = failed},
    {.name = "StatusOfNoBytes", .status = &cutTo<0>},
    {.name = "StatusOf1Byte", .status = &cutTo<1>},
    {.name = "StatusOf2Bytes", .status = &cutTo<2>},
    {.name = "StatusOf3Bytes", .status = &cutTo<3>},
    {.name = "StatusOf128Bytes", .status = &cutTo<128>, .isConfirmed = true},
    {.name = "StatusOf4096Bytes", .status = &cutTo<4096>, .isConfirmed = true},
    {.name = "StatusOfFalseLength",
     .status =
         [](unsigned n) {
             Reply reply = ok(n);
             putLittleEndian(*reply, 0, std::uint16_t{0xFFFF});
             return reply;
         },
     .isConfirmed = true},
    {.name = "CancelStalls", .status = &ok, .refusesCancel = true, .record = failed},
    {.name = "CancelStallsAndTheObjectArrives",
     .status = &ok,
     .refusesCancel = true,
     .sends = &theRest,
     .record = failed,
     .arrives = true},
    {.name = "DataWithoutEndUntilTheStop",
     .status = &ok,
     .flood = CancelFault::Flood::UntilCancel,
     .isConfirmed = true},
    {.name = "DataWithoutEndBeyondTheStop",
     .status = &ok,
     .flood = CancelFault::Flood::ForEver,
     .isConfirmed = true},
    {.name = "DataWithoutEndThatStallsTheStop",
     .status = &ok,
     .refusesCancel = true,
     .flood = CancelFault::Flood::ForEver,
     .record = failed},
    // Confirmed, but the camera sends what it had begun, or tells of its stop once more.
    {.name = "RestOfTheDataBehindTheStop",
     .status = &ok,
     .sends = &theRest,
     .isConfirmed = true,
     .leavesSomethingInMemory = true},
    {.name = "ResponseBehindTheStop",
     .status = &ok,
     .sends = [](const Answer&) { return Script{sent(response(0x201F, testedTransaction))}; },
     .isConfirmed = true,
     .leavesSomethingInMemory = true},
    {.name = "EmptyPacketBehindTheStop",
     .status = &ok,
     .sends = [](const Answer&) { return Script{emptyPacket()}; },
     .isConfirmed = true},
    {.name = "StallBehindTheStop",
     .status = &ok,
     .sends = [](const Answer&) { return Script{failure(UsbResult::PipeStalled)}; },
     .isConfirmed = true,
     .leavesSomethingInMemory = true},
};

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
    for (const CancelFault& fault : cancelFaults)
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
