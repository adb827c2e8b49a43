/// An existing file opened to write at its end, however the others who write to it move that end.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace nivor {

/// A file descriptor in append mode. Nothing here fails towards the caller: a file that doesn't
/// open takes what is appended and drops it. Not for use from several threads at a time.
class AppendingFile {
public:
    /// Opens the file at `path`; never creates one.
    explicit AppendingFile(const std::string& path);
    ~AppendingFile();

    AppendingFile(AppendingFile&& other) noexcept;
    AppendingFile& operator=(AppendingFile&&) = delete;

    [[nodiscard]] bool isOpen() const { return descriptor_ >= 0; }

    /// The open file's size in bytes; 0 when it can't be told.
    [[nodiscard]] std::int64_t size() const;

    /// Adds the bytes in one write at the end of the file, wherever that is by then.
    void append(std::string_view bytes);

private:
    int descriptor_;
};

}  // namespace nivor
