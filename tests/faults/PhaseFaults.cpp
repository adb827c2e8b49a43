// Phases that are missing, doubled, in the wrong order or not what was asked for.
#include "faults/Outcomes.h"
#include "foundation/ByteWriter.h"
#include "support/ScriptedCamera.h"

namespace nivor::test {
namespace {

ByteBuffer event()
{
    return container(4, 0x4002, 0, parameters({9}));  // ObjectAdded
}

// A response alone. What says no to an operation without data says so at once.
Fault refusal(std::string name, std::uint16_t code)
{
    Fault fault{
        .name = std::move(name),
        .script = [code](const Answer&) { return Script{sent(response(code, testedTransaction))}; },
        .outcomes = but(withData(timesOut(code)), {{Kind::Plain, yes(whole, code)}})};
    fault.exceptions["DeleteObject"] = no(code);
    return fault;
}

void addMissingAndDoubled(std::vector<Fault>& faults)
{
    faults.push_back({.name = "DataMissing",
                      .script = [](const Answer& answer) { return Script{sent(answer.response)}; },
                      .outcomes = withData(timesOut(0x2001))});
    faults.push_back({.name = "ResponseMissing",
                      .script = [](const Answer& answer) { return Script{sent(answer.data)}; },
                      .outcomes = withData(timesOut(0, whole))});
    // The second one counts as data too, as far as the read that begins it goes.
    faults.push_back(
        {.name = "DataDoubled",
         .script =
             [](const Answer& answer) {
                 return Script{sent(answer.data), sent(answer.data), sent(answer.response)};
             },
         .outcomes = but(withData(yes()), objects(yes(prefix(Content::all, 5120))))});
    faults.push_back({.name = "ResponseDoubled",
                      .script =
                          [](const Answer& answer) {
                              Script script = soundScript(answer);
                              script.push_back(sent(answer.response));
                              return script;
                          },
                      .outcomes = always(leavingSomething(yes()))});
    faults.push_back({.name = "DataThatNobodyAskedFor",
                      .script =
                          [](const Answer& answer) {
                              return Script{sent(data(0x1004, ByteBuffer(100), testedTransaction)),
                                            sent(answer.response)};
                          },
                      .outcomes = {{Kind::Plain, yes()}}});

    // A header alone is too little for every one of them.
    Fault empty{.name = "DataOfNoBytes",
                .script =
                    [](const Answer& answer) {
                        ByteBuffer header = firstOf(answer.data, 12);
                        putLittleEndian(header, 0, 12U);
                        return Script{sent(header), sent(answer.response)};
                    },
                .outcomes = {{Kind::Collected, no(0x2001)}, {Kind::File, no(0)}}};
    empty.exceptions = {
        {"GetStorageIDs", no(0x2001)},
        {"GetObjectHandles", raises()},
        {"GetObjectPropValue", raises()},
        {"GetObjectInfo",
         recorded(no(0x2001), "getObjectInfo (result = fail, objHdr = <07000000>, fileName = )")}};
    faults.push_back(std::move(empty));
}

void addHeaderAlone(std::vector<Fault>& faults)
{
    // The sink has refused: the response is waited for as long as one read waits.
    faults.push_back({.name = "DataOfNoBytesAndNoResponse",
                      .script =
                          [](const Answer& answer) {
                              ByteBuffer header = firstOf(answer.data, 12);
                              putLittleEndian(header, 0, 12U);
                              return Script{sent(header)};
                          },
                      .outcomes = but(withData(timesOut(0)), {{Kind::File, no(0)}})});
}

void addWrongOrder(std::vector<Fault>& faults)
{
    faults.push_back({.name = "ResponseBeforeData",
                      .script =
                          [](const Answer& answer) {
                              return Script{sent(answer.response), sent(answer.data)};
                          },
                      .outcomes = withData(yes())});
    faults.push_back({.name = "EventBeforeTheAnswer",
                      .script =
                          [](const Answer& answer) {
                              Script script = soundScript(answer);
                              script.insert(script.begin(), sent(event()));
                              return script;
                          },
                      .outcomes = always(yes())});
    faults.push_back(
        {.name = "EventBeforeTheResponse",
         .script =
             [](const Answer& answer) {
                 return Script{sent(answer.data), sent(event()), sent(answer.response)};
             },
         .outcomes = withData(yes())});
}

}  // namespace

std::vector<Fault> phaseFaults()
{
    std::vector<Fault> faults;
    addMissingAndDoubled(faults);
    addHeaderAlone(faults);
    addWrongOrder(faults);
    faults.push_back(refusal("Busy", 0x2019));
    faults.push_back(refusal("OperationNotSupported", 0x2005));
    faults.push_back(refusal("ResponseCodeOfNoMeaning", 0xFFFF));
    return faults;
}

}  // namespace nivor::test
