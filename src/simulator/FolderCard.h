/// A card that shows a folder of the user's.
#pragma once

#include "simulator/Card.h"
#include "simulator/FolderRoot.h"

#include <filesystem>
#include <map>
#include <mutex>
#include <optional>

namespace nivor {

/// What a deletion on the card does to the folder.
enum class FolderAccess : std::uint8_t {
    ReadOnly,  ///< objects vanish from the card; the folder is never touched
    Writable,  ///< the files are deleted
};

/// The folder is read once, at the start: files become objects, sub-folders associations. Symbolic
/// links, hidden files, and whatever is neither file nor folder are left out. A file that changes,
/// goes or can't be read later is refused when it is asked for.
class FolderCard : public Card {
public:
    /// Throws `FileError` when `folder` can't be opened or is no folder.
    explicit FolderCard(const std::filesystem::path& folder,
                        FolderAccess access = FolderAccess::ReadOnly);

    [[nodiscard]] std::vector<std::uint32_t> handles() const override;
    [[nodiscard]] std::optional<CardObject> object(std::uint32_t handle) const override;
    std::optional<CardObject> details(std::uint32_t handle) override;
    bool read(std::uint32_t handle, std::uint64_t offset, std::span<std::uint8_t> out) override;
    std::optional<ByteBuffer> thumbnail(std::uint32_t handle) override;
    CardRemoval remove(std::uint32_t handle) override;

private:
    struct Entry {
        CardObject object;
        std::filesystem::path path;  // relative to the root
        bool measured = false;       // the picture's extents have been looked up
    };

    void measure(Entry& entry) const;
    [[nodiscard]] bool hasChildren(std::uint32_t handle) const;

    const FolderRoot root_;
    const FolderAccess access_;

    mutable std::mutex mutex_;
    std::map<std::uint32_t, Entry> entries_;

    std::mutex readingMutex_;
    std::uint32_t readingHandle_ = noHandle;
    FileDescriptor reading_;  // the file of the object that is being sent
};

}  // namespace nivor
