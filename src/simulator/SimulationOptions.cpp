#include "simulator/SimulationOptions.h"

#include "simulator/BuiltInCard.h"
#include "simulator/FolderCard.h"

#include <utility>

namespace nivor {

std::shared_ptr<SimulatedHost> makeSimulatedHost(const SimulationOptions& options)
{
    std::shared_ptr<Card> card;
    if (options.folder)
        card = std::make_shared<FolderCard>(
            *options.folder, options.writable ? FolderAccess::Writable : FolderAccess::ReadOnly);
    else
        card = std::make_shared<BuiltInCard>();

    CameraSettings settings;
    settings.pace = options.pace;
    settings.faults = options.faults;
    auto host = std::make_shared<SimulatedHost>();
    host->attach(std::make_shared<SimulatedCamera>(std::move(card), std::move(settings)));
    return host;
}

}  // namespace nivor
