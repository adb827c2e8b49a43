/// Shows a camera's file name on a terminal or in a log without letting it act there.
#pragma once

#include <QString>

namespace nivor {

/// `name` with everything that would steer a terminal or reorder the text around it made visible:
/// control characters as their control pictures (U+2400…) or as "\x9b", line and paragraph
/// separators and the marks that change the writing direction as "\u202e", halves of surrogate
/// pairs as U+FFFD. Other characters stay as they are.
QString visibleName(const QString& name);

}  // namespace nivor
