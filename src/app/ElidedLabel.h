/// A line of text that shows its beginning and its end when there is no room for all of it.
#pragma once

#include <QLabel>

namespace nivor {

/// Plain text only. Characters that would steer the text around them are made visible; `text()`
/// stays as it was set.
class ElidedLabel : public QLabel {
public:
    explicit ElidedLabel(QWidget* parent = nullptr);

    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace nivor
