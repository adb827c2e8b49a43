/// A controller on simulated cameras, with a window, alerts and a folder chooser of the test's own.
#pragma once

#include "app/AppDelegate.h"
#include "app/CopyProgressPanel.h"
#include "app/FolderChooser.h"
#include "app/MainWindowOutlets.h"
#include "content/GatedCard.h"
#include "content/SimulatedCameraFixture.h"
#include "ptp/FileHandle.h"
#include "support/ManualMainQueue.h"

#include <QApplication>
#include <QPushButton>
#include <QSettings>
#include <QTimer>

#include <algorithm>
#include <functional>
#include <numeric>

namespace nivor::test {

inline constexpr const char* copyRecord = "AppDelegate startCopyingItems:toDestination:";
inline constexpr const char* deleteRecord = "AppDelegate startDeletingItems:";

/// Shows the flat list, one object a row.
class FakeWindow : public MainWindowOutlets {
public:
    void reloadData() override
    {
        calls.emplace_back("reload");
        shown = app->dataModels() ? *app->dataModels() : ObjectList{};
    }
    void expandAllItems() override { calls.emplace_back("expand"); }
    void setSelectAllButtonEnabled(bool on) override
    {
        calls.emplace_back(on ? "select all on" : "select all off");
    }
    void setTrashButtonEnabled(bool on) override
    {
        calls.emplace_back(on ? "trash on" : "trash off");
    }
    std::vector<int> selectedRowIndexes() const override { return selected; }
    int clickedRow() const override { return clicked; }
    std::shared_ptr<ObjectInfoData> itemAtRow(int row) const override
    {
        const auto index = static_cast<std::size_t>(row);
        return index < shown.size() ? shown[index] : nullptr;
    }
    int numberOfRows() const override { return static_cast<int>(shown.size()); }
    int numberOfSelectedRows() const override { return static_cast<int>(selected.size()); }
    void selectAllRows() override
    {
        selected.resize(shown.size());
        std::iota(selected.begin(), selected.end(), 0);
    }
    void deselectAllRows() override { selected.clear(); }
    double sliderValue() const override { return slider; }
    void setSliderValue(double value) override { slider = value; }
    void layOutRows() override { calls.emplace_back("lay out"); }
    void updateStatus() override { ++statusUpdates; }
    void showMessage(const QString& text) override { message = text.toStdString(); }
    void saveLayout() override { calls.emplace_back("save layout"); }
    void closeWindow() override { ++closings; }
    void endProgram() override { ++endings; }
    QWidget* widget() override { return nullptr; }

    std::vector<std::string> take() { return std::exchange(calls, {}); }

    AppDelegate* app = nullptr;
    ObjectList shown;
    std::vector<int> selected;
    int clicked = -1;
    double slider = 0;
    int statusUpdates = 0;
    std::string message;
    int closings = 0;
    int endings = 0;
    std::vector<std::string> calls;
};

/// Answers with the button that the test has chosen, the first one by default.
class FakeAlerts : public Alerts {
public:
    int runModal(const Alert& alert) override
    {
        shown.push_back(alert);
        if (meanwhile)
            meanwhile();
        return answer;
    }

    std::vector<Alert> shown;
    int answer = 0;
    std::function<void()> meanwhile;
};

class FakeFolderChooser : public FolderChooser {
public:
    std::optional<QUrl> chooseFolder() override
    {
        ++questions;
        if (meanwhile)
            meanwhile();
        return answer;
    }

    std::optional<QUrl> answer;
    int questions = 0;
    std::function<void()> meanwhile;
};

inline QUrl urlOf(const std::filesystem::path& path)
{
    return QUrl::fromLocalFile(QString::fromStdString(path.string()));
}

inline QString english(const char* text)
{
    return QString::fromUtf8(text);
}

class AppFixture : public ::testing::Test {
protected:
    AppFixture()
    {
        window.app = &app;
        chooser.answer = urlOf(folder());
    }

    std::shared_ptr<SimulatedCamera> plugIn(CameraSettings itsSettings = {})
    {
        camera = std::make_shared<SimulatedCamera>(card, std::move(itsSettings));
        host->attach(camera);
        return camera;
    }

    /// Plugs the camera in and lets the program list it.
    void list(CameraSettings itsSettings = {})
    {
        plugIn(std::move(itsSettings));
        listWhatIsThere();
    }

