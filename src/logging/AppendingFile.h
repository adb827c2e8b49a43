/// An existing file opened to write at its end, however the others who write to it move that end.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include <sys/types.h>

namespace nivor {

/// A file descriptor in append mode. Nothing here fails towards the caller: a file that doesn't
/// open takes what is appended and drops it. Not for use from several threads at a time.
class AppendingFile {
public:
    /// Not open.
    AppendingFile() = default;

    /// Opens the file at `path`; never creates one. While it is open other processes can know
    /// (`isAppendedToByOthers`).
    explicit AppendingFile(std::string path);
    ~AppendingFile();

    AppendingFile(AppendingFile&& other) noexcept;
    AppendingFile& operator=(AppendingFile&& other) noexcept;

    /// The path it was opened, or not opened, by.
    [[nodiscard]] const std::string& path() const { return path_; }

    [[nodiscard]] bool isOpen() const { return descriptor_ >= 0; }

    /// The size in bytes, if it is open and what lies at its path is still this file, with
    /// the permissions that it was opened with.
    [[nodiscard]] std::optional<std::int64_t> sizeInPlace() const;

    /// Adds the bytes in one write at the end of the file, wherever that is by then.
    void append(std::string_view bytes);

    /// Whether another process, or another object of this one, has the file at `path` open. Never
    /// where the file system knows no locks.
    static bool isAppendedToByOthers(const std::string& path);

private:
    std::string path_;
    int descriptor_ = -1;
    dev_t device_ = 0;
    ino_t inode_ = 0;
    mode_t mode_ = 0;
};

}  // namespace nivor
