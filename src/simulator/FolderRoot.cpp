#include "simulator/FolderRoot.h"

#include "foundation/Errors.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

namespace nivor {

namespace {

constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

// A named pipe put in a file's place must not make the opening wait.
constexpr int fileFlags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;

}  // namespace

FolderRoot::FolderRoot(const std::filesystem::path& folder)
    : root_(::open(folder.c_str(), folderFlags))  // the user may well name a link here
{
    if (!root_)
        throw FileError(errno, folder.string());
}

FileDescriptor FolderRoot::openFolder(const std::filesystem::path& relative) const
{
    FileDescriptor folder(::openat(root_.get(), ".", folderFlags));
    for (const std::filesystem::path& part : relative) {
        if (!folder || part == "..")
            return {};
        folder = FileDescriptor(::openat(folder.get(), part.c_str(), folderFlags | O_NOFOLLOW));
    }
    return folder;
}

FileDescriptor FolderRoot::openFile(const std::filesystem::path& relative) const
{
    const FileDescriptor folder = openFolder(relative.parent_path());
    if (!folder)
        return {};
    FileDescriptor file(::openat(folder.get(), relative.filename().c_str(), fileFlags));
    struct stat status { };
    if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode))
        return {};
    return file;
}

bool FolderRoot::remove(const std::filesystem::path& relative, bool isFolder) const
{
    const FileDescriptor folder = openFolder(relative.parent_path());
    return folder
        && ::unlinkat(folder.get(), relative.filename().c_str(), isFolder ? AT_REMOVEDIR : 0) == 0;
}

}  // namespace nivor
