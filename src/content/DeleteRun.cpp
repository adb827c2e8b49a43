#include "content/DeleteRun.h"

#include "content/CameraGone.h"
#include "content/DeleteRunObserver.h"
#include "content/OwnAnswer.h"
#include "datasets/ObjectInfoData.h"
#include "foundation/ResultText.h"
#include "foundation/Selector.h"
#include "logging/RollingLogger.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace nivor {

DeleteRun::DeleteRun(PTPCommunication& engine, RollingLogger& logger, HandlesDict handles,
                     DeleteRunObserver& observer)
    : engine_(engine)
    , logger_(logger)
    , handles_(std::move(handles))
    , observer_(observer)
{
}

DeleteResult DeleteRun::startDeletingItems(const ObjectList& items)
{
    constexpr Selector selector{"startDeletingItems:"};
    writeLog(selector.text(),
             fmt::format("startDeletingItems (deleteItemCount = {})", items.size()));

    const auto total = static_cast<std::size_t>(std::count_if(
        items.begin(), items.end(), [](const auto& item) { return !item->isAssociation(); }));
    for (const auto& item : items) {
        if (item->isAssociation())
            continue;
        result_.isStopped = result_.isStopped || observer_.isStopRequested();
        if (result_.isStopped) {
            ++result_.filesNotBegun;
            continue;
        }
        observer_.fileWillBeDeleted(*item, result_.files.size() + 1, total);
        deleteItem(item);
    }

    // Singular here, unlike the opening line; both are what readers of these logs look for.
    writeLog(selector.text(),
             fmt::format("startDeletingItem (result = {})", resultText(!result_.isError)));
    return std::move(result_);
}

void DeleteRun::deleteItem(const std::shared_ptr<ObjectInfoData>& item)
{
    DeletedFile& file = result_.files.emplace_back();
    file.object = item;
    const auto handle = handles_.constFind(item->myHandle());
    if (isCameraGone_)
        file.failure = cameraGoneText;
    else if (handle == handles_.cend())
        file.failure = "the camera no longer has it";
    else
        worker_.run([this, block = handle.value(), &file] { request(block, file); },
                    [this] { observer_.deletionIsUnderWay(); });
    result_.isError = !file.isDeleted;
    observer_.fileDidFinish(file);
}

/// On the worker.
void DeleteRun::request(const HandleBlock& handle, DeletedFile& file)
{
    file.isDeleted = hasOwnAnswer(engine_, [&] { return engine_.deleteObject(handle); });
    if (file.isDeleted)
        return;
    const TransactionFailure failure = engine_.lastTransactionFailure();
    isCameraGone_ = isCameraGone(failure);
    file.failure = failure.toText();
    if (file.failure.empty())
        file.failure = "the camera did not confirm it";
}

void DeleteRun::writeLog(std::string_view selector, std::string_view message)
{
    logger_.writeToFile("AppDelegate", selector, message);
}

}  // namespace nivor
