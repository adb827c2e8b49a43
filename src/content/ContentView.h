/// The parts of the window that follow the camera.
#pragma once

namespace nivor {

/// Called on the main thread only.
class ContentView {
public:
    ContentView() = default;
    virtual ~ContentView() = default;

    ContentView(const ContentView&) = delete;
    ContentView& operator=(const ContentView&) = delete;

    /// Shows what the model holds now.
    virtual void reloadData() = 0;

    /// Expands the whole tree.
    virtual void expandAllItems() = 0;

    virtual void setSelectAllButtonEnabled(bool isEnabled) = 0;
    virtual void setTrashButtonEnabled(bool isEnabled) = 0;
};

}  // namespace nivor
