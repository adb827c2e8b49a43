/// The files that one copy run creates: each under a free name of the destination folder.
#pragma once

#include <QHash>
#include <QString>

#include <filesystem>
#include <functional>
#include <memory>

namespace nivor {

class FileHandle;

/// Remembers which names a run has given out or found taken, so that numbers go on rising and
/// nothing that exists is ever overwritten. One thread at a time.
class CopyTargets {
public:
    /// Creates a new, empty file and opens it, as `FileHandle::create`.
    using CreateFile =
        std::function<std::shared_ptr<FileHandle>(const std::filesystem::path& path)>;

    /// `createFile`: another way to make files; empty means `FileHandle::create`.
    explicit CopyTargets(std::filesystem::path destination, CreateFile createFile = {});

    /// Creates the file for the next object called `cameraName`, under that name or its first
    /// variant that is free. The handle is not open when the folder refuses it; its `openError`
    /// says why.
    std::shared_ptr<FileHandle> create(const QString& cameraName);

    /// Counts `cameraName` as given out. Call once after each file, whatever became of it.
    void recordUse(const QString& cameraName);

private:
    [[nodiscard]] std::filesystem::path candidate(const QString& localName) const;

    std::filesystem::path destination_;
    CreateFile createFile_;
    QHash<QString, qsizetype> uses_;  ///< by name as it may stand locally
};

}  // namespace nivor
