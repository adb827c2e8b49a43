/// The things a simulated camera can do wrong, each a small value.
#pragma once

#include "codes/ContainerType.h"
#include "codes/EventCode.h"
#include "codes/ResponseCode.h"
#include "foundation/Bytes.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <variant>
#include <vector>

namespace nivor::fault {

/// Answers with `code`. Only `AfterData` carries the operation out and sends its data.
struct Refuse {
    enum class Place : std::uint8_t { InsteadOfData, BeforeData, AfterData };
    ResponseCode code = ResponseCode::GeneralError;
    Place place = Place::InsteadOfData;
};

/// Halts the bulk-in pipe instead of answering: for one read, or until the transaction is
/// cancelled, the device reset or attached anew.
struct Stall {
    bool forever = false;
};

/// Takes the command and neither carries it out nor answers.
struct Silence { };

/// Answers this much later.
struct Delay {
    std::chrono::milliseconds by{};
};

/// Ends the data phase after `bytes` of the container, its header included.
struct CutData {
    std::uint64_t bytes = 0;
    bool thenSilence = false;  ///< no response either
};

/// Sends the response in the same transfer as the data, right behind it.
struct GlueResponse { };

/// Sends the response `times` times in all; 0 sends none.
struct RepeatResponse {
    unsigned times = 2;
};

/// Puts parameters into the response.
struct ResponseParameters {
    std::vector<std::uint32_t> values;
};

/// Sends an event container on the bulk-in pipe before the answer.
struct EventFirst {
    EventCode code = EventCode::ObjectAdded;
};

/// Writes another value into the length field of the data or the response container.
struct ContainerLength {
    std::uint32_t value = 0;
    ContainerType container = ContainerType::Data;
};

/// Writes another value into the type field of the data or the response container.
struct ContainerKind {
    std::uint16_t value = 0;
    ContainerType container = ContainerType::Data;
};

/// Writes another transaction ID into the data and response containers.
struct TransactionID {
    std::uint32_t value = 0;
};

/// Sends the first `bytes` of the answer's first container as a transfer of their own.
struct SplitHeader {
    std::size_t bytes = 4;
};

/// Sends the response only.
struct MissingData { };

/// Sends the whole data phase twice.
struct DoubledData { };

/// Leaves out the zero-length packet that a transfer of whole packets needs, or adds one too many
/// behind the data.
struct ZeroPacket {
    enum class Error : std::uint8_t { Missing, Extra };
    Error error = Error::Missing;
};

/// Announces sizes in ObjectInfo that are not the object's.
struct UntrueObjectInfo {
    std::optional<std::uint32_t> objectSize{};
    std::optional<std::uint32_t> thumbnailSize{};
};

/// Sends these transfers, whatever they hold, instead of the answer.
struct RawAnswer {
    std::vector<ByteBuffer> transfers;
};

/// Leaves the bus: on the command, or once `afterBytes` of the answer's first container are sent.
struct Vanish {
    std::optional<std::uint64_t> afterBytes{};
};

/// Answers OK to DeleteObject and keeps the object.
struct KeepObject { };

/// Any one of them. Several that match the same command act together.
using Effect = std::variant<Refuse, Stall, Silence, Delay, CutData, GlueResponse, RepeatResponse,
                            ResponseParameters, EventFirst, ContainerLength, ContainerKind,
                            TransactionID, SplitHeader, MissingData, DoubledData, ZeroPacket,
                            UntrueObjectInfo, RawAnswer, Vanish, KeepObject>;

}  // namespace nivor::fault
