/// An open destination file that reports every failure of the disk.
#pragma once

#include "foundation/Bytes.h"

#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <string>

namespace nivor {

/// Every operation that the file system refuses raises `FileError` with its errno; so does every
/// operation on a handle that never opened, with the errno of the opening. One thread at a time.
class FileHandle {
public:
    /// Creates a new, empty file and opens it for writing. A name that is taken, by a link too,
    /// leaves the handle unopened with EEXIST: nothing that exists is ever touched.
    static FileHandle create(const std::filesystem::path& path);

    /// As `create`, with only the last part of `path` looked up, in the folder that is open as
    /// `folder`: wherever that folder is by now, and nowhere else.
    static FileHandle createIn(int folder, const std::filesystem::path& path);

    /// The handle of a file that could not be opened, with the errno of that.
    static FileHandle unopened(int errnoValue, std::filesystem::path path);

    /// Opens an existing file for writing, without changing it.
    static FileHandle openForWriting(const std::filesystem::path& path);

    /// Takes over an open descriptor; `path` is for messages.
    FileHandle(int descriptor, std::filesystem::path path);

    virtual ~FileHandle();
    FileHandle(FileHandle&& other) noexcept;
    FileHandle& operator=(FileHandle&&) = delete;
    FileHandle(const FileHandle&) = delete;
    FileHandle& operator=(const FileHandle&) = delete;

    [[nodiscard]] bool isOpen() const { return descriptor_ >= 0; }

    /// The errno of the opening; 0 when it succeeded.
    [[nodiscard]] int openError() const { return openError_; }

    /// The errno of the first operation that failed on the open file; 0 when none has.
    [[nodiscard]] int failure() const { return failure_; }

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

    /// Raises an error if the disk has no room for `size` bytes, or takes no file as large as that.
    /// The file must be empty, and is empty afterwards. A file system that can't tell raises
    /// nothing.
    void requireRoom(std::uint64_t size);

    /// Cuts or extends the file to `length` bytes and moves the position there.
    void truncateFile(std::uint64_t length);

    void seekToEndOfFile();

    /// Writes all of `bytes` at the position and moves it behind them.
    void writeData(ByteView bytes);

    /// Returns once the file's bytes are on the disk.
    void synchronizeFile();

    /// Closes the file; what only the closing brings to light is raised as well.
    void closeFile();

protected:
    /// One attempt each, as write(2), fallocate(2), fsync(2) and close(2): -1 with errno set when
    /// it fails.
    virtual ssize_t writeSome(ByteView bytes);
    virtual int reserveOnce(std::uint64_t size);
    virtual int synchronizeOnce();
    virtual int closeOnce();

private:
    FileHandle(int descriptor, int openError, std::filesystem::path path);

    static FileHandle open(int folder, const std::filesystem::path& lookedUp, int flags,
                           const std::filesystem::path& path);
    void requireOpen(const char* operation);
    [[noreturn]] void fail(const char* operation, int errnoValue);

    int descriptor_;
    int openError_;
    int failure_ = 0;
    std::filesystem::path path_;
};

}  // namespace nivor
