// Containers that come in other pieces than they ought to.
#include "faults/Outcomes.h"

#include <fmt/format.h>

namespace nivor::test {
namespace {

// A short packet in the middle of the first container.
Fault splitAfter(std::size_t count, std::map<Kind, Outcome> outcomes)
{
    return {.name = fmt::format("HeaderSplitAfter{}", count),
            .script =
                [count](const Answer& answer) {
                    const ByteBuffer& first = answer.hasData() ? answer.data : answer.response;
                    Script script{sent(firstOf(first, count)), sent(behind(first, count))};
                    if (answer.hasData())
                        script.push_back(sent(answer.response));
                    return script;
                },
            .outcomes = std::move(outcomes)};
}

void addSplitHeaders(std::vector<Fault>& faults)
{
    // Both parts are passed over.
    for (const std::size_t count : {1U, 2U, 3U})
        faults.push_back(
            splitAfter(count, but(withData(timesOut(0x2001)), {{Kind::Plain, timesOut(0)}})));

    // The second part begins with the type and has the transaction ID, 2, where the type stands:
    // it is taken for data without end, and the response for a piece of it.
    faults.push_back(
        splitAfter(4, but(always(timesOut(0)), {{Kind::File, timesOut(0, unknownContent)}})));

    // The type has come, or all of it that isn't 0, so the rest is data. The file's sink takes no
    // piece without an object's byte; a response without its code is none that says OK.
    for (const std::size_t count : {5U, 6U, 7U, 8U, 11U}) {
        const std::uint16_t code = count < 7 ? 0x0000 : count < 8 ? 0x0001 : 0x2001;
        Fault fault = splitAfter(
            count, but(always(yes()), {{Kind::Plain, yes(whole, code)}, {Kind::File, no(0)}}));
        if (code != 0x2001)
            fault.exceptions["DeleteObject"] = no(code);
        faults.push_back(std::move(fault));
    }
    faults.push_back(splitAfter(12, but(withData(yes()), {{Kind::File, no(0)}})));
    faults.push_back(splitAfter(13, withData(yes())));
}

void addPiecesOfData(std::vector<Fault>& faults)
{
    faults.push_back({.name = "EarlyShortPacket",
                      .script =
                          [](const Answer& answer) {
                              const std::size_t half = answer.data.size() / 2 + 3;
                              return Script{sent(firstOf(answer.data, half)),
                                            sent(behind(answer.data, half)), sent(answer.response)};
                          },
                      .outcomes = withData(yes())});
    // Half of the data, and the response as if it were the rest.
    faults.push_back({.name = "DataBreaksOff",
                      .script =
                          [](const Answer& answer) {
                              return Script{sent(firstOf(answer.data, answer.data.size() / 2)),
                                            sent(answer.response)};
                          },
                      .outcomes = but(withData(timesOut(0)),
                                      {{Kind::File, timesOut(0, prefix(20'012 / 2 - 12, 12))}})});
    faults.push_back({.name = "DataBreaksOffInSilence",
                      .script =
                          [](const Answer& answer) {
                              return Script{sent(firstOf(answer.data, answer.data.size() / 2))};
                          },
                      .outcomes = but(withData(timesOut(0)),
                                      {{Kind::File, timesOut(0, prefix(20'012 / 2 - 12))}})});
    faults.push_back({.name = "ResponseGluedToTheData",
                      .script =
                          [](const Answer& answer) {
                              return Script{sent(joined(answer.data, answer.response))};
                          },
                      .outcomes = withData(timesOut(0, prefix(Content::all, 12)))});
}

// A response that is shorter or longer than its header.
void addResponses(std::vector<Fault>& faults)
{
    const auto cutResponse = [](std::size_t size) {
        return [size](const Answer& sound) {
            Answer answer = sound;
            answer.response.resize(size);
            return soundScript(answer);
        };
    };
    faults.push_back(
        {.name = "ResponseOf8Bytes", .script = cutResponse(8), .outcomes = always(yes())});
    // What is missing of it counts as 0: of the type, 3, half is enough.
    for (const std::size_t size : {5U, 6U}) {
        Fault withoutCode{.name = fmt::format("ResponseOf{}Bytes", size),
                          .script = cutResponse(size),
                          .outcomes = always(yes(whole, 0))};
        withoutCode.exceptions["DeleteObject"] = no(0);
        faults.push_back(std::move(withoutCode));
    }
    faults.push_back({.name = "ResponseOf4Bytes",
                      .script = cutResponse(4),
                      .outcomes = always(timesOut(0, whole))});
    faults.push_back({.name = "ResponseWithParameters",
                      .script =
                          [](const Answer& sound) {
                              Answer answer = sound;
                              answer.response.resize(24, 0x55);
                              answer.response[0] = 24;
                              return soundScript(answer);
                          },
                      .outcomes = always(yes())});
}

}  // namespace

std::vector<Fault> splitFaults()
{
    std::vector<Fault> faults;
    addSplitHeaders(faults);
    addPiecesOfData(faults);
    addResponses(faults);
    return faults;
}

}  // namespace nivor::test
