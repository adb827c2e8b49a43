#include "faults/Operation.h"

#include "faults/DatasetOperations.h"
#include "faults/ObjectOperations.h"
#include "foundation/Errors.h"
#include "foundation/ResultText.h"
#include "support/ScriptedCamera.h"

#include <fmt/format.h>

#include <utility>

namespace nivor::test {
namespace {

/// OpenSession, CloseSession and DeleteObject: a command and a response.
class PlainOperation final : public Operation {
public:
    using Call = bool (*)(PTPCommunication&);
    using Text = std::string (*)(bool, std::uint16_t);

    PlainOperation(std::string testName, const char* selector, std::uint16_t operationCode,
                   std::uint32_t operationTimeout, Call call, Text text)
        : Operation(std::move(testName), selector, Kind::Plain, operationCode, operationTimeout)
        , call_(call)
        , text_(text)
    {
    }

    OperationRun run(PTPCommunication& engine, const Answer& /*answer*/,
                     const std::filesystem::path& /*folder*/) const override
    {
        return runOf([&] { return call_(engine); });
    }

    std::string record(bool success, std::uint16_t responseCode,
                       const Answer& /*answer*/) const override
    {
        return text_(success, responseCode);
    }

protected:
    ByteBuffer payload(std::size_t /*size*/) const override { return {}; }

private:
    const Call call_;
    const Text text_;
};

std::string openSessionText(bool success, std::uint16_t /*responseCode*/)
{
    return fmt::format("openSession (result = {})", resultText(success));
}

std::string closeSessionText(bool success, std::uint16_t /*responseCode*/)
{
    return fmt::format("closeSession (result = {})", resultText(success));
}

std::string deleteObjectText(bool success, std::uint16_t responseCode)
{
    return fmt::format("deleteObject (result = {}, responseCode = {}, objHdr = <07000000>)",
                       resultText(success), responseCode);
}

}  // namespace

OperationRun runOf(const std::function<bool()>& call)
{
    OperationRun run;
    try {
        run.success = call();
    } catch (const RangeError&) {
        run.raised = true;
    }
    return run;
}

Operation::Operation(std::string testName, const char* selector, Kind operationKind,
                     std::uint16_t operationCode, std::uint32_t operationTimeout)
    : name(std::move(testName))
    , event(std::string("PTPCommunication ") + selector)
    , kind(operationKind)
    , code(operationCode)
    , timeout(operationTimeout)
{
}

Answer Operation::answer(std::size_t containerSize) const
{
    Answer answer{.data = {}, .response = response(0x2001, testedTransaction)};
    if (kind != Kind::Plain)
        answer.data =
            data(code, payload(containerSize > 12 ? containerSize - 12 : 0), testedTransaction);
    return answer;
}

const std::vector<const Operation*>& operations()
{
    static const PlainOperation openSession(
        "OpenSession", "openSession:", 0x1002, 3000,
        [](PTPCommunication& engine) { return engine.openSession(3000); }, &openSessionText);
    static const PlainOperation closeSession(
        "CloseSession", "closeSession", 0x1003, 3000,
        [](PTPCommunication& engine) { return engine.closeSession(); }, &closeSessionText);
    static const GetStorageIDs getStorageIDs;
    static const GetObjectHandles getObjectHandles;
    static const GetObjectPropValue getObjectPropValue;
    static const GetObjectInfo getObjectInfo;
    static const GetObjectToFile getObjectToFile;
    static const CollectedOperation getObject(
        "GetObjectCollected", "getObject:objectSize:objectBinaryData:callback:", 0x1009,
        &getObjectCollected, "getObject");
    static const CollectedOperation getThumb("GetThumb",
                                             "getThumb:objectSize:objectBinaryData:", 0x100A,
                                             &getThumbCollected, "getThumb");
    static const PlainOperation deleteObject(
        "DeleteObject", "deleteObject:", 0x100B, 5000,
        [](PTPCommunication& engine) { return engine.deleteObject(testedHandle); },
        &deleteObjectText);
    static const std::vector<const Operation*> all{
        &openSession,   &closeSession,    &getStorageIDs, &getObjectHandles, &getObjectPropValue,
        &getObjectInfo, &getObjectToFile, &getObject,     &getThumb,         &deleteObject};
    return all;
}

}  // namespace nivor::test
