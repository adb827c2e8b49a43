#include "cli/CameraSession.h"

#include "cli/Output.h"
#include "ptp/PTPCommunication.h"
#include "usb/UsbAccessAdvice.h"
#include "usb/UsbDevice.h"
#include "usb/UsbHost.h"

#include <fmt/format.h>

#include <exception>

namespace nivor {
namespace {

const char* stepText(ConnectFailure::Step step)
{
    using Step = ConnectFailure::Step;
    switch (step) {
    case Step::OpenDevice:
        return "the device could not be opened";
    case Step::ReadConfiguration:
        return "the device's configuration could not be read";
    case Step::OpenInterface:
        return "the still-image interface could not be opened";
    case Step::OpenSession:
        return "the camera did not open a session";
    case Step::None:
    case Step::FindDevice:
        break;
    }
    return "the camera could not be reached";
}

}  // namespace

CameraSession::CameraSession(CliEnvironment& environment, const CliOptions& options)
    : environment_(environment)
    , options_(options)
{
}

CameraSession::~CameraSession()
{
    // A failed attempt has cleaned up after itself, except that it may leave the device open.
    if (engine_ != nullptr && engine_->usbDevice())
        engine_->disconnect();
}

ExitCode CameraSession::open()
{
    std::shared_ptr<UsbHost> host;
    try {
        host = environment_.makeHost(options_.simulation);
    } catch (const std::exception& error) {
        complain(environment_, error.what());
        return ExitCode::Usage;
    }
    engine_ = &environment_.engineOn(host, options_.simulation);
    engine_->connect(options_.vendorID);
    if (environment_.isInterrupted()) {
        complain(environment_, "stopped");
        return ExitCode::Stopped;
    }
    if (engine_->connected())
        return ExitCode::Done;
    if (engine_->lastConnectFailure().step == ConnectFailure::Step::FindDevice) {
        complain(environment_, notFoundText(*host));
        return ExitCode::NoCamera;
    }
    complain(environment_, notOpenedText());
    return ExitCode::CannotOpen;
}

std::string CameraSession::notFoundText(UsbHost& host) const
{
    const auto cameras = host.stillImageInterfaces();
    if (cameras.empty()) {
        return "no camera was found. Is it connected, switched on, and set to PTP or picture "
               "transfer? \"nivor doctor\" shows what is on the USB.";
    }
    return fmt::format("no camera of vendor 0x{:04x} was found; there is one of vendor 0x{:04x}. "
                       "\"--vendor-id any\" accepts every camera.",
                       options_.vendorID, cameras.front().vendorID);
}

std::string CameraSession::notOpenedText() const
{
    const ConnectFailure failure = engine_->lastConnectFailure();
    std::string text = fmt::format("{}: {} (0x{:08x}).", stepText(failure.step),
                                   toText(failure.result), codeOf(failure.result));
    const std::string advice = UsbAccessAdvice().message(failure.location, failure.result);
    if (!advice.empty())
        text += '\n' + advice;
    return text;
}

}  // namespace nivor
