#include "cli/InterruptFlag.h"

#include "cli/ExitCode.h"

#include <csignal>

#include <atomic>

#include <unistd.h>

namespace nivor {
namespace {

std::atomic<bool> isInterrupted{false};
std::atomic<bool> isErrorTerminal{false};
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler may not wait");

extern "C" void noteSignal(int /*signal*/)
{
    if (!isInterrupted.exchange(true))
        return;
    // The shell's prompt should not stand behind the half of a progress line.
    if (isErrorTerminal)
        static_cast<void>(!::write(STDERR_FILENO, "\n", 1));
    ::_exit(static_cast<int>(ExitCode::Stopped));
}

}  // namespace

void InterruptFlag::install()
{
    isErrorTerminal = ::isatty(STDERR_FILENO) == 1;
    struct sigaction action = {};
    action.sa_handler = &noteSignal;
    // No SA_RESTART: a question that waits for an answer has to end.
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction former = {};
        ::sigaction(signal, nullptr, &former);
        // What the caller has switched off, such as nohup, stays off.
        if (former.sa_handler != SIG_IGN)
            ::sigaction(signal, &action, nullptr);
    }
}

bool InterruptFlag::isSet()
{
    return isInterrupted;
}

}  // namespace nivor
