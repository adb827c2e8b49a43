#include "cli/CliFixture.h"
#include "cli/Output.h"
#include "cli/ProgressLine.h"
#include "cli/TerminalText.h"

#include <cerrno>

using namespace nivor;
using namespace nivor::test;
using namespace std::chrono_literals;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

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
