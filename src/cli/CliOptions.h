/// What a command line asks for.
#pragma once

#include "ptp/PTPCommunication.h"

#include <QStringList>

#include <cstdint>
#include <string>

namespace nivor {

/// Which simulated camera to use in place of the USB, if any.
struct SimulationChoice {
    bool isWanted = false;
    std::string folder{};     ///< served as the card; empty: the built-in card
    bool isWritable = false;  ///< deletions reach the folder's files
    double pace = 0;          ///< of the data, in MB/s; 0: as fast as it goes
};

struct CliOptions {
    enum class Command : std::uint8_t { Devices, List, Copy, Delete, Doctor };

    Command command = Command::List;
    std::int32_t vendorID = anyVendorID;
    SimulationChoice simulation{};
    std::string logDirectory{};  ///< empty: where the log belongs
    bool isJson = false;
    bool isYes = false;  ///< delete without asking

    bool isVerify = false;      ///< compare the copies with the camera
    std::string destination{};  ///< the folder to copy to
    QStringList words{};        ///< names, paths, handles and patterns
};

}  // namespace nivor
