/// The folder that a copy run writes into: one and the same from its first file to its last.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace nivor {

class FileHandle;

/// Opened once, so that nothing lands elsewhere when the folder's name comes to stand for another
/// folder, or for a link to one. The name itself may be a link when the run begins. Names of files
/// are never followed when they are links. Any number of threads.
class DestinationFolder {
public:
    /// A folder that can't be opened refuses every operation with the errno of that.
    explicit DestinationFolder(std::filesystem::path path);
    ~DestinationFolder();

    DestinationFolder(const DestinationFolder&) = delete;
    DestinationFolder& operator=(const DestinationFolder&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

    /// Whether its path leads to nothing by now, or to another folder. Never of a folder that could
    /// not be opened.
    [[nodiscard]] bool hasMoved() const;

    /// What to say of one that has moved.
    [[nodiscard]] std::string movedText() const;

    /// Whether anything has that name, a link that leads nowhere included.
    [[nodiscard]] bool isTaken(const std::string& name) const;

    /// As `FileHandle::create`.
    [[nodiscard]] FileHandle create(const std::string& name) const;

    /// The size of a file in bytes. Raises `FileError` when there is no file of that name.
    [[nodiscard]] std::uint64_t sizeOf(const std::string& name) const;

    /// A descriptor of the file, which the caller closes. Raises `FileError`.
    [[nodiscard]] int openForReading(const std::string& name) const;

    /// The errno that a file of `size` bytes is certain to meet: ENOSPC or EROFS; 0 when it may
    /// fit.
    [[nodiscard]] int refusalOf(std::uint64_t size) const;

private:
    [[noreturn]] void fail(const char* operation, const std::string& name, int errnoValue) const;

    const std::filesystem::path path_;
    const int descriptor_;
    const int openError_;
};

}  // namespace nivor
