#include "app/AppDelegate.h"

#include "app/AppDelegateRun.h"
#include "app/LocalizedText.h"
#include "app/MainWindowOutlets.h"
#include "content/MainQueue.h"
#include "content/VisibleName.h"
#include "datasets/ObjectInfoData.h"
#include "ptp/PTPCommunication.h"
#include "usb/UsbAccessAdvice.h"
#include "usb/UsbDevice.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

namespace nivor {

AppDelegate::Run::Run(AppDelegate& app, bool isDeletion)
    : app_(app)
    , claim_(app.priority_)
{
    app_.afterRun_ = AfterRun::Stay;
    app_.isDeleting_ = isDeletion;
    app_.parts_.window.updateStatus();
}

AppDelegate::Run::~Run()
{
    app_.isDeleting_ = false;
    // Later, when nothing of the run is on the stack any more.
    if (app_.afterRun_ == AfterRun::Close)
        app_.later({}, [this_ = &app_] { this_->parts_.window.closeWindow(); });
    if (app_.afterRun_ == AfterRun::Quit)
        app_.later({}, [this_ = &app_] { this_->terminate(); });
    // The buttons follow once the camera is free again.
    app_.later({}, [this_ = &app_] { this_->parts_.window.updateStatus(); });
}

AppDelegate::AppDelegate(Parts parts)
    : parts_(std::move(parts))
    , loader_(BackgroundLoader::Parts{.engine = parts_.engine,
                                      .model = model_,
                                      .priority = priority_,
                                      .mainQueue = parts_.mainQueue,
                                      .vendorID = parts_.vendorID})
    , monitor_(ConnectionMonitor::Parts{.engine = parts_.engine,
                                        .model = model_,
                                        .view = parts_.window,
                                        .priority = priority_,
                                        .vendorID = parts_.vendorID,
                                        .setupDataModels = [this] { setupDataModels(); }})
{
}

void AppDelegate::showNotConnectedAlert()
{
    parts_.alerts.runModal({.style = Alert::Style::Warning,
                            .messageText = localizedText(TextKey::connectionRequestMessage),
                            .informativeText = localizedText(TextKey::connectionRequestInformative),
                            .buttons = {localizedText(TextKey::okButtonMessage)}});
}

void AppDelegate::showCopyErrorAlert(const QStringList& failures)
{
    parts_.alerts.runModal({.style = Alert::Style::Warning,
                            .messageText = localizedText(TextKey::errorMessage),
                            .detailedText = failures.join(u'\n'),
                            .buttons = {localizedText(TextKey::okButtonMessage)}});
}

bool AppDelegate::isContainsTargetItemInSelectedItems() const
{
    const std::vector<int> rows = parts_.window.selectedRowIndexes();
    return std::any_of(rows.begin(), rows.end(), [this](int row) {
        const auto item = parts_.window.itemAtRow(row);
        return item && !item->isAssociation();
    });
}

bool AppDelegate::windowShouldClose()
{
    if (!isRunUnderWay())
        return true;
    afterRun_ = AfterRun::Close;
    return false;
}

QString AppDelegate::cameraName() const
{
    const std::shared_ptr<UsbDevice> device = parts_.engine.usbDevice();
    return NIVORConnected() && device ? visibleName(QString::fromStdString(device->productName()))
                                      : QString();
}

QString AppDelegate::accessAdvice() const
{
    const ConnectFailure failure = parts_.engine.lastConnectFailure();
    return QString::fromStdString(UsbAccessAdvice().message(failure.location, failure.result));
}

void AppDelegate::later(std::chrono::milliseconds delay, std::function<void()> work)
{
    parts_.mainQueue.runAfter(delay, [alive = std::weak_ptr(lifeline_), work = std::move(work)] {
        if (!alive.expired())
            work();
    });
}

ObjectList AppDelegate::itemsAtRows(const std::vector<int>& rows) const
{
    ObjectList items;
    for (const int row : rows) {
        if (auto item = parts_.window.itemAtRow(row))
            items.push_back(std::move(item));
    }
    return items;
}

/// The handles of those items that are still on the list. An item of another list, of a camera
/// that has been swapped meanwhile, may well have the handle of something else there.
HandlesDict AppDelegate::handlesOf(const ObjectList& items) const
{
    const auto objects = dataModels();
    const auto handles = handlesDict();
    if (!objects || !handles)
        return {};
    const std::unordered_set<std::shared_ptr<ObjectInfoData>> listed(objects->begin(),
                                                                     objects->end());
    HandlesDict found;
    for (const auto& item : items) {
        const auto handle = handles->constFind(item->myHandle());
        if (handle != handles->cend() && listed.contains(item))
            found.insert(handle.key(), handle.value());
    }
    return found;
}

}  // namespace nivor
