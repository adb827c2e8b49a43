/// The files that one copy run creates: each under a free name of the destination folder.
#pragma once

#include <QHash>
#include <QString>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

namespace nivor {

class DestinationFolder;
class FileHandle;

/// Remembers which names a run has given out or found taken, so that numbers go on rising and
/// nothing that exists is ever overwritten. One thread at a time.
class CopyTargets {
public:
    /// Creates a new, empty file and opens it, as `DestinationFolder::create`.
    using CreateFile =
        std::function<std::shared_ptr<FileHandle>(const std::filesystem::path& path)>;

    /// `createFile`: another way to make files; empty means that of the folder.
    explicit CopyTargets(std::shared_ptr<const DestinationFolder> folder,
                         CreateFile createFile = {});

    /// Creates the file for the next object called `cameraName`, under that name or its first
    /// variant that is free. From the first name on that the folder refuses as such, names are made
    /// portable. The handle is not open when the folder refuses it; its `openError`
    /// says why.
    std::shared_ptr<FileHandle> create(const QString& cameraName);

    /// Counts `cameraName` as given out. Call once after each file, whatever became of it.
    void recordUse(const QString& cameraName);

private:
    [[nodiscard]] std::string candidate(const QString& localName) const;
    [[nodiscard]] std::shared_ptr<FileHandle> createNamed(const std::string& name) const;

    const std::shared_ptr<const DestinationFolder> folder_;
    const CreateFile createFile_;
    bool isPortable_ = false;         ///< the folder has refused a name that others take
    QHash<QString, qsizetype> uses_;  ///< by name as it may stand locally
};

}  // namespace nivor
