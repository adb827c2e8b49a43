/// A folder of a test's own, gone with everything in it when the test is over.
#pragma once

#include <cerrno>
#include <filesystem>
#include <string>
#include <system_error>

#include <stdlib.h>

namespace nivor::test {

/// Creates an empty folder with a fresh name below the system's temporary folder and removes it
/// when destroyed, also when the test took away permissions inside it.
class TemporaryDirectory {
public:
    TemporaryDirectory()
    {
        std::string name = (std::filesystem::temp_directory_path() / "nivor-test-XXXXXX").string();
        if (::mkdtemp(name.data()) == nullptr)
            throw std::system_error(errno, std::generic_category(), name);
        path_ = name;
    }

    ~TemporaryDirectory()
    {
        namespace fs = std::filesystem;
        std::error_code ignored;
        // A folder that may not be written to can't be emptied either.
        fs::permissions(path_, fs::perms::owner_all, ignored);
        for (fs::recursive_directory_iterator entry(path_, ignored), end; entry != end;
             entry.increment(ignored)) {
            if (entry->is_directory(ignored) && !entry->is_symlink(ignored))
                fs::permissions(entry->path(), fs::perms::owner_all, ignored);
        }
        fs::remove_all(path_, ignored);
    }

    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

}  // namespace nivor::test
