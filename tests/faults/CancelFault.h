/// What a camera may make of a stop.
#pragma once

#include "faults/Answer.h"
#include "faults/Script.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <ostream>
#include <vector>

namespace nivor::test {

inline constexpr std::uint8_t cancelCode = 0x64;
inline constexpr std::uint8_t statusCode = 0x67;

/// How much of the object has been sent when it comes.
inline constexpr std::size_t halfOfObject = 10'000;

/// What the camera makes of a Cancel Request while the first half of an object has been sent.
struct CancelFault {
    const char* name;

    /// The reply to the n-th Get Device Status, from 0; none is a stall.
    std::optional<ByteBuffer> (*status)(unsigned n);

    /// The Cancel Request itself stalls.
    bool refusesCancel = false;

    /// So many requests of each kind are met with silence before anything is answered.
    std::size_t ignoredCancels = 0;
    std::size_t ignoredStatuses = 0;

    /// What is sent when `cancelTransaction` has returned, and the transaction has ended if the
    /// camera has confirmed that.
    Script (*sends)(const Answer&) = [](const Answer&) { return Script(); };

    /// Data comes without end, until the camera is asked to stop or beyond that.
    enum class Flood { None, UntilCancel, ForEver } flood = Flood::None;

    bool isConfirmed = false;
    const char* record = "cancelTransaction (result = success)";

    /// The object has arrived all the same.
    bool arrives = false;

    /// Over the seam in memory nobody reads ahead, so nobody drops what a camera sends behind its
    /// own confirmation; over libusb that is gone with the next command.
    bool leavesSomethingInMemory = false;

    friend void PrintTo(const CancelFault& fault, std::ostream* out) { *out << fault.name; }
};

/// The whole table.
const std::vector<CancelFault>& cancelFaults();

}  // namespace nivor::test
