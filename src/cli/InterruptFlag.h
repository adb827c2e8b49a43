/// The user's wish to stop, as signals tell it.
#pragma once

namespace nivor {

/// From `install` on, the first SIGINT, SIGTERM or SIGHUP only sets the flag; the second one ends
/// the process at once, with the status of a stopped run. One per process.
class InterruptFlag {
public:
    static void install();

    /// Any thread.
    static bool isSet();
};

}  // namespace nivor
