#include "ptp/PTPTransactionCallback.h"

#include "foundation/Errors.h"
#include "foundation/Selector.h"

namespace nivor {

bool PTPTransactionCallback::callbackProc(std::uint64_t /*receivedSize*/,
                                          std::uint64_t /*completeDataSize*/,
                                          const std::uint8_t* /*data*/, std::uint64_t /*dataSize*/)
{
    constexpr Selector selector{"callbackProc:completeDataSize:data:dataSize:"};
    throw InternalInconsistencyError::mustOverride(selector.text());
}

}  // namespace nivor
