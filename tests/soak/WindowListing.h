/// Lists a camera as the window does: in the background, by the ticks of the connection monitor.
#pragma once

#include "content/BackgroundLoader.h"
#include "content/CameraPriority.h"
#include "content/ConnectionMonitor.h"
#include "content/ContentView.h"
#include "support/ManualMainQueue.h"

#include <memory>

namespace nivor::soak {

/// The window's parts that follow a camera, with a time that passes at once.
class WindowListing {
public:
    explicit WindowListing(PTPCommunication& engine);

    /// Two ticks with a load between them: what the list then shows; empty without a camera.
    ContentListing list();

    /// A tick after the camera was unplugged; whether the list is empty and the link is dropped.
    bool noticesThatItIsGone();

private:
    struct View : ContentView {
        void reloadData() override { }
        void expandAllItems() override { }
        void setSelectAllButtonEnabled(bool /*isEnabled*/) override { }
        void setTrashButtonEnabled(bool /*isEnabled*/) override { }
    };

    PTPCommunication& engine_;
    ContentModel model_;
    CameraPriority priority_;
    View view_;
    test::ManualMainQueue mainQueue_;
    BackgroundLoader loader_;
    ConnectionMonitor monitor_;
};

}  // namespace nivor::soak
