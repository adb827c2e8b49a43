// The table of stops that a camera answers wrongly.
#include "faults/CancelFault.h"

#include "faults/Outcomes.h"
#include "foundation/ByteWriter.h"
#include "support/ConnectedCamera.h"
#include "support/ScriptedCamera.h"

namespace nivor::test {
namespace {

using Reply = std::optional<ByteBuffer>;

constexpr std::size_t forEver = SIZE_MAX;
constexpr char failed[] = "cancelTransaction (result = fail)";

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

}  // namespace

const std::vector<CancelFault>& cancelFaults()
{
    static const std::vector<CancelFault> all{
        {.name = "ConfirmedAtOnce", .status = &ok, .isConfirmed = true},
        {.name = "ConfirmedAtTheTenthPoll",
         .status = [](unsigned n) { return n < 9 ? busy(n) : ok(n); },
         .isConfirmed = true},
        {.name = "ConfirmedAtTheEleventhPoll",
         .status = [](unsigned n) { return n < 10 ? busy(n) : ok(n); }},
        {.name = "BusyForEver", .status = &busy},
        {.name = "BusyForEverAndTheObjectArrives",
         .status = &busy,
         .sends = &theRest,
         .arrives = true},
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
        // Each of them is waited for, and no more than two seconds.
        {.name = "CancelIsSilent", .status = &ok, .ignoredCancels = forEver, .record = failed},
        {.name = "CancelIsSilentAndTheObjectArrives",
         .status = &ok,
         .ignoredCancels = forEver,
         .sends = &theRest,
         .record = failed,
         .arrives = true},
        {.name = "StatusIsSilentOnce", .status = &ok, .ignoredStatuses = 1, .isConfirmed = true},
        {.name = "StatusIsSilent", .status = &ok, .ignoredStatuses = forEver, .record = failed},
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
    return all;
}

}  // namespace nivor::test
