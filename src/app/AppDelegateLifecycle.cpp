// How the program starts and ends.

#include "app/AppDelegate.h"
#include "app/MainWindowOutlets.h"
#include "foundation/Selector.h"
#include "logging/RollingLogger.h"
#include "ptp/PTPCommunication.h"

#include <QSettings>

#include <fmt/format.h>

namespace nivor {

void AppDelegate::awakeFromNib()
{
    if (sortDescriptors().empty())
        setSortDescriptors({{SortKey::FileName, true}});
}

void AppDelegate::applicationDidFinishLaunching()
{
    constexpr Selector selector{"applicationDidFinishLaunching:"};
    parts_.logger.setLogBaseName(std::string(RollingLogger::programName));
    parts_.logger.setSaveDirectory(parts_.logDirectory);
    parts_.logger.writeToFile("AppDelegate", selector.text(),
                              fmt::format("Application start (ver{})", parts_.version));
    parts_.window.setSliderValue(
        parts_.settings.value(QLatin1String(thumbnailExpandSliderKey), 0.0).toDouble());
    parts_.window.layOutRows();
    setIsClosed(false);
    setIsUpdateView(false);
    updateNIVORConnectionStatus();
    parts_.window.updateStatus();
    if (NIVORConnected())
        setupDataModels();
    else
        showNotConnectedAlert();
    startTimer();
}

void AppDelegate::startTimer()
{
    later(tickInterval, [this] {
        // First, for the tick may take its time.
        startTimer();
        checkNIVORConnectionTimerFire();
        parts_.window.updateStatus();
    });
}

bool AppDelegate::applicationShouldTerminateAfterLastWindowClosed()
{
    setIsClosed(true);
    operationQueue().waitUntilAllOperationsAreFinished();
    parts_.settings.setValue(QLatin1String(thumbnailExpandSliderKey), parts_.window.sliderValue());
    parts_.window.saveLayout();
    parts_.settings.sync();
    return true;
}

void AppDelegate::applicationWillTerminate()
{
    constexpr Selector selector{"applicationWillTerminate:"};
    if (NIVORConnected())
        parts_.engine.disconnect();
    parts_.logger.writeToFile("AppDelegate", selector.text(), "Application end");
}

void AppDelegate::terminate()
{
    if (isRunUnderWay()) {
        afterRun_ = AfterRun::Quit;
        return;
    }
    // A listing would come between the camera and its disconnection again and again.
    setIsClosed(true);
    parts_.window.saveLayout();
    parts_.window.endProgram();
}

}  // namespace nivor
