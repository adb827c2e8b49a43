// Deleting files on the camera, as the controller does it.

#include "app/AppDelegate.h"
#include "app/AppDelegateRun.h"
#include "app/LocalizedText.h"
#include "app/MainWindowOutlets.h"
#include "app/RunFailures.h"
#include "content/DeleteRun.h"
#include "content/DeleteRunObserver.h"
#include "datasets/ObjectInfoData.h"

#include <QCoreApplication>

#include <algorithm>
#include <unordered_set>

namespace nivor {

/// Keeps the model true while files are deleted, and the window alive.
class AppDelegate::DeletionWatch : public DeleteRunObserver {
public:
    explicit DeletionWatch(AppDelegate& app)
        : app_(app)
    {
    }

    void fileWillBeDeleted(const ObjectInfoData& /*object*/, std::size_t /*number*/,
                           std::size_t /*total*/) override
    {
        app_.receivedComplete_ = false;
    }

    void deletionIsUnderWay() override { QCoreApplication::processEvents(); }

    void fileDidFinish(const DeletedFile& file) override
    {
        app_.isError_ = !file.isDeleted;
        app_.receivedComplete_ = true;
        if (file.isDeleted)
            app_.model_.remove(file.object->myHandle());
    }

private:
    AppDelegate& app_;
};

void AppDelegate::startDeletingSelectedItems()
{
    if (isRunUnderWay())
        return;
    const ObjectList asked = selectDeletingItems();
    if (!showCofirmDeleteAlert())
        return;
    // The list may have changed under the question, even to that of another camera. Only what was
    // selected when the question was asked has been answered for.
    const std::unordered_set<std::shared_ptr<ObjectInfoData>> meant(asked.begin(), asked.end());
    ObjectList items = selectDeletingItems();
    std::erase_if(items, [&meant](const auto& item) { return !meant.contains(item); });
    startDeletingItems(items);
}

bool AppDelegate::showCofirmDeleteAlert()
{
    constexpr int firstButton = 0;
    const Alert alert{.style = Alert::Style::Informational,
                      .messageText = localizedText(TextKey::deleteConfirmationMessage),
                      .informativeText = localizedText(TextKey::deleteAlertMessage),
                      .buttons = {localizedText(TextKey::deleteButtonMessage),
                                  localizedText(TextKey::cancelButtonMessage)}};
    return parts_.alerts.runModal(alert) == firstButton;
}

ObjectList AppDelegate::selectDeletingItems() const
{
    ObjectList items = itemsAtRows(parts_.window.selectedRowIndexes());
    std::erase_if(items, [](const auto& item) { return item->isAssociation(); });
    return items;
}

void AppDelegate::startDeletingItems(const ObjectList& items)
{
    if (isRunUnderWay())
        return;
    const Run thisRun(*this, true);
    isError_ = false;
    DeletionWatch watch(*this);
    DeleteRun run(parts_.engine, parts_.logger, handlesOf(items), watch);
    const DeleteResult result = run.startDeletingItems(items);
    parts_.window.showMessage(localizedText(TextKey::statusDeleted,
                                            QString::number(result.deletedCount()),
                                            QString::number(result.files.size())));
    if (result.isError)
        showCopyErrorAlert(failureLines(result));
    parts_.window.reloadData();
}

}  // namespace nivor
