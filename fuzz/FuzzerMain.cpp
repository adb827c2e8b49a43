// One fuzzer: hands each of libFuzzer's inputs to the target that the build names.

#include "Targets.h"
#include "support/HeapBytes.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const nivor::test::HeapBytes input(nivor::ByteView(data, size));
    nivor::fuzz::NIVOR_FUZZ_TARGET(input.view());
    return 0;
}
