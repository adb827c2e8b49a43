#include "content/CopyComparison.h"

#include "content/CameraGone.h"
#include "content/ComparingCallback.h"
#include "content/CopyProgress.h"
#include "content/CopyResult.h"
#include "content/CopyRunObserver.h"
#include "content/CopyStop.h"
#include "datasets/ObjectInfoData.h"
#include "datasets/TrimmingNullCharacters.h"
#include "foundation/ResultText.h"
#include "foundation/Selector.h"
#include "logging/RollingLogger.h"
#include "ptp/PTPCommunication.h"

#include <fmt/format.h>

#include <mutex>

#include <exception>
#include <utility>

namespace nivor {
namespace {

void prepare(const CopyResult& result, CopyProgress& progress)
{
    std::uint64_t totalSize = 0;
    for (const CopiedFile& file : result.files)
        totalSize += file.isCopied ? file.object->objectCompressedSize() : 0;
    progress.setSourceFile(QString());
    progress.setNumberOfTotalItems(result.copiedCount());
    progress.setNumberOfCopiedItems(0);
    progress.setTotalSize(totalSize);
    progress.setCopiedSize(0);
}

std::string notComparedText(const std::string& reason)
{
    return "could not be compared: " + (reason.empty() ? "the camera did not send it" : reason);
}

}  // namespace

CopyComparison::CopyComparison(PTPCommunication& engine, RollingLogger& logger, HandlesDict handles,
                               CopyRunObserver& observer)
    : engine_(engine)
    , logger_(logger)
    , handles_(std::move(handles))
    , observer_(observer)
{
}

CopyComparisonResult CopyComparison::compareCopies(CopyResult& result,
                                                   const std::shared_ptr<CopyProgress>& progress)
{
    constexpr Selector selector{"compareCopies:progress:"};
    prepare(result, *progress);
    observer_.copyWillBegin(*progress);

    CopyComparisonResult comparison{
        .outcomes = std::vector<Outcome>(result.files.size(), Outcome::NotCompared)};
    bool isAllSame = true;
    for (std::size_t i = 0; i < result.files.size(); ++i) {
        CopiedFile& file = result.files[i];
        if (!file.isCopied)
            continue;
        result.isStopped = result.isStopped || observer_.isStopRequested();
        if (result.isStopped)
            break;
        comparison.outcomes[i] = compareFile(file, result, progress);
        // What a stop cut short was neither found to be the same nor to differ.
        if (result.isStopConfirmed && comparison.outcomes[i] == Outcome::NotCompared) {
            file.failure.clear();
            break;
        }
        file.isCopied = file.failure.empty();
        isAllSame = isAllSame && file.isCopied;
        observer_.fileDidFinish(file, progress->numberOfCopiedItems(), *progress);
    }
    engine_.stopCopyFlgInit();
    logger_.writeToFile("CopyComparison", selector.text(),
                        fmt::format("compareCopies (result = {}, same = {} / {})",
                                    resultText(isAllSame && !result.isStopped),
                                    comparison.count(Outcome::Same),
                                    progress->numberOfTotalItems()));
    return comparison;
}

CopyComparisonResult::Outcome CopyComparison::compareFile(
    CopiedFile& file, CopyResult& result, const std::shared_ptr<CopyProgress>& progress)
{
    progress->setSourceFile(NVX_stringByTrimmingNullCharacters(file.object->fileName()));
    progress->setNumberOfCopiedItems(progress->numberOfCopiedItems() + 1);
    if (isCameraGone_) {
        file.failure = notComparedText(cameraGoneText);
        return Outcome::NotCompared;
    }

    Outcome outcome = Outcome::NotCompared;
    worker_.run([&] { outcome = receive(file, result.folder, progress); },
                [&] {
                    stopIfRequested(engine_, observer_, result);
                    observer_.copyIsUnderWay(*progress);
                });
    return outcome;
}

/// On the worker: fetches the object and holds it against the file.
CopyComparisonResult::Outcome CopyComparison::receive(
    CopiedFile& file, const std::shared_ptr<const DestinationFolder>& folder,
    const std::shared_ptr<CopyProgress>& progress)
{
    const HandleBlock handle = handles_.value(file.object->myHandle());
    ComparingCallback comparing(folder, file.path, progress);
    bool isComplete = false;
    bool isEarlier = false;
    {
        const std::lock_guard guard(engine_.lock());
        isComplete =
            engine_.getObject(handle, file.object->objectCompressedSize(), nullptr, &comparing);
        isEarlier = engine_.isAnswerEarlier();
    }
    if (isEarlier) {
        // What it was held against are another file's bytes.
        file.failure = notComparedText(engine_.lastTransactionFailure().toText());
        return Outcome::NotCompared;
    }
    try {
        if (isComplete)
            comparing.finish();
    } catch (const std::exception& error) {
        file.failure = notComparedText(error.what());
        return Outcome::NotCompared;
    }
    if (const auto difference = comparing.difference()) {
        file.failure =
            fmt::format("the copy differs from the camera's file, from byte {} on", *difference);
        return Outcome::Different;
    }
    if (isComplete)
        return Outcome::Same;
    const TransactionFailure failure = engine_.lastTransactionFailure();
    isCameraGone_ = isCameraGone(failure);
    file.failure = notComparedText(failure.toText());
    return Outcome::NotCompared;
}

}  // namespace nivor
