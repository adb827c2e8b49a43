/// The main window as its controller sees it.
#pragma once

#include "content/ContentView.h"

#include <QString>

#include <memory>
#include <vector>

class QWidget;

namespace nivor {

class ObjectInfoData;

/// Rows are counted from 0 over the whole list as it is shown, from the top down.
class MainWindowOutlets : public ContentView {
public:
    [[nodiscard]] virtual int numberOfRows() const = 0;

    /// Ascending.
    [[nodiscard]] virtual std::vector<int> selectedRowIndexes() const = 0;

    [[nodiscard]] virtual int numberOfSelectedRows() const = 0;
    virtual void selectAllRows() = 0;
    virtual void deselectAllRows() = 0;

    /// The row that the context menu was opened on; -1 when there is none.
    [[nodiscard]] virtual int clickedRow() const = 0;

    /// The object in a row; null when there is no such row.
    [[nodiscard]] virtual std::shared_ptr<ObjectInfoData> itemAtRow(int row) const = 0;

    /// The value of `thumbnailExpandSlider`.
    [[nodiscard]] virtual double sliderValue() const = 0;
    virtual void setSliderValue(double value) = 0;

    /// Lays the rows out anew for the slider's value.
    virtual void layOutRows() = 0;

    /// Something that the window tells about the camera may have changed.
    virtual void updateStatus() = 0;

    /// Says something in the status line for a while.
    virtual void showMessage(const QString& text) = 0;

    /// Keeps in the settings what the user has made of the window.
    virtual void saveLayout() = 0;

    /// Closes the window, which asks the controller whether it may.
    virtual void closeWindow() = 0;

    /// The window on the screen, for what opens over it; null without one.
    [[nodiscard]] virtual QWidget* widget() = 0;

    /// Ends the program without closing the window first.
    virtual void endProgram() = 0;
};

}  // namespace nivor
