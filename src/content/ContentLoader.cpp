#include "content/ContentLoader.h"

#include "codes/ObjectPropCode.h"
#include "content/HandleOrder.h"
#include "content/OwnAnswer.h"
#include "datasets/ObjectInfoData.h"
#include "datasets/ObjectPropValueObjectSize.h"
#include "datasets/Thumbnail.h"
#include "foundation/Errors.h"

#include <QSet>

#include <algorithm>
#include <memory>
#include <mutex>
#include <utility>

namespace nivor {
namespace {

constexpr int mostConsecutiveFailures = 2;

// Each that is refused or not sent takes a time-out; a camera that announces thumbnails and has
// none would hold up the listing by hours.
constexpr int mostFailedThumbnails = 5;

// The dataset's size field says with this value that it is too small for the size.
constexpr std::uint64_t sizeBeyondField = 0xFFFFFFFF;

}  // namespace

ContentLoader::ContentLoader(PTPCommunication& engine, Options options, Observer observer,
                             StopPredicate stop, const ListingBudget& budget)
    : engine_(engine)
    , options_(options)
    , observer_(std::move(observer))
    , stop_(std::move(stop))
    , fullBudget_(budget)
{
}

ContentLoader::Result ContentLoader::load()
{
    result_ = {};
    budget_ = fullBudget_;
    done_ = 0;
    consecutiveFailures_ = 0;
    failedThumbnails_ = 0;

    std::vector<std::uint32_t> storageIDs;
    if (!hasOwnAnswer(engine_, [&] { return engine_.getStorageIDs(&storageIDs); })
        || storageIDs.empty()) {
        result_.end = End::NoStorage;
        result_.failure = engine_.lastTransactionFailure().toText();
        return std::move(result_);
    }

    const std::uint32_t storageID = storageIDs.front();
    // Whatever came is used, also after a failure.
    readHandles(storageID, 0, result_.listing.handles);
    if (readObjects(result_.listing.handles, QString()) && listsOnlyTheTop()) {
        settleTop();
        lookIntoFolders(storageID);
    }
    return std::move(result_);
}

bool ContentLoader::readHandles(std::uint32_t storageID, std::uint32_t association,
                                HandlesDict& handles)
{
    std::string failure;
    const std::lock_guard guard(engine_.lock());
    try {
        if (engine_.getObjectHandles(storageID, handles, association) && !engine_.isAnswerEarlier())
            return true;
        failure = engine_.lastTransactionFailure().toText();
    } catch (const RangeError&) {
        failure = "the camera announced more objects than it named";
    }
    // A thumbnail, perhaps, of which every four bytes would pass for a handle.
    if (engine_.isAnswerEarlier()) {
        failure = engine_.lastTransactionFailure().toText();
        handles.clear();
    }
    result_.handlesFailed = true;
    result_.failure = std::move(failure);
    return false;
}

/// False when the listing has ended. `folder` is the one whose contents these are; null for a
/// whole storage.
bool ContentLoader::readObjects(const HandlesDict& handles, const QString& folder)
{
    // A copy: the listing's own handles may be what is passed in.
    for (const HandleBlock& handle : inListingOrder(handles)) {
        if (endIfTooMuch())
            return false;
        const bool wasRead = readObject(handle, folder);
        ++done_;
        if (wasRead) {
            consecutiveFailures_ = 0;
        } else {
            ++result_.failedObjects;
            if (!goesOnAfterFailure(engine_.lastTransactionFailure().toText()))
                return false;
        }
        report();
        if (endIfStopped())
            return false;
    }
    return true;
}

bool ContentLoader::readObject(const HandleBlock& handle, const QString& folder)
{
    std::shared_ptr<ObjectInfoData> object;
    // What describes another object would be shown, copied and deleted under this one's handle.
    const auto ask = [&] { return engine_.getObjectInfo(handle, &object); };
    {
        const std::lock_guard guard(engine_.lock());
        // Asked once more, it may have an answer of its own: the camera drops what it still owes.
        if (!hasOwnAnswer(engine_, ask)
            && !(engine_.isAnswerEarlier() && hasOwnAnswer(engine_, ask)))
            return false;
    }
    if (!object->isAssociation())
        completeFile(*object, handle);
    object->setMyHandle(handle.key());
    place(*object, folder);
    budget_.add(*object);
    result_.listing.objects.push_back(std::move(object));
    return true;
}

void ContentLoader::completeFile(ObjectInfoData& object, const HandleBlock& handle)
{
    if (object.objectCompressedSize() == sizeBeyondField) {
        ObjectPropValueObjectSize size;
        bool isKnown = false;
        try {
            isKnown = hasOwnAnswer(engine_, [&] {
                return engine_.getObjectPropValue(
                    handle, static_cast<std::uint32_t>(ObjectPropCode::ObjectSize), &size);
            });
        } catch (const RangeError&) {
            // As good as no answer: the size stays unknown, which is 0.
        }
        object.setObjectCompressedSize(isKnown ? size.value().value_or(0) : 0);
    }
    if (options_.thumbnails && object.thumbCompressedSize() != 0 && budget_.hasRoomForThumbnail()
        && failedThumbnails_ < mostFailedThumbnails)
        readThumbnail(object, handle);
}

void ContentLoader::readThumbnail(ObjectInfoData& object, const HandleBlock& handle)
{
    ByteBuffer bytes;
    const bool isSent = hasOwnAnswer(
        engine_, [&] { return engine_.getThumb(handle, object.thumbCompressedSize(), &bytes); });
    failedThumbnails_ = isSent ? 0 : failedThumbnails_ + 1;
    if (isSent)
        object.setThumbnail(Thumbnail::fromFile(bytes));
}

/// What the camera says about an object's parent stays, as long as it leads to an object that the
/// camera has named. Otherwise the object, found in `folder` and nowhere else, would be shown in
/// a place where it isn't, or not at all.
void ContentLoader::place(ObjectInfoData& object, const QString& folder)
{
    if (folder.isNull())
        return;
    const QString parent = object.parentObject();
    if (parent == object.myHandle() || !result_.listing.handles.contains(parent))
        object.setParentObject(folder);
}

bool ContentLoader::listsOnlyTheTop() const
{
    const ObjectList& objects = result_.listing.objects;
    QSet<QString> folders;
    for (const auto& object : objects) {
        if (object->isAssociation())
            folders.insert(object->myHandle());
    }
    return std::none_of(objects.begin(), objects.end(), [&folders](const auto& object) {
        return folders.contains(object->parentObject());
    });
}

/// Some cameras give the objects at the top a parent that they never name, the storage's own
/// folder; they would be children of nothing.
void ContentLoader::settleTop()
{
    for (const auto& object : result_.listing.objects) {
        if (!result_.listing.handles.contains(object->parentObject()))
            object->setParentObject(QStringLiteral("0"));
    }
}

void ContentLoader::lookIntoFolders(std::uint32_t storageID)
{
    std::size_t firstOfLevel = 0;
    for (int level = 1; level <= deepestLevel; ++level) {
        const std::vector<HandleBlock> folders = foldersFrom(firstOfLevel);
        firstOfLevel = result_.listing.objects.size();
        for (const HandleBlock& folder : folders) {
            if (endIfTooMuch() || endIfStopped() || !lookIntoFolder(storageID, folder))
                return;
        }
    }
}

/// False when the listing has ended.
bool ContentLoader::lookIntoFolder(std::uint32_t storageID, const HandleBlock& folder)
{
    HandlesDict contents;
    const bool answered = readHandles(storageID, folder.number(), contents);
    if (answered)
        consecutiveFailures_ = 0;
    else if (!goesOnAfterFailure(std::move(result_.failure)))
        return false;

    // A camera may answer with objects that it has named before; each is read once.
    HandlesDict& known = result_.listing.handles;
    HandlesDict fresh;
    for (auto entry = contents.cbegin(); entry != contents.cend(); ++entry) {
        if (!known.contains(entry.key())
            && budget_.hasRoomForHandles(static_cast<std::size_t>(known.size() + fresh.size())))
            fresh.insert(entry.key(), entry.value());
    }
    known.insert(fresh);
    return readObjects(fresh, folder.key());
}

std::vector<HandleBlock> ContentLoader::foldersFrom(std::size_t firstObject) const
{
    std::vector<HandleBlock> folders;
    for (std::size_t i = firstObject; i < result_.listing.objects.size(); ++i) {
        const ObjectInfoData& object = *result_.listing.objects[i];
        if (object.isAssociation())
            folders.push_back(result_.listing.handles.value(object.myHandle()));
    }
    return folders;
}

bool ContentLoader::goesOnAfterFailure(std::string reason)
{
    result_.failure = std::move(reason);
    if (++consecutiveFailures_ < mostConsecutiveFailures)
        return true;
    result_.end = End::TooManyFailures;
    return false;
}

bool ContentLoader::endIfTooMuch()
{
    if (budget_.hasRoomForObject())
        return false;
    result_.end = End::TooMuch;
    return true;
}

bool ContentLoader::endIfStopped()
{
    if (!stop_ || !stop_())
        return false;
    result_.end = End::Stopped;
    return true;
}

void ContentLoader::report()
{
    if (observer_) {
        observer_(Progress{.done = done_,
                           .total = static_cast<std::size_t>(result_.listing.handles.size()),
                           .listing = &result_.listing});
    }
}

}  // namespace nivor
