#include "app/SignalWatch.h"

#include <QEventLoop>
#include <QTimer>

#include <gtest/gtest.h>

#include <csignal>

using namespace nivor;

namespace {

TEST(SignalWatch, ASignalIsHandedToTheEventLoop)
{
    for (const int signal : {SIGTERM, SIGINT}) {
        QEventLoop loop;
        int asked = 0;
        const SignalWatch watch([&] {
            ++asked;
            loop.quit();
        });
        std::raise(signal);
        EXPECT_EQ(asked, 0);
        QTimer::singleShot(10'000, &loop, &QEventLoop::quit);
        loop.exec();
        EXPECT_EQ(asked, 1);
    }
}

}  // namespace
