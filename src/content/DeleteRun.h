/// Deletes files on the camera, one after another.
#pragma once

#include "content/ContentListing.h"
#include "content/DeleteResult.h"
#include "content/PolledWorker.h"

#include <memory>
#include <string_view>

namespace nivor {

class DeleteRunObserver;
class PTPCommunication;
class RollingLogger;

/// Serves one run. Each deletion runs on a worker thread while the calling thread watches.
class DeleteRun {
public:
    /// `handles`: those of the listing that the items come from.
    DeleteRun(PTPCommunication& engine, RollingLogger& logger, HandlesDict handles,
              DeleteRunObserver& observer);

    /// Deletes the files among `items`, in their order; folders are passed over. One that the
    /// camera refuses doesn't keep the run from the others.
    DeleteResult startDeletingItems(const ObjectList& items);

private:
    void deleteItem(const std::shared_ptr<ObjectInfoData>& item);
    void request(const HandleBlock& handle, DeletedFile& file);
    void writeLog(std::string_view selector, std::string_view message);

    PTPCommunication& engine_;
    RollingLogger& logger_;
    const HandlesDict handles_;
    DeleteRunObserver& observer_;

    DeleteResult result_;
    bool isCameraGone_ = false;

    PolledWorker worker_;
};

}  // namespace nivor
