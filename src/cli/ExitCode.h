/// What the program's exit status says.
#pragma once

namespace nivor {

enum class ExitCode : int {
    Done = 0,
    SomeFailed = 1,  ///< some object failed, or the output could not be written
    Usage = 2,       ///< the command line makes no sense
    NoCamera = 3,
    CannotOpen = 4,  ///< there is a camera, and it could not be opened
    Stopped = 5,     ///< by the user
};

}  // namespace nivor
