/// The mouse of a script: clicks reach a window as the user's do, so what covers it keeps them off.
#pragma once

#include <QPoint>

class QAbstractButton;
class QWidget;

namespace nivor {

/// Clicks at a place in the widget. Returns when what the click sets off is over, which may take as
/// long as the dialogs that it opens.
void clickOn(QWidget& widget, const QPoint& place);

/// Presses a button, in the same way. False when it can't be pressed: then nothing happens.
bool press(QAbstractButton* button);

}  // namespace nivor
