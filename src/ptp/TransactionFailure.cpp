#include "ptp/TransactionFailure.h"

#include "codes/ResponseCode.h"

#include <fmt/format.h>

namespace nivor {
namespace {

bool isRefusal(std::uint16_t responseCode)
{
    return responseCode != 0 && responseCode != static_cast<std::uint16_t>(ResponseCode::OK);
}

std::string refusalText(std::uint16_t responseCode)
{
    return fmt::format("the camera refused: {} (0x{:04X})",
                       nivor::toText(static_cast<ResponseCode>(responseCode)), responseCode);
}

}  // namespace

std::string TransactionFailure::toText() const
{
    switch (cause) {
    case Cause::None:
        return isRefusal(responseCode) ? refusalText(responseCode) : std::string();
    case Cause::NotConnected:
        return "no camera is connected";
    case Cause::TimedOut:
        return isRefusal(responseCode) ? refusalText(responseCode)
                                       : "the camera did not answer in time";
    case Cause::Stopped:
        return "stopped";
    case Cause::ReadFailed:
        return fmt::format("reading from the camera failed: {} (0x{:08x})",
                           nivor::toText(usbResult), codeOf(usbResult));
    case Cause::SinkRefused:
        return "the camera sent no data for it";
    case Cause::SinkError:
        return detail;
    case Cause::NoMemory:
        return "not enough memory to receive it";
    case Cause::TooMuchData:
        return "the camera's answer is too long to be true";
    case Cause::EarlierAnswer:
        return "the camera's answer was to an earlier question";
    case Cause::TooSlow:
        return "the camera's answer came too slowly and did not end";
    }
    return {};
}

}  // namespace nivor
