/// Keeps signals away from threads that can't deal with them.
#pragma once

#include <csignal>
#include <initializer_list>

#include <pthread.h>

namespace nivor {

/// To be called first on every thread but the main one. A signal that ends the program is handled
/// where its output is made, so that nothing more is written behind its back.
inline void leaveSignalsToMainThread()
{
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        sigaddset(&signals, signal);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

}  // namespace nivor
