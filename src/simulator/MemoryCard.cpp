#include "simulator/MemoryCard.h"

#include "simulator/FileFormat.h"
#include "simulator/PatternContent.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace nivor {

std::uint32_t MemoryCard::insert(Entry entry)
{
    const std::lock_guard guard(mutex_);
    std::uint32_t& handle = entry.object.handle;
    if (handle == noHandle) {
        while (entries_.contains(nextHandle_))
            ++nextHandle_;
        handle = nextHandle_++;
    }
    if (!entry.generator) {
        entry.generator = [content = PatternContent(handle)](std::uint64_t offset,
                                                             std::span<std::uint8_t> out) {
            content.fill(offset, out);
        };
    }
    const std::uint32_t inserted = handle;
    entries_.insert_or_assign(inserted, std::move(entry));
    return inserted;
}

std::uint32_t MemoryCard::add(CardObject object, ByteBuffer bytes)
{
    object.size = bytes.size();
    auto held = std::make_shared<const ByteBuffer>(std::move(bytes));
    auto copyOut = [held](std::uint64_t offset, std::span<std::uint8_t> out) {
        std::copy_n(held->begin() + static_cast<std::ptrdiff_t>(offset), out.size(), out.begin());
    };
    return insert({.object = std::move(object), .generator = std::move(copyOut)});
}

std::uint32_t MemoryCard::add(CardObject object, Generator generator)
{
    return insert({.object = std::move(object), .generator = std::move(generator)});
}

std::uint32_t MemoryCard::addFolder(std::u16string name, std::uint32_t parent)
{
    return add(CardObject{.parent = parent,
                          .name = std::move(name),
                          .format = ObjectFormatCode::Association,
                          .captureDate = u"20240102T030405",
                          .modificationDate = u"20240102T030405"});
}

std::uint32_t MemoryCard::addFile(std::u16string name, std::uint64_t size, std::uint32_t parent)
{
    const ObjectFormatCode format = formatOfFile(name);
    return add(CardObject{.parent = parent,
                          .name = std::move(name),
                          .format = format,
                          .size = size,
                          .captureDate = u"20240102T030405",
                          .modificationDate = u"20240203T040506"});
}

void MemoryCard::setThumbnail(std::uint32_t handle, ByteBuffer bytes)
{
    const std::lock_guard guard(mutex_);
    Entry& entry = entries_.at(handle);
    entry.object.thumbnailSize = static_cast<std::uint32_t>(bytes.size());
    entry.thumbnail = std::move(bytes);
}

void MemoryCard::setUnreadable(std::uint32_t handle)
{
    const std::lock_guard guard(mutex_);
    entries_.at(handle).readable = false;
}

void MemoryCard::setReadOnly(bool readOnly)
{
    const std::lock_guard guard(mutex_);
    readOnly_ = readOnly;
}

std::vector<std::uint32_t> MemoryCard::handles() const
{
    const std::lock_guard guard(mutex_);
    std::vector<std::uint32_t> all;
    all.reserve(entries_.size());
    for (const auto& [handle, entry] : entries_)
        all.push_back(handle);
    return all;
}

std::optional<CardObject> MemoryCard::object(std::uint32_t handle) const
{
    const std::lock_guard guard(mutex_);
    const auto found = entries_.find(handle);
    return found == entries_.end() ? std::nullopt : std::optional(found->second.object);
}

bool MemoryCard::read(std::uint32_t handle, std::uint64_t offset, std::span<std::uint8_t> out)
{
    Generator generator;
    {
        const std::lock_guard guard(mutex_);
        const auto found = entries_.find(handle);
        if (found == entries_.end() || !found->second.readable || offset > found->second.object.size
            || out.size() > found->second.object.size - offset)
            return false;
        generator = found->second.generator;
    }
    // Outside the lock: a generator is the test's own code and may use the card.
    generator(offset, out);
    return true;
}

std::optional<ByteBuffer> MemoryCard::thumbnail(std::uint32_t handle)
{
    const std::lock_guard guard(mutex_);
    const auto found = entries_.find(handle);
    if (found == entries_.end() || found->second.thumbnail.empty())
        return std::nullopt;
    return found->second.thumbnail;
}

CardRemoval MemoryCard::remove(std::uint32_t handle)
{
    const std::lock_guard guard(mutex_);
    const auto found = entries_.find(handle);
    if (found == entries_.end())
        return CardRemoval::NotFound;
    if (readOnly_)
        return CardRemoval::ReadOnlyCard;
    if (found->second.object.isProtected)
        return CardRemoval::Protected;
    const bool hasChildren = std::any_of(entries_.begin(), entries_.end(), [&](const auto& other) {
        return other.second.object.parent == handle && other.first != handle;
    });
    if (hasChildren)
        return CardRemoval::NotEmpty;
    entries_.erase(found);
    return CardRemoval::Removed;
}

bool MemoryCard::isReadOnly() const
{
    const std::lock_guard guard(mutex_);
    return readOnly_;
}

}  // namespace nivor
