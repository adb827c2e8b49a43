/// Watches a delete run, and may end it between two files.
#pragma once

#include <cstddef>

namespace nivor {

class ObjectInfoData;
struct DeletedFile;

/// Every operation is called on the thread that runs the deletion; none of them must throw.
class DeleteRunObserver {
public:
    DeleteRunObserver() = default;
    virtual ~DeleteRunObserver() = default;

    DeleteRunObserver(const DeleteRunObserver&) = delete;
    DeleteRunObserver& operator=(const DeleteRunObserver&) = delete;

    /// The `number`th file of `total` is next.
    virtual void fileWillBeDeleted(const ObjectInfoData& /*object*/, std::size_t /*number*/,
                                   std::size_t /*total*/)
    {
    }

    /// Called every 0.01 s or a little later while a deletion is under way: the place to let the
    /// event loop turn.
    virtual void deletionIsUnderWay() { }

    /// Asked before each file. A deletion that has begun always runs to its end.
    virtual bool isStopRequested() { return false; }

    /// The place to take a deleted file out of the model.
    virtual void fileDidFinish(const DeletedFile& /*file*/) { }
};

}  // namespace nivor
