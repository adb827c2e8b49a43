#include "content/CopyTargets.h"

#include "content/DestinationFolder.h"
#include "content/LocalFileName.h"
#include "content/PortableFileName.h"
#include "ptp/FileHandle.h"

#include <cerrno>
#include <utility>

namespace nivor {
namespace {

// Somebody else may create a name between the look and the creation. A file system that says so
// this often in a row is broken, and the run must not hang on it.
constexpr int mostLostRaces = 1000;

}  // namespace

CopyTargets::CopyTargets(std::shared_ptr<const DestinationFolder> folder, CreateFile createFile)
    : folder_(std::move(folder))
    , createFile_(std::move(createFile))
{
}

std::string CopyTargets::candidate(const QString& localName) const
{
    const qsizetype uses = uses_.value(localName);
    const QString name = uses == 0 ? localName : numberedLocalFileName(localName, uses);
    return (isPortable_ ? portableFileName(name) : name).toStdString();
}

std::shared_ptr<FileHandle> CopyTargets::createNamed(const std::string& name) const
{
    if (createFile_)
        return createFile_(folder_->path() / name);
    return std::make_shared<FileHandle>(folder_->create(name));
}

std::shared_ptr<FileHandle> CopyTargets::create(const QString& cameraName)
{
    const QString localName = localFileName(cameraName);
    for (int lostRaces = 0;;) {
        const std::string name = candidate(localName);
        if (!folder_->isTaken(name)) {
            std::shared_ptr<FileHandle> file = createNamed(name);
            if (file->openError() == EINVAL && !isPortable_) {
                isPortable_ = true;
                if (candidate(localName) != name)
                    continue;
                isPortable_ = false;  // nothing to change: the refusal has another reason
            }
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
