/// One column of the fault matrix: what the camera does wrong, and what has to come of it.
#pragma once

#include "faults/Operation.h"
#include "faults/Script.h"
#include "faults/Wire.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace nivor::test {

/// How the operation ends.
enum class Ending : std::uint8_t {
    Yes,
    No,
    Raises,  ///< a `RangeError`, and no record
};

/// How long it takes.
enum class Wait : std::uint8_t {
    None,     ///< no read runs out
    Some,     ///< a read runs out, and the operation goes on
    Timeout,  ///< until the operation's time-out
};

/// What has been handed out or stands in the file: so many bytes from the object's beginning, then
/// so many that are not the object's.
struct Content {
    static constexpr std::size_t all = SIZE_MAX;

    std::size_t own = all;
    std::size_t foreign = 0;
    bool mayBeLess = false;  ///< of its own, from the beginning all the same
    bool isKnown = true;     ///< false: anything may stand there, for the operation has failed
};

struct Outcome {
    Ending ending = Ending::Yes;
    std::uint16_t responseCode = 0x2001;
    Wait wait = Wait::None;
    Content content{};

    /// The next command on the same connection gets its own answer. Else what was sent too much
    /// stands before it, for containers are matched to commands by their order alone.
    bool nextIsSound = true;

    /// In place of the operation's usual record.
    std::optional<std::string> record{};
};

struct Fault {
    std::string name;
    std::function<Script(const Answer&)> script;

    /// What has to come of it, by the kind of the operation. A kind that is not named here has no
    /// such fault.
    std::map<Kind, Outcome> outcomes;

    /// Where one operation differs from the others of its kind, by its name.
    std::map<std::string, Outcome> exceptions{};

    /// Where libusb's wire differs from the seam, by kind, and why.
    std::map<Kind, Outcome> overLibusb{};
    const char* whyOverLibusb = "";

    /// Bytes of the data container, by kind; 0: as usual.
    std::map<Kind, std::size_t> containerSize{};

    std::uint16_t packetSize = 512;

    /// How many milliseconds pass in a real one where the camera is slow and all ends well: few,
    /// for a machine under load to keep up.
    unsigned pace = 2;
    bool refusesCommand = false;  ///< it does not reach the camera
    bool leaves = false;          ///< the camera is gone afterwards

    /// The outcome of this operation on this wire, if there is such a cell.
    [[nodiscard]] std::optional<Outcome> outcome(const Operation& operation, WireKind wire) const;

    /// The sound answer that the script twists.
    [[nodiscard]] Answer answer(const Operation& operation) const;
};

/// The whole table.
const std::vector<Fault>& faults();

// Its parts, by what they are about.
std::vector<Fault> headerFaults();
std::vector<Fault> splitFaults();
std::vector<Fault> phaseFaults();
std::vector<Fault> packetFaults();
std::vector<Fault> edgeFaults();
std::vector<Fault> failureFaults();
std::vector<Fault> endlessFaults();
std::vector<Fault> packetSizeFaults();

}  // namespace nivor::test
