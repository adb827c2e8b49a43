/// Asks the user for a folder to copy into.
#pragma once

#include <QUrl>

#include <optional>

namespace nivor {

/// A test answers without a screen.
class FolderChooser {
public:
    FolderChooser() = default;
    virtual ~FolderChooser() = default;

    FolderChooser(const FolderChooser&) = delete;
    FolderChooser& operator=(const FolderChooser&) = delete;

    /// The folder, or nothing when the user has changed their mind. The event loop turns
    /// meanwhile. On the main thread.
    virtual std::optional<QUrl> chooseFolder() = 0;
};

}  // namespace nivor
