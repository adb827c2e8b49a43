/// A promise of the program that holds for every input.
#pragma once

#include <cstdio>
#include <cstdlib>

namespace nivor::fuzz {

/// Ends the process when `holds` is false: libFuzzer keeps the input then, and a test fails.
/// Raises nothing, since the program under test might catch it. Any thread.
inline void require(bool holds, const char* promise)
{
    if (holds)
        return;
    static_cast<void>(std::fprintf(stderr, "Broken promise: %s\n", promise));
    std::abort();
}

}  // namespace nivor::fuzz
