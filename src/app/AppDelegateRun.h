/// A copy or a deletion of the controller's, from its begin to its end.
#pragma once

#include "app/AppDelegate.h"

namespace nivor {

/// Has the camera to itself while it lives, and closes the window afterwards if that was wanted.
class AppDelegate::Run {
public:
    Run(AppDelegate& app, bool isDeletion);
    ~Run();

    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

private:
    AppDelegate& app_;
    CameraPriority::Claim claim_;
};

}  // namespace nivor
