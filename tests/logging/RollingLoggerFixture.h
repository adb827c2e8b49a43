/// A logger with a folder and a clock of the test's own.
#pragma once

#include "logging/RollingLogger.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

namespace nivor::test {

inline std::string textOf(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

inline void setText(const std::filesystem::path& path, std::string_view text)
{
    std::ofstream file(path, std::ios::binary);
    file.write(text.data(), static_cast<std::streamsize>(text.size()));
}

/// The record of message "m" by method "p:" of class "C", stamped with `stamp`.
inline std::string recordOf(std::string_view stamp)
{
    return "<log time=\"" + std::string(stamp)
        + "\">\n"
          "  <NIVOR_File_Transfer>\n"
          "    <event>C p:</event>\n"
          "    <message>m</message>\n"
          "  </NIVOR_File_Transfer>\n"
          "</log>\n";
}

/// A file of exactly `size` bytes whose last record is stamped with `stamp`.
inline void setFileOfSize(const std::filesystem::path& path, std::int64_t size,
                          std::string_view stamp)
{
    const std::string record = recordOf(stamp);
    std::string text(static_cast<std::size_t>(size) - record.size(), 'x');
    text.back() = '\n';
    setText(path, text + record);
}

class RollingLoggerFixture : public ::testing::Test {
protected:
    static constexpr std::string_view earlier = "2024-04-30T23:59:59Z";
    static constexpr std::string_view nowStamp = "2024-05-01T09:30:00Z";

    RollingLoggerFixture()
    {
        logger_.setLogBaseName("NIVOR File Transfer");
        logger_.setSaveDirectory(folder());
    }

    void createFolder() { std::filesystem::create_directories(folder()); }

    /// Writes the record that `recordOf(nowStamp)` is the text of.
    void writeRecord() { logger_.writeToFile("C", "p:", "m"); }

    [[nodiscard]] std::filesystem::path folder() const
    {
        return temporary_.path() / "KAVRO" / "NIVOR File Transfer for Mac";
    }
    [[nodiscard]] std::filesystem::path log1() const
    {
        return folder() / "NIVOR File TransferLog.1.log";
    }
    [[nodiscard]] std::filesystem::path log2() const
    {
        return folder() / "NIVOR File TransferLog.2.log";
    }

    TemporaryDirectory temporary_;
    // 2024-05-01T09:30:00Z.
    std::atomic<std::int64_t> now_{1'714'555'800'000};
    RollingLogger logger_{[this] {
        return std::chrono::system_clock::time_point(std::chrono::milliseconds(now_.load()));
    }};
};

}  // namespace nivor::test
