/// What a simulated camera has seen and done so far.
#pragma once

#include "codes/OperationCode.h"
#include "foundation/Bytes.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>

namespace nivor {

/// A snapshot; it covers the camera's whole life, over all attachments.
struct CameraRecord {
    /// The oldest commands are dropped beyond this, so that a long run has a bound.
    static constexpr std::size_t mostCommandsKept = 100'000;

    std::map<OperationCode, std::uint64_t> requests;  ///< well-formed commands by operation
    std::deque<ByteBuffer> commands;                  ///< all that was written, in order, raw
    std::uint64_t cancelRequests = 0;
    std::uint64_t statusRequests = 0;
    std::uint64_t sessionsOpened = 0;
    std::uint64_t bytesSent = 0;  ///< on the bulk-in pipe, headers included

    [[nodiscard]] std::uint64_t requestsOf(OperationCode operation) const
    {
        const auto found = requests.find(operation);
        return found == requests.end() ? 0 : found->second;
    }
};

}  // namespace nivor
