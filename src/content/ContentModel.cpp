#include "content/ContentModel.h"

#include "datasets/ObjectInfoData.h"

#include <utility>

namespace nivor {

ContentModel::LoadNumber ContentModel::beginLoad()
{
    const std::lock_guard guard(mutex_);
    removed_.clear();
    listing_ = nullptr;
    isUpdateView_ = false;
    return ++load_;
}

void ContentModel::publish(LoadNumber load, ContentListing listing)
{
    const std::lock_guard guard(mutex_);
    if (!isCurrent(load))
        return;
    if (!removed_.isEmpty()) {
        std::erase_if(listing.objects,
                      [this](const auto& object) { return removed_.contains(object->myHandle()); });
        for (const QString& myHandle : std::as_const(removed_))
            listing.handles.remove(myHandle);
    }
    listing_ = std::make_shared<ContentListing>(std::move(listing));
    isUpdateView_ = true;
}

std::shared_ptr<ObjectList> ContentModel::dataModels() const
{
    const std::lock_guard guard(mutex_);
    return listing_ ? std::shared_ptr<ObjectList>(listing_, &listing_->objects) : nullptr;
}

std::shared_ptr<const HandlesDict> ContentModel::handlesDict() const
{
    const std::lock_guard guard(mutex_);
    return listing_ ? std::shared_ptr<const HandlesDict>(listing_, &listing_->handles) : nullptr;
}

void ContentModel::remove(const QString& myHandle)
{
    const std::lock_guard guard(mutex_);
    removed_.insert(myHandle);
    if (listing_)
        listing_->remove(myHandle);
}

void ContentModel::clear()
{
    const std::lock_guard guard(mutex_);
    listing_ = nullptr;
}

}  // namespace nivor
