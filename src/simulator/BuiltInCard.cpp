#include "simulator/BuiltInCard.h"

#include "simulator/FilmContent.h"
#include "simulator/FixedSizeJpeg.h"
#include "simulator/Landscape.h"

#include <QDate>
#include <QDateTime>
#include <QTime>

#include <algorithm>
#include <array>
#include <string>
#include <utility>

namespace nivor {

namespace {

constexpr std::uint32_t cardFolder = 1;
constexpr std::uint32_t firstFolder = 2;
constexpr std::uint32_t secondFolder = 3;
constexpr unsigned picturesPerFolder = BuiltInCard::pictureCount / 2;

constexpr int pictureHeight = 512;  // pixels; panoramas are twice as wide
constexpr int thumbnailHeight = 80;
constexpr std::uint32_t thumbnailSize = 10 * 1024;

/// Bytes of a picture, known before it is drawn; its JPEG is filled up to them.
std::uint64_t pictureSize(unsigned scene)
{
    return 170'000 + (scene * 7919ULL) % 61'003;
}

/// One picture every nine days, at the hour that it shows.
std::u16string dateOf(const Scene& scene)
{
    constexpr std::array hours{6, 9, 12, 14, 16, 18, 19, 20, 22, 23};  // in the order of Hour
    const int minute = static_cast<int>(scene.number * 17 % 60);
    const int second = static_cast<int>(scene.number * 29 % 60);
    const QDate day = QDate(2025, 3, 21).addDays(qint64{scene.number} * 9);
    const QTime time(hours.at(static_cast<std::size_t>(scene.hour)), minute, second);
    return QDateTime(day, time).toString(QStringLiteral("yyyyMMdd'T'HHmmss")).toStdU16String();
}

/// "PANO0001.JPG" and the like.
std::u16string numbered(const char16_t* prefix, unsigned number, const char16_t* suffix)
{
    const std::string digits = std::to_string(number);
    return prefix + std::u16string(4 - digits.size(), u'0')
        + std::u16string(digits.begin(), digits.end()) + suffix;
}

std::optional<ByteBuffer> draw(unsigned scene, int height, std::uint64_t size)
{
    return encodeJpeg(Landscape(Scene::of(scene)).paint(height), size);
}

}  // namespace

BuiltInCard::BuiltInCard()
{
    const Scene first = Scene::of(0);
    addFolder(cardFolder, noHandle, u"DCIM", first);
    addFolder(firstFolder, cardFolder, u"100NIVOR", first);
    addFolder(secondFolder, cardFolder, u"101NIVOR", Scene::of(picturesPerFolder));

    for (unsigned scene = 0; scene < picturesPerFolder; ++scene)
        addPicture(firstFolder, numbered(u"PANO", scene + 1, u".JPG"), scene);
    addFilm(firstFolder, u"FILM0001.MOV", pictureCount, true);

    // The counter stood still at the change of folder, so that one name is there twice.
    for (unsigned scene = picturesPerFolder; scene < pictureCount - 1; ++scene)
        addPicture(secondFolder, numbered(u"PANO", scene, u".JPG"), scene);
    addPicture(secondFolder, u"夕焼けのパノラマ.JPG", pictureCount - 1);
    addFilm(secondFolder, u"FILM0002.MOV", pictureCount + 1, false);
}

void BuiltInCard::add(Entry entry)
{
    if (entry.object.handle == noHandle)
        entry.object.handle = static_cast<std::uint32_t>(entries_.size() + 1);
    const std::uint32_t handle = entry.object.handle;
    entries_.emplace(handle, std::move(entry));
}

void BuiltInCard::addFolder(std::uint32_t handle, std::uint32_t parent, std::u16string name,
                            const Scene& since)
{
    add({.object = {.handle = handle,
                    .parent = parent,
                    .name = std::move(name),
                    .format = ObjectFormatCode::Association,
                    .captureDate = dateOf(since),
                    .modificationDate = dateOf(since)}});
}

void BuiltInCard::addPicture(std::uint32_t parent, std::u16string name, unsigned scene)
{
    add({.object = {.parent = parent,
                    .name = std::move(name),
                    .format = ObjectFormatCode::EXIFJPEG,
                    .size = pictureSize(scene),
                    .captureDate = dateOf(Scene::of(scene)),
                    .modificationDate = dateOf(Scene::of(scene)),
                    .thumbnailSize = thumbnailSize,
                    .thumbnailWidth = 2 * thumbnailHeight,
                    .thumbnailHeight = thumbnailHeight,
                    .imageWidth = 2 * pictureHeight,
                    .imageHeight = pictureHeight},
         .scene = scene});
}

void BuiltInCard::addFilm(std::uint32_t parent, std::u16string name, unsigned scene,
                          bool withThumbnail)
{
    Entry film{.object = {.parent = parent,
                          .name = std::move(name),
                          .format = ObjectFormatCode::QuickTime,
                          .size = filmSize,
                          .captureDate = dateOf(Scene::of(scene)),
                          .modificationDate = dateOf(Scene::of(scene))},
               .scene = scene};
    if (withThumbnail) {
        film.object.thumbnailSize = thumbnailSize;
        film.object.thumbnailWidth = 2 * thumbnailHeight;
        film.object.thumbnailHeight = thumbnailHeight;
    }
    add(std::move(film));
}

std::vector<std::uint32_t> BuiltInCard::handles() const
{
    const std::lock_guard guard(mutex_);
    std::vector<std::uint32_t> all;
    for (const auto& [handle, entry] : entries_)
        all.push_back(handle);
    return all;
}

std::optional<CardObject> BuiltInCard::object(std::uint32_t handle) const
{
    const std::lock_guard guard(mutex_);
    const auto found = entries_.find(handle);
    return found == entries_.end() ? std::nullopt : std::optional(found->second.object);
}

std::optional<BuiltInCard::Entry> BuiltInCard::find(std::uint32_t handle) const
{
    const std::lock_guard guard(mutex_);
    const auto found = entries_.find(handle);
    return found == entries_.end() ? std::nullopt : std::optional(found->second);
}

BuiltInCard::Picture BuiltInCard::kept(std::uint32_t handle, Picture Entry::*which, int height,
                                       std::uint64_t size)
{
    const std::optional<Entry> entry = find(handle);
    if (!entry || (*entry).*which)
        return entry ? (*entry).*which : nullptr;

    // Drawn without the lock: should two threads want the same picture, they draw the same one.
    std::optional<ByteBuffer> drawn = draw(entry->scene, height, size);
    if (!drawn)
        return nullptr;
    auto picture = std::make_shared<const ByteBuffer>(std::move(*drawn));
    const std::lock_guard guard(mutex_);
    if (const auto found = entries_.find(handle); found != entries_.end())
        found->second.*which = picture;
    return picture;
}

bool BuiltInCard::read(std::uint32_t handle, std::uint64_t offset, std::span<std::uint8_t> out)
{
    const std::optional<CardObject> known = object(handle);
    if (!known || offset > known->size || out.size() > known->size - offset)
        return false;
    if (known->format == ObjectFormatCode::QuickTime) {
        FilmContent(known->size, handle).fill(offset, out);
        return true;
    }
    const Picture picture = kept(handle, &Entry::picture, pictureHeight, known->size);
    if (!picture)
        return false;
    std::copy_n(picture->begin() + static_cast<std::ptrdiff_t>(offset), out.size(), out.begin());
    return true;
}

std::optional<ByteBuffer> BuiltInCard::thumbnail(std::uint32_t handle)
{
    const std::optional<CardObject> known = object(handle);
    if (!known || known->thumbnailSize == 0)
        return std::nullopt;
    const Picture picture = kept(handle, &Entry::thumbnail, thumbnailHeight, thumbnailSize);
    return picture ? std::optional(*picture) : std::nullopt;
}

CardRemoval BuiltInCard::remove(std::uint32_t handle)
{
    const std::lock_guard guard(mutex_);
    const auto found = entries_.find(handle);
    if (found == entries_.end())
        return CardRemoval::NotFound;
    const bool hasChildren = std::any_of(entries_.begin(), entries_.end(), [&](const auto& other) {
        return other.second.object.parent == handle;
    });
    if (hasChildren)
        return CardRemoval::NotEmpty;
    entries_.erase(found);
    return CardRemoval::Removed;
}

}  // namespace nivor
