/// Lets the program end in good order when it is told to from outside.
#pragma once

#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace nivor {

/// While it lives, SIGINT and SIGTERM don't end the process but call `asked` from the event loop.
/// One at a time; on the main thread.
class SignalWatch {
public:
    explicit SignalWatch(std::function<void()> asked);
    ~SignalWatch();

    SignalWatch(const SignalWatch&) = delete;
    SignalWatch& operator=(const SignalWatch&) = delete;

private:
    std::function<void()> asked_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace nivor
