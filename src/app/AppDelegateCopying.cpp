// Copying files from the camera, as the controller does it.

#include "app/AppDelegate.h"
#include "app/AppDelegateRun.h"
#include "app/CopyProgressPanel.h"
#include "app/FolderChooser.h"
#include "app/LocalizedText.h"
#include "app/MainWindowOutlets.h"
#include "app/ModalSession.h"
#include "app/NVXProgressPanelController.h"
#include "app/RunFailures.h"
#include "content/CopyFileName.h"
#include "content/CopyRun.h"
#include "content/CopyRunObserver.h"

#include <QFile>

#include <algorithm>
#include <utility>

namespace nivor {

/// Shows a copy run in its panel, and takes the user's stop from there.
class AppDelegate::CopyPanel : public CopyRunObserver {
public:
    explicit CopyPanel(AppDelegate& app)
        : app_(app)
        , controller_(
              std::make_shared<NVXProgressPanelController>([this] { stopModal(); }, app.parts_.now))
    {
    }

    [[nodiscard]] const std::shared_ptr<NVXProgressPanelController>& controller() const
    {
        return controller_;
    }

    void copyWillBegin(const CopyProgress& /*progress*/) override
    {
        controller_->updateUIComponents();
        session_.emplace(controller_->window(), app_.parts_.window.widget());
    }

    void fileWillBegin(const CopyProgress& /*progress*/) override
    {
        app_.receivedComplete_ = false;
        controller_->updateUIComponents();
    }

    void copyIsUnderWay(const CopyProgress& /*progress*/) override
    {
        session_->run();
        controller_->updateUIComponents();
    }

    bool isStopRequested() override
    {
        // A window that is to close can't wait for a whole card to be copied.
        if (app_.afterRun_ != AfterRun::Stay && !session_->isStopped())
            controller_->stopCopying();
        if (session_->isStopped() && !std::exchange(isStopShown_, true)) {
            // A camera that doesn't answer keeps the request waiting, and nothing is painted then.
            controller_->updateUIComponents();
            controller_->window().repaint();
        }
        return session_->isStopped();
    }

    void fileWasReceived() override { app_.receivedComplete_ = true; }

    void fileDidFinish(const CopiedFile& file, std::uint64_t /*number*/,
                       const CopyProgress& /*progress*/) override
    {
        app_.isError_ = !file.isCopied;
    }

    void copyDidEnd() override { session_.reset(); }

private:
    void stopModal()
    {
        if (session_)
            session_->stopModal();
    }

    AppDelegate& app_;
    const std::shared_ptr<NVXProgressPanelController> controller_;
    std::optional<ModalSession> session_;
    bool isStopShown_ = false;
};

void AppDelegate::startCopyingSelectedItems()
{
    if (isRunUnderWay())
        return;
    const ObjectList items = itemsAtRows(indexesToProcessForContexualMenu());
    if (const std::optional<QUrl> folder = parts_.folderChooser.chooseFolder())
        startCopyingItems(items, *folder);
}

std::vector<int> AppDelegate::indexesToProcessForContexualMenu() const
{
    std::vector<int> selected = parts_.window.selectedRowIndexes();
    const int clicked = parts_.window.clickedRow();
    if (clicked == -1 || std::binary_search(selected.begin(), selected.end(), clicked))
        return selected;
    return {clicked};
}

void AppDelegate::startCopyingItems(const ObjectList& items, const QUrl& destination)
{
    if (isRunUnderWay())
        return;
    const Run thisRun(*this, false);
    isError_ = false;
    CopyResult result;
    {
        CopyPanel panel(*this);
        CopyRun run(parts_.engine, parts_.logger, handlesOf(items), panel, parts_.createFile);
        const QByteArray folder = QFile::encodeName(destination.toLocalFile());
        result = run.startCopyingItems(items, folder.toStdString(), panel.controller());
    }
    // The alert is about the last file only; this is about them all.
    parts_.window.showMessage(
        localizedText(result.isStopped ? TextKey::statusStopped : TextKey::statusCopied,
                      QString::number(result.copiedCount()),
                      QString::number(result.files.size() + result.filesNotBegun)));
    // While the alert is open, the user may want to unmount what it is about.
    result.folder.reset();
    if (!result.isStopped && result.isError)
        showCopyErrorAlert(failureLines(result));
}

QString AppDelegate::makeCopyFileName(const QStringList& usedNames, const QString& orgFileName)
{
    return nivor::makeCopyFileName(usedNames, orgFileName);
}

}  // namespace nivor
