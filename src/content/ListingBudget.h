/// How much memory a camera may make a listing take.
#pragma once

#include <cstddef>

namespace nivor {

class ObjectInfoData;

/// Counts what a listing keeps. Roughly: to the size of each record, its texts and its thumbnail,
/// and a fixed allowance for what the tables around them take.
class ListingBudget {
public:
    struct Limits {
        /// More than any camera's card holds.
        std::size_t objects = 1'000'000;

        /// As many as one answer can name: some objects behind them may not be readable.
        std::size_t handles = std::size_t{1} << 20;

        /// Ordinary records of that many objects take less. Beyond it none is read.
        std::size_t recordBytes = std::size_t{1} << 30;

        /// Beyond this no thumbnail is asked for.
        std::size_t thumbnailBytes = std::size_t{512} << 20;
    };

    ListingBudget();
    explicit ListingBudget(const Limits& limits);

    /// Whether another object may be read.
    [[nodiscard]] bool hasRoomForObject() const
    {
        return objects_ < limits_.objects && recordBytes_ < limits_.recordBytes;
    }

    /// Whether another handle may be kept beside so many.
    [[nodiscard]] bool hasRoomForHandles(std::size_t handles) const
    {
        return handles < limits_.handles;
    }

    /// Whether another thumbnail may be asked for.
    [[nodiscard]] bool hasRoomForThumbnail() const
    {
        return thumbnailBytes_ < limits_.thumbnailBytes;
    }

    /// The listing keeps this object, all of its fields set.
    void add(const ObjectInfoData& object);

private:
    Limits limits_;
    std::size_t objects_ = 0;
    std::size_t recordBytes_ = 0;
    std::size_t thumbnailBytes_ = 0;
};

}  // namespace nivor
