#include "app/SignalWatch.h"

#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <utility>

namespace nivor {
namespace {

// A signal handler may do next to nothing: it wakes the event loop through a socket.
std::array<int, 2> sockets{-1, -1};

void wakeEventLoop(int /*signal*/)
{
    const char byte = 1;
    static_cast<void>(!::write(sockets[0], &byte, sizeof byte));
}

}  // namespace

SignalWatch::SignalWatch(std::function<void()> asked)
    : asked_(std::move(asked))
{
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, sockets.data()) != 0)
        return;
    notifier_ = std::make_unique<QSocketNotifier>(sockets[1], QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this] {
        char byte = 0;
        static_cast<void>(!::read(sockets[1], &byte, sizeof byte));
        asked_();
    });
    static_cast<void>(std::signal(SIGINT, &wakeEventLoop));
    static_cast<void>(std::signal(SIGTERM, &wakeEventLoop));
}

SignalWatch::~SignalWatch()
{
    static_cast<void>(std::signal(SIGINT, SIG_DFL));
    static_cast<void>(std::signal(SIGTERM, SIG_DFL));
    notifier_.reset();
    for (int& socket : sockets) {
        if (socket >= 0)
            ::close(socket);
        socket = -1;
    }
}

}  // namespace nivor
