/// The memory card of a simulated camera: its objects and their bytes.
#pragma once

#include "foundation/Bytes.h"
#include "simulator/CardObject.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace nivor {

/// What became of a deletion.
enum class CardRemoval : std::uint8_t {
    Removed,
    NotFound,
    Protected,
    ReadOnlyCard,
    NotEmpty,
    Failed
};

/// Every operation may be called from any thread at any time: data is read while commands run.
class Card {
public:
    virtual ~Card() = default;

    Card(const Card&) = delete;
    Card& operator=(const Card&) = delete;

    /// All objects, files and folders alike, in listing order.
    [[nodiscard]] virtual std::vector<std::uint32_t> handles() const = 0;

    /// Nothing when there is no such object, or no longer. Quick; extents and thumbnail may be
    /// unknown still.
    [[nodiscard]] virtual std::optional<CardObject> object(std::uint32_t handle) const = 0;

    /// The same with all that can be known, for which a card may have to look into the file.
    virtual std::optional<CardObject> details(std::uint32_t handle) { return object(handle); }

    /// Fills all of `out` with the object's bytes from `offset` on; false when they can't be read.
    /// An object that was removed while it is being sent may go on being readable.
    virtual bool read(std::uint32_t handle, std::uint64_t offset, std::span<std::uint8_t> out) = 0;

    /// The thumbnail's file, of `CardObject::thumbnailSize` bytes; nothing when there is none.
    virtual std::optional<ByteBuffer> thumbnail(std::uint32_t handle) = 0;

    virtual CardRemoval remove(std::uint32_t handle) = 0;

    [[nodiscard]] virtual bool isReadOnly() const { return false; }

    /// Bytes that fit on the card in all.
    [[nodiscard]] virtual std::uint64_t capacity() const { return std::uint64_t{64} << 30; }

    /// The handles of the objects whose parent is `parent`; `noHandle` stands for the root.
    [[nodiscard]] std::vector<std::uint32_t> childrenOf(std::uint32_t parent) const;

protected:
    Card() = default;
};

}  // namespace nivor
