/// Reads the folder out of what a drop target has written by the X Direct Save protocol (XDS).
#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <optional>

namespace nivor {

/// The most bytes that a target's answer may have: the longest path, with every byte escaped, fits.
inline constexpr qsizetype longestDirectSaveAnswer = 16384;

/// The folder of the file that `answer` names, when that is an existing folder of this computer;
/// otherwise nothing.
///
/// `answer` is a file: URI in bytes that any program may have written; one NUL at its end is
/// ignored. A URI may name a host: `hostName`, "localhost" or none. The bare name that a drag
/// begins with is no URI, so it names nothing.
std::optional<QUrl> directSaveFolder(const QByteArray& answer, const QString& hostName);

}  // namespace nivor
