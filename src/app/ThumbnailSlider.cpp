#include "app/ThumbnailSlider.h"

#include <QtMath>

#include <algorithm>
#include <cmath>

namespace nivor {
namespace {

constexpr int stepsPerUnit = 10;
constexpr int unitsPerKey = 5;
constexpr int unitsPerPage = 20;

}  // namespace

ThumbnailSlider::ThumbnailSlider(QWidget* parent)
    : QSlider(Qt::Horizontal, parent)
{
    setRange(0, static_cast<int>(largest) * stepsPerUnit);
    setSingleStep(unitsPerKey * stepsPerUnit);
    setPageStep(unitsPerPage * stepsPerUnit);
    connect(this, &QSlider::valueChanged, this, [this](int value) { follow(value); });
}

void ThumbnailSlider::setDoubleValue(double value)
{
    // What was saved may be anything, even no number.
    doubleValue_ = std::isfinite(value) ? std::clamp(value, 0.0, largest) : 0.0;
    isSetting_ = true;
    setValue(qRound(doubleValue_ * stepsPerUnit));
    isSetting_ = false;
}

void ThumbnailSlider::follow(int value)
{
    if (isSetting_)
        return;
    doubleValue_ = static_cast<double>(value) / stepsPerUnit;
    if (moved_)
        moved_();
}

}  // namespace nivor
