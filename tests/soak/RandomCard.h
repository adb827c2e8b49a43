/// A card with a random tree of files and folders.
#pragma once

#include "simulator/MemoryCard.h"
#include "soak/Random.h"

#include <memory>

namespace nivor::soak {

/// Files of sizes around the boundaries of packets and pieces, empty ones included, under names
/// that no file system or terminal likes; some with a thumbnail, some protected. Its handles are
/// random, and so are the bytes of its files, which follow from them (`PatternContent`). On a
/// faulty one, names may be no valid UTF-16.
std::shared_ptr<MemoryCard> makeRandomCard(Random& random, bool isFaulty);

}  // namespace nivor::soak
