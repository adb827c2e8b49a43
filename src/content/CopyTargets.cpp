#include "content/CopyTargets.h"

#include "content/LocalFileName.h"
#include "ptp/FileHandle.h"

#include <cerrno>
#include <utility>

namespace nivor {
namespace {

// Somebody else may create a name between the look and the creation. A file system that says so
// this often in a row is broken, and the run must not hang on it.
constexpr int mostLostRaces = 1000;

std::shared_ptr<FileHandle> createNewFile(const std::filesystem::path& path)
{
    return std::make_shared<FileHandle>(FileHandle::create(path));
}

/// Whether anything has that name, a link that leads nowhere included.
bool isTaken(const std::filesystem::path& path)
{
    std::error_code ignored;
    return std::filesystem::exists(std::filesystem::symlink_status(path, ignored));
}

}  // namespace

CopyTargets::CopyTargets(std::filesystem::path destination, CreateFile createFile)
    : destination_(std::move(destination))
    , createFile_(createFile ? std::move(createFile) : CreateFile(&createNewFile))
{
}

std::filesystem::path CopyTargets::candidate(const QString& localName) const
{
    const qsizetype uses = uses_.value(localName);
    const QString name = uses == 0 ? localName : numberedLocalFileName(localName, uses);
    return destination_ / name.toStdString();
}

std::shared_ptr<FileHandle> CopyTargets::create(const QString& cameraName)
{
    const QString localName = localFileName(cameraName);
    for (int lostRaces = 0;;) {
        const std::filesystem::path path = candidate(localName);
        if (!isTaken(path)) {
            std::shared_ptr<FileHandle> file = createFile_(path);
            if (file->openError() != EEXIST || ++lostRaces == mostLostRaces)
                return file;
        }
        ++uses_[localName];
    }
}

void CopyTargets::recordUse(const QString& cameraName)
{
    ++uses_[localFileName(cameraName)];
}

}  // namespace nivor
