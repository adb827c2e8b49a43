#include "content/BackgroundLoader.h"

#include "content/CameraPriority.h"
#include "content/MainQueue.h"
#include "ptp/PTPCommunication.h"

#include <exception>
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
    const LoadNumber number = model_.beginLoad();
    setProgress({.load = number});
    mainQueue_.runAfter(startDelay, [this, number, alive = std::weak_ptr(lifeline_)] {
        if (!alive.expired() && !isOver(number))
            startLoad(number);
    });
}

void BackgroundLoader::setSortDescriptors(SortDescriptors descriptors)
{
    sortDescriptors_.set(std::move(descriptors));
}

BackgroundLoader::Progress BackgroundLoader::progress() const
{
    const std::lock_guard guard(progressMutex_);
    return progress_;
}

void BackgroundLoader::setProgress(const Progress& progress)
{
    const std::lock_guard guard(progressMutex_);
    if (progress.load >= progress_.load)
        progress_ = progress;
}

void BackgroundLoader::startLoad(LoadNumber number)
{
    setProgress({.load = number, .isLoading = true});
    operationQueue_.addOperation([this, number] { load(number); });
}

/// On the worker, as all that follows but the last publication.
void BackgroundLoader::load(LoadNumber number)
{
    priority_.waitWhileClaimed([this, number] { return isOver(number); });
    ContentLoader::Result result{.end = ContentLoader::End::NoStorage};
    try {
        if (!isOver(number) && engine_.connect(vendorID_))
            result = list(number);
    } catch (const std::exception&) {
        // Out of memory, most likely: as good as a camera that can't be read.
    }
    Progress end = progress();
    end.load = number;
    end.isLoading = false;
    end.hasFailed = result.end == ContentLoader::End::NoStorage && !isClosed();
    end.isIncomplete = !end.hasFailed && !result.isComplete();
    setProgress(end);
}

/// The result without its listing, which is on its way to the model.
ContentLoader::Result BackgroundLoader::list(LoadNumber number)
{
    nextSnapshot_ = {};
    ContentLoader loader(
        engine_, {.thumbnails = true},
        [this, number](const ContentLoader::Progress& progress) { noteProgress(progress, number); },
        [this, number] { return isOver(number); });
    ContentLoader::Result result = loader.load();
    if (result.end != ContentLoader::End::NoStorage && !isOver(number))
        publishAtLast(number, std::exchange(result.listing, {}));
    return result;
}

void BackgroundLoader::publishAtLast(LoadNumber number, ContentListing listing)
{
    const SortDescriptors order = sortDescriptors();
    sortObjects(listing.objects, order);
    // Shared, because what the queue keeps has to be copyable.
    auto whole = std::make_shared<ContentListing>(std::move(listing));
    mainQueue_.runAfter(publicationDelay,
                        [this, number, whole, order, alive = std::weak_ptr(lifeline_)] {
                            if (alive.expired() || isClosed())
                                return;
                            // The user may have chosen another order meanwhile.
                            if (order != sortDescriptors())
                                sortObjects(whole->objects, sortDescriptors());
                            model_.publish(number, std::move(*whole));
                        });
}

void BackgroundLoader::noteProgress(const ContentLoader::Progress& progress, LoadNumber number)
{
    setProgress(
        {.load = number, .isLoading = true, .done = progress.done, .total = progress.total});
    if (!model_.isUpdateView() && !isOver(number) && Clock::now() >= nextSnapshot_)
        publishSnapshot(number, *progress.listing);
    priority_.waitWhileClaimed([this, number] { return isOver(number); });
}

/// The camera waits meanwhile, and so does the user while it is shown. With a million objects that
/// takes seconds, so a snapshot that took long is followed by none for some time.
void BackgroundLoader::publishSnapshot(LoadNumber number, const ContentListing& listing)
{
    constexpr auto notWorthSaving = std::chrono::milliseconds(50);
    constexpr int pauseFactor = 9;  // a tenth of the listing's time goes there at most
    const auto began = Clock::now();
    ContentListing snapshot = listing;
    sortObjects(snapshot.objects, sortDescriptors());
    model_.publish(number, std::move(snapshot));
    const auto end = Clock::now();
    if (end - began > notWorthSaving)
        nextSnapshot_ = end + pauseFactor * (end - began);
}

bool BackgroundLoader::isOver(LoadNumber number) const
{
    return isClosed() || !model_.isCurrent(number);
}

}  // namespace nivor
