/// The orders that a list of objects can be brought into.
#pragma once

#include "content/ContentListing.h"

#include <cstdint>
#include <vector>

namespace nivor {

enum class SortKey : std::uint8_t {
    FileName,  ///< as people sort names: without regard to case, numbers by their value
    ModifiedDate,
    ObjectCompressedSize,
};

struct SortDescriptor {
    SortKey key = SortKey::FileName;
    bool isAscending = true;

    friend bool operator==(const SortDescriptor&, const SortDescriptor&) = default;
};

/// The first decides, each further one among those that are the same by then.
using SortDescriptors = std::vector<SortDescriptor>;

/// Sorts in place, and leaves objects that no descriptor tells apart in their order. An object
/// without a date stands before all that have one.
void sortObjects(ObjectList& objects, const SortDescriptors& descriptors);

}  // namespace nivor
