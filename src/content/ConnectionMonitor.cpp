#include "content/ConnectionMonitor.h"

#include "content/CameraPriority.h"
#include "content/ContentModel.h"
#include "content/ContentView.h"
#include "ptp/PTPCommunication.h"

#include <utility>

namespace nivor {

ConnectionMonitor::ConnectionMonitor(Parts parts)
    : parts_(std::move(parts))
{
}

void ConnectionMonitor::updateNIVORConnectionStatus()
{
    constexpr std::int64_t known = 1;
    constexpr std::int64_t different = 2;
    const std::int64_t presence = parts_.engine.existsDevice(parts_.vendorID);
    if (!isConnected_) {
        isConnected_ = presence == known || presence == different;
    } else if (presence != known) {
        parts_.engine.disconnect();
        isConnected_ = false;
    }
}

void ConnectionMonitor::checkNIVORConnectionTimerFire()
{
    const bool wasConnected = isConnected_;
    // A run that has lost its camera must not find another one in its place.
    if (wasConnected || !parts_.priority.isClaimed())
        updateNIVORConnectionStatus();

    if (!wasConnected && isConnected_) {
        parts_.setupDataModels();
    } else if (wasConnected && !isConnected_) {
        parts_.model.clear();
        parts_.view.reloadData();
        parts_.view.setSelectAllButtonEnabled(false);
        parts_.view.setTrashButtonEnabled(false);
    } else if (parts_.model.isUpdateView()) {
        showSnapshot();
    }
}

void ConnectionMonitor::showSnapshot()
{
    if (isConnected_) {
        parts_.view.reloadData();
        parts_.view.expandAllItems();
        parts_.view.setSelectAllButtonEnabled(true);
        parts_.view.setTrashButtonEnabled(false);
    } else {
        // Published by a load that went on after its camera was gone.
        parts_.model.clear();
        parts_.view.reloadData();
    }
    parts_.model.setIsUpdateView(false);
}

}  // namespace nivor
