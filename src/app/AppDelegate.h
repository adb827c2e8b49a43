/// The application's controller: owns the content model and runs what the user asks for.
#pragma once

#include "app/Alert.h"
#include "content/BackgroundLoader.h"
#include "content/CameraPriority.h"
#include "content/ConnectionMonitor.h"
#include "content/ContentModel.h"
#include "content/CopyTargets.h"

#include <QStringList>
#include <QUrl>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class QSettings;

namespace nivor {

class FolderChooser;
class MainQueue;
class MainWindowOutlets;
class PTPCommunication;
class RollingLogger;

/// Lives on the main thread, as all its operations do; the properties that say so may be read on
/// any thread.
///
/// A copy or a deletion (a run) turns the event loop while it waits. Meanwhile a second run does
/// not begin, the monitor may lose the camera but takes up no other, and a window that is asked to
/// close stops the copy and closes when the run is over.
class AppDelegate {
public:
    struct Parts {
        PTPCommunication& engine;
        RollingLogger& logger;
        MainQueue& mainQueue;
        MainWindowOutlets& window;
        Alerts& alerts;
        FolderChooser& folderChooser;
        QSettings& settings;  ///< the user's own
        std::int32_t vendorID;
        std::string version;  ///< of the program
        std::filesystem::path logDirectory;
        CopyTargets::CreateFile createFile{};  ///< another way to make files
        std::function<std::chrono::steady_clock::time_point()> now =
            &std::chrono::steady_clock::now;
    };

    /// The user's value of `thumbnailExpandSlider`, a double.
    static constexpr const char* thumbnailExpandSliderKey = "ThumbnailExpandSliderKey";

    /// Between two ticks of the monitor.
    static constexpr std::chrono::milliseconds tickInterval{1000};

    /// Between a drop and the copy that follows it.
    static constexpr std::chrono::milliseconds dropDelay{100};

    /// All parts must outlive the controller.
    explicit AppDelegate(Parts parts);

    AppDelegate(const AppDelegate&) = delete;
    AppDelegate& operator=(const AppDelegate&) = delete;

    // --- Start and end --------------------------------------------------------------------------

    /// Prepares the list; once the window has been made.
    void awakeFromNib();

    /// Begins the log, restores the slider, looks for a camera and starts the monitor. Shows an
    /// alert when there is none, so the event loop must be running.
    void applicationDidFinishLaunching();

    /// The window is being closed: ends the listing, waiting for it, and keeps the slider's value.
    /// Answers whether the program ends then, which it does.
    bool applicationShouldTerminateAfterLastWindowClosed();

    /// Disconnects the camera and ends the log.
    void applicationWillTerminate();

    /// The user wants to leave: as closing the window, but what was last saved of the slider stays.
    void terminate();

    // --- The list -------------------------------------------------------------------------------

    /// The user has chosen another order.
    void sortDescriptorsDidChange(SortDescriptors descriptors);

    /// Selects all rows, or none when all are selected.
    void selectAllButtonWasClicked();

    void trashButtonWasClicked();
    void outlineViewWasClicked();
    void thumbnailZoomSliderIsSlid();

    /// What a menu item does, as far as it matters for being enabled.
    enum class MenuAction : std::uint8_t {
        StartCopyingSelectedItems,
        StartDeletingSelectedItems,
        Other
    };
    [[nodiscard]] bool validateMenuItem(MenuAction action) const;

    /// The names of dragged objects that a drop can be offered for: those with an extension.
    /// Without any the drag is refused.
    [[nodiscard]] static QStringList writeItems(const ObjectList& items);

    /// Dragged objects were dropped on a folder: copies them a moment later.
    void namesOfPromisedFilesDroppedAtDestination(const QUrl& destination, ObjectList items);

    /// They were dropped on something that names no folder: asks for one.
    void promisedFilesDroppedNowhere(const ObjectList& items);

    // --- The camera -----------------------------------------------------------------------------

    /// Schedules a listing of the camera and returns at once.
    void setupDataModels() { loader_.setupDataModels(); }

    /// Looks whether a camera is there.
    void updateNIVORConnectionStatus() { monitor_.updateNIVORConnectionStatus(); }

    /// One tick of the monitor, due every second.
    void checkNIVORConnectionTimerFire() { monitor_.checkNIVORConnectionTimerFire(); }

    /// Asks the user to connect a camera.
    void showNotConnectedAlert();

    // --- Copying --------------------------------------------------------------------------------

    /// Asks for a folder and copies what `indexesToProcessForContexualMenu` names into it.
    void startCopyingSelectedItems();

