/// What a transaction engine is built from.
#pragma once

#include "ptp/ReceiveBuffer.h"

#include <chrono>
#include <functional>
#include <memory>

namespace nivor {

class CameraAgent;
class RollingLogger;
class UsbHost;

/// Only `host` is required. Tests put their own parts in every place.
struct EngineParts {
    std::shared_ptr<UsbHost> host;

    /// The desktop's camera program; absent: there is none to ask.
    std::shared_ptr<CameraAgent> cameraAgent{};

    /// Where records go; absent: the shared logger. Must outlive the engine.
    RollingLogger* logger = nullptr;

    /// Lets the calling thread's event loop turn for that long; absent: `turnEventLoop`.
    std::function<void(std::chrono::milliseconds)> runLoopSlice{};

    /// Where the receive buffer of each transaction comes from.
    std::function<ReceiveBuffer()> allocateReceiveBuffer = &ReceiveBuffer::allocate;

    /// The pause between asking the camera agent to let go and opening the interface.
    std::chrono::milliseconds agentPause{100};

    /// How many of the engine's milliseconds pass in one of the clock's, at least 1. Tests of
    /// long silences shorten the waiting so; what is counted against a time-out stays the same.
    unsigned pace = 1;
};

}  // namespace nivor
