// The program `nivor`: puts the command line together with the real parts it works on.

#include "cli/CliEnvironment.h"
#include "cli/CommandLine.h"
#include "cli/InterruptFlag.h"
#include "content/VendorID.h"
#include "logging/RecordText.h"
#include "logging/RollingLogger.h"
#include "ptp/PTPCommunication.h"
#include "simulator/SimulationOptions.h"
#include "usb/LibusbHost.h"
#include "usb/LibusbVersion.h"
#include "usb/SystemCameraAgent.h"

#include <QtGlobal>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <iostream>

namespace {

using namespace nivor;

/// Otherwise the next file to be opened, such as a copied film, would become the standard stream
/// that the caller has closed, and get the messages written into it.
void occupyClosedStreams()
{
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        // Opened the wrong way round, so that using it still fails. The number is the lowest free.
        const int wrongWay = stream == STDIN_FILENO ? O_WRONLY : O_RDONLY;
        if (::fcntl(stream, F_GETFD) == -1 && errno == EBADF)
            static_cast<void>(::open("/dev/null", wrongWay));
    }
}

/// What Qt has to say, such as about a picture that can't be decoded, belongs in the log: on the
/// terminal it would tear the progress line.
void logMessageOfQt(QtMsgType /*type*/, const QMessageLogContext& context, const QString& message)
{
    RollingLogger::sharedManager().writeToFile(
        "Qt", context.category == nullptr ? "default" : context.category,
        withoutRecordMarks(message.toStdString()));
}

std::shared_ptr<UsbHost> makeHost(const SimulationChoice& simulation)
{
    if (!simulation.isWanted) {
        return std::make_shared<LibusbHost>([](std::string_view line) {
            RollingLogger::sharedManager().writeToFile("LibusbHost", "note", line);
        });
    }
    SimulationOptions options;
    if (!simulation.folder.empty())
        options.folder = simulation.folder;
    options.writable = simulation.isWritable;
    options.pace.megabytesPerSecond = simulation.pace;
    return makeSimulatedHost(options);
}

PTPCommunication& engineOn(const std::shared_ptr<UsbHost>& host, const SimulationChoice& simulation)
{
    EngineParts parts{.host = host};
    // No desktop holds a camera that isn't there.
    if (simulation.isWanted)
        parts.agentPause = {};
    else
        parts.cameraAgent = std::make_shared<SystemCameraAgent>();
    PTPCommunication::setSharedParts(std::move(parts));
    return PTPCommunication::sharedManager();
}

int terminalWidth()
{
    struct winsize size = {};
    return ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 ? int{size.ws_col} : 0;
}

}  // namespace

int main(int argc, char* argv[])
{
    occupyClosedStreams();
    qInstallMessageHandler(&logMessageOfQt);
    // A reader of the output that goes away is an error of the output, not the end of a transfer.
    static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
    // Nor is a file larger than the user's limit.
    static_cast<void>(std::signal(SIGXFSZ, SIG_IGN));
    InterruptFlag::install();
    // Otherwise a complaint would flush the output, and its failure would pass unnoticed.
    std::cerr.tie(nullptr);

    RollingLogger& logger = RollingLogger::sharedManager();
    logger.setLogBaseName(std::string(RollingLogger::programName));

    CliEnvironment environment{
        .in = std::cin,
        .out = std::cout,
        .err = std::cerr,
        .logger = logger,
        .defaultLogDirectory = RollingLogger::defaultDirectory(),
        .version = NIVOR_VERSION,
        .defaultVendorID = parseVendorID(NIVOR_USB_VENDOR_ID).value_or(anyVendorID),
        .makeHost = &makeHost,
        .engineOn = &engineOn,
        .devicesOnBus = [] { return LibusbHost().devicesOnBus(); },
        .libraryVersions = {{"Qt", qVersion()}, {"libusb", libusbVersion()}},
        .isInputTerminal = ::isatty(STDIN_FILENO) == 1,
        .isErrorTerminal = ::isatty(STDERR_FILENO) == 1,
        .terminalWidth = &terminalWidth,
        .isInterrupted = &InterruptFlag::isSet,
    };
    return runCommandLine(std::vector<std::string>(argv + 1, argv + argc), environment);
}