    void listWhatIsThere()
    {
        tick();
        mainQueue.advance(std::chrono::seconds(1));
        app.operationQueue().waitUntilAllOperationsAreFinished();
        mainQueue.advance(std::chrono::seconds(2));
        app.checkNIVORConnectionTimerFire();
        window.take();
    }

    void tick()
    {
        mainQueue.advance(std::chrono::seconds(1));
        app.checkNIVORConnectionTimerFire();
    }

    void addFiles(std::initializer_list<const char16_t*> names, std::uint64_t size = 10)
    {
        for (const char16_t* name : names)
            handles.push_back(card->addFile(name, size));
    }

    void selectRows(std::vector<int> rows) { window.selected = std::move(rows); }

    void selectAll()
    {
        window.selected.clear();
        for (std::size_t i = 0; i < window.shown.size(); ++i)
            window.selected.push_back(static_cast<int>(i));
    }

    /// Copies the whole list into the folder.
    void copyAll() { app.startCopyingItems(window.shown, urlOf(folder())); }

    ~AppFixture() override { EXPECT_EQ(undone, 0) << "what was to be done during a run never was"; }

    /// Does `work` from the event loop, which only turns while a run waits.
    void onceTheLoopTurns(std::function<void()> work)
    {
        once([] { return true; }, std::move(work));
    }

    /// Asks again and again while the event loop turns, and does `work` once it is true.
    void once(std::function<bool()> isTrue, std::function<void()> work)
    {
        ++undone;
        askLater(std::move(isTrue), std::move(work));
    }

    void askLater(std::function<bool()> isTrue, std::function<void()> work)
    {
        // Goes with the test: what never came about must not happen in the next one.
        QTimer::singleShot(1, &loopContext,
                           [this, isTrue = std::move(isTrue), work = std::move(work)] {
                               if (isTrue()) {
                                   --undone;
                                   work();
                               } else {
                                   askLater(isTrue, work);
                               }
                           });
    }

    /// The panel that is on the screen; null when there is none.
    static CopyProgressPanel* panel()
    {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* found = dynamic_cast<CopyProgressPanel*>(widget);
                found != nullptr && found->isVisible())
                return found;
        }
        return nullptr;
    }

    /// Whether so many bytes have arrived in a file.
    std::function<bool()> hasArrived(const char* name, std::uint64_t bytes) const
    {
        return [path = folder() / name, bytes] {
            std::error_code ignored;
            const auto size = std::filesystem::file_size(path, ignored);
            return !ignored && size >= bytes;
        };
    }

    const std::filesystem::path& folder() const { return destination.path(); }

    std::vector<std::string> filesInFolder() const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder()))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }

    std::uint64_t requests(OperationCode operation) const
    {
        return camera->record().requestsOf(operation);
    }

    QObject loopContext;
    int undone = 0;
    LogFixture log;
    TemporaryDirectory destination;
    std::shared_ptr<GatedCard> card = std::make_shared<GatedCard>();
    std::shared_ptr<SimulatedHost> host = std::make_shared<SimulatedHost>();
    std::shared_ptr<SimulatedCamera> camera;
    std::vector<std::uint32_t> handles;
    PTPCommunication engine{{.host = host, .logger = &log.logger(), .agentPause = {}}};
    ManualMainQueue mainQueue;
    FakeWindow window;
    FakeAlerts alerts;
    FakeFolderChooser chooser;
    TemporaryDirectory settingsFolder;
    QSettings settings{QString::fromStdString((settingsFolder.path() / "settings.ini").string()),
                       QSettings::IniFormat};
    CopyTargets::CreateFile createFile;  ///< to be set by a test with a disk of its own
    AppDelegate app{{.engine = engine,
                     .logger = log.logger(),
                     .mainQueue = mainQueue,
                     .window = window,
                     .alerts = alerts,
                     .folderChooser = chooser,
                     .settings = settings,
                     .vendorID = anyVendorID,
                     .version = "1.2.0",
                     .logDirectory = log.logger().saveDirectory(),
                     .createFile = [this](const std::filesystem::path& path) {
                         return createFile ? createFile(path)
                                           : std::make_shared<FileHandle>(FileHandle::create(path));
                     }}};
};

}  // namespace nivor::test
