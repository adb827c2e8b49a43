/// The program's own icons.
#pragma once

#include <QIcon>
#include <QPalette>
#include <QString>

namespace nivor {

class ObjectInfoData;

/// A line icon that suits the palette: dark lines on light ground and light ones on dark.
QIcon lineIcon(const QString& name, const QPalette& palette);

/// An icon that is the same on every ground.
QIcon plainIcon(const QString& name);

/// What a row shows beside its name; null for a picture, which shows itself.
QIcon kindIcon(const ObjectInfoData& object);

}  // namespace nivor
