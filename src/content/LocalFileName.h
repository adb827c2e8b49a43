/// Makes a camera's file name safe to create in a folder of this computer.
#pragma once

#include <QString>

namespace nivor {

/// The longest name that the usual file systems take, in bytes of UTF-8.
inline constexpr qsizetype longestLocalFileName = 255;

/// The name under which a file called `cameraName` may be created: never a path, never empty.
///
/// '/', NUL, control characters (C0, DEL, C1), marks that turn the direction of text, line
/// separators and halves of surrogate pairs become '_', as do the whole names "", "." and "..". A
/// name that is too long loses the end of its stem, in whole characters; its extension stays,
/// unless it is itself so long that it can't be one.
QString localFileName(const QString& cameraName);

/// As `numberedFileName`, for a name made by `localFileName`; within the longest name as well.
QString numberedLocalFileName(const QString& localName, qsizetype number);

}  // namespace nivor
