/// A command container as a responder reads it (USB Still Image class, 7.1.1).
#pragma once

#include "codes/OperationCode.h"
#include "foundation/Bytes.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace nivor {

struct PtpCommand {
    static constexpr std::size_t mostParameters = 5;

    OperationCode operation{};
    std::uint32_t transactionID = 0;
    std::array<std::uint32_t, mostParameters> parameters{};  ///< 0 where none was sent
    std::size_t parameterCount = 0;

    /// Nothing when the bytes are no command container: too short, of another type, with a length
    /// field that is not their number, or with something other than 0 to 5 whole parameters.
    static std::optional<PtpCommand> parse(ByteView bytes);
};

}  // namespace nivor
