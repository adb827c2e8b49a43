#include "content/HandleOrder.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <utility>

namespace nivor {
namespace {

std::pair<std::uint32_t, std::uint32_t> rank(const HandleBlock& handle)
{
    constexpr auto largestSigned =
        static_cast<std::uint32_t>(std::numeric_limits<std::int32_t>::max());
    return {std::min(handle.number(), largestSigned), handle.number()};
}

}  // namespace

std::vector<HandleBlock> inListingOrder(const HandlesDict& handles)
{
    std::vector<HandleBlock> ordered(handles.cbegin(), handles.cend());
    std::sort(ordered.begin(), ordered.end(),
              [](const HandleBlock& a, const HandleBlock& b) { return rank(a) < rank(b); });
    return ordered;
}

}  // namespace nivor
