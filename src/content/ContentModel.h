/// The camera's contents as the user interface has them, and the hand-over of fresh ones.
#pragma once

#include "content/ContentListing.h"

#include <QSet>

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>

namespace nivor {

/// Any thread may publish; everything else belongs to the main thread. The lists that are handed
/// out are the main thread's own: nobody changes them behind its back.
class ContentModel {
public:
    /// Numbers the loads. What an earlier load still publishes once a later one has begun is not
    /// of this camera any more, and counts for nothing.
    using LoadNumber = std::uint64_t;

    /// A load is about to begin: what earlier ones have published or still publish is gone.
    LoadNumber beginLoad();

    /// Whether no later load has begun. Any thread.
    [[nodiscard]] bool isCurrent(LoadNumber load) const { return load_ == load; }

    /// Installs a fresh snapshot and sets `isUpdateView`. Files removed since the load began stay
    /// out, though the load may have read them before.
    void publish(LoadNumber load, ContentListing listing);

    /// The objects, flat, in the order of the list; null when no camera is connected.
    [[nodiscard]] std::shared_ptr<ObjectList> dataModels() const;

    /// Every handle of the storage; null when no camera is connected.
    [[nodiscard]] std::shared_ptr<const HandlesDict> handlesDict() const;

    /// Forgets an object that is gone from the camera.
    void remove(const QString& myHandle);

    /// Sets both to null: there is no camera.
    void clear();

    /// A fresh snapshot has been published and the view has not shown it yet. Any thread.
    [[nodiscard]] bool isUpdateView() const { return isUpdateView_; }
    void setIsUpdateView(bool isUpdateView) { isUpdateView_ = isUpdateView; }

private:
    // Guards what follows, so that objects and handles are always of one snapshot.
    mutable std::mutex mutex_;
    std::shared_ptr<ContentListing> listing_;
    QSet<QString> removed_;  ///< since the load began

    std::atomic<LoadNumber> load_{0};
    std::atomic<bool> isUpdateView_{false};
};

}  // namespace nivor
