/// The still-image interface that a process of the guest gives to the kernel, by FunctionFS.
#pragma once

#include "simulator/FileDescriptor.h"

#include <string>

namespace nivor::bench {

/// Its files: the default control pipe's share, and the pipes (in and out as the host sees them).
struct StillImageFunction {
    FileDescriptor control;
    FileDescriptor bulkIn;
    FileDescriptor bulkOut;

    /// Describes the function, for every speed up to super speed, to the FunctionFS mounted at
    /// `folder`, and opens the pipes that the kernel makes of it. Ends the program when it can't.
    explicit StillImageFunction(const std::string& folder);
};

[[noreturn]] void giveUp(const std::string& what);

}  // namespace nivor::bench
