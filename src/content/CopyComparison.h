/// Reads copied files from the camera once more and holds the copies against them.
#pragma once

#include "content/ContentListing.h"
#include "content/CopyComparisonResult.h"
#include "content/PolledWorker.h"

#include <memory>

namespace nivor {

class CopyProgress;
class CopyRunObserver;
class DestinationFolder;
class PTPCommunication;
class RollingLogger;
struct CopiedFile;
struct CopyResult;

/// Serves one run. The camera works on a worker thread, while the calling thread watches and can
/// stop it.
class CopyComparison {
public:
    /// `handles`: those of the listing that the copies come from.
    CopyComparison(PTPCommunication& engine, RollingLogger& logger, HandlesDict handles,
                   CopyRunObserver& observer);

    /// Compares every file that `result` calls copied, in order, to the last byte. A file that
    /// differs, or that could not be compared, is not copied any more and has its failure told;
    /// nothing is removed. Once the camera is gone it is not asked any more. A stop is noted in
    /// `result`, and the files behind it stay as they are.
    CopyComparisonResult compareCopies(CopyResult& result,
                                       const std::shared_ptr<CopyProgress>& progress);

private:
    using Outcome = CopyComparisonResult::Outcome;

    Outcome compareFile(CopiedFile& file, CopyResult& result,
                        const std::shared_ptr<CopyProgress>& progress);
    Outcome receive(CopiedFile& file, const std::shared_ptr<const DestinationFolder>& folder,
                    const std::shared_ptr<CopyProgress>& progress);

    PTPCommunication& engine_;
    RollingLogger& logger_;
    const HandlesDict handles_;
    CopyRunObserver& observer_;

    bool isCameraGone_ = false;

    PolledWorker worker_;
};

}  // namespace nivor
