// What a cycle has to leave behind.

#include "soak/SoakCycle.h"

#include "datasets/ObjectInfoData.h"
#include "datasets/Thumbnail.h"
#include "simulator/MemoryCard.h"
#include "simulator/PatternContent.h"
#include "soak/WindowListing.h"

#include <fmt/format.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <set>

namespace nivor::soak {
namespace {

ByteBuffer bytesOf(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

const CardObject* find(const std::vector<CardObject>& objects, const ObjectInfoData& object)
{
    const std::uint32_t handle = object.myHandle().toUInt();
    const auto found = std::find_if(objects.begin(), objects.end(),
                                    [&](const auto& known) { return known.handle == handle; });
    return found == objects.end() ? nullptr : &*found;
}

std::string nameOf(const ObjectInfoData& object)
{
    return "object " + object.myHandle().toStdString();
}

}  // namespace

void SoakCycle::checkListing()
{
    if (isFaulty_)
        return;
    expect(listing_.objects.size() == before_.size(),
           fmt::format("{} of {} objects were listed", listing_.objects.size(), before_.size()));
    for (const auto& object : listing_.objects) {
        const CardObject* const known = find(before_, *object);
        if (known == nullptr) {
            expect(false, nameOf(*object) + " is not on the card");
            continue;
        }
        expect(object->objectCompressedSize() == known->size
                   && object->isAssociation() == known->isFolder()
                   && object->parentObject() == QString::number(known->parent)
                   && object->thumbCompressedSize() == known->thumbnailSize,
               nameOf(*object) + " is not what is on the card");
        const QString name = QString::fromStdU16String(known->name);
        expect(object->fileName().left(name.size()) == name, nameOf(*object) + " has another name");
        checkThumbnail(*object);
    }
}

void SoakCycle::checkThumbnail(const ObjectInfoData& object)
{
    const auto found = thumbnails_.find(object.myHandle().toUInt());
    const auto known = found == thumbnails_.end() ? nullptr : Thumbnail::fromFile(found->second);
    const auto got = object.thumbnail();
    expect((known == nullptr) == (got == nullptr)
               && (known == nullptr || known->image() == got->image()),
           nameOf(object) + " has another thumbnail");
}

void SoakCycle::checkCopies()
{
    std::size_t files = 0;
    for (const auto& object : listing_.objects)
        files += object->isAssociation() ? 0U : 1U;
    expect(copies_.files.size() + copies_.filesNotBegun == files,
           fmt::format("{} files were copied and {} not begun, of {}", copies_.files.size(),
                       copies_.filesNotBegun, files));
    expect(copies_.filesNotBegun == 0 || copies_.isStopped, "files were left out without a stop");
    for (const CopiedFile& file : copies_.files)
        checkCopy(file);
}

void SoakCycle::checkCopy(const CopiedFile& file)
{
    const std::string name = nameOf(*file.object);
    expect(file.isCopied == file.failure.empty(),
           name + (file.isCopied ? " is copied with a failure" : " fails without a reason"));
    const CardObject* const known = find(before_, *file.object);
    if (known == nullptr) {
        expect(!file.isCopied, name + " is copied, but not on the card");
        return;
    }
    if (file.path.empty() || (isFaulty_ && !file.isCopied))
        return;
    const ByteBuffer bytes = bytesOf(file.path);
    if (file.isCopied)
        expect(bytes.size() == known->size, name + " is copied in another length");
    expect(bytes.size() <= known->size && PatternContent(known->handle).matches(0, bytes),
           name + " has other bytes");
    // Nothing can be got for an empty file, and the failure says so.
    const bool mayFail = copies_.isStopped || known->size == 0;
    expectOfGoodCamera(file.isCopied || mayFail, name + " is not copied: " + file.failure);
}

void SoakCycle::checkFolder()
{
    std::set<std::filesystem::path> expected;
    for (const CopiedFile& file : copies_.files) {
        if (!file.path.empty())
            expect(expected.insert(file.path).second, file.path.string() + " was made twice");
    }
    for (const auto& entry : std::filesystem::directory_iterator(destination_)) {
        expect(entry.is_regular_file() && expected.contains(entry.path()),
               entry.path().string() + " is none of the copies");
    }
    const std::filesystem::directory_iterator around(workplace_.folder);
    expect(std::distance(begin(around), end(around)) == 1, "something was made outside the folder");
}

void SoakCycle::checkCard()
{
    std::set<std::uint32_t> chosen;
    for (const DeletedFile& file : removals_.files) {
        const std::string name = nameOf(*file.object);
        chosen.insert(file.object->myHandle().toUInt());
        expect(file.isDeleted == file.failure.empty(),
               name + (file.isDeleted ? " is deleted with a failure" : " stays without a reason"));
        const CardObject* const known = find(before_, *file.object);
        if (known == nullptr)
            continue;
        expectOfGoodCamera(file.isDeleted != known->isProtected,
                           name + (file.isDeleted ? " was protected" : " was not deleted"));
        expectOfGoodCamera(file.isDeleted == !card_->object(known->handle),
                           name + " was not treated as the result says");
    }
    for (const CardObject& object : before_) {
        expect(chosen.contains(object.handle) || card_->object(object.handle).has_value(),
               fmt::format("object {} is gone from the card unasked", object.handle));
    }
}

}  // namespace nivor::soak
