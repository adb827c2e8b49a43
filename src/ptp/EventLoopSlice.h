/// Waiting that leaves the user interface alive.
#pragma once

#include <chrono>

namespace nivor {

/// Returns after `duration`. On the application's main thread its event loop turns meanwhile;
/// on any other thread, or without an application, this only sleeps.
void turnEventLoop(std::chrono::milliseconds duration);

}  // namespace nivor
