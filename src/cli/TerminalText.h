/// How wide a text is on a terminal.
#pragma once

#include <QString>

namespace nivor {

/// The columns that `text` takes: two for East Asian wide characters and pictures, none for marks
/// that combine with the character before them.
int terminalColumns(const QString& text);

/// `text` if it fits into `columns`, else its beginning and "…".
QString fittedToColumns(const QString& text, int columns);

}  // namespace nivor
