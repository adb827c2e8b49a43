#include "simulator/FolderScan.h"

#include "simulator/FileFormat.h"

#include <QByteArray>
#include <QString>

#include <algorithm>
#include <ctime>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <string>
#include <sys/stat.h>

namespace nivor {

namespace {

struct CloseDirectory {
    void operator()(DIR* directory) const { ::closedir(directory); }
};

std::vector<std::string> namesIn(FileDescriptor& folder)
{
    std::vector<std::string> names;
    const std::unique_ptr<DIR, CloseDirectory> directory(::fdopendir(folder.get()));
    if (!directory)
        return names;
    static_cast<void>(folder.release());  // the directory owns it now
    // Each scan has a directory of its own, which is all that readdir asks for.
    // NOLINTNEXTLINE(concurrency-mt-unsafe): see above.
    while (const dirent* entry = ::readdir(directory.get())) {
        const std::string name = entry->d_name;
        if (!name.starts_with('.'))
            names.push_back(name);
        if (names.size() >= FolderScan::mostObjects)
            break;
    }
    std::sort(names.begin(), names.end());
    return names;
}

/// The camera's clock shows local time.
std::u16string ptpDate(std::time_t time)
{
    std::tm local{};
    if (::localtime_r(&time, &local) == nullptr)
        return {};
    char text[32] = "";
    const std::size_t length = std::strftime(text, sizeof(text), "%Y%m%dT%H%M%S", &local);
    return std::u16string(text, text + length);
}

class Scanner {
public:
    explicit Scanner(const FolderRoot& root)
        : root_(root)
    {
    }

    void scan(const std::filesystem::path& path, std::uint32_t parent, unsigned depth)
    {
        FileDescriptor folder = root_.openFolder(path);
        if (!folder || depth > FolderScan::deepest)
            return;
        for (const std::string& name : namesIn(folder)) {
            if (found_.size() >= FolderScan::mostObjects)
                return;
            add(path / name, name, parent, depth);
        }
    }

    std::vector<FolderScan::Found> take() { return std::move(found_); }

private:
    void add(const std::filesystem::path& path, const std::string& name, std::uint32_t parent,
             unsigned depth)
    {
        const FileDescriptor folder = root_.openFolder(path.parent_path());
        struct stat status { };
        if (!folder || ::fstatat(folder.get(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0)
            return;
        const bool isFolder = S_ISDIR(status.st_mode);
        if (!isFolder && !S_ISREG(status.st_mode))
            return;

        CardObject object{.handle = static_cast<std::uint32_t>(found_.size() + 1),
                          .parent = parent,
                          .name =
                              QString::fromUtf8(QByteArray::fromStdString(name)).toStdU16String(),
                          .captureDate = ptpDate(status.st_mtime),
                          .modificationDate = ptpDate(status.st_mtime)};
        object.format = isFolder ? ObjectFormatCode::Association : formatOfFile(object.name);
        object.size = isFolder ? 0 : static_cast<std::uint64_t>(status.st_size);
        const std::uint32_t handle = object.handle;
        found_.push_back({std::move(object), path});
        if (isFolder)
            scan(path, handle, depth + 1);
    }

    const FolderRoot& root_;
    std::vector<FolderScan::Found> found_;
};

}  // namespace

std::vector<FolderScan::Found> FolderScan::of(const FolderRoot& root)
{
    Scanner scanner(root);
    scanner.scan({}, noHandle, 0);
    return scanner.take();
}

}  // namespace nivor
