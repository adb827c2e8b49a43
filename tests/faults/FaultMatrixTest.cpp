// Every operation with every fault, over the seam in memory and over the real libusb.
#include "faults/Fault.h"
#include "faults/FaultedConnection.h"
#include "faults/ProcessCount.h"
#include "support/ConnectedCamera.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <ostream>
#include <set>

using namespace nivor;
using namespace nivor::test;
using namespace std::chrono_literals;
using ::testing::StartsWith;

namespace {

using Clock = std::chrono::steady_clock;

// Where a time-out has to run out.
constexpr unsigned hurry = 10;

struct Cell {
    const Operation* operation;
    const Fault* fault;
    WireKind wire;
    Outcome outcome;

    friend void PrintTo(const Cell& cell, std::ostream* out)
    {
        *out << cell.operation->name << " with " << cell.fault->name;
    }
};

std::vector<Cell> cellsOver(WireKind wire)
{
    std::vector<Cell> cells;
    for (const Operation* operation : operations()) {
        for (const Fault& fault : faults()) {
            if (const auto outcome = fault.outcome(*operation, wire))
                cells.push_back({operation, &fault, wire, *outcome});
        }
    }
    return cells;
}

std::string nameOf(const ::testing::TestParamInfo<Cell>& info)
{
    return info.param.operation->name + "_" + info.param.fault->name;
}

class FaultMatrix : public ::testing::TestWithParam<Cell> {
protected:
    static const Operation& operation() { return *GetParam().operation; }
    static const Fault& fault() { return *GetParam().fault; }
    static const Outcome& outcome() { return GetParam().outcome; }

    // Where nothing is waited for, no time-out is shortened: a machine under load fails no cell.
    static unsigned pace()
    {
        switch (outcome().wait) {
        case Wait::None:
            return 1;
        case Wait::Some:
            return fault().pace;
        case Wait::Timeout:
            break;
        }
        return hurry;
    }

    static bool has(const std::vector<std::string>& messages, std::string_view wanted)
    {
        return std::ranges::find(messages, wanted) != messages.end();
    }

    void runCell()
    {
        FaultedConnection connection(GetParam().wire, pace(), fault().packetSize);
        ASSERT_TRUE(connection.connects());
        ASSERT_TRUE(connection.engine.sessionOpen());
        connection.engine.setSessionOpen(operation().name != "OpenSession");
        const std::size_t recorded = connection.log.records().size();

        const Answer answer = fault().answer(operation());
        if (fault().refusesCommand)
            connection.wire->refuseNextWrite();
        else
            connection.player.answerNextWith(fault().script(answer));
        const auto begin = Clock::now();
        const OperationRun run = operation().run(connection.engine, answer, folder_.path());
        checkTime(Clock::now() - begin);
        checkResult(run, connection.engine);
        checkContent(run.bytes, answer);
        checkRecords(connection.log, recorded, answer);

        if (fault().leaves) {
            EXPECT_EQ(connection.engine.lastTransactionFailure().usbResult, UsbResult::NoDevice);
            EXPECT_FALSE(connection.nextIsSound()) << "a camera that is gone has answered";
        }
        if (outcome().nextIsSound) {
            EXPECT_TRUE(connection.nextIsSound()) << "the next command has read leftovers";
        }
        EXPECT_TRUE(connection.recovers());
    }

private:
    static void checkTime(Clock::duration took)
    {
        const std::chrono::milliseconds timeout(operation().timeout);
        switch (outcome().wait) {
        case Wait::None:
            EXPECT_LT(took, timeout);
            break;
        case Wait::Some:
            EXPECT_LT(took, 10 * 70s / fault().pace);
            break;
        case Wait::Timeout:
            EXPECT_GE(took, timeout / hurry);
            EXPECT_LT(took, 10 * timeout / hurry + 2s);
            break;
        }
    }

    static void checkResult(const OperationRun& run, const PTPCommunication& engine)
    {
        EXPECT_EQ(run.raised, outcome().ending == Ending::Raises);
        EXPECT_EQ(run.success, outcome().ending == Ending::Yes);
        EXPECT_EQ(engine.lastResponseCode(), outcome().responseCode);
        if (operation().name == "OpenSession") {
            EXPECT_EQ(engine.sessionOpen(), run.success && outcome().responseCode == 0x2001);
        }
        if (operation().name == "CloseSession") {
            EXPECT_EQ(engine.sessionOpen(), !run.success);
        }
        if (operation().kind == Kind::Dataset && !fault().name.starts_with("Count")) {
            EXPECT_EQ(run.unpacked, run.success);
        }
    }

