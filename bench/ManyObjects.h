/// A card with as many objects as a benchmark wants.
#pragma once

#include "foundation/Bytes.h"
#include "simulator/MemoryCard.h"

#include <cstdint>

namespace nivor::bench {

struct ManyObjects {
    int total = 0;  ///< folders and files: a folder for 99 files each
    std::uint64_t fileSize = 60'000;
    int foldersWithThumbnails = 0;  ///< those before the others
};

/// Names, sizes and dates in no order, as a sort has most to do with them.
void fill(MemoryCard& card, const ManyObjects& objects);

/// A JPEG of 160 by 120 pixels, the usual thumbnail.
ByteBuffer thumbnailFile();

}  // namespace nivor::bench
