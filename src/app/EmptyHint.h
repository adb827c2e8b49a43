/// What the window shows in place of an empty list.
#pragma once

#include <QWidget>

class QLabel;

namespace nivor {

class EmptyHint : public QWidget {
public:
    explicit EmptyHint(QWidget* parent = nullptr);

    /// Plain texts; `text` may be empty.
    void setTexts(const QString& title, const QString& text);

    [[nodiscard]] QString title() const;
    [[nodiscard]] QString text() const;

private:
    QLabel* title_;
    QLabel* text_;
};

}  // namespace nivor
