// Any bytes as the answer to GetObjectInfo.

#include "datasets/ObjectInfoData.h"

#include <cstddef>
#include <cstdint>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    // An exact copy on the heap, so that one byte too far is seen.
    const std::vector<std::uint8_t> input(data, data + size);
    nivor::ObjectInfoData record;
    static_cast<void>(nivor::ObjectInfoData::tryParse(input, record));
    return 0;
}
