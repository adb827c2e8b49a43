#include "simulator/FolderCard.h"

#include "simulator/FolderPicture.h"
#include "simulator/FolderScan.h"

#include <algorithm>
#include <cerrno>
#include <limits>
#include <unistd.h>
#include <utility>

namespace nivor {

namespace {

/// Fills all of `out`; false when the file ends before or can't be read.
bool readFully(const FileDescriptor& file, std::uint64_t offset, std::span<std::uint8_t> out)
{
    if (offset > static_cast<std::uint64_t>(std::numeric_limits<off_t>::max()) - out.size())
        return false;
    while (!out.empty()) {
        const ssize_t count =
            ::pread(file.get(), out.data(), out.size(), static_cast<off_t>(offset));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        offset += static_cast<std::uint64_t>(count);
        out = out.subspan(static_cast<std::size_t>(count));
    }
    return true;
}

}  // namespace

FolderCard::FolderCard(const std::filesystem::path& folder, FolderAccess access)
    : root_(folder)
    , access_(access)
{
    for (auto& [object, path] : FolderScan::of(root_)) {
        const std::uint32_t handle = object.handle;
        entries_.emplace(handle, Entry{.object = std::move(object), .path = std::move(path)});
    }
}

std::vector<std::uint32_t> FolderCard::handles() const
{
    const std::lock_guard guard(mutex_);
    std::vector<std::uint32_t> all;
    all.reserve(entries_.size());
    for (const auto& [handle, entry] : entries_)
        all.push_back(handle);
    return all;
}

std::optional<CardObject> FolderCard::object(std::uint32_t handle) const
{
    const std::lock_guard guard(mutex_);
    const auto found = entries_.find(handle);
    return found == entries_.end() ? std::nullopt : std::optional(found->second.object);
}

std::optional<CardObject> FolderCard::details(std::uint32_t handle)
{
    const std::lock_guard guard(mutex_);
    const auto found = entries_.find(handle);
    if (found == entries_.end())
        return std::nullopt;
    measure(found->second);
    return found->second.object;
}

/// Looks a picture's extents up, once: a look into the file that a plain listing does without.
void FolderCard::measure(Entry& entry) const
{
    if (std::exchange(entry.measured, true) || entry.object.isFolder())
        return;
    const FolderPicture picture(root_.openFile(entry.path));
    if (picture.extent().isEmpty())
        return;
    CardObject& object = entry.object;
    object.imageWidth = static_cast<std::uint32_t>(picture.extent().width());
    object.imageHeight = static_cast<std::uint32_t>(picture.extent().height());
    object.thumbnailWidth = static_cast<std::uint32_t>(picture.thumbnailExtents().width());
    object.thumbnailHeight = static_cast<std::uint32_t>(picture.thumbnailExtents().height());
    object.thumbnailSize = FolderPicture::thumbnailSize;
}

bool FolderCard::read(std::uint32_t handle, std::uint64_t offset, std::span<std::uint8_t> out)
{
    const std::lock_guard readingGuard(readingMutex_);
    if (readingHandle_ != handle || !reading_ || offset == 0) {
        std::filesystem::path path;
        {
            const std::lock_guard guard(mutex_);
            const auto found = entries_.find(handle);
            if (found == entries_.end() || found->second.object.isFolder())
                return false;
            path = found->second.path;
        }
        reading_ = root_.openFile(path);
        readingHandle_ = handle;
    }
    return reading_ && readFully(reading_, offset, out);
}

std::optional<ByteBuffer> FolderCard::thumbnail(std::uint32_t handle)
{
    const std::optional<CardObject> known = details(handle);
    if (!known || known->thumbnailSize == 0)
        return std::nullopt;
    std::filesystem::path path;
    {
        const std::lock_guard guard(mutex_);
        const auto found = entries_.find(handle);
        if (found == entries_.end())
            return std::nullopt;
        path = found->second.path;
    }
    return FolderPicture(root_.openFile(path)).thumbnail();
}

bool FolderCard::hasChildren(std::uint32_t handle) const
{
    return std::any_of(entries_.begin(), entries_.end(),
                       [&](const auto& other) { return other.second.object.parent == handle; });
}

CardRemoval FolderCard::remove(std::uint32_t handle)
{
    const std::lock_guard guard(mutex_);
    const auto found = entries_.find(handle);
    if (found == entries_.end())
        return CardRemoval::NotFound;
    const auto& [object, path, measured] = found->second;
    if (hasChildren(handle))
        return CardRemoval::NotEmpty;
    if (access_ == FolderAccess::Writable && !root_.remove(path, object.isFolder()))
        return CardRemoval::Failed;
    entries_.erase(found);
    return CardRemoval::Removed;
}

}  // namespace nivor
