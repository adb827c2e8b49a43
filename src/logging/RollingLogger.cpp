#include "logging/RollingLogger.h"

#include "logging/FileContents.h"
#include "logging/FolderLock.h"
#include "logging/LogTimeStamp.h"
#include "logging/RecordTime.h"

#include <array>
#include <cstdlib>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace nivor {

namespace {

using namespace std::chrono_literals;

constexpr auto elementNameUnits = [] {
    std::array<char, RollingLogger::programName.size()> units{};
    for (std::size_t i = 0; i < units.size(); ++i) {
        const char unit = RollingLogger::programName[i];
        units[i] = unit == ' ' ? '_' : unit;
    }
    return units;
}();
constexpr std::string_view elementName(elementNameUnits.data(), elementNameUnits.size());

constexpr std::chrono::sys_seconds epoch{};

/// Runs `work` and absorbs what it throws (memory may run out): logging never fails its caller.
template <typename Work> void quietly(Work&& work)
{
    try {
        std::forward<Work>(work)();
    } catch (...) {
    }
}

/// The size of what lies at `path`, or nothing when nothing does.
std::optional<std::int64_t> sizeOf(const char* path)
{
    struct stat status { };
    if (::stat(path, &status) != 0)
        return std::nullopt;
    return std::int64_t{status.st_size};
}

/// Leaves an empty file at `path`; fails silently. `flag`: what to do with one that is there.
void createEmptyFile(const char* path, int flag)
{
    const int descriptor = ::open(path, O_WRONLY | O_CREAT | O_CLOEXEC | flag, 0666);
    if (descriptor >= 0)
        ::close(descriptor);
}

/// The user's home folder, or nothing.
std::string homeDirectory()
{
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nothing in the program changes the environment.
    const char* const home = std::getenv("HOME");
    if (home != nullptr && *home != '\0')
        return home;

    std::array<char, std::size_t{16} * 1024> texts{};
    passwd entry{};
    passwd* found = nullptr;
    if (::getpwuid_r(::getuid(), &entry, texts.data(), texts.size(), &found) != 0
        || found == nullptr || found->pw_dir == nullptr)
        return {};
    return found->pw_dir;
}

}  // namespace

RollingLogger& RollingLogger::sharedManager()
{
    static RollingLogger* const logger = new RollingLogger;
    return *logger;
}

std::filesystem::path RollingLogger::defaultDirectory()
{
    const std::string home = homeDirectory();
    if (home.empty())
        return {};
    return home + "/Library/Application Support/KAVRO/NIVOR File Transfer for Mac";
}

RollingLogger::RollingLogger(Clock clock)
    : clock_(clock ? std::move(clock) : Clock([] { return std::chrono::system_clock::now(); }))
{
}

void RollingLogger::writeToFile(std::string_view className, std::string_view procName,
                                std::string_view message)
{
    quietly([&] {
        const std::lock_guard guard(writing_);
        const std::string& text = record(className, procName, message);
        if (isTargetUsable()) {
            target_.append(text);
            return;
        }
        // Held until the record is in the file: another process then finds that this one has
        // begun it, rather than emptying it once more.
        const FolderLock lock(saveDirectory_.get(), patience_);
        // One that hangs is waited for once.
        patience_ = lock.isOthers() ? 0ms : longestPatience;
        // While another one is choosing, better a file that is too long than one emptied twice.
        if (!lock.isOthers() || !target_.sizeInPlace()) {
            chooseTarget(target_.sizeInPlace().value_or(0) >= fullSize);
            const auto name = targetLogName_.get();
            target_ = AppendingFile(name ? *name : std::string());
        }
        target_.append(text);
    });
}

/// Whether `target_` is where records go: it has to be chosen anew when there is none yet, it is
/// gone, or it is full.
bool RollingLogger::isTargetUsable()
{
    if (const auto name = targetLogName_.get()) {
        std::optional<std::int64_t> size;
        if (target_.path() == *name)
            size = target_.sizeInPlace();
        if (!size) {
            target_ = AppendingFile(*name);
            // A file that is there but doesn't open stays the target: the record is lost then.
            size = target_.isOpen() ? target_.sizeInPlace() : sizeOf(name->c_str());
        }
        if (size && *size < fullSize)
            return true;
    }
    return false;
}

