/// The desktop's own camera program, which has to let go of a camera before we can open it.
#pragma once

#include <string>

namespace nivor {

class CameraAgent {
public:
    virtual ~CameraAgent() = default;

    CameraAgent(const CameraAgent&) = delete;
    CameraAgent& operator=(const CameraAgent&) = delete;

    /// Asks the agent to let go, waits for that at most a few seconds, and returns what the
    /// asking wrote to its standard error. Nothing to ask is no error. Any thread.
    virtual std::string release() = 0;

protected:
    CameraAgent() = default;
};

}  // namespace nivor