    /// The rows that a menu command acts on: the clicked one alone when it is not selected,
    /// otherwise the selection.
    [[nodiscard]] std::vector<int> indexesToProcessForContexualMenu() const;

    /// Copies the files among `items` into a folder, under a progress panel, and returns when that
    /// is over. Items that are no longer on the list fail.
    void startCopyingItems(const ObjectList& items, const QUrl& destination);

    /// The name for a file when those in the list are given out.
    [[nodiscard]] static QString makeCopyFileName(const QStringList& usedNames,
                                                  const QString& orgFileName);

    /// Says that a run has failed. `failures`: a line per file, for those who want to know.
    void showCopyErrorAlert(const QStringList& failures = {});

    // --- Deleting -------------------------------------------------------------------------------

    /// Asks, and deletes the selected files from the camera.
    void startDeletingSelectedItems();

    /// Whether the user really wants that.
    bool showCofirmDeleteAlert();

    /// The files among the selected rows, in the order of the rows.
    [[nodiscard]] ObjectList selectDeletingItems() const;

    /// Deletes the files among `items` from the camera and from the model.
    void startDeletingItems(const ObjectList& items);

    /// Whether a file is selected: folders alone are nothing to copy or to delete.
    [[nodiscard]] bool isContainsTargetItemInSelectedItems() const;

    // --- Closing --------------------------------------------------------------------------------

    /// Whether the window may close now. If not, what keeps it is told to stop, and the window is
    /// closed when that is over.
    [[nodiscard]] bool windowShouldClose();

    // --- Properties -----------------------------------------------------------------------------

    [[nodiscard]] std::shared_ptr<ObjectList> dataModels() const { return model_.dataModels(); }
    [[nodiscard]] std::shared_ptr<const HandlesDict> handlesDict() const
    {
        return model_.handlesDict();
    }

    /// Any thread.
    [[nodiscard]] bool isUpdateView() const { return model_.isUpdateView(); }
    void setIsUpdateView(bool isUpdateView) { model_.setIsUpdateView(isUpdateView); }

    /// Any thread.
    [[nodiscard]] bool isClosed() const { return loader_.isClosed(); }
    void setIsClosed(bool isClosed) { loader_.setIsClosed(isClosed); }

    [[nodiscard]] bool NIVORConnected() const { return monitor_.NIVORConnected(); }
    void setNIVORConnected(bool isConnected) { monitor_.setNIVORConnected(isConnected); }

    /// Whether the last file that was copied or deleted failed. Any thread.
    [[nodiscard]] bool isError() const { return isError_; }

    /// No file is on its way from the camera. Any thread.
    [[nodiscard]] bool receivedComplete() const { return receivedComplete_; }

    /// A copy or a deletion is under way.
    [[nodiscard]] bool isRunUnderWay() const { return priority_.isClaimed(); }

    /// A deletion is.
    [[nodiscard]] bool isDeleting() const { return isDeleting_; }

    [[nodiscard]] OperationQueue& operationQueue() { return loader_.operationQueue(); }

    /// The order of `dataModels`, from the next snapshot on.
    [[nodiscard]] SortDescriptors sortDescriptors() const { return loader_.sortDescriptors(); }
    void setSortDescriptors(SortDescriptors descriptors)
    {
        loader_.setSortDescriptors(std::move(descriptors));
    }

    [[nodiscard]] const BackgroundLoader& loader() const { return loader_; }

    /// Why the camera could not be opened and what can be done, if that is known; empty otherwise.
    [[nodiscard]] QString accessAdvice() const;

    /// What the camera calls itself; empty when there is none or it doesn't say.
    [[nodiscard]] QString cameraName() const;

private:
    class CopyPanel;
    class DeletionWatch;
    class Run;

    void startTimer();
    void later(std::chrono::milliseconds delay, std::function<void()> work);
    [[nodiscard]] ObjectList itemsAtRows(const std::vector<int>& rows) const;
    [[nodiscard]] HandlesDict handlesOf(const ObjectList& items) const;

    Parts parts_;
    ContentModel model_;
    CameraPriority priority_;
    BackgroundLoader loader_;
    ConnectionMonitor monitor_;

    std::atomic<bool> isError_{false};
    std::atomic<bool> receivedComplete_{true};
    bool isDeleting_ = false;

    /// What the user wants of the program as soon as a run is over.
    enum class AfterRun : std::uint8_t { Stay, Close, Quit };
    AfterRun afterRun_ = AfterRun::Stay;

    // Gone when the controller is: what waits in the main queue looks at it first.
    std::shared_ptr<const bool> lifeline_ = std::make_shared<const bool>(true);
};

}  // namespace nivor
