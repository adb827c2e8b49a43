// The window: its start, a long list handed over, sorted, resized and scrolled, and how long the
// event loop is ever kept from its work while the camera is read and copied from.

#include "app/AppDelegate.h"
#include "app/EventLoopQueue.h"
#include "app/FolderChooser.h"
#include "app/LocalizedText.h"
#include "app/MainWindow.h"
#include "app/OutlineView.h"
#include "app/ThumbnailSlider.h"
#include "datasets/ObjectInfoData.h"
#include "logging/RollingLogger.h"
#include "ptp/PTPCommunication.h"
#include "simulator/MemoryCard.h"
#include "simulator/SimulatedHost.h"
#include "support/PeakMemory.h"

#include <QApplication>
#include <QBuffer>
#include <QProcess>
#include <QScrollBar>
#include <QSettings>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <vector>

namespace {

using namespace nivor;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
namespace fs = std::filesystem;

constexpr int folderCount = 1'000;
constexpr int filesPerFolder = 99;
constexpr int foldersWithThumbnails = 100;

double milliseconds(Clock::duration time)
{
    return std::chrono::duration<double, std::milli>(time).count();
}

double timeOf(const std::function<void()>& work)
{
    const auto began = Clock::now();
    work();
    return milliseconds(Clock::now() - began);
}

void print(const char* what, std::vector<double> values, const char* unit, double limit)
{
    std::sort(values.begin(), values.end());
    std::printf("%-52s %10.1f %-5s  (%.1f to %.1f, limit %.0f)\n", what, values[values.size() / 2],
                unit, values.front(), values.back(), limit);
    std::fflush(stdout);
}

class NoAlerts : public Alerts {
public:
    int runModal(const Alert& /*alert*/) override { return 0; }
};

class NoFolder : public FolderChooser {
public:
    std::optional<QUrl> chooseFolder() override { return std::nullopt; }
};

/// Notes the longest time in which the event loop has handled nothing.
class Watchdog {
public:
    Watchdog()
    {
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { beat(); });
        timer_.setTimerType(Qt::PreciseTimer);
        timer_.start(1ms);
    }

    void reset()
    {
        last_ = Clock::now();
        longest_ = 0;
    }

    double longest()
    {
        beat();
        return longest_;
    }

private:
    void beat()
    {
        const auto now = Clock::now();
        longest_ = std::max(longest_, milliseconds(now - last_));
        last_ = now;
    }

    QTimer timer_;
    Clock::time_point last_ = Clock::now();
    double longest_ = 0;
};

ByteBuffer thumbnailFile()
{
    QImage image(160, 120, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qRgb(x, 2 * y, (x * y) % 256));
    }
    QByteArray file;
    QBuffer buffer(&file);
    image.save(&buffer, "JPEG", 80);
    return {file.begin(), file.end()};
}

/// The whole program but for its real screen, on a card of 100,000 objects.
class Program {
public:
    Program()
    {
        fs::create_directories(folder_);
        logger_.setLogBaseName("Bench");
        logger_.setSaveDirectory(folder_ / "log");
        window.setController(controller);
        controller.awakeFromNib();
        window.resize(1000, 800);
        window.show();
    }

    void plugIn()
    {
        const ByteBuffer thumbnail = thumbnailFile();
        for (int i = 0; i < folderCount; ++i) {
            const std::uint32_t parent = card_->addFolder(u"FOLDER");
            for (int j = 0; j < filesPerFolder; ++j) {
                const auto name = QStringLiteral("IMG_%1.JPG").arg((i * 7919 + j * 104729) % 99991);
                const std::uint32_t file = card_->addFile(name.toStdU16String(), 60'000, parent);
                if (i < foldersWithThumbnails)
                    card_->setThumbnail(file, thumbnail);
            }
        }
        host_->attach(std::make_shared<SimulatedCamera>(card_));
    }

    /// Turns the event loop until the condition is met; a tick every second, as in the program.
    void turnUntil(const std::function<bool()>& isMet)
    {
        auto nextTick = Clock::now() + 1s;
        while (!isMet()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 5);
            if (Clock::now() >= nextTick) {
                controller.checkNIVORConnectionTimerFire();
                window.updateStatus();
                nextTick = Clock::now() + 1s;
            }
        }
    }

private:
    fs::path folder_ = fs::current_path() / "bench-files" / "window";
    RollingLogger logger_;
    std::shared_ptr<MemoryCard> card_ = std::make_shared<MemoryCard>();
    std::shared_ptr<SimulatedHost> host_ = std::make_shared<SimulatedHost>();
    PTPCommunication engine_{{.host = host_, .logger = &logger_, .agentPause = {}}};
    EventLoopQueue mainQueue_;
    QSettings settings_{QString::fromStdString((folder_ / "settings.ini").string()),
                        QSettings::IniFormat};
    NoAlerts alerts_;
    NoFolder chooser_;

public:
    MainWindow window{mainQueue_, settings_};
    AppDelegate controller{{.engine = engine_,
                            .logger = logger_,
                            .mainQueue = mainQueue_,
                            .window = window,
                            .alerts = alerts_,
                            .folderChooser = chooser_,
                            .settings = settings_,
                            .vendorID = anyVendorID,
                            .version = "0",
                            .logDirectory = folder_ / "log"}};
};

