#include "content/CopyComparison.h"

#include "content/ComparingCallback.h"
#include "content/CopyProgress.h"
#include "content/CopyResult.h"
#include "content/CopyRunObserver.h"
#include "content/PolledOperation.h"
#include "datasets/ObjectInfoData.h"
#include "datasets/TrimmingNullCharacters.h"
#include "foundation/ResultText.h"
#include "foundation/Selector.h"
#include "logging/RollingLogger.h"
#include "ptp/PTPCommunication.h"

#include <fmt/format.h>

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

std::string failureOf(const ComparingCallback& comparing, bool isComplete,
                      const TransactionFailure& failure)
{
    if (const auto difference = comparing.difference())
        return fmt::format("the copy differs from the camera's file, from byte {} on", *difference);
    if (isComplete)
        return {};
    const std::string text = failure.toText();
    return "could not be compared: " + (text.empty() ? "the camera did not send it" : text);
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

std::size_t CopyComparison::compareCopies(CopyResult& result,
                                          const std::shared_ptr<CopyProgress>& progress)
{
    constexpr Selector selector{"compareCopies:progress:"};
    prepare(result, *progress);
    observer_.copyWillBegin(*progress);

    std::size_t same = 0;
    bool isAllSame = true;
    for (CopiedFile& file : result.files) {
        if (!file.isCopied)
            continue;
        result.isStopped = result.isStopped || observer_.isStopRequested();
        if (result.isStopped)
            break;
        compareFile(file, result, progress);
        // What a stop cut short was neither found to be the same nor to differ.
        if (result.isStopConfirmed)
            break;
        file.isCopied = file.failure.empty();
        same += file.isCopied ? 1U : 0U;
        isAllSame = isAllSame && file.isCopied;
        observer_.fileDidFinish(file, *progress);
    }
    engine_.stopCopyFlgInit();
    logger_.writeToFile("CopyComparison", selector.text(),
                        fmt::format("compareCopies (result = {}, same = {} / {})",
                                    resultText(isAllSame && !result.isStopped), same,
                                    progress->numberOfTotalItems()));
    return same;
}

void CopyComparison::compareFile(CopiedFile& file, CopyResult& result,
                                 const std::shared_ptr<CopyProgress>& progress)
{
    progress->setSourceFile(NVX_stringByTrimmingNullCharacters(file.object->fileName()));
    progress->setNumberOfCopiedItems(progress->numberOfCopiedItems() + 1);

    const HandleBlock handle = handles_.value(file.object->myHandle());
    const auto compare = [&] {
        ComparingCallback comparing(file.path, progress);
        const bool isComplete =
            engine_.getObject(handle, file.object->objectCompressedSize(), nullptr, &comparing);
        try {
            if (isComplete)
                comparing.finish();
            file.failure = failureOf(comparing, isComplete, engine_.lastTransactionFailure());
        } catch (const std::exception& error) {
            file.failure = error.what();
        }
    };
    runPolled(compare, [&] {
        stopIfRequested(result);
        observer_.copyIsUnderWay(*progress);
    });
    if (result.isStopConfirmed)
        file.failure.clear();
}

void CopyComparison::stopIfRequested(CopyResult& result)
{
    if (result.isStopped || !observer_.isStopRequested())
        return;
    result.isStopped = true;
    result.isCancelSent = true;
    engine_.cancelTransaction();
    result.isStopConfirmed = engine_.isStopCopyFlg();
    observer_.copyWasStopped(result.isStopConfirmed);
}

}  // namespace nivor
