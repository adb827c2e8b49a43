/// The program's only diagnostic log: two files that take turns, about 5 MiB each.
#pragma once

#include "foundation/AtomicProperty.h"
#include "logging/AppendingFile.h"
#include "logging/RecordTime.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace nivor {

/// Appends XML-like records to one of two files in a folder, and empties and reuses the older file
/// when the newer one is full.
///
/// Every operation may be called from any thread. No operation reports a failure or raises one:
/// a record that can't be written is lost, and the next one tries everything again. Until a folder
/// has been set every record is lost.
///
/// Several processes may log into one folder: each record is one append, and they take turns to
/// choose a file, and none empties what another goes on with, unless both files are full.
class RollingLogger {
public:
    using Clock = std::function<std::chrono::system_clock::time_point()>;

    /// The program's fixed executable name: the base name of the log files, and with its blanks
    /// made "_" the element name inside every record.
    static constexpr std::string_view programName = "NIVOR File Transfer";

    /// A file of this many bytes or more takes no further record. Looked at before a record is
    /// added, so a file may end up one record longer.
    static constexpr std::int64_t fullSize = 5'242'880;

    /// The logger of the process: created on first use, never destroyed, so that threads may log
    /// until the very end.
    static RollingLogger& sharedManager();

    /// Where the log belongs: the folder of this program below the user's home folder, which is
    /// the HOME variable or else the user's account entry. Empty when neither names one.
    static std::filesystem::path defaultDirectory();

    /// `clock` tells the time that records are stamped with; an empty one is the system's.
    explicit RollingLogger(Clock clock = {});

    RollingLogger(const RollingLogger&) = delete;
    RollingLogger& operator=(const RollingLogger&) = delete;

    /// Appends one record of six lines, stamped with the current second in UTC.
    ///
    /// The texts are UTF-8 and are written as they are: nothing is escaped, and a line feed in
    /// `message` makes the record longer by a line. The first argument names the caller's class,
    /// not a file. Records of several threads are written one after the other, each of them whole.
    void writeToFile(std::string_view className, std::string_view procName,
                     std::string_view message);

    /// Sets `targetLogName` to the file with the newer last record, or to the first file if
    /// neither is newer, and creates it if need be; when that file is full, to the other one,
    /// which is emptied.
    void selectLogFile();

    /// The time of the last record in a file, or the epoch when the file is missing, can't be
    /// read, is not UTF-8 text or holds no record. Nothing when the time of the last record can't
    /// be read.
    ///
    /// The digits, although written in UTC, are taken as local time. This is deliberate: times are
    /// only ever compared with each other.
    [[nodiscard]] std::optional<std::chrono::sys_seconds> getLastLogTime(
        const std::filesystem::path& path) const;

    /// The size in bytes of what lies at `path`, or 0 when nothing does.
    [[nodiscard]] std::int64_t getFileSize(const std::filesystem::path& path) const;

    /// Creates the folder, with those it lies in, if it is missing; then an empty file at
    /// `targetLogName`, which is where callers say `path` is: the argument itself is not used.
    void makeFile(const std::filesystem::path& path);

    /// What both file names begin with, directly followed by "Log.1.log" or "Log.2.log".
    [[nodiscard]] std::string logBaseName() const;
    void setLogBaseName(std::string name);

    /// The folder of both files, an absolute path. Empty until set.
    [[nodiscard]] std::filesystem::path saveDirectory() const;
    void setSaveDirectory(const std::filesystem::path& directory);

    /// The file that records currently go to. Empty until the first record has been written.
    [[nodiscard]] std::filesystem::path targetLogName() const;
    void setTargetLogName(const std::filesystem::path& name);

private:
    /// For another process that is choosing a file.
    static constexpr std::chrono::milliseconds longestPatience{1000};

    bool isTargetUsable();
    void chooseTarget(bool isTargetFull);
    void createTarget(int flag);
    const std::string& record(std::string_view className, std::string_view procName,
                              std::string_view message);

    const Clock clock_;

    AtomicProperty<std::string> logBaseName_;
    AtomicProperty<std::string> saveDirectory_;
    // Shared rather than copied: it is read for every record.
    AtomicProperty<std::shared_ptr<const std::string>> targetLogName_;

    // Held while the target is chosen and a record written. Guards what follows.
    std::mutex writing_;
    std::chrono::milliseconds patience_ = longestPatience;
    AppendingFile target_;  ///< kept open from record to record while it stays in its place
    std::chrono::sys_seconds stampedSecond_{std::chrono::sys_seconds::min()};
    std::string stamp_;
    std::string record_;
};

}  // namespace nivor
