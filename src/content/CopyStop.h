/// How the user's stop reaches the camera while an object is under way.
#pragma once

namespace nivor {

class CopyRunObserver;
class PTPCommunication;
struct CopyResult;

/// Does nothing once a stop has been noted in `result`. Otherwise asks the observer; if it wants a
/// stop, tells the camera, notes what became of that, and tells the observer. On the thread that
/// runs the copy.
void stopIfRequested(PTPCommunication& engine, CopyRunObserver& observer, CopyResult& result);

}  // namespace nivor