/// In a process of its own: tells on the output when the window was first painted.
int startOnce()
{
    Program program;
    program.window.repaint();
    std::printf(
        "%lld\n",
        static_cast<long long>(Clock::now().time_since_epoch() / std::chrono::microseconds(1)));
    return 0;
}

void measureStart(const QString& self)
{
    std::vector<double> values;
    for (int i = -1; i < 9; ++i) {
        const auto began = Clock::now().time_since_epoch() / std::chrono::microseconds(1);
        QProcess process;
        process.start(self, {QStringLiteral("--start-once")});
        process.waitForFinished();
        const auto painted = process.readAllStandardOutput().trimmed().toLongLong();
        // The first one only brings the libraries into memory.
        if (i >= 0)
            values.push_back(static_cast<double>(painted - began) / 1000.0);
    }
    print("start to first paint, warm", values, "ms", 300);
}

void measureList()
{
    Watchdog watchdog;
    Program program;
    MainWindow& window = program.window;
    OutlineView& view = window.outlineView();
    const nivor::test::PeakMemory memory;
    program.plugIn();
    std::printf("%-52s %10.0f MiB\n", "the card itself, in the simulated camera",
                memory.mebibytes());

    constexpr int total = folderCount * (filesPerFolder + 1);
    watchdog.reset();
    const auto began = Clock::now();
    program.turnUntil([&] { return window.objects().size() == total; });
    const double listing = milliseconds(Clock::now() - began);
    std::printf("%-52s %10.0f objects/s\n", "listing with the window, delays included",
                total / listing * 1000);
    print("longest pause of the event loop while listing", {watchdog.longest()}, "ms", 100);

    const auto repeat = [](int times, const std::function<void(int)>& work) {
        std::vector<double> values;
        for (int i = 0; i < times; ++i)
            values.push_back(timeOf([&] { work(i); }));
        return values;
    };
    print("hand-over: reload and expand all, 100,000 objects",
          repeat(7,
                 [&](int) {
                     window.reloadData();
                     window.expandAllItems();
                     view.viewport()->repaint();
                 }),
          "ms", 500);
    print("sort by name, size or date, with the reload",
          repeat(9,
                 [&](int i) {
                     constexpr std::array<SortKey, 3> keys{
                         SortKey::ObjectCompressedSize, SortKey::ModifiedDate, SortKey::FileName};
                     program.controller.sortDescriptorsDidChange(
                         {{keys.at(static_cast<std::size_t>(i % 3)), i % 2 == 0}});
                     view.viewport()->repaint();
                 }),
          "ms", 500);
    print("a step of the slider",
          repeat(21,
                 [&](int i) {
                     window.thumbnailExpandSlider().setValue((i * 50) % 1000);
                     view.viewport()->repaint();
                 }),
          "ms", 50);
    print("select all, and none",
          repeat(6,
                 [&](int) {
                     program.controller.selectAllButtonWasClicked();
                     QCoreApplication::processEvents();
                     view.viewport()->repaint();
                 }),
          "ms", 100);
    QScrollBar& bar = *view.verticalScrollBar();
    print("a frame of scrolling, thumbnails on their way",
          repeat(300,
                 [&](int i) {
                     bar.setValue(i * view.viewport()->height() / 3);
                     view.viewport()->repaint();
                     QCoreApplication::processEvents();
                 }),
          "ms", 1000.0 / 60);
}

void measureCopy()
{
    Watchdog watchdog;
    Program program;
    program.plugIn();
    program.turnUntil([&] {
        return program.window.objects().size() > 3'000 && !program.controller.isUpdateView();
    });
    ObjectList items = *program.controller.dataModels();
    items.resize(std::min<std::size_t>(items.size(), 1'000));
    const fs::path folder = fs::current_path() / "bench-files" / "window" / "copies";
    fs::remove_all(folder);
    fs::create_directories(folder);
    watchdog.reset();
    const double time = timeOf([&] {
        program.controller.startCopyingItems(
            items, QUrl::fromLocalFile(QString::fromStdString(folder.string())));
    });
    print("longest pause of the event loop while copying", {watchdog.longest()}, "ms", 100);
    const auto files = std::count_if(items.begin(), items.end(),
                                     [](const auto& item) { return !item->isAssociation(); });
    std::printf("%-52s %10.0f files/s\n", "files of 60 kB copied under the panel",
                static_cast<double>(files) / time * 1000);
    fs::remove_all(folder);
    program.controller.setIsClosed(true);
}

}  // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    installTexts(QStringLiteral("en"));
    if (QApplication::arguments().contains(QStringLiteral("--start-once")))
        return startOnce();
    measureStart(QApplication::applicationFilePath());
    measureList();
    measureCopy();
}
