/// Reads back what the rolling logger wrote, record by record.
#pragma once

#include "logging/RollingLogger.h"
#include "support/TemporaryDirectory.h"

#include <filesystem>
#include <fstream>
#include <ostream>
#include <string>
#include <vector>

namespace nivor::test {

struct LogRecord {
    std::string event;  ///< class name and selector, separated by one blank
    std::string message;

    friend bool operator==(const LogRecord&, const LogRecord&) = default;
    friend std::ostream& operator<<(std::ostream& out, const LogRecord& record)
    {
        return out << '[' << record.event << "] " << record.message;
    }
};

/// A logger that writes into a folder of its own, which it takes away again.
class LogFixture {
public:
    LogFixture()
    {
        logger_.setLogBaseName("Test");
        logger_.setSaveDirectory(directory_.path());
    }

    RollingLogger& logger() { return logger_; }

    [[nodiscard]] std::vector<LogRecord> records() const
    {
        std::vector<LogRecord> records;
        std::ifstream file(directory_.path() / "TestLog.1.log");
        std::string line;
        LogRecord record;
        while (std::getline(file, line)) {
            if (line.starts_with(eventStart))
                record.event = textBetween(line, eventStart, "</event>");
            if (line.starts_with(messageStart)) {
                record.message = textBetween(line, messageStart, "</message>");
                records.push_back(record);
            }
        }
        return records;
    }

    /// The messages of one event, in order.
    [[nodiscard]] std::vector<std::string> messagesOf(std::string_view event) const
    {
        std::vector<std::string> messages;
        for (const LogRecord& record : records()) {
            if (record.event == event)
                messages.push_back(record.message);
        }
        return messages;
    }

    /// The messages of one event among the records behind the first `count`.
    [[nodiscard]] std::vector<std::string> messagesSince(std::size_t count,
                                                         std::string_view event) const
    {
        const std::vector<LogRecord> all = records();
        std::vector<std::string> messages;
        for (std::size_t i = count; i < all.size(); ++i) {
            if (all[i].event == event)
                messages.push_back(all[i].message);
        }
        return messages;
    }

    [[nodiscard]] LogRecord last() const
    {
        const std::vector<LogRecord> all = records();
        return all.empty() ? LogRecord{} : all.back();
    }

private:
    static constexpr std::string_view eventStart = "    <event>";
    static constexpr std::string_view messageStart = "    <message>";

    static std::string textBetween(const std::string& line, std::string_view start,
                                   std::string_view end)
    {
        return line.substr(start.size(), line.rfind(end) - start.size());
    }

    TemporaryDirectory directory_;
    RollingLogger logger_;
};

}  // namespace nivor::test
