/// Watches a copy run, and may stop it.
#pragma once

#include <cstdint>

namespace nivor {

class CopyProgress;
struct CopiedFile;

/// Every operation is called on the thread that runs the copy; none of them must throw.
class CopyRunObserver {
public:
    CopyRunObserver() = default;
    virtual ~CopyRunObserver() = default;

    CopyRunObserver(const CopyRunObserver&) = delete;
    CopyRunObserver& operator=(const CopyRunObserver&) = delete;

    /// The totals are known and no file has begun.
    virtual void copyWillBegin(const CopyProgress& /*progress*/) { }

    /// A file is about to be asked for; `progress` tells which.
    virtual void fileWillBegin(const CopyProgress& /*progress*/) { }

    /// Called again and again while a file is under way, every 0.01 s or a little later: the place
    /// to let the event loop turn and to show the progress. May be slow.
    virtual void copyIsUnderWay(const CopyProgress& /*progress*/) { }

    /// Asked between files and while one is under way. Once true, a stop is on its way.
    virtual bool isStopRequested() { return false; }

    /// The camera has been asked to end the running transfer. Unconfirmed, the transfer goes on,
    /// and the run ends after it.
    virtual void copyWasStopped(bool /*isConfirmed*/) { }

    /// The transfer of the file that began last is over, or there is none; its data may still be on
    /// its way to the disk.
    virtual void fileWasReceived() { }

    /// What has become of a file is known. `number`: its place among those that began, from 1; by
    /// now a few behind it may have begun as well, and `progress` tells of the last of them.
    virtual void fileDidFinish(const CopiedFile& /*file*/, std::uint64_t /*number*/,
                               const CopyProgress& /*progress*/)
    {
    }

    /// Nothing more will be copied, and the result has not been recorded yet.
    virtual void copyDidEnd() { }
};

}  // namespace nivor
