/// Reads what is on the camera, showing how far it is and what went wrong.
#pragma once

#include "cli/CliEnvironment.h"
#include "cli/ExitCode.h"
#include "content/ContentListing.h"

namespace nivor {

struct CameraContents {
    ContentListing listing{};

    /// `Done`, `SomeFailed` when the listing is not all there is, or `Stopped`.
    ExitCode exitCode = ExitCode::Done;
};

/// Complains about everything that makes the listing less than complete.
CameraContents readCameraContents(CliEnvironment& environment, PTPCommunication& engine);

}  // namespace nivor
