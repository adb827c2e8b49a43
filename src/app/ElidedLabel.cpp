#include "app/ElidedLabel.h"

#include "content/VisibleName.h"

#include <QPainter>
#include <QStyle>

namespace nivor {

ElidedLabel::ElidedLabel(QWidget* parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

QSize ElidedLabel::minimumSizeHint() const
{
    return {0, fontMetrics().height()};
}

void ElidedLabel::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    const QString shown =
        fontMetrics().elidedText(visibleName(text()), Qt::ElideMiddle, contentsRect().width());
    style()->drawItemText(&painter, contentsRect(), static_cast<int>(alignment()), palette(),
                          isEnabled(), shown, foregroundRole());
}

}  // namespace nivor
