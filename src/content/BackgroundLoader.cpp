#include "content/BackgroundLoader.h"

#include "content/CameraPriority.h"
#include "content/MainQueue.h"
#include "ptp/PTPCommunication.h"

#include <utility>

namespace nivor {

BackgroundLoader::BackgroundLoader(const Parts& parts)
    : engine_(parts.engine)
    , model_(parts.model)
    , priority_(parts.priority)
    , mainQueue_(parts.mainQueue)
    , vendorID_(parts.vendorID)
{
}

BackgroundLoader::~BackgroundLoader()
{
    setIsClosed(true);
}

void BackgroundLoader::setupDataModels()
{
    mainQueue_.runAfter(startDelay, [this, alive = std::weak_ptr(lifeline_)] {
        if (!alive.expired() && !isClosed())
            startLoad();
    });
}

void BackgroundLoader::setSortDescriptors(SortDescriptors descriptors)
{
    sortDescriptors_.set(std::move(descriptors));
}

void BackgroundLoader::startLoad()
{
    const LoadNumber number = model_.beginLoad();
    objectsDone_ = 0;
    objectsTotal_ = 0;
    isLoading_ = true;
    hasFailed_ = false;
    operationQueue_.addOperation([this, number] { load(number); });
}

/// On the worker, as all that follows but the last publication.
void BackgroundLoader::load(LoadNumber number)
{
    priority_.waitWhileClaimed([this, number] { return isOver(number); });
    const bool isListed = !isOver(number) && engine_.connect(vendorID_) && list(number);
    if (!model_.isCurrent(number))
        return;
    hasFailed_ = !isListed && !isClosed();
    isLoading_ = false;
}

/// False when the camera has no storage.
bool BackgroundLoader::list(LoadNumber number)
{
    ContentLoader loader(
        engine_, {.thumbnails = true},
        [this, number](const ContentLoader::Progress& progress) { noteProgress(progress, number); },
        [this, number] { return isOver(number); });
    ContentLoader::Result result = loader.load();
    if (result.end == ContentLoader::End::NoStorage)
        return false;
    if (!isOver(number)) {
        sortObjects(result.listing.objects, sortDescriptors());
        publishAtLast(number, std::move(result.listing));
    }
    return true;
}

void BackgroundLoader::publishAtLast(LoadNumber number, ContentListing listing)
{
    // Shared, because what the queue keeps has to be copyable.
    auto whole = std::make_shared<ContentListing>(std::move(listing));
    mainQueue_.runAfter(publicationDelay, [this, number, whole, alive = std::weak_ptr(lifeline_)] {
        if (!alive.expired() && !isClosed())
            model_.publish(number, std::move(*whole));
    });
}

void BackgroundLoader::noteProgress(const ContentLoader::Progress& progress, LoadNumber number)
{
    objectsDone_ = progress.done;
    objectsTotal_ = progress.total;
    if (!model_.isUpdateView() && !isOver(number)) {
        ContentListing snapshot = *progress.listing;
        sortObjects(snapshot.objects, sortDescriptors());
        model_.publish(number, std::move(snapshot));
    }
    priority_.waitWhileClaimed([this, number] { return isOver(number); });
}

bool BackgroundLoader::isOver(LoadNumber number) const
{
    return isClosed() || !model_.isCurrent(number);
}

}  // namespace nivor
