// The program `nivor-file-transfer`: puts the window together with the real parts it works on.

#include "app/AppDelegate.h"
#include "app/AppOptions.h"
#include "app/EventLoopQueue.h"
#include "app/FolderDialog.h"
#include "app/IconSet.h"
#include "app/LocalizedText.h"
#include "app/MainWindow.h"
#include "app/MessageBoxAlerts.h"
#include "app/SignalWatch.h"
#include "app/WindowPicture.h"
#include "content/VendorID.h"
#include "logging/RecordText.h"
#include "logging/RollingLogger.h"
#include "ptp/PTPCommunication.h"
#include "simulator/SimulationOptions.h"
#include "usb/LibusbHost.h"
#include "usb/SystemCameraAgent.h"

#include <QApplication>
#include <QSettings>
#include <QTimer>
#include <QWindow>

#include <csignal>
#include <exception>
#include <iostream>
#include <optional>

#ifdef NIVOR_WINDOW_SCRIPT
#include "gui/WindowScript.h"
#endif

namespace {

using namespace nivor;

/// What Qt has to say, such as about a picture that can't be decoded, belongs in the log.
void logMessageOfQt(QtMsgType /*type*/, const QMessageLogContext& context, const QString& message)
{
    RollingLogger& logger = RollingLogger::sharedManager();
    if (logger.saveDirectory().empty())  // before the log has begun
        std::cerr << message.toStdString() << '\n';
    else
        logger.writeToFile("Qt", context.category == nullptr ? "default" : context.category,
                           withoutRecordMarks(message.toStdString()));
}

std::shared_ptr<SimulatedHost> simulatedHost(const AppOptions& options)
{
    SimulationOptions simulation;
    if (!options.simulationFolder.empty())
        simulation.folder = options.simulationFolder;
    simulation.writable = options.isSimulationWritable;
    simulation.pace.megabytesPerSecond = options.simulationPace;
    return makeSimulatedHost(simulation);
}

std::shared_ptr<UsbHost> realHost()
{
    return std::make_shared<LibusbHost>([](std::string_view line) {
        RollingLogger::sharedManager().writeToFile("LibusbHost", "note", line);
    });
}

void addSimulationMenu(MainWindow& window, const std::shared_ptr<SimulatedHost>& host)
{
    const auto cameras = host->cameras();
    window.addSimulationMenu(
        [host, cameras] {
            for (const auto& camera : cameras)
                host->detach(camera);
        },
        [host, cameras] {
            for (const auto& camera : cameras) {
                if (!host->isAttached(camera))
                    host->attach(camera);
            }
        });
}

/// An alert may follow, which is placed over the window; so the window has to have a place.
void launchOnceShown(MainWindow& window, AppDelegate& controller)
{
    constexpr int lookInterval = 10;
    constexpr int mostLooks = 50;
    auto* timer = new QTimer(&window);
    QObject::connect(timer, &QTimer::timeout, &window,
                     [&window, &controller, timer, looks = 0]() mutable {
                         if (!window.windowHandle()->isExposed() && ++looks < mostLooks)
                             return;
                         timer->stop();
                         timer->deleteLater();
                         controller.applicationDidFinishLaunching();
                     });
    timer->start(lookInterval);
}

int run(const QApplication& application, const AppOptions& options)
{
    std::shared_ptr<SimulatedHost> simulation;
    if (options.isSimulation)
        simulation = simulatedHost(options);
    EngineParts parts{.host = simulation ? simulation : realHost()};
    // No desktop holds a camera that isn't there.
    if (simulation)
        parts.agentPause = {};
    else
        parts.cameraAgent = std::make_shared<SystemCameraAgent>();
    PTPCommunication::setSharedParts(std::move(parts));

    EventLoopQueue mainQueue;
    QSettings settings;
    MainWindow window(mainQueue, settings);
    MessageBoxAlerts alerts(&window);
    FolderDialog folderDialog(&window, settings);
    AppDelegate controller({.engine = PTPCommunication::sharedManager(),
                            .logger = RollingLogger::sharedManager(),
                            .mainQueue = mainQueue,
                            .window = window,
                            .alerts = alerts,
                            .folderChooser = folderDialog,
                            .settings = settings,
                            .vendorID = options.vendorID,
                            .version = NIVOR_VERSION,
                            .logDirectory = options.logDirectory});
    window.setController(controller);
    window.setLogDirectory(options.logDirectory);
    window.setVersion(QStringLiteral(NIVOR_VERSION));
    if (simulation)
        addSimulationMenu(window, simulation);
    controller.awakeFromNib();
    window.show();

    std::optional<WindowPicture> picture;
    if (!options.windowPicture.empty())
        picture.emplace(window, controller, options.windowPicture);
    const SignalWatch signalWatch([&controller] { controller.terminate(); });

    launchOnceShown(window, controller);
    QObject::connect(&application, &QCoreApplication::aboutToQuit, &window,
                     [&controller] { controller.applicationWillTerminate(); });
#ifdef NIVOR_WINDOW_SCRIPT
    const WindowScript script(window, controller);
#endif
    return QApplication::exec();
}

}  // namespace

int main(int argc, char* argv[])
{
    using namespace nivor;
    // Failures of a write, not the end of the program.
    static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
    static_cast<void>(std::signal(SIGXFSZ, SIG_IGN));

    const AppOptions defaults{.vendorID = parseVendorID(NIVOR_USB_VENDOR_ID).value_or(anyVendorID),
                              .logDirectory = RollingLogger::defaultDirectory()};
    // Help and complaints need no screen.
    const AppOptionsResult early =
        parseAppOptions(std::vector<std::string>(argv + 1, argv + argc), defaults, NIVOR_VERSION);
    if (!early.options && early.exitCode == 0) {
        std::cout << early.message;
        return 0;
    }

    QCoreApplication::setOrganizationName(QStringLiteral("KAVRO"));
    QCoreApplication::setApplicationName(QStringLiteral("NIVOR File Transfer"));
    QCoreApplication::setApplicationVersion(QStringLiteral(NIVOR_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("nivor-file-transfer"));
    const QApplication application(argc, argv);  // takes its own arguments out
    const AppOptionsResult parsed =
        parseAppOptions(std::vector<std::string>(argv + 1, argv + argc), defaults, NIVOR_VERSION);
    if (!parsed.options) {
        std::cerr << parsed.message;
        return parsed.exitCode;
    }
    qInstallMessageHandler(&logMessageOfQt);
    installTexts();
    QApplication::setWindowIcon(plainIcon(QStringLiteral("nivor-file-transfer")));
    try {
        return run(application, *parsed.options);
    } catch (const std::exception& error) {
        std::cerr << "nivor-file-transfer: " << error.what() << '\n';
        return 2;
    }
}
