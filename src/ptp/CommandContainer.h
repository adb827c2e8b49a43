/// Builds the command container of an operation.
#pragma once

#include "codes/OperationCode.h"
#include "foundation/Bytes.h"
#include "ptp/HandleBlock.h"

#include <cstddef>
#include <cstdint>

namespace nivor {

/// A command block (USB Still Image class, 7.1.1): a header whose length field already counts the
/// parameters and whose transaction ID is 0 until the engine stamps it, then the parameters.
class CommandContainer {
public:
    /// Starts with the header; exactly `parameterCount` (0 to 5) parameters must be appended.
    CommandContainer(OperationCode operation, std::size_t parameterCount);

    CommandContainer& append(std::uint32_t parameter);
    CommandContainer& append(const HandleBlock& handle);

    /// The finished container, for the engine to stamp and send.
    [[nodiscard]] ByteBuffer& bytes();

private:
    ByteBuffer bytes_;
};

/// Writes `transactionID` into bytes 8 to 11 of a container.
void stampTransactionID(ByteBuffer& container, std::uint32_t transactionID);

}  // namespace nivor
