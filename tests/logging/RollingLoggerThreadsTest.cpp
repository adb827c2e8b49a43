#include "logging/RollingLoggerFixture.h"

#include <array>
#include <atomic>
#include <set>
#include <sstream>
#include <thread>
#include <vector>

namespace nivor::test {
namespace {

constexpr int threadCount = 8;
constexpr int recordsEach = 500;

class RollingLoggerThreads : public RollingLoggerFixture {
protected:
    /// Runs `work(thread)` on several threads that start as nearly at once as they can.
    template <typename Work> static void onThreads(Work work)
    {
        std::atomic<int> waiting{threadCount};
        std::vector<std::thread> threads;
        for (int thread = 0; thread < threadCount; ++thread) {
            threads.emplace_back([&work, &waiting, thread] {
                --waiting;
                while (waiting > 0)
                    std::this_thread::yield();
                work(thread);
            });
        }
        for (std::thread& thread : threads)
            thread.join();
    }

    void writeRecordsOnThreads()
    {
        onThreads([this](int thread) {
            for (int i = 0; i < recordsEach; ++i)
                logger_.writeToFile("Thread" + std::to_string(thread),
                                    "writes:", "record " + std::to_string(i));
        });
    }

    /// Takes `text` apart into records, each of which has to be whole, and adds what they say to
    /// `messages`.
    void readRecords(const std::string& text, std::multiset<std::string>& messages)
    {
        std::istringstream lines(text);
        const auto next = [&lines] {
            std::string line;
            std::getline(lines, line);
            return line;
        };
        const auto between = [](const std::string& line, std::string_view before,
                                std::string_view after) {
            EXPECT_EQ(line.substr(0, before.size()), before);
            EXPECT_GE(line.size(), before.size() + after.size());
            const std::string inner =
                line.substr(before.size(), line.size() - before.size() - after.size());
            EXPECT_EQ(line, std::string(before) + inner + std::string(after));
            return inner;
        };
        while (lines.peek() != std::istringstream::traits_type::eof() && !HasFailure()) {
            EXPECT_EQ(next(), "<log time=\"2024-05-01T09:30:00Z\">");
            EXPECT_EQ(next(), "  <NIVOR_File_Transfer>");
            const std::string event = between(next(), "    <event>", "</event>");
            const std::string message = between(next(), "    <message>", "</message>");
            EXPECT_EQ(next(), "  </NIVOR_File_Transfer>");
            EXPECT_EQ(next(), "</log>");
            messages.insert(event + ": " + message);
        }
    }

    static std::multiset<std::string> everyMessage()
    {
        std::multiset<std::string> messages;
        for (int thread = 0; thread < threadCount; ++thread) {
            for (int i = 0; i < recordsEach; ++i)
                messages.insert("Thread" + std::to_string(thread) + " writes:: record "
                                + std::to_string(i));
        }
        return messages;
    }
};

TEST_F(RollingLoggerThreads, LoseAndTearNoRecordFromTheVeryFirstOn)
{
    writeRecordsOnThreads();

    std::multiset<std::string> messages;
    readRecords(textOf(log1()), messages);
    EXPECT_TRUE(messages == everyMessage());
    EXPECT_FALSE(std::filesystem::exists(log2()));
}

TEST_F(RollingLoggerThreads, LoseAndTearNoRecordAcrossARotationAndRotateOnce)
{
    createFolder();
    // Room for about a quarter of the records.
    constexpr std::int64_t before = RollingLogger::fullSize - 150'000;
    setFileOfSize(log1(), before, earlier);
    setText(log2(), recordOf("2024-01-01T00:00:00Z"));
    writeRecordsOnThreads();

    // A second rotation would have emptied one of the files again and lost what it held.
    std::multiset<std::string> messages;
    const std::string first = textOf(log1());
    readRecords(first.substr(static_cast<std::size_t>(before)), messages);
    EXPECT_GT(messages.size(), 500U);
    const std::size_t inFirst = messages.size();
    readRecords(textOf(log2()), messages);
    EXPECT_GT(messages.size(), inFirst);
    EXPECT_TRUE(messages == everyMessage());

    // Full, and by no more than the one record that filled it.
    EXPECT_GE(static_cast<std::int64_t>(first.size()), RollingLogger::fullSize);
    EXPECT_LT(static_cast<std::int64_t>(first.size()), RollingLogger::fullSize + 200);
    EXPECT_EQ(logger_.targetLogName(), log2());
}

TEST_F(RollingLoggerThreads, KeepEveryRecordWholeWhileTheTargetIsDeletedUnderThem)
{
    onThreads([this](int thread) {
        for (int i = 0; i < recordsEach / 5; ++i) {
            if (thread == 0)
                std::filesystem::remove(log1());
            else
                logger_.writeToFile("Thread" + std::to_string(thread), "writes:", "m");
        }
    });
    logger_.writeToFile("Thread0", "writes:", "the last");

    std::multiset<std::string> messages;
    readRecords(textOf(log1()), messages);
    EXPECT_EQ(messages.count("Thread0 writes:: the last"), 1U);
}

TEST_F(RollingLoggerThreads, MayReadAndSetPropertiesWhileOthersWrite)
{
    onThreads([this](int thread) {
        for (int i = 0; i < recordsEach / 5; ++i) {
            switch (thread) {
            case 0:
                logger_.setLogBaseName(i % 2 == 0 ? "even" : "odd");
                break;
            case 1:
                logger_.setTargetLogName(i % 2 == 0 ? log1() : log2());
                break;
            case 2:
                EXPECT_FALSE(logger_.saveDirectory().empty());
                static_cast<void>(logger_.targetLogName());
                break;
            case 3:
                logger_.selectLogFile();
                break;
            case 4:
                static_cast<void>(logger_.getLastLogTime(log1()));
                break;
            default:
                writeRecord();
            }
        }
    });
}

TEST_F(RollingLoggerThreads, ShareOneLogger)
{
    std::array<RollingLogger*, threadCount> seen{};
    onThreads([&seen](int thread) {
        seen.at(static_cast<std::size_t>(thread)) = &RollingLogger::sharedManager();
    });
    EXPECT_THAT(seen, ::testing::Each(seen[0]));
}

}  // namespace
}  // namespace nivor::test
