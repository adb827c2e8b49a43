// A camera that does not stop sending.
#include "faults/Outcomes.h"
#include "foundation/ByteWriter.h"
#include "support/ScriptedCamera.h"

namespace nivor::test {
namespace {

// Bytes that are no header, in whole packets.
ByteBuffer noise()
{
    return ByteBuffer(10 * 512, 0x5A);
}

// What follows is still being sent when the operation has ended.
std::map<Kind, Outcome> goingOn(std::map<Kind, Outcome> outcomes)
{
    for (auto& [kind, outcome] : outcomes)
        outcome.nextIsSound = false;
    return outcomes;
}

// Instead of what was asked for, or behind the data.
void addEndless(std::vector<Fault>& faults, const std::string& name, ByteBuffer bytes,
                std::uint16_t responseCode, const std::map<Kind, Outcome>& plain)
{
    faults.push_back({.name = name,
                      .script = [bytes](const Answer&) { return Script{sentForEver(bytes)}; },
                      .outcomes = goingOn(but(withData(timesOut(responseCode)), plain))});
}

std::map<Kind, Outcome> plainIs(Outcome outcome)
{
    return {{Kind::Plain, std::move(outcome)}};
}

// The data container announces all that a length can, and goes on that long. A file takes it up to
// 4 GiB, which the copying finds out afterwards.
Fault endlessData(std::string name, std::uint32_t length)
{
    return {.name = std::move(name),
            .script =
                [length](const Answer& answer) {
                    ByteBuffer first = answer.hasData() ? answer.data : answer.response;
                    putLittleEndian(first, 0, length);
                    putLittleEndian(first, 4, std::uint16_t{2});
                    first.resize((first.size() + 511) / 512 * 512, 0x5A);
                    return Script{sentOpen(first), sentForEver(noise(), WireEnd::Open)};
                },
            .outcomes = {{Kind::Plain, no(0)}, {Kind::Dataset, no(0)}, {Kind::Collected, no(0)}}};
}

}  // namespace

std::vector<Fault> endlessFaults()
{
    std::vector<Fault> faults;
    addEndless(faults, "EndlessEvents", container(4, 0x4002, 0, parameters({9})), 0,
               plainIs(timesOut(0)));
    addEndless(faults, "EndlessResponses", response(0x2001, 1), 0x2001, plainIs(yes()));
    addEndless(faults, "EndlessEmptyPackets", {}, 0, plainIs(timesOut(0)));
    addEndless(faults, "EndlessNoise", noise(), 0, plainIs(timesOut(0)));
    faults.push_back(
        {.name = "EndlessEmptyPacketsInsideTheData",
         .script =
             [](const Answer& answer) {
                 return Script{sent(firstOf(answer.data, answer.data.size() / 2)), sentForEver({})};
             },
         .outcomes = goingOn(
             but(withData(timesOut(0)), {{Kind::File, timesOut(0, prefix(20'012 / 2 - 12))}}))});
    faults.push_back({.name = "EndlessEmptyPacketsInsteadOfTheResponse",
                      .script =
                          [](const Answer& answer) {
                              return Script{sent(answer.data), sentForEver({})};
                          },
                      .outcomes = goingOn(withData(timesOut(0, whole)))});
    faults.push_back({.name = "EndlessResponsesInsideTheData",
                      .script =
                          [](const Answer& answer) {
                              return Script{sent(firstOf(answer.data, answer.data.size() - 30)),
                                            sentForEver(answer.response)};
                          },
                      // Three of them make up for the missing bytes, the fourth is the response.
                      .outcomes = goingOn(objects(yes(prefix(20'000 - 30, 36))))});
    // Complete as soon as the expected size is there; the last read of an object brings more, which
    // a file does not take: the camera is asked to stop, and does.
    faults.push_back({.name = "EndlessDataOfUnknownLength",
                      .script =
                          [](const Answer& answer) {
                              ByteBuffer first = answer.data;
                              std::fill_n(first.begin(), 4, std::uint8_t{0xFF});
                              first.resize((first.size() + 511) / 512 * 512, 0x5A);
                              return Script{sentOpen(first), sentForEver(noise(), WireEnd::Open)};
                          },
                      .outcomes = but(goingOn(withData(timesOut(0))),
                                      {{Kind::File, no(0, prefix(Content::all, 468))}})});
    // Each of them counts as data, as far as the read that begins it goes. So the bounds of the
    // two answers are reached long before the time-out, and those of the others after it.
    faults.push_back(
        {.name = "EndlessDataContainers",
         .script = [](const Answer& answer) { return Script{sentForEver(answer.data)}; },
         .outcomes =
             goingOn(but(withData(timesOut(0)), {{Kind::File, timesOut(0, unknownContent)}})),
         .exceptions = {{"GetObjectInfo", leavingSomething(no(0))},
                        {"GetThumb", leavingSomething(no(0))}}});
    faults.push_back(endlessData("EndlessData", 0xFFFFFFFE));
    return faults;
}

}  // namespace nivor::test
