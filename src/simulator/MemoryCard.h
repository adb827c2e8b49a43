/// A card that a test fills with exactly the objects it needs.
#pragma once

#include "simulator/Card.h"

#include <functional>
#include <map>
#include <mutex>

namespace nivor {

class MemoryCard : public Card {
public:
    /// Writes the bytes from `offset` on; called from any thread, must be deterministic.
    using Generator = std::function<void(std::uint64_t offset, std::span<std::uint8_t> out)>;

    /// Adds an object with its bytes. `object.handle` may be chosen (it replaces an object of
    /// that handle), or is the next free one when it is `noHandle`; `object.size` is the number of
    /// bytes. Nothing else is checked: parents may be missing or form cycles. Returns the handle.
    std::uint32_t add(CardObject object, ByteBuffer bytes);

    /// Adds an object of any `object.size` whose bytes are made on the fly and take no memory:
    /// those of `PatternContent(handle)` when no generator is given.
    std::uint32_t add(CardObject object, Generator generator = {});

    /// Adds an empty folder.
    std::uint32_t addFolder(std::u16string name, std::uint32_t parent = noHandle);

    /// Adds a file of `size` pattern bytes, with the format that its suffix tells.
    std::uint32_t addFile(std::u16string name, std::uint64_t size, std::uint32_t parent = noHandle);

    /// Gives an object a thumbnail of any bytes and announces its size.
    void setThumbnail(std::uint32_t handle, ByteBuffer bytes);

    /// Makes every later read of the object fail, as a bad sector does.
    void setUnreadable(std::uint32_t handle);

    void setReadOnly(bool readOnly);

    [[nodiscard]] std::vector<std::uint32_t> handles() const override;
    [[nodiscard]] std::optional<CardObject> object(std::uint32_t handle) const override;
    bool read(std::uint32_t handle, std::uint64_t offset, std::span<std::uint8_t> out) override;
    std::optional<ByteBuffer> thumbnail(std::uint32_t handle) override;
    CardRemoval remove(std::uint32_t handle) override;
    [[nodiscard]] bool isReadOnly() const override;

private:
    struct Entry {
        CardObject object{};
        Generator generator{};
        ByteBuffer thumbnail{};
        bool readable = true;
    };

    std::uint32_t insert(Entry entry);

    mutable std::mutex mutex_;
    std::map<std::uint32_t, Entry> entries_;
    std::uint32_t nextHandle_ = 1;
    bool readOnly_ = false;
};

}  // namespace nivor
