#include "soak/WindowListing.h"

#include "ptp/PTPCommunication.h"

namespace nivor::soak {

WindowListing::WindowListing(PTPCommunication& engine)
    : engine_(engine)
    , loader_({engine, model_, priority_, mainQueue_, anyVendorID})
    , monitor_({.engine = engine,
                .model = model_,
                .view = view_,
                .priority = priority_,
                .vendorID = anyVendorID,
                .setupDataModels = [this] { loader_.setupDataModels(); }})
{
}

ContentListing WindowListing::list()
{
    monitor_.checkNIVORConnectionTimerFire();
    mainQueue_.advance(BackgroundLoader::startDelay);
    loader_.operationQueue().waitUntilAllOperationsAreFinished();
    mainQueue_.advance(BackgroundLoader::publicationDelay);
    monitor_.checkNIVORConnectionTimerFire();

    ContentListing listing;
    if (const auto objects = model_.dataModels())
        listing.objects = *objects;
    if (const auto handles = model_.handlesDict())
        listing.handles = *handles;
    return listing;
}

bool WindowListing::noticesThatItIsGone()
{
    monitor_.checkNIVORConnectionTimerFire();
    return !monitor_.NIVORConnected() && !model_.dataModels() && !engine_.connected();
}

}  // namespace nivor::soak
