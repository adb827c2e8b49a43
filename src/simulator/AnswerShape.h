/// What faults do to one answer.
#pragma once

#include "codes/EventCode.h"
#include "codes/ResponseCode.h"
#include "simulator/Fault.h"
#include "simulator/InTransfer.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <vector>

namespace nivor {

/// The header fields of a container that faults overwrite.
struct HeaderErrors {
    std::optional<std::uint32_t> length{};
    std::optional<std::uint16_t> type{};
};

/// As it stands, an answer without fault.
struct AnswerShape {
    std::optional<fault::Refuse> refusal{};
    InTransfer::Halt halt = InTransfer::Halt::No;
    bool silent = false;
    bool keepsObject = false;
    std::chrono::milliseconds delay{};
    std::optional<std::uint64_t> dataLimit{};
    bool responseGlued = false;
    unsigned dataPhases = 1;
    unsigned responses = 1;
    std::optional<std::vector<std::uint32_t>> responseParameters{};
    std::optional<EventCode> eventFirst{};
    HeaderErrors dataHeader{};
    HeaderErrors responseHeader{};
    std::optional<std::uint32_t> transactionID{};
    std::size_t splitAt = 0;  ///< bytes of the first container that go ahead alone; 0 = none
    bool zeroPacketMissing = false;
    bool zeroPacketExtra = false;
    fault::UntrueObjectInfo objectInfo{};
    std::optional<std::vector<ByteBuffer>> raw{};
    std::optional<fault::Vanish> vanish{};

    /// The effects together; where two contradict each other, the later one counts.
    static AnswerShape of(const std::vector<const fault::Effect*>& effects);

    /// Whether the command is carried out at all.
    [[nodiscard]] bool carriesOut() const;
};

}  // namespace nivor
