#include "app/EmptyHint.h"

#include "app/IconSet.h"

#include <QBoxLayout>
#include <QLabel>

namespace nivor {
namespace {

constexpr QSize pictureSize{200, 150};
constexpr int textWidth = 420;
constexpr double titleScale = 1.3;

}  // namespace

EmptyHint::EmptyHint(QWidget* parent)
    : QWidget(parent)
    , title_(new QLabel)
    , text_(new QLabel)
{
    setBackgroundRole(QPalette::Base);
    setAutoFillBackground(true);

    auto* picture = new QLabel;
    picture->setPixmap(plainIcon(QStringLiteral("empty-camera")).pixmap(pictureSize));
    QFont large = title_->font();
    large.setPointSizeF(large.pointSizeF() * titleScale);
    large.setBold(true);
    title_->setFont(large);
    for (QLabel* label : {title_, text_}) {
        label->setTextFormat(Qt::PlainText);
        label->setAlignment(Qt::AlignHCenter);
        label->setWordWrap(true);
        label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    }

    auto* lines = new QVBoxLayout;
    lines->addStretch();
    lines->addWidget(picture, 0, Qt::AlignHCenter);
    lines->addWidget(title_);
    lines->addWidget(text_);
    lines->addStretch();
    // A column of its own width: a label that wraps its lines is only then given room for them all.
    auto* column = new QWidget;
    column->setFixedWidth(textWidth);
    column->setLayout(lines);
    auto* whole = new QHBoxLayout(this);
    whole->addStretch();
    whole->addWidget(column);
    whole->addStretch();
}

void EmptyHint::setTexts(const QString& title, const QString& text)
{
    title_->setText(title);
    text_->setText(text);
    text_->setVisible(!text.isEmpty());
}

QString EmptyHint::title() const
{
    return title_->text();
}

QString EmptyHint::text() const
{
    return text_->text();
}

}  // namespace nivor