    static void checkContent(const ByteBuffer& bytes, const Answer& answer)
    {
        const Content& content = outcome().content;
        if (operation().kind == Kind::Collected && outcome().ending != Ending::Yes) {
            EXPECT_TRUE(bytes.empty()) << bytes.size() << " bytes of a failed transaction";
            return;
        }
        if (answer.payload().empty() || operation().kind == Kind::Dataset || !content.isKnown)
            return;
        const ByteView object = answer.payload();
        std::size_t own = std::min(content.own, object.size());
        if (content.mayBeLess)
            own = std::min(own, bytes.size());
        ASSERT_EQ(bytes.size(), own + content.foreign);
        EXPECT_TRUE(std::equal(object.begin(), object.begin() + static_cast<std::ptrdiff_t>(own),
                               bytes.begin()))
            << "not the object's bytes";
    }

    static void checkRecords(const LogFixture& log, std::size_t recorded, const Answer& answer)
    {
        std::vector<std::string> expected;
        const std::string usual =
            operation().record(outcome().ending == Ending::Yes, outcome().responseCode, answer);
        if (outcome().ending != Ending::Raises)
            expected.push_back(outcome().record.value_or(usual));
        EXPECT_EQ(log.messagesSince(recorded, operation().event), expected);

        const bool reached = !fault().refusesCommand;
        const std::vector<std::string> writes =
            log.messagesSince(recorded, "PTPCommunication writePipe:");
        ASSERT_EQ(writes.size(), 2U);
        EXPECT_THAT(writes[0], StartsWith("WritePipe : len = "));
        // The write of what makes the camera leave may end either way.
        if (!fault().leaves) {
            EXPECT_EQ(writes[1],
                      reached ? "WritePipe (result = success)" : "WritePipe (result = fail)");
        }

        const std::vector<std::string> reads =
            log.messagesSince(recorded, "PTPCommunication setReceiveOperation:");
        const bool retried =
            has(reads, "ReadPipe : timeout1 retry") || has(reads, "ReadPipe : timeout2 retry");
        // What is sent without end leaves no read without bytes, or leaves one: as it happens.
        if (!fault().name.starts_with("Endless")) {
            EXPECT_EQ(retried, outcome().wait != Wait::None);
        }
    }

    TemporaryDirectory folder_;
};

TEST_P(FaultMatrix, EndsAsTheTableSays)
{
    ASSERT_TRUE(isWarm(GetParam().wire));
    const ProcessCount before;
    runCell();
    // A thread that has been joined may be seen for a moment longer.
    EXPECT_TRUE(happens([&] { return ProcessCount().isWithin(before); }))
        << before << " before, " << ProcessCount() << " after";
}

INSTANTIATE_TEST_SUITE_P(Memory, FaultMatrix, ::testing::ValuesIn(cellsOver(WireKind::Memory)),
                         nameOf);
INSTANTIATE_TEST_SUITE_P(Libusb, FaultMatrix, ::testing::ValuesIn(cellsOver(WireKind::Libusb)),
                         nameOf);

TEST(FaultTable, NamesEveryFaultOnce)
{
    std::set<std::string> names;
    for (const Fault& fault : faults())
        EXPECT_TRUE(names.insert(fault.name).second) << fault.name;
}

TEST(FaultTable, HoldsEveryOperationAgainstManyFaults)
{
    EXPECT_EQ(operations().size(), 10U);
    for (const WireKind wire : {WireKind::Memory, WireKind::Libusb}) {
        for (const Operation* operation : operations()) {
            const auto count = std::ranges::count_if(faults(), [&](const Fault& fault) {
                return fault.outcome(*operation, wire).has_value();
            });
            EXPECT_GE(count, operation->kind == Kind::Plain ? 60 : 110) << operation->name;
        }
    }
}

TEST(FaultTable, GivesAReasonWhereTheWiresDiffer)
{
    for (const Fault& fault : faults())
        EXPECT_EQ(fault.overLibusb.empty(), std::string_view(fault.whyOverLibusb).empty())
            << fault.name;
}

}  // namespace
