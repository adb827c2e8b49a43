/// Runs something slow on a worker while the calling thread stays responsive.
#pragma once

#include <chrono>
#include <functional>

namespace nivor {

/// The longest time between two calls of `turn`.
inline constexpr std::chrono::milliseconds pollingSlice{10};

/// Runs `operation` on a worker thread and returns once it has ended; that wakes the caller at
/// once. Until then `turn` is called on the calling thread after every slice. What `operation`
/// raises is raised here.
void runPolled(std::function<void()> operation, const std::function<void()>& turn);

}  // namespace nivor
