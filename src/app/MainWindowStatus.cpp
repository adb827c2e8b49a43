// What the window tells: its title, its status line, its hint, and which of its controls are of
// use.

#include "app/AppDelegate.h"
#include "app/EmptyHint.h"
#include "app/IconSet.h"
#include "app/LocalizedText.h"
#include "app/MainWindow.h"
#include "app/OutlineView.h"
#include "datasets/ObjectInfoData.h"

#include <QCoreApplication>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QStackedWidget>
#include <QStatusBar>
#include <QToolButton>

#include <utility>

namespace nivor {
namespace {

constexpr int sliderIconSize = 18;
constexpr int messageMilliseconds = 10'000;

}  // namespace

void MainWindow::refreshLater()
{
    if (!refresh_.isActive())
        refresh_.start(0);
}

void MainWindow::refresh()
{
    using Action = AppDelegate::MenuAction;
    const bool isFree = !controller_->isRunUnderWay();
    const bool canCopy = isFree && controller_->validateMenuItem(Action::StartCopyingSelectedItems);
    const bool canDelete =
        isFree && controller_->validateMenuItem(Action::StartDeletingSelectedItems);
    actions_.copyToFolder->setEnabled(canCopy);
    copyButton_->setEnabled(canCopy);
    actions_.deleteFiles->setEnabled(canDelete);
    // A message box would keep a deletion waiting, which turns the event loop itself.
    actions_.about->setEnabled(isFree);
    refreshTrash(canDelete, isFree);
    wasFree_ = isFree;
    updateStatus();
}

/// The controller sets the button at a click, at select-all and when a list has been handed over;
/// the keyboard and the end of a run are left to do here.
void MainWindow::refreshTrash(bool canDelete, bool isFree)
{
    const bool isOver = isFree && !wasFree_;
    if (std::exchange(isSelectionChanged_, false) || isOver)
        trashButton_->setEnabled(canDelete);
    else if (!isFree || numberOfSelectedRows() == 0)
        trashButton_->setEnabled(false);
}

void MainWindow::updateStatus()
{
    const QString camera = controller_->cameraName();
    const QString program = QCoreApplication::applicationName();
    setWindowTitle(camera.isEmpty() ? program : camera + QStringLiteral(" — ") + program);
    const bool isReading = controller_->loader().isLoading();
    if (isReading && !readingTimer_.isActive())
        readingTimer_.start();
    else if (!isReading)
        readingTimer_.stop();
    updateHint();
    status_->setText(currentStatus());
    if (controller_->isRunUnderWay() == wasFree_)
        refreshLater();
}

QString MainWindow::currentStatus() const
{
    const BackgroundLoader& loader = controller_->loader();
    if (controller_->isDeleting())
        return localizedText(TextKey::statusDeleting);
    if (!controller_->NIVORConnected())
        return localizedText(TextKey::statusNoCamera);
    if (loader.isLoading()) {
        if (loader.objectsTotal() == 0)
            return localizedText(TextKey::statusReading);
        return localizedText(TextKey::statusReadingCount, QString::number(loader.objectsDone()),
                             QString::number(loader.objectsTotal()));
    }
    std::uint64_t bytes = 0;
    const std::vector<int> selected = selectedRowIndexes();
    for (const int row : selected)
        bytes += itemAtRow(row)->objectCompressedSize();
    const QString separator = localizedText(TextKey::statusSeparator);
    QString text = localizedCount(TextKey::statusItems, objects_.size());
    if (loader.isIncomplete())
        text += separator + localizedText(TextKey::statusIncomplete);
    if (selected.empty())
        return text;
    text += separator + localizedCount(TextKey::statusSelected, static_cast<int>(selected.size()));
    return text + separator
        + QLocale().formattedDataSize(static_cast<qint64>(bytes), 1, QLocale::DataSizeSIFormat);
}

void MainWindow::updateHint()
{
    if (objects_.size() > 0) {
        pages_->setCurrentWidget(outlineView_);
        return;
    }
    if (!controller_->NIVORConnected()) {
        hint_->setTexts(localizedText(TextKey::connectionRequestMessage),
                        localizedText(TextKey::connectionRequestInformative));
    } else if (controller_->loader().hasFailed()) {
        const QString title = localizedText(TextKey::hintUnreadableMessage);
        // The advice is looked for in the whole process list: once is enough.
        if (hint_->title() != title) {
            const QString advice = controller_->accessAdvice();
            hint_->setTexts(title,
                            advice.isEmpty() ? localizedText(TextKey::hintUnreadableInformative)
                                             : advice);
        }
    } else if (controller_->dataModels() && !controller_->isUpdateView()) {
        hint_->setTexts(localizedText(TextKey::hintEmptyMessage),
                        localizedText(TextKey::hintEmptyInformative));
    } else {
        hint_->setTexts(localizedText(TextKey::hintReadingMessage), {});
    }
    pages_->setCurrentWidget(hint_);
}

bool MainWindow::isHintShown() const
{
    return pages_->currentWidget() == hint_;
}

QString MainWindow::statusText() const
{
    return status_->text();
}

void MainWindow::showMessage(const QString& text)
{
    statusBar()->showMessage(text, messageMilliseconds);
}

void MainWindow::setIcons()
{
    actions_.setPalette(palette());
    selectAllButton_->setIcon(actions_.selectAll->icon());
    copyButton_->setIcon(actions_.copyToFolder->icon());
    trashButton_->setIcon(actions_.deleteFiles->icon());
    const QSize size(sliderIconSize, sliderIconSize);
    smallPicture_->setPixmap(actions_.smallerThumbnails->icon().pixmap(size));
    largePicture_->setPixmap(actions_.largerThumbnails->icon().pixmap(size));
}

void MainWindow::addSimulationMenu(const std::function<void()>& unplug,
                                   const std::function<void()>& plugIn)
{
    auto* menu = new QMenu(localizedText(TextKey::menuSimulation), this);
    connect(menu->addAction(localizedText(TextKey::actionUnplug)), &QAction::triggered, this,
            unplug);
    connect(menu->addAction(localizedText(TextKey::actionPlugIn)), &QAction::triggered, this,
            plugIn);
    menuBar()->insertMenu(menuBar()->actions().last(), menu);
}

void MainWindow::showAbout()
{
    QMessageBox box(this);
    box.setWindowTitle(localizedText(TextKey::aboutTitle));
    box.setIconPixmap(plainIcon(QStringLiteral("nivor-file-transfer")).pixmap(64, 64));
    box.setTextFormat(Qt::PlainText);
    box.setText(QCoreApplication::applicationName() + u' ' + version_);
    box.setInformativeText(localizedText(TextKey::aboutMessage));
    box.addButton(localizedText(TextKey::okButtonMessage), QMessageBox::AcceptRole);
    box.exec();
}

}  // namespace nivor
