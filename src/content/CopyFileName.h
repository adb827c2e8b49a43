/// The rule by which a copied file gets a number when its name is taken.
#pragma once

#include <QString>
#include <QStringList>

namespace nivor {

/// The part of a file name behind its last dot, without the dot. Empty when there is no dot, when
/// nothing follows it, and for a name whose only dot is its first character (".profile").
QString pathExtension(const QString& fileName);

/// The file name without its extension and the dot before that.
QString deletingPathExtension(const QString& fileName);

/// The variant of `orgFileName` with a number between its stem and its extension: "IMG_2.JPG" for
/// "IMG.JPG" and 2. A name without an extension keeps the dot all the same: "README_1.".
QString numberedFileName(const QString& orgFileName, qsizetype number);

/// `orgFileName` itself when `usedNames` doesn't hold it, otherwise its variant numbered with how
/// often it does.
QString makeCopyFileName(const QStringList& usedNames, const QString& orgFileName);

}  // namespace nivor
