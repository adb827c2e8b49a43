// A pipe that fails, a camera that is silent, and one that takes its time.
#include "faults/Outcomes.h"

namespace nivor::test {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t halfOfContainer = 20'012 / 2;

// Longer than a read waits, shorter than the shortest time-out.
constexpr auto aWhile = 1500ms;

// The failure stands where the answer, its second half or the response would stand.
void addFailures(std::vector<Fault>& faults, const std::string& name, Step failing)
{
    faults.push_back({.name = name + "AtOnce",
                      .script = [failing](const Answer&) { return Script{failing}; },
                      .outcomes = always(no(0))});
    faults.push_back(
        {.name = name + "InsideTheData",
         .script =
             [failing](const Answer& answer) {
                 return Script{sent(firstOf(answer.data, answer.data.size() / 2)), failing};
             },
         .outcomes = but(withData(no(0)), {{Kind::File, no(0, prefix(halfOfContainer - 12))}})});
    faults.push_back({.name = name + "InsteadOfTheResponse",
                      .script =
                          [failing](const Answer& answer) {
                              return Script{sent(answer.data), failing};
                          },
                      .outcomes = but(withData(no(0)), {{Kind::File, no(0, whole)}})});
}

std::map<Kind, Outcome> leavingAll(std::map<Kind, Outcome> outcomes)
{
    for (auto& [kind, outcome] : outcomes)
        outcome.nextIsSound = false;
    return outcomes;
}

// The command has arrived when the camera leaves.
void addLeaving(std::vector<Fault>& faults)
{
    const std::size_t first = faults.size();
    addFailures(faults, "Leaving", leaving());
    for (std::size_t i = first; i < faults.size(); ++i) {
        Fault& fault = faults[i];
        fault.leaves = true;
        fault.outcomes = leavingAll(fault.outcomes);
        const auto file = fault.outcomes.find(Kind::File);
        if (file == fault.outcomes.end() || file->second.content.own == 0)
            continue;
        fault.overLibusb = {{Kind::File, file->second}};
        fault.overLibusb.at(Kind::File).content = atMost(file->second.content.own);
        fault.whyOverLibusb = "what the kernel has not handed over when the camera leaves is lost";
    }
}

void addSilence(std::vector<Fault>& faults)
{
    faults.push_back({.name = "Silence",
                      .script = [](const Answer&) { return Script{}; },
                      .outcomes = always(timesOut(0))});
    Fault lost{.name = "CommandLost",
               .script = [](const Answer&) { return Script{}; },
               .outcomes = always(timesOut(0))};
    lost.refusesCommand = true;
    faults.push_back(std::move(lost));
    faults.push_back({.name = "AnswerAfterAWhile",
                      .script =
                          [](const Answer& answer) {
                              Script script = soundScript(answer);
                              script.front().after = aWhile;
                              return script;
                          },
                      .outcomes = always(afterAWait(yes()))});
    faults.push_back(
        {.name = "ResponseAfterAWhile",
         .script =
             [](const Answer& answer) {
                 return Script{sent(answer.data), later(aWhile, sent(answer.response))};
             },
         .outcomes = withData(afterAWait(yes()))});
    faults.push_back({.name = "PauseInsideTheData",
                      .script =
                          [](const Answer& answer) {
                              const std::size_t half = answer.data.size() / 2;
                              return Script{sent(firstOf(answer.data, half)),
                                            later(aWhile, sent(behind(answer.data, half))),
                                            sent(answer.response)};
                          },
                      .outcomes = withData(afterAWait(yes()))});
}

// One byte a second, each a packet of its own.
void trickle(Script& script, const ByteBuffer& bytes)
{
    for (const std::uint8_t byte : bytes)
        script.push_back(later(1000ms, sent({byte})));
}

void addTrickle(std::vector<Fault>& faults)
{
    // No byte of these is a header, so none counts.
    faults.push_back({.name = "TrickleFromTheFirstByte",
                      .script =
                          [](const Answer& answer) {
                              Script script;
                              trickle(script, answer.hasData() ? answer.data : answer.response);
                              return script;
                          },
                      .outcomes = leavingAll(always(timesOut(0)))});
    // Each is progress, and there are few.
    faults.push_back({.name = "TrickleOfTheLastBytes",
                      .script =
                          [](const Answer& answer) {
                              const std::size_t most = answer.data.size() - 3;
                              Script script{sent(firstOf(answer.data, most))};
                              trickle(script, behind(answer.data, most));
                              script.push_back(sent(answer.response));
                              return script;
                          },
                      .outcomes = withData(afterAWait(yes()))});
    // Eight full packets and no more. Libusb shows them when a transfer is full or has ended: they
    // are unseen until then, and stand before the next answer.
    faults.push_back(
        {.name = "DataBreaksOffOnAPacketEdge",
         .script =
             [](const Answer& answer) { return Script{sentOpen(firstOf(answer.data, 8 * 512))}; },
         .outcomes = {{Kind::Collected, timesOut(0)},
                      {Kind::File, timesOut(0, prefix(8 * 512 - 12))}},
         .overLibusb = leavingAll(objects(timesOut(0))),
         .whyOverLibusb = "less than a transfer's worth of bytes may be on its way "
                          "unseen, for the ring reads ahead"});
    // 68 seconds: a file takes whatever comes, a dataset has to be whole after 60.
    constexpr std::size_t slowSize = 100;
    const Outcome tooSlow = afterAWait(no(0));
    faults.push_back({.name = "TrickleOfAMinute",
                      .script =
                          [](const Answer& answer) {
                              Script script{sent(firstOf(answer.data, 32))};
                              trickle(script, behind(answer.data, 32));
                              script.push_back(sent(answer.response));
                              return script;
                          },
                      .outcomes = {{Kind::File, afterAWait(yes())}, {Kind::Dataset, tooSlow}},
                      .exceptions = {{"GetThumb", tooSlow}},
                      .containerSize = {{Kind::Dataset, slowSize},
                                        {Kind::Collected, slowSize},
                                        {Kind::File, slowSize}},
                      .pace = 5});
}

}  // namespace

std::vector<Fault> failureFaults()
{
    std::vector<Fault> faults;
    addFailures(faults, "Stall", failure(UsbResult::PipeStalled));
    addFailures(faults, "IOError", failure(UsbResult::IOError));
    addFailures(faults, "Overrun", failure(UsbResult::Overrun));
    addFailures(faults, "StallForEver", stallForEver());
    for (Fault& fault : faults) {
        if (fault.name.starts_with("StallForEver"))
            fault.outcomes = leavingAll(fault.outcomes);
    }
    addLeaving(faults);
    addSilence(faults);
    addTrickle(faults);
    return faults;
}

}  // namespace nivor::test
