/// The thread that handles libusb's events while a device is open.
///
/// Private to this layer, for it shows libusb's types.
#pragma once

#include <libusb.h>

#include <atomic>
#include <thread>

namespace nivor {

/// Runs from its construction to its destruction, which wakes it and waits for its end. All
/// threads of one context share the events: libusb lets one of them handle and the others wait.
class UsbEventThread {
public:
    explicit UsbEventThread(libusb_context* context);
    ~UsbEventThread();

    UsbEventThread(const UsbEventThread&) = delete;
    UsbEventThread& operator=(const UsbEventThread&) = delete;

private:
    void run();

    libusb_context* context_;
    std::atomic<bool> stop_ = false;
    std::thread thread_;
};

}  // namespace nivor
