#include "soak/RandomFaults.h"

#include <fmt/format.h>

#include <utility>

namespace nivor::soak {
namespace {

// Those that the program asks for.
constexpr std::array operations{
    OperationCode::OpenSession,        OperationCode::CloseSession,  OperationCode::GetStorageIDs,
    OperationCode::GetObjectHandles,   OperationCode::GetObjectInfo, OperationCode::GetObject,
    OperationCode::GetThumb,           OperationCode::DeleteObject,  OperationCode::GetObject,
    OperationCode::GetObjectPropValue, OperationCode::GetObject};

constexpr std::array steps{
    UsbStep::SerialNumber,     UsbStep::DeviceOpen,    UsbStep::ConfigurationDescriptor,
    UsbStep::SetConfiguration, UsbStep::FindInterface, UsbStep::InterfaceOpen,
    UsbStep::WritePipe,        UsbStep::ReadPipe,      UsbStep::CancelRequest,
    UsbStep::GetDeviceStatus};

constexpr std::array failures{
    UsbResult::Error,         UsbResult::NoMemory,          UsbResult::NoDevice,
    UsbResult::NotPrivileged, UsbResult::BadArgument,       UsbResult::ExclusiveAccess,
    UsbResult::Unsupported,   UsbResult::IOError,           UsbResult::NotOpen,
    UsbResult::Overrun,       UsbResult::Aborted,           UsbResult::NotFound,
    UsbResult::PipeStalled,   UsbResult::TransactionTimeout};

constexpr std::array refusals{
    ResponseCode::GeneralError,          ResponseCode::SessionNotOpen,
    ResponseCode::OperationNotSupported, ResponseCode::IncompleteTransfer,
    ResponseCode::InvalidObjectHandle,   ResponseCode::ObjectWriteProtected,
    ResponseCode::AccessDenied,          ResponseCode::DeviceBusy,
    ResponseCode::SessionAlreadyOpen,    ResponseCode::TransactionCancelled};

constexpr std::array<std::uint32_t, 8> wrongLengths{0, 1, 11, 12, 13, 512, 70'000, 0xFFFFFFFF};
constexpr std::array<std::uint16_t, 7> kinds{0, 1, 2, 3, 4, 5, 0xFFFF};
constexpr std::array containers{ContainerType::Data, ContainerType::Response};
constexpr std::array places{fault::Refuse::Place::InsteadOfData, fault::Refuse::Place::BeforeData,
                            fault::Refuse::Place::AfterData};
constexpr std::array zeroPackets{fault::ZeroPacket::Error::Missing,
                                 fault::ZeroPacket::Error::Extra};

Occurrences randomOccurrences(Random& random)
{
    switch (random.below(8)) {
    case 0:
        return Occurrences::each();
    case 1:
        return Occurrences::from(random.between(1, 6));
    case 2:
    case 3:
        return Occurrences::firstTimes(random.between(1, 3));
    default:
        return Occurrences::nth(random.between(1, 8));
    }
}

std::vector<ByteBuffer> randomTransfers(Random& random)
{
    std::vector<ByteBuffer> transfers(random.between(1, 3));
    for (ByteBuffer& transfer : transfers) {
        transfer.resize(random.oneOf(std::array<std::size_t, 6>{0, 3, 12, 16, 512, 6000}));
        for (std::uint8_t& byte : transfer)
            byte =
                static_cast<std::uint8_t>(random.chance(50) ? random.below(4) : random.below(256));
    }
    return transfers;
}

fault::UntrueObjectInfo untrueObjectInfo(Random& random)
{
    fault::UntrueObjectInfo untrue;
    if (random.chance(70))
        untrue.objectSize = static_cast<std::uint32_t>(random.below(100'000));
    if (random.chance(50))
        untrue.thumbnailSize = static_cast<std::uint32_t>(random.below(100'000));
    return untrue;
}

std::vector<std::uint32_t> randomParameters(Random& random)
{
    std::vector<std::uint32_t> parameters(random.below(6));
    for (std::uint32_t& parameter : parameters)
        parameter = static_cast<std::uint32_t>(random.below(0xFFFFFFFF));
    return parameters;
}

using Maker = fault::Effect (*)(Random&);

/// How each effect is made, beside its name.
constexpr std::array<std::pair<const char*, Maker>, std::variant_size_v<fault::Effect>> effects{{
    {"Refuse",
     [](Random& random) -> fault::Effect {
         return fault::Refuse{random.oneOf(refusals), random.oneOf(places)};
     }},
    {"Stall", [](Random& random) -> fault::Effect { return fault::Stall{random.chance(50)}; }},
    {"Silence", [](Random&) -> fault::Effect { return fault::Silence{}; }},
    {"Delay",
     [](Random& random) -> fault::Effect {
         return fault::Delay{std::chrono::milliseconds(random.between(1, 400))};
     }},
    {"CutData",
     [](Random& random) -> fault::Effect {
         return fault::CutData{random.below(random.chance(50) ? 20 : 60'000), random.chance(50)};
     }},
    {"GlueResponse", [](Random&) -> fault::Effect { return fault::GlueResponse{}; }},
    {"RepeatResponse",
     [](Random& random) -> fault::Effect {
         return fault::RepeatResponse{static_cast<unsigned>(random.below(4))};
     }},
    {"ResponseParameters",
     [](Random& random) -> fault::Effect {
         return fault::ResponseParameters{randomParameters(random)};
     }},
    {"EventFirst", [](Random&) -> fault::Effect { return fault::EventFirst{}; }},
    {"ContainerLength",
     [](Random& random) -> fault::Effect {
         return fault::ContainerLength{random.oneOf(wrongLengths), random.oneOf(containers)};
     }},
    {"ContainerKind",
     [](Random& random) -> fault::Effect {
         return fault::ContainerKind{random.oneOf(kinds), random.oneOf(containers)};
     }},
    {"TransactionID",
     [](Random& random) -> fault::Effect {
         return fault::TransactionID{static_cast<std::uint32_t>(random.below(0xFFFFFFFF))};
     }},
    {"SplitHeader",
     [](Random& random) -> fault::Effect { return fault::SplitHeader{random.below(14)}; }},
    {"MissingData", [](Random&) -> fault::Effect { return fault::MissingData{}; }},
    {"DoubledData", [](Random&) -> fault::Effect { return fault::DoubledData{}; }},
    {"ZeroPacket",
     [](Random& random) -> fault::Effect { return fault::ZeroPacket{random.oneOf(zeroPackets)}; }},
    {"UntrueObjectInfo", [](Random& random) -> fault::Effect { return untrueObjectInfo(random); }},
    {"RawAnswer",
     [](Random& random) -> fault::Effect { return fault::RawAnswer{randomTransfers(random)}; }},
    {"Vanish",
     [](Random& random) -> fault::Effect {
         return random.chance(50) ? fault::Vanish{} : fault::Vanish{random.below(60'000)};
     }},
    {"KeepObject", [](Random&) -> fault::Effect { return fault::KeepObject{}; }},
}};

CancelBehaviour randomCancelling(Random& random)
{
    CancelBehaviour behaviour;
    behaviour.busyPolls = static_cast<unsigned>(random.below(13));
    behaviour.neverOK = random.chance(20);
    behaviour.emptyStatus = random.chance(20);
    behaviour.ignored = random.chance(20);
    if (random.chance(30))
        behaviour.response = random.oneOf(refusals);
    return behaviour;
}

std::string describe(const Occurrences& occurrences)
{
    return fmt::format("{}..{}", occurrences.first,
                       occurrences.last == Occurrences::each().last
                           ? std::string()
                           : std::to_string(occurrences.last));
}

}  // namespace

FaultPlan makeRandomFaults(Random& random)
{
    FaultPlan plan;
    for (std::uint64_t i = random.between(1, 3); i > 0; --i) {
        if (random.chance(25)) {
            const UsbStep step = random.oneOf(steps);
            const UsbResult result = random.oneOf(failures);
            plan.usb(step, result, randomOccurrences(random));
            continue;
        }
        fault::Effect effect = random.oneOf(effects).second(random);
        const Occurrences when = randomOccurrences(random);
        if (random.chance(10))
            plan.onAny(std::move(effect), when);
        else
            plan.on(random.oneOf(operations), std::move(effect), when);
    }
    if (random.chance(40))
        plan.cancel(randomCancelling(random));
    return plan;
}

std::string describe(const FaultPlan& plan)
{
    std::string text;
    for (const FaultPlan::OperationFault& fault : plan.operationFaults) {
        text += fmt::format("{}({} {}) ", effects[fault.effect.index()].first,
                            fault.operation ? toText(*fault.operation) : "any",
                            describe(fault.occurrences));
    }
    for (const FaultPlan::UsbFault& fault : plan.usbFaults) {
        text += fmt::format("UsbStep{}({:x} {}) ", static_cast<int>(fault.step),
                            codeOf(fault.result), describe(fault.occurrences));
    }
    const CancelBehaviour& cancelling = plan.cancelling;
    text += fmt::format(
        "cancelling: {} busy{}{}{}{}", cancelling.busyPolls, cancelling.neverOK ? ", never OK" : "",
        cancelling.emptyStatus ? ", empty status" : "", cancelling.ignored ? ", ignored" : "",
        cancelling.response ? ", with a response" : "");
    return text;
}

}  // namespace nivor::soak
