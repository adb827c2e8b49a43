/// The slider that sets how large the thumbnails are.
#pragma once

#include <QSlider>

#include <functional>

namespace nivor {

/// From 0.0 to `largest`, in tenths when it is moved; a value that is set stays exactly that until
/// then.
class ThumbnailSlider : public QSlider {
public:
    static constexpr double largest = 100.0;

    explicit ThumbnailSlider(QWidget* parent = nullptr);

    [[nodiscard]] double doubleValue() const { return doubleValue_; }
    void setDoubleValue(double value);

    /// `moved`: the user has moved it.
    void setAction(std::function<void()> moved) { moved_ = std::move(moved); }

private:
    void follow(int value);

    std::function<void()> moved_;
    double doubleValue_ = 0;
    bool isSetting_ = false;
};

}  // namespace nivor
