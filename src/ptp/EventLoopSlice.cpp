#include "ptp/EventLoopSlice.h"

#include <QCoreApplication>
#include <QThread>

#include <thread>

namespace nivor {

void turnEventLoop(std::chrono::milliseconds duration)
{
    const auto end = std::chrono::steady_clock::now() + duration;
    const QCoreApplication* application = QCoreApplication::instance();
    if (application != nullptr && application->thread() == QThread::currentThread())
        QCoreApplication::processEvents();
    std::this_thread::sleep_until(end);
}

}  // namespace nivor
