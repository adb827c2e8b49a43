#include "cli/ByteCount.h"
#include "cli/CliFixture.h"
#include "cli/Output.h"
#include "cli/ProgressLine.h"
#include "cli/TerminalText.h"
#include "cli/TransferRate.h"

#include <cerrno>

using namespace nivor;
using namespace nivor::test;
using namespace std::chrono_literals;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

TEST(ByteCount, UnitsAreDecimal)
{
    EXPECT_EQ(byteCountText(0), "0 B");
    EXPECT_EQ(byteCountText(999), "999 B");
    EXPECT_EQ(byteCountText(1000), "1.0 kB");
    EXPECT_EQ(byteCountText(999'949), "999.9 kB");
    EXPECT_EQ(byteCountText(999'950), "1.0 MB");
    EXPECT_EQ(byteCountText(48 << 20), "50.3 MB");
    EXPECT_EQ(byteCountText(5'000'000'000), "5.0 GB");
    EXPECT_EQ(byteCountText(12'000'000'000'000), "12000.0 GB");
    EXPECT_EQ(amountText(1'000'000, 5'000'000'000), "0.0 of 5.0 GB");
    EXPECT_EQ(amountText(0, 0), "0 of 0 B");
    EXPECT_EQ(rateText(23'440'000), "23.4 MB/s");
    EXPECT_EQ(countText(1, "file"), "1 file");
    EXPECT_EQ(countText(0, "file"), "0 files");
}

TEST(ByteCount, Durations)
{
    EXPECT_EQ(durationText(0s), "0:00");
    EXPECT_EQ(durationText(67s), "1:07");
    EXPECT_EQ(durationText(3723s), "1:02:03");
}

TEST(TransferRate, IsSilentUntilItKnows)
{
    TransferRate rate;
    const TransferRate::TimePoint start{};
    EXPECT_FALSE(rate.bytesPerSecond());
    EXPECT_FALSE(rate.timeFor(1));
    rate.record(start, 0);
    rate.record(start + 100ms, 1'000'000);
    rate.record(start + 500ms, 5'000'000);
    EXPECT_FALSE(rate.bytesPerSecond());
    rate.record(start + 600ms, 6'000'000);
    EXPECT_DOUBLE_EQ(rate.bytesPerSecond().value_or(0), 10e6);
    EXPECT_EQ(rate.timeFor(25'000'000), 3s);
}

TEST(TransferRate, LumpsMakeNeitherAnAbsurdRateNorASawtooth)
{
    constexpr std::uint64_t lump = 16 << 20;
    constexpr std::uint64_t total = 50 * lump;
    TransferRate rate;
    const TransferRate::TimePoint start{};
    rate.record(start, 0);
    std::optional<std::chrono::seconds> lastLeft;
    for (auto time = 0ms; time < 9s; time += 100ms) {
        const std::uint64_t bytes = 5108 + static_cast<std::uint64_t>(time / 2s) * lump;
        rate.record(start + time, bytes);
        const auto left = rate.timeFor(total - bytes);
        if (time < 2s) {
            EXPECT_FALSE(rate.bytesPerSecond());
            EXPECT_FALSE(left);
            continue;
        }
        EXPECT_NEAR(rate.bytesPerSecond().value_or(0), 8.4e6, 0.1e6);
        EXPECT_NEAR(static_cast<double>(left.value_or(0s).count()),
                    std::chrono::duration<double>(100s - time).count(), 2);
        // Between the lumps it is counted down by the clock.
        EXPECT_LE(left, lastLeft.value_or(100s));
        lastLeft = left;
    }
}

TEST(TransferRate, ASteadyStreamOfSmallPiecesGivesItsRate)
{
    TransferRate rate;
    for (int i = 0; i < 1000; ++i)
        rate.record(TransferRate::TimePoint{} + i * 10ms, static_cast<std::uint64_t>(i) * 60'000);
    EXPECT_NEAR(rate.bytesPerSecond().value_or(0), 6e6, 0.1e6);
    EXPECT_EQ(rate.timeFor(59'000'000), 10s);
}

TEST(TransferRate, FallsWhileTheCameraStalls)
{
    TransferRate rate;
    const TransferRate::TimePoint start{};
    for (int i = 0; i < 40; ++i)
        rate.record(start + i * 100ms, static_cast<std::uint64_t>(i) * 1'000'000);
    const TransferRate::TimePoint last = start + 3900ms;
    double before = rate.bytesPerSecond().value_or(0);
    std::chrono::seconds leftBefore{};
    for (const auto silence : {3000ms, 4000ms, 5000ms}) {
        rate.record(last + silence, 39'000'000);
        EXPECT_LT(rate.bytesPerSecond().value_or(-1), before);
        before = rate.bytesPerSecond().value_or(-1);
        const auto left = rate.timeFor(100'000'000).value_or(0s);
        EXPECT_GT(left, leftBefore);
        leftBefore = left;
    }
    rate.record(last + 6s, 39'000'000);
    EXPECT_DOUBLE_EQ(rate.bytesPerSecond().value_or(-1), 0);
}

TEST(TransferRate, LooksAtTheLastSecondsOnly)
{
    TransferRate rate;
    TransferRate::TimePoint now{};
    std::uint64_t bytes = 0;
    for (int i = 0; i < 100; ++i, now += 100ms, bytes += 1'000'000)
        rate.record(now, bytes);
    for (int i = 0; i < 70; ++i, now += 100ms)
        rate.record(now, bytes);
    EXPECT_DOUBLE_EQ(rate.bytesPerSecond().value_or(-1), 0);
    EXPECT_FALSE(rate.timeFor(1));
}

TEST(TransferRate, AHopelessRateHasNoTime)
{
    TransferRate rate;
    rate.record(TransferRate::TimePoint{}, 0);
    rate.record(TransferRate::TimePoint{} + 1s, 1);
    rate.record(TransferRate::TimePoint{} + 3s, 2);
    EXPECT_TRUE(rate.bytesPerSecond());
    EXPECT_FALSE(rate.timeFor(UINT64_MAX));
}

TEST(TerminalText, ColumnsAreCountedAsTerminalsDo)
{
    EXPECT_EQ(terminalColumns(QStringLiteral("abc")), 3);
    EXPECT_EQ(terminalColumns(QStringLiteral("\u5199\u771F")), 4);
    EXPECT_EQ(terminalColumns(QStringLiteral("e\u0301")), 1);
    EXPECT_EQ(terminalColumns(QStringLiteral("\U0001F389")), 2);
    EXPECT_EQ(terminalColumns(QString()), 0);
}

TEST(TerminalText, WhatDoesNotFitEndsWithAnEllipsis)
{
    EXPECT_EQ(fittedToColumns(QStringLiteral("abcdef"), 6), QStringLiteral("abcdef"));
    EXPECT_EQ(fittedToColumns(QStringLiteral("abcdef"), 5), QStringLiteral("abcd\u2026"));
    EXPECT_EQ(fittedToColumns(QStringLiteral("\u5199\u771F\u5199"), 4),
              QStringLiteral("\u5199\u2026"));
    EXPECT_EQ(fittedToColumns(QStringLiteral("abc"), 1), QStringLiteral("\u2026"));
    EXPECT_EQ(fittedToColumns(QStringLiteral("abc"), 0), QString());
}

/// A terminal whose time and width the test decides.
class ProgressLineTest : public ::testing::Test {
protected:
    std::string shown()
    {
        const std::string text = err.str();
        err.str({});
        return text;
    }

    std::istringstream in;
    std::ostringstream out;
    std::ostringstream err;
    LogFixture log;
    std::chrono::steady_clock::time_point now{};
    int width = 20;
    CliEnvironment environment{.in = in,
                               .out = out,
                               .err = err,
                               .logger = log.logger(),
                               .defaultLogDirectory = {},
                               .version = {},
                               .defaultVendorID = anyVendorID,
                               .makeHost = {},
                               .engineOn = {},
                               .devicesOnBus = {},
                               .isErrorTerminal = true,
                               .terminalWidth = [this] { return width; },
                               .now = [this] { return now; }};
};

TEST_F(ProgressLineTest, IsDrawnAtMostTenTimesASecond)
{
    ProgressLine line(environment);
    for (int i = 0; i < 1000; ++i, now += 1ms)
        line.show(QStringLiteral("a"), QStringLiteral("b"));
    const std::string text = shown();
    EXPECT_EQ(std::count(text.begin(), text.end(), '\r'), 10);
}

TEST_F(ProgressLineTest, WhatMustNotWaitIsDrawnAtOnce)
{
    ProgressLine line(environment);
    line.show(QStringLiteral("a"), {});
    line.showAtOnce(QStringLiteral("b"), {});
    EXPECT_EQ(shown(), "\ra\x1b[K\rb\x1b[K");
}

TEST_F(ProgressLineTest, FitsTheTerminal)
{
    ProgressLine line(environment);
    line.show(QStringLiteral("IMG_0001_LONG.JPG"), QStringLiteral("3 / 4"));
    EXPECT_EQ(shown(), "\rIMG_0001_LO…  3 / 4\x1b[K");
    now += 1s;
    width = 8;
    line.show(QStringLiteral("IMG.JPG"), QStringLiteral("3 / 4"));
    EXPECT_EQ(shown(), "\rIMG.JP…\x1b[K");
    now += 1s;
    width = 0;
    line.show(QStringLiteral("IMG.JPG"), QString());
    EXPECT_EQ(shown(), "\rIMG.JPG\x1b[K");
}

TEST_F(ProgressLineTest, IsTakenAwayOnceAndOnlyIfItIsThere)
{
    {
        ProgressLine line(environment);
        line.clear();
        EXPECT_THAT(shown(), IsEmpty());
        line.show(QStringLiteral("a"), QString());
        line.clear();
        shown();
    }
    EXPECT_THAT(shown(), IsEmpty());
}

TEST_F(ProgressLineTest, ElsewhereThanOnATerminalThereIsNone)
{
    environment.isErrorTerminal = false;
    ProgressLine line(environment);
    EXPECT_FALSE(line.isDue());
    line.show(QStringLiteral("a"), QString());
    EXPECT_THAT(shown(), IsEmpty());
}

/// An output that can't be written to.
class BrokenBuffer : public std::streambuf {
public:
    explicit BrokenBuffer(int error)
        : error_(error)
    {
    }

protected:
    int sync() override
    {
        errno = error_;
        return -1;
    }
    int_type overflow(int_type character) override { return character; }
    std::streamsize xsputn(const char* /*text*/, std::streamsize count) override { return count; }

private:
    int error_;
};

TEST_F(ProgressLineTest, AnOutputThatFailsIsComplainedAboutUnlessItsReaderIsGone)
{
    const auto flushed = [this](int error) {
        BrokenBuffer buffer(error);
        out.std::ios::rdbuf(&buffer);
        out.clear();
        const bool isWritten = flushOutput(environment);
        out.std::ios::rdbuf(nullptr);
        return isWritten;
    };
    EXPECT_FALSE(flushed(ENOSPC));
    EXPECT_EQ(shown(), "nivor: the output could not be written\n");
    EXPECT_FALSE(flushed(EPIPE));
    EXPECT_THAT(shown(), IsEmpty());
}

}  // namespace
