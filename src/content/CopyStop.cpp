#include "content/CopyStop.h"

#include "content/CopyResult.h"
#include "content/CopyRunObserver.h"
#include "ptp/PTPCommunication.h"

namespace nivor {

void stopIfRequested(PTPCommunication& engine, CopyRunObserver& observer, CopyResult& result)
{
    if (result.isStopped || !observer.isStopRequested())
        return;
    result.isStopped = true;
    result.isCancelSent = true;
    engine.cancelTransaction();
    result.isStopConfirmed = engine.isStopCopyFlg();
    observer.copyWasStopped(result.isStopConfirmed);
}

}  // namespace nivor
