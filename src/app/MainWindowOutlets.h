/// The main window as its controller sees it.
#pragma once

#include "content/ContentView.h"

#include <memory>
#include <vector>

namespace nivor {

class ObjectInfoData;

/// Rows are counted from 0 over the whole list as it is shown, from the top down.
class MainWindowOutlets : public ContentView {
public:
    /// Ascending.
    [[nodiscard]] virtual std::vector<int> selectedRowIndexes() const = 0;

    /// The row that the context menu was opened on; -1 when there is none.
    [[nodiscard]] virtual int clickedRow() const = 0;

    /// The object in a row; null when there is no such row.
    [[nodiscard]] virtual std::shared_ptr<ObjectInfoData> itemAtRow(int row) const = 0;

    /// Closes the window, which asks the controller whether it may.
    virtual void closeWindow() = 0;
};

}  // namespace nivor
