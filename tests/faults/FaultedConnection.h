/// An engine connected over a wire to a camera that is about to do something wrong.
#pragma once

#include "faults/Answer.h"
#include "faults/LibusbWire.h"
#include "faults/MemoryWire.h"
#include "faults/ScriptPlayer.h"
#include "ptp/PTPCommunication.h"
#include "support/LogRecords.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <vector>

namespace nivor::test {

struct FaultedConnection {
    FaultedConnection(WireKind kind, unsigned pace, std::uint16_t packetSize = 512)
        : wire(kind == WireKind::Memory ? makeMemoryWire(packetSize) : makeLibusbWire(packetSize))
        , player(*wire, pace)
        , engine(EngineParts{.host = wire->host(),
                             .logger = &log.logger(),
                             .runLoopSlice = [](std::chrono::milliseconds) {},
                             .agentPause = {},
                             .pace = pace})
    {
    }

    /// Connects with one command: where time-outs are shortened, a machine under load may let one
    /// pass, and the second OpenSession leaves the first one's response in the pipe.
    bool connects()
    {
        for (int attempt = 0; attempt < 5; ++attempt) {
            if (engine.connect(anyVendorID) && engine.transactionID() == testedTransaction)
                return true;
            wire->replug();
            engine.disconnect();
        }
        return false;
    }

    /// Asks a camera that answers well; true when that is what arrives.
    bool nextIsSound()
    {
        std::vector<std::uint32_t> storageIDs;
        return engine.getStorageIDs(&storageIDs) && storageIDs == soundStorageIDs();
    }

    /// Plugs the camera out and in and connects anew. More than once, for a machine under load may
    /// let a shortened time-out pass.
    bool recovers()
    {
        player.stop();
        for (int attempt = 0; attempt < 3; ++attempt) {
            wire->replug();
            engine.disconnect();
            engine.stopCopyFlgInit();
            if (connects() && engine.connected() && nextIsSound())
                return true;
        }
        return false;
    }

    LogFixture log;
    std::unique_ptr<Wire> wire;
    ScriptPlayer player;
    PTPCommunication engine;
};

/// Whether a connection has been made and ended over that wire: what a process opens once and keeps
/// is open by then.
inline bool isWarm(WireKind wire)
{
    static std::map<WireKind, bool> warm;
    if (!warm.contains(wire)) {
        FaultedConnection connection(wire, 1);
        warm[wire] = connection.engine.connect(anyVendorID);
    }
    return warm[wire];
}

}  // namespace nivor::test
