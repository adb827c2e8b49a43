#include "WindowProgram.h"

#include "Measuring.h"

#include "app/LocalizedText.h"

#include <QCoreApplication>
#include <QTimer>

#include <chrono>
#include <utility>

namespace nivor::bench {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

namespace {

constexpr auto lookInterval = 5ms;

}  // namespace

void beginWithoutScreen()
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
}

void installEnglish()
{
    installTexts(QStringLiteral("en"));
}

WindowProgram::WindowProgram(std::shared_ptr<SimulatedHost> host, std::shared_ptr<UsbHost> usb)
    : folder_(workFolder() / "window")
    , host_(std::move(host))
    , engine_({.host = usb ? std::move(usb) : host_, .logger = &logger_, .agentPause = {}})
    , settings_(QString::fromStdString((folder_ / "settings.ini").string()), QSettings::IniFormat)
{
    std::filesystem::create_directories(folder_);
    logger_.setLogBaseName("Bench");
    logger_.setSaveDirectory(folder_ / "log");
    window.setController(controller);
    controller.awakeFromNib();
    window.resize(1000, 800);
    window.show();
}

void WindowProgram::turnUntil(const std::function<bool()>& isMet)
{
    QTimer tick;
    QObject::connect(&tick, &QTimer::timeout, &tick, [this] {
        controller.checkNIVORConnectionTimerFire();
        window.updateStatus();
    });
    tick.start(AppDelegate::tickInterval);
    // Between two looks the loop sleeps, as it does in the program: the worker needs the processor.
    QTimer look;
    look.start(lookInterval);
    while (!isMet())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

double WindowProgram::list(int objects)
{
    plugIn();
    return secondsOf([&] { turnUntil([&] { return window.objects().size() == objects; }); });
}

void WindowProgram::settle()
{
    turnUntil([&] { return !controller.loader().isLoading(); });
    const auto end = Clock::now() + BackgroundLoader::publicationDelay + 1s;
    turnUntil([&] { return Clock::now() > end && !controller.isUpdateView(); });
}

}  // namespace nivor::bench
