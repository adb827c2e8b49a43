// Empty packets that are missing or too many, and odd packet sizes.
#include "faults/Outcomes.h"

#include <fmt/format.h>

namespace nivor::test {
namespace {

constexpr char boundaryReason[] =
    "a container of whole packets ends the read where it says that it ends";

// Data of whole packets with the response right behind its last one.
Script withoutEmptyPacket(const Answer& answer)
{
    return {sentOpen(answer.data), sent(answer.response)};
}

void addEmptyPackets(std::vector<Fault>& faults)
{
    const auto inserted = [](std::size_t at, std::size_t count) {
        return [at, count](const Answer& answer) {
            Script script = soundScript(answer);
            const auto place = script.begin() + static_cast<std::ptrdiff_t>(at);
            script.insert(place, count, emptyPacket());
            return script;
        };
    };
    faults.push_back({.name = "EmptyPacketBeforeTheAnswer",
                      .script = inserted(0, 1),
                      .outcomes = always(yes())});
    faults.push_back({.name = "EmptyPacketsBeforeTheAnswer",
                      .script = inserted(0, 2),
                      .outcomes = always(yes())});
    faults.push_back({.name = "EmptyPacketBehindTheData",
                      .script = inserted(1, 1),
                      .outcomes = withData(yes())});
    faults.push_back({.name = "EmptyPacketsBehindTheData",
                      .script = inserted(1, 2),
                      .outcomes = withData(yes())});
    faults.push_back({.name = "EmptyPacketBehindTheResponse",
                      .script = inserted(2, 1),
                      .outcomes = withData(yes())});
    faults.push_back({.name = "EmptyPacketInsideTheData",
                      .script =
                          [](const Answer& answer) {
                              const std::size_t half = answer.data.size() / 2;
                              return Script{sent(firstOf(answer.data, half)), emptyPacket(),
                                            emptyPacket(), sent(behind(answer.data, half)),
                                            sent(answer.response)};
                          },
                      .outcomes = withData(yes())});
}

void addWholePackets(std::vector<Fault>& faults)
{
    // The whole container in one read that it does not fill; objects in two.
    const std::map<Kind, std::size_t> wholePackets{
        {Kind::Dataset, 1024}, {Kind::Collected, 5120 + 512}, {Kind::File, 5120 + 512}};
    faults.push_back({.name = "WholePackets",
                      .script = &soundScript,
                      .outcomes = withData(yes()),
                      .containerSize = wholePackets});
    faults.push_back(
        {.name = "WholePacketsWithTwoEmptyOnes",
         .script =
             [](const Answer& answer) {
                 return Script{sent(answer.data), emptyPacket(), sent(answer.response)};
             },
         .outcomes = withData(yes()),
         .containerSize = wholePackets});
    faults.push_back({.name = "EmptyPacketMissing",
                      .script = &withoutEmptyPacket,
                      .outcomes = withData(timesOut(0, prefix(Content::all, 12))),
                      .overLibusb = withData(yes()),
                      .whyOverLibusb = boundaryReason,
                      .containerSize = wholePackets});
    // The read is full, so it ends without being told.
    faults.push_back({.name = "EmptyPacketMissingBehindAFullRead",
                      .script = &withoutEmptyPacket,
                      .outcomes = withData(yes()),
                      .containerSize = {{Kind::Dataset, 5120},
                                        {Kind::Collected, 2 * 5120},
                                        {Kind::File, 2 * 5120}}});
    // Its length field can't tell where it ends, and no other does: the response is taken for more
    // of it. A file refuses that much.
    faults.push_back({.name = "EmptyPacketMissingAndLengthUnknown",
                      .script =
                          [](const Answer& answer) {
                              ByteBuffer data = answer.data;
                              std::fill_n(data.begin(), 4, std::uint8_t{0xFF});
                              return Script{sentOpen(data), sent(answer.response)};
                          },
                      .outcomes = {{Kind::Collected, timesOut(0, prefix(Content::all, 12))},
                                   {Kind::File, no(0, prefix(Content::all, 12))}},
                      .containerSize = wholePackets});
}

std::map<Kind, std::size_t> roundedUpTo(std::size_t packetSize)
{
    const auto rounded = [packetSize](std::size_t size) {
        return (size + packetSize - 1) / packetSize * packetSize;
    };
    // Never 5120 or a multiple: that would fill a read.
    return {{Kind::Dataset, rounded(200)},
            {Kind::Collected, rounded(5700)},
            {Kind::File, rounded(5700)}};
}

}  // namespace

std::vector<Fault> packetFaults()
{
    std::vector<Fault> faults;
    addEmptyPackets(faults);
    addWholePackets(faults);
    return faults;
}

std::vector<Fault> packetSizeFaults()
{
    std::vector<Fault> faults;
    for (const unsigned size : {1U, 8U, 63U, 64U, 513U, 1024U, 2047U}) {
        const auto packetSize = static_cast<std::uint16_t>(size);
        faults.push_back({.name = fmt::format("PacketsOf{}", size),
                          .script = &soundScript,
                          .outcomes = always(yes()),
                          .packetSize = packetSize});
        faults.push_back({.name = fmt::format("WholePacketsOf{}", size),
                          .script = &soundScript,
                          .outcomes = withData(yes()),
                          .containerSize = roundedUpTo(size),
                          .packetSize = packetSize});
        faults.push_back({.name = fmt::format("EmptyPacketMissingBehindPacketsOf{}", size),
                          .script = &withoutEmptyPacket,
                          .outcomes = withData(timesOut(0, prefix(Content::all, 12))),
                          .overLibusb = withData(yes()),
                          .whyOverLibusb = boundaryReason,
                          .containerSize = roundedUpTo(size),
                          .packetSize = packetSize});
    }
    return faults;
}

}  // namespace nivor::test
