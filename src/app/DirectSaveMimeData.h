/// What a drag offers of files that exist only once their folder is known.
#pragma once

#include "app/DirectSaveProperty.h"

#include <QMimeData>
#include <QUrl>

#include <functional>
#include <optional>

namespace nivor {

/// Nothing but a direct save (XDS): were there URIs as well, some targets would take those.
/// Lives as long as Qt lets the target ask, which may be well behind the end of `QDrag::exec`.
class DirectSaveMimeData : public QMimeData {
public:
    using FolderNamed = std::function<void(const QUrl& folder)>;

    /// `fileName`: a safe name without a path. `folderNamed`: called from within a target's
    /// request whenever that names a folder, also before `QDrag::exec` returns.
    DirectSaveMimeData(const QString& fileName, FolderNamed folderNamed);

    /// No folder will be taken any more; the one that was last is still confirmed to who asks.
    void close() { folderNamed_ = nullptr; }

    [[nodiscard]] QStringList formats() const override;
    [[nodiscard]] bool hasFormat(const QString& mimeType) const override;

protected:
    QVariant retrieveData(const QString& mimeType, QMetaType type) const override;

private:
    // Qt asks for formats and data through const functions alone.
    const QByteArray fileName_;
    FolderNamed folderNamed_;
    mutable DirectSaveProperty property_;
    mutable std::optional<QUrl> folder_;
};

}  // namespace nivor
