// Faults of a container's header: its length, its type, its count, its transaction.
#include "faults/Outcomes.h"
#include "foundation/ByteWriter.h"
#include "support/ScriptedCamera.h"

#include <fmt/format.h>

#include <array>

namespace nivor::test {
namespace {

// The object's bytes in the first read, which is as much as a false length lets through.
constexpr std::size_t inFirstRead = 5120 - 12;

constexpr std::uint32_t unknownLength = 0xFFFFFFFF;

template <typename LengthOf>
Fault lengthFault(std::string name, LengthOf lengthOf, std::map<Kind, Outcome> outcomes)
{
    return {.name = std::move(name),
            .script = changingTheFirst([lengthOf](ByteBuffer& container) {
                putLittleEndian(container, 0, static_cast<std::uint32_t>(lengthOf(container)));
            }),
            .outcomes = std::move(outcomes)};
}

Fault typeFault(std::string name, std::uint16_t type)
{
    // Passed over; without data there is nothing to end the transaction but its time-out.
    return {.name = std::move(name),
            .script = changingTheFirst(
                [type](ByteBuffer& container) { putLittleEndian(container, 4, type); }),
            .outcomes = but(withData(timesOut(0x2001)), {{Kind::Plain, timesOut(0)}})};
}

void addLengths(std::vector<Fault>& faults)
{
    // The length is all that tells where the data ends: what comes behind it is passed over.
    for (std::size_t length = 0; length < 12; ++length)
        faults.push_back(lengthFault(
            fmt::format("Length{}", length), [length](const ByteBuffer&) { return length; },
            but(always(yes()), objects(yes(prefix(inFirstRead))))));
    faults.push_back(lengthFault(
        "Length12", [](const ByteBuffer&) { return 12U; },
        but(always(yes()), objects(yes(prefix(inFirstRead))))));
    faults.push_back(lengthFault(
        "LengthUnknown", [](const ByteBuffer&) { return unknownLength; }, always(yes())));
    // The response is taken for the rest of the data.
    for (const std::size_t more : {1U, 12U, 13U, 100U})
        faults.push_back(lengthFault(
            fmt::format("Length{}TooLarge", more),
            [more](const ByteBuffer& container) { return container.size() + more; },
            but(withData(timesOut(0, prefix(Content::all, 12))), {{Kind::Plain, yes()}})));
    faults.push_back(lengthFault(
        "LengthOf4GiB", [](const ByteBuffer&) { return 0xFFFFFFFEU; },
        but(withData(timesOut(0, prefix(Content::all, 12))), {{Kind::Plain, yes()}})));
    // What one read brings beyond the length belongs to the data all the same.
    faults.push_back(lengthFault(
        "Length1TooSmall", [](const ByteBuffer& container) { return container.size() - 1; },
        always(yes())));

    Fault onAnEdge = lengthFault(
        "LengthTooSmallOnAPacketEdge",
        [](const ByteBuffer& container) { return container.size() / 512 * 512; }, objects(yes()));
    onAnEdge.overLibusb = objects(yes(prefix(20'000 / 512 * 512 - 12)));
    onAnEdge.whyOverLibusb = "a read ends where a container of whole packets says that it ends, "
                             "for the empty packet behind it may be missing";
    faults.push_back(std::move(onAnEdge));
}

void addTypes(std::vector<Fault>& faults)
{
    faults.push_back(typeFault("Type0", 0));
    faults.push_back(typeFault("Type1", 1));
    faults.push_back(typeFault("Type4", 4));
    faults.push_back(typeFault("Type5", 5));
    faults.push_back(typeFault("Type65535", 0xFFFF));
    // The true response comes behind it and counts.
    faults.push_back({.name = "DataTypedAsResponse",
                      .script = changingTheFirst([](ByteBuffer& container) {
                          putLittleEndian(container, 4, std::uint16_t{3});
                      }),
                      .outcomes = withData(timesOut(0x2001))});
    faults.push_back({.name = "ResponseTypedAsData",
                      .script =
                          [](const Answer& sound) {
                              Answer answer = sound;
                              putLittleEndian(answer.response, 4, std::uint16_t{2});
                              return soundScript(answer);
                          },
                      .outcomes = always(timesOut(0, prefix(Content::all, 12)))});
}

void addTransactions(std::vector<Fault>& faults)
{
    faults.push_back({.name = "TransactionOfAnother",
                      .script =
                          [](const Answer& sound) {
                              Answer answer = sound;
                              if (answer.hasData())
                                  putLittleEndian(answer.data, 8, 0xFFFFFFFFU);
                              putLittleEndian(answer.response, 8, 0xFFFFFFFFU);
                              return soundScript(answer);
                          },
                      .outcomes = always(yes())});
    faults.push_back({.name = "OperationCodeOfAnother",
                      .script =
                          [](const Answer& sound) {
                              Answer answer = sound;
                              putLittleEndian(answer.data, 6, std::uint16_t{0xFFFF});
                              return soundScript(answer);
                          },
                      .outcomes = withData(yes())});
}

void addCounts(std::vector<Fault>& faults)
{
    for (const std::uint32_t count : {0xFFFFFFFFU, 0x80000000U, 0x40000001U})
        faults.push_back(
            {.name = fmt::format("Count{:X}", count),
             .script = changingTheFirst(
                 [count](ByteBuffer& container) { putLittleEndian(container, 12, count); }),
             .outcomes = {},
             // Storages: those that came. Handles: those that came, and the error.
             .exceptions = {{"GetStorageIDs", yes()}, {"GetObjectHandles", raises()}}});
}

}  // namespace

std::vector<Fault> headerFaults()
{
    std::vector<Fault> faults;
    addLengths(faults);
    addTypes(faults);
    addTransactions(faults);
    addCounts(faults);
    return faults;
}

}  // namespace nivor::test
