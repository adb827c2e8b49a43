/// What a camera holds, as one listing found it.
#pragma once

#include "ptp/HandleBlock.h"

#include <memory>
#include <vector>

namespace nivor {

class ObjectInfoData;

using ObjectList = std::vector<std::shared_ptr<ObjectInfoData>>;

/// A copy shares the objects themselves.
struct ContentListing {
    ObjectList objects;   ///< files and folders, flat, in the order in which they were read
    HandlesDict handles;  ///< of every object that the camera named, read or not

    /// Forgets the object with that handle (decimal text), once it is gone from the camera.
    void remove(const QString& myHandle);
};

}  // namespace nivor
