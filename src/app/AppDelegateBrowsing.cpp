// What the user does with the list, as the controller takes it.

#include "app/AppDelegate.h"
#include "app/FolderChooser.h"
#include "app/MainWindowOutlets.h"
#include "content/CopyFileName.h"
#include "datasets/ObjectInfoData.h"
#include "datasets/TrimmingNullCharacters.h"

#include <utility>

namespace nivor {

void AppDelegate::sortDescriptorsDidChange(SortDescriptors descriptors)
{
    loader_.setSortDescriptors(std::move(descriptors));
    if (const auto objects = dataModels())
        sortObjects(*objects, sortDescriptors());
    parts_.window.reloadData();
}

void AppDelegate::selectAllButtonWasClicked()
{
    const bool selects = parts_.window.numberOfSelectedRows() != parts_.window.numberOfRows();
    if (selects)
        parts_.window.selectAllRows();
    else
        parts_.window.deselectAllRows();
    parts_.window.setTrashButtonEnabled(selects);
}

void AppDelegate::trashButtonWasClicked()
{
    startDeletingSelectedItems();
}

void AppDelegate::outlineViewWasClicked()
{
    parts_.window.setTrashButtonEnabled(isContainsTargetItemInSelectedItems());
}

void AppDelegate::thumbnailZoomSliderIsSlid()
{
    parts_.window.layOutRows();
}

bool AppDelegate::validateMenuItem(MenuAction action) const
{
    return action == MenuAction::Other || isContainsTargetItemInSelectedItems();
}

QStringList AppDelegate::writeItems(const ObjectList& items)
{
    QStringList names;
    for (const auto& item : items) {
        const QString name = NVX_stringByTrimmingNullCharacters(item->fileName());
        if (!pathExtension(name).isEmpty())
            names.push_back(name);
    }
    return names;
}

void AppDelegate::namesOfPromisedFilesDroppedAtDestination(const QUrl& destination,
                                                           ObjectList items)
{
    later(dropDelay, [this, destination, items = std::move(items)] {
        // The target has been promised the files, so they wait for the end of another run.
        if (isRunUnderWay())
            namesOfPromisedFilesDroppedAtDestination(destination, items);
        else
            startCopyingItems(items, destination);
    });
}

void AppDelegate::promisedFilesDroppedNowhere(const ObjectList& items)
{
    if (isRunUnderWay())
        return;
    if (const std::optional<QUrl> folder = parts_.folderChooser.chooseFolder())
        startCopyingItems(items, *folder);
}

}  // namespace nivor
