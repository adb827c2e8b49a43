// The list of the window: what the controller shows in it, and what is dragged out of it.

#include "app/AppDelegate.h"
#include "app/IconSet.h"
#include "app/LocalizedText.h"
#include "app/MainWindow.h"
#include "app/ObjectDelegate.h"
#include "app/OutlineView.h"
#include "app/RowMetrics.h"
#include "app/ThumbnailSlider.h"
#include "datasets/ObjectInfoData.h"

#include <QCursor>
#include <QMenu>
#include <QPointer>
#include <QToolButton>

#include <algorithm>
#include <utility>

namespace nivor {

void MainWindow::reloadData()
{
    const std::shared_ptr<ObjectList> list = controller_->dataModels();
    if (!list)
        thumbnails_.clear();
    outlineView_->reloadKeepingPlace([&] { objects_.reload(list); });
    updateHint();
}

void MainWindow::expandAllItems()
{
    outlineView_->expandAllItems();
}

void MainWindow::setSelectAllButtonEnabled(bool isEnabled)
{
    selectAllButton_->setEnabled(isEnabled);
}

void MainWindow::setTrashButtonEnabled(bool isEnabled)
{
    trashButton_->setEnabled(isEnabled);
}

int MainWindow::numberOfRows() const
{
    return outlineView_->numberOfRows();
}

std::vector<int> MainWindow::selectedRowIndexes() const
{
    return outlineView_->selectedRowIndexes();
}

int MainWindow::numberOfSelectedRows() const
{
    return outlineView_->numberOfSelectedRows();
}

void MainWindow::selectAllRows()
{
    outlineView_->selectAll();
    isSelectionChanged_ = false;
}

void MainWindow::deselectAllRows()
{
    outlineView_->deselectAll();
}

int MainWindow::clickedRow() const
{
    return outlineView_->clickedRow();
}

std::shared_ptr<ObjectInfoData> MainWindow::itemAtRow(int row) const
{
    return outlineView_->itemAtRow(row);
}

double MainWindow::sliderValue() const
{
    return slider_->doubleValue();
}

void MainWindow::setSliderValue(double value)
{
    slider_->setDoubleValue(value);
}

void MainWindow::layOutRows()
{
    delegate_->setSlider(slider_->doubleValue(), ThumbnailSlider::largest);
    outlineView_->layOutRowsKeepingPlace();
}

void MainWindow::fitRowsToFont()
{
    delegate_->setPixelsPerPoint(std::max(1.0, fontMetrics().height() / smallestRowHeight));
    // They are of another size now.
    thumbnails_.clear();
}

void MainWindow::openContextMenu(const QPoint& global)
{
    if (controller_->isRunUnderWay())
        return;
    QMenu menu(this);
    menu.addActions({actions_.copyToFolder, actions_.deleteFiles});
    refresh();
    menu.exec(global);
}

void MainWindow::dragSelection()
{
    ObjectList items;
    for (const int row : selectedRowIndexes())
        items.push_back(itemAtRow(row));
    const QStringList names = AppDelegate::writeItems(items);
    if (names.isEmpty() || controller_->isRunUnderWay() || fileDrag_.isBusy())
        return;
    if (!FileDrag::isPossible()) {
        showMessage(localizedText(TextKey::dragUnavailableMessage,
                                  localizedText(TextKey::actionCopyToFolder)));
        return;
    }
    dragged_ = std::move(items);
    const QPointer<MainWindow> self(this);
    const bool isTaken = fileDrag_.exec(outlineView_, names, dragPicture(dragged_));
    if (!self || isTaken)
        return;
    dragged_.clear();
    // Given up over the window itself, it was only a change of mind.
    if (!frameGeometry().contains(QCursor::pos())) {
        showMessage(
            localizedText(TextKey::dropRefusedMessage, localizedText(TextKey::actionCopyToFolder)));
    }
}

QPixmap MainWindow::dragPicture(const ObjectList& items) const
{
    constexpr QSize size{48, 48};
    for (const auto& item : items) {
        const QIcon kind = kindIcon(*item);
        if (!item->isAssociation())
            return (kind.isNull() ? plainIcon(QStringLiteral("kind-picture")) : kind).pixmap(size);
    }
    return plainIcon(QStringLiteral("kind-file")).pixmap(size);
}

}  // namespace nivor
