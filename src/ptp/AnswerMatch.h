/// Finds answers that come in the place of later ones.
#pragma once

#include <cstdint>

namespace nivor {

/// Containers are matched to transactions by their order alone; after a time-out the camera's late
/// answer stands for the next command's. Some cameras name no transaction, or any, so the ID in a
/// container counts only once one has named its own. One thread at a time.
class AnswerMatch {
public:
    /// Whether a container that has come in transaction `current` names one shortly before it.
    bool isEarlier(std::uint32_t named, std::uint32_t current)
    {
        isNaming_ = isNaming_ || named == current;
        return isNaming_ && named != 0 && named < current && current - named <= mostBehind;
    }

    /// There is a new connection.
    void restart() { isNaming_ = false; }

private:
    static constexpr std::uint32_t mostBehind = 64;

    bool isNaming_ = false;
};

}  // namespace nivor
