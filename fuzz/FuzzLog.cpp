#include "Targets.h"

#include "FuzzedInput.h"
#include "Require.h"
#include "logging/FileContents.h"
#include "logging/LogTimeStamp.h"
#include "logging/RecordText.h"
#include "logging/RollingLogger.h"
#include "support/TemporaryDirectory.h"
#include "support/TimeZone.h"

#include <QUtf8StringView>

#include <array>
#include <fstream>
#include <string>

namespace nivor::fuzz {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view marker = "<log time=\"";

// Without summer time, with it, and with one that begins at midnight.
constexpr std::array zones{"UTC", "Europe/Berlin", "America/Asuncion"};

const fs::path& folder()
{
    static const test::TemporaryDirectory directory;
    return directory.path();
}

std::string textOf(ByteView bytes)
{
    return {bytes.begin(), bytes.end()};
}

void putFile(const fs::path& path, const std::string& contents)
{
    std::ofstream(path, std::ios::binary | std::ios::trunc) << contents;
}

/// What the files of a logger hold before it is used.
struct LogFile {
    fs::path path;
    std::string contents;
    std::optional<std::chrono::sys_seconds> lastTime{};
};

void readLastTime(const RollingLogger& logger, LogFile& file)
{
    file.lastTime = logger.getLastLogTime(file.path);
    const bool holdsRecord = QUtf8StringView(file.contents).isValidUtf8()
        && file.contents.find(marker) != std::string::npos;
    require(holdsRecord || file.lastTime == std::chrono::sys_seconds{},
            "a file without a record has the time of none");
}

void parseStamp(ByteView input, bool isUTC)
{
    const QString text = QString::fromLatin1(reinterpret_cast<const char*>(input.data()),
                                             static_cast<qsizetype>(input.size()));
    const auto time = parseLogTimeStamp(text.toStdU16String());
    require(!time || !isUTC || formatLogTimeStamp(*time) == text.toStdString(),
            "a time stamp that is read is the one that was written");
}

/// Writes one record, and finds it and nothing else behind what was there.
void writeRecord(RollingLogger& logger, const LogFile& target, const LogFile& other,
                 std::chrono::sys_seconds now, const std::string& message)
{
    logger.writeToFile("Class", "selector:", message);
    require(logger.targetLogName() == target.path,
            "the file with the newer record is gone on with");
    require(contentsOfFile(other.path.string()) == other.contents, "the other file stays");

    const std::string stamp = formatLogTimeStamp(now);
    const std::string record = "<log time=\"" + stamp + "\">\n  <NIVOR_File_Transfer>\n"
        + "    <event>Class selector:</event>\n    <message>" + message + "</message>\n"
        + "  </NIVOR_File_Transfer>\n</log>\n";
    const auto contents = contentsOfFile(target.path.string());
    require(contents == target.contents + record, "a record goes behind what was there");

    const bool isText = QUtf8StringView(*contents).isValidUtf8();
    const bool beginsLine = target.contents.empty() || target.contents.back() == '\n';
    if (isText && beginsLine && message.find(marker) == std::string::npos) {
        const std::u16string units(stamp.begin(), stamp.end());
        require(logger.getLastLogTime(target.path) == parseLogTimeStamp(units),
                "the last time is that of the last record");
    }
}

/// Whatever a camera has put into the message, the record that is read back is the logger's.
void writeForeignText(RollingLogger& logger, std::chrono::sys_seconds now,
                      const std::string& message)
{
    logger.writeToFile("Class", "selector:", withoutRecordMarks(message));
    const auto contents = contentsOfFile(logger.targetLogName().string());
    if (!QUtf8StringView(*contents).isValidUtf8())
        return;
    const std::string stamp = formatLogTimeStamp(now);
    require(logger.getLastLogTime(logger.targetLogName())
                == parseLogTimeStamp(std::u16string(stamp.begin(), stamp.end())),
            "foreign text forges no record");
}

}  // namespace

void fuzzLog(ByteView input)
{
    FuzzedInput choices(input);
    const std::size_t zone = choices.choice(zones.size());
    const test::TimeZone inZone(zones[zone]);
    const std::chrono::sys_seconds now(std::chrono::seconds(choices.u32()));
    LogFile first{folder() / "FuzzLog.1.log", textOf(choices.bytes(choices.u16()))};
    LogFile second{folder() / "FuzzLog.2.log", textOf(choices.bytes(choices.u16()))};
    const ByteView message = choices.rest();
    parseStamp(message, zone == 0);

    putFile(first.path, first.contents);
    putFile(second.path, second.contents);
    RollingLogger logger([&] { return now; });
    logger.setLogBaseName("Fuzz");
    logger.setSaveDirectory(folder());
    readLastTime(logger, first);
    readLastTime(logger, second);

    const bool secondIsNewer =
        first.lastTime && second.lastTime && *first.lastTime < *second.lastTime;
    if (secondIsNewer)
        writeRecord(logger, second, first, now, textOf(message));
    else
        writeRecord(logger, first, second, now, textOf(message));
    writeForeignText(logger, now, textOf(message));
}

}  // namespace nivor::fuzz
