/// The camera that a command works on, from its opening to its end.
#pragma once

#include "cli/CliEnvironment.h"
#include "cli/ExitCode.h"

#include <string>

namespace nivor {

/// Disconnects when destroyed.
class CameraSession {
public:
    CameraSession(CliEnvironment& environment, const CliOptions& options);
    ~CameraSession();

    CameraSession(const CameraSession&) = delete;
    CameraSession& operator=(const CameraSession&) = delete;

    /// Connects to the first camera that the options accept; on a failure says why and what to do.
    ExitCode open();

    /// Valid after a successful `open`.
    [[nodiscard]] PTPCommunication& engine() const { return *engine_; }

private:
    [[nodiscard]] std::string notFoundText(UsbHost& host) const;
    [[nodiscard]] std::string notOpenedText() const;

    CliEnvironment& environment_;
    const CliOptions& options_;
    PTPCommunication* engine_ = nullptr;
};

}  // namespace nivor
