/// The card that needs no files: pictures that the program draws, and two films.
#pragma once

#include "simulator/Card.h"
#include "simulator/Scene.h"

#include <map>
#include <memory>
#include <mutex>
#include <string>

namespace nivor {

/// DCIM with two folders of 20 panoramic pictures and one film each. Nothing is drawn before it is
/// asked for: a picture when its bytes are read, a thumbnail when it is fetched.
class BuiltInCard : public Card {
public:
    static constexpr unsigned pictureCount = 40;
    static constexpr std::uint64_t filmSize = std::uint64_t{48} << 20;

    BuiltInCard();

    [[nodiscard]] std::vector<std::uint32_t> handles() const override;
    [[nodiscard]] std::optional<CardObject> object(std::uint32_t handle) const override;
    bool read(std::uint32_t handle, std::uint64_t offset, std::span<std::uint8_t> out) override;
    std::optional<ByteBuffer> thumbnail(std::uint32_t handle) override;
    CardRemoval remove(std::uint32_t handle) override;

private:
    using Picture = std::shared_ptr<const ByteBuffer>;

    struct Entry {
        CardObject object{};
        unsigned scene = 0;   // the number of the landscape it shows
        Picture picture{};    // none until drawn
        Picture thumbnail{};  // none until drawn
    };

    void add(Entry entry);
    void addFolder(std::uint32_t handle, std::uint32_t parent, std::u16string name,
                   const Scene& since);
    void addPicture(std::uint32_t parent, std::u16string name, unsigned scene);
    void addFilm(std::uint32_t parent, std::u16string name, unsigned scene, bool withThumbnail);

    [[nodiscard]] std::optional<Entry> find(std::uint32_t handle) const;

    /// The drawn picture or thumbnail of an object; draws and keeps it when it isn't there yet.
    Picture kept(std::uint32_t handle, Picture Entry::*which, int height, std::uint64_t size);

    mutable std::mutex mutex_;
    std::map<std::uint32_t, Entry> entries_;
};

}  // namespace nivor
