#include "foundation/SystemConsole.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace nivor::test {
namespace {

TEST(SystemConsole, WritesALineToStandardError)
{
    ::testing::internal::CaptureStderr();
    writeToSystemConsole("ERROR:no camera");
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "ERROR:no camera\n");
}

TEST(SystemConsole, WritesPercentSignsAsTheyAre)
{
    ::testing::internal::CaptureStderr();
    writeToSystemConsole("100%s");
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "100%s\n");
}

TEST(SystemConsole, KeepsTheLinesOfSeveralThreadsWhole)
{
    constexpr int threadCount = 4;
    constexpr int linesEach = 200;
    ::testing::internal::CaptureStderr();
    std::vector<std::thread> threads;
    for (int thread = 0; thread < threadCount; ++thread) {
        threads.emplace_back([thread] {
            const std::string line(100, static_cast<char>('a' + thread));
            for (int i = 0; i < linesEach; ++i)
                writeToSystemConsole(line);
        });
    }
    for (std::thread& thread : threads)
        thread.join();

    std::istringstream lines(::testing::internal::GetCapturedStderr());
    int count = 0;
    for (std::string line; std::getline(lines, line); ++count) {
        ASSERT_EQ(line.size(), 100U);
        EXPECT_EQ(std::count(line.begin(), line.end(), line.front()), 100);
    }
    EXPECT_EQ(count, threadCount * linesEach);
}

}  // namespace
}  // namespace nivor::test