/// The text of one record, in memory that is kept for the next. Only with `writing_` held.
const std::string& RollingLogger::record(std::string_view className, std::string_view procName,
                                         std::string_view message)
{
    const auto now = std::chrono::floor<std::chrono::seconds>(clock_());
    if (stamp_.empty() || now != stampedSecond_) {
        stamp_ = formatLogTimeStamp(now);
        stampedSecond_ = now;
    }

    std::string& text = record_;
    text.clear();
    text.append(recordMarker).append(stamp_).append("\">\n");
    text.append("  <").append(elementName).append(">\n");
    text.append("    <event>").append(className).append(" ").append(procName);
    text.append("</event>\n");
    text.append("    <message>").append(message).append("</message>\n");
    text.append("  </").append(elementName).append(">\n");
    text.append("</log>\n");
    return text;
}

void RollingLogger::selectLogFile()
{
    quietly([this] {
        const std::lock_guard guard(writing_);
        const FolderLock lock(saveDirectory_.get(), longestPatience);
        chooseTarget(false);
    });
}

/// What `selectLogFile` does. Only with `writing_` held. `isTargetFull`: it was not so when this
/// logger chose it.
void RollingLogger::chooseTarget(bool isTargetFull)
{
    const std::string directory = saveDirectory_.get();
    if (directory.empty())
        return;
    const std::string stem = directory + "/" + logBaseName_.get();
    auto candidate = std::make_shared<const std::string>(stem + "Log.1.log");
    auto other = std::make_shared<const std::string>(stem + "Log.2.log");

    // A time that can't be read counts as equal to any other, and equal times favour the first.
    const auto firstTime = getLastLogTime(*candidate);
    const auto secondTime = getLastLogTime(*other);
    if (firstTime && secondTime && *firstTime < *secondTime)
        std::swap(candidate, other);

    const auto size = sizeOf(candidate->c_str());
    if (size.value_or(0) < fullSize) {
        targetLogName_.set(candidate);
        if (!size)
            createTarget(O_EXCL);
    } else {
        targetLogName_.set(other);
        // What another process has begun in this very second, or still goes on with, is gone on
        // with.
        const bool isBegun = isTargetFull && firstTime == secondTime;
        const bool isOthers = sizeOf(other->c_str()).value_or(fullSize) < fullSize
            && (isBegun || AppendingFile::isAppendedToByOthers(*other));
        if (!isOthers)
            createEmptyFile(other->c_str(), O_TRUNC);
    }
}

std::optional<std::chrono::sys_seconds> RollingLogger::getLastLogTime(
    const std::filesystem::path& path) const
{
    RecordTime time = epoch;
    quietly([&] {
        if (const auto contents = contentsOfFile(path.string()))
            time = lastRecordTime(*contents);
    });
    return time;
}

std::int64_t RollingLogger::getFileSize(const std::filesystem::path& path) const
{
    return sizeOf(path.c_str()).value_or(0);
}

void RollingLogger::makeFile(const std::filesystem::path& /*path*/)
{
    quietly([this] {
        const std::lock_guard guard(writing_);
        createTarget(O_TRUNC);
    });
}

/// What `makeFile` does. Only with `writing_` held. `flag`: `O_TRUNC` empties a file that is
/// there, `O_EXCL` leaves it alone.
void RollingLogger::createTarget(int flag)
{
    std::error_code ignored;
    std::filesystem::create_directories(saveDirectory_.get(), ignored);
    if (const auto name = targetLogName_.get())
        createEmptyFile(name->c_str(), flag);
}

std::string RollingLogger::logBaseName() const
{
    return logBaseName_.get();
}

void RollingLogger::setLogBaseName(std::string name)
{
    logBaseName_.set(std::move(name));
}

std::filesystem::path RollingLogger::saveDirectory() const
{
    return saveDirectory_.get();
}

void RollingLogger::setSaveDirectory(const std::filesystem::path& directory)
{
    saveDirectory_.set(directory.string());
}

std::filesystem::path RollingLogger::targetLogName() const
{
    const auto name = targetLogName_.get();
    return name ? std::filesystem::path(*name) : std::filesystem::path();
}

void RollingLogger::setTargetLogName(const std::filesystem::path& name)
{
    targetLogName_.set(name.empty() ? nullptr : std::make_shared<const std::string>(name.string()));
}

}  // namespace nivor
