#include "usb/UsbEventThread.h"

#include "foundation/ThreadSignals.h"

#include <chrono>

namespace nivor {

UsbEventThread::UsbEventThread(libusb_context* context)
    : context_(context)
    , thread_([this] { run(); })
{
}

UsbEventThread::~UsbEventThread()
{
    stop_ = true;
    libusb_interrupt_event_handler(context_);
    thread_.join();
}

void UsbEventThread::run()
{
    leaveSignalsToMainThread();
    while (!stop_) {
        // The bound is a safety net only: events and the destructor end the wait at once.
        timeval bound{.tv_sec = 0, .tv_usec = 200'000};
        const int error = libusb_handle_events_timeout_completed(context_, &bound, nullptr);
        if (error != LIBUSB_SUCCESS && error != LIBUSB_ERROR_INTERRUPTED)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
}

}  // namespace nivor
