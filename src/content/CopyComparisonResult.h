/// What a comparison of copies with the camera found.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace nivor {

struct CopyComparisonResult {
    enum class Outcome : std::uint8_t { NotCompared, Same, Different };

    /// One for each file of the copy run, in its order.
    std::vector<Outcome> outcomes{};

    [[nodiscard]] std::size_t count(Outcome outcome) const
    {
        return static_cast<std::size_t>(std::count(outcomes.begin(), outcomes.end(), outcome));
    }
};

}  // namespace nivor
