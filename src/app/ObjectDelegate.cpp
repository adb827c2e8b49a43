#include "app/ObjectDelegate.h"

#include "app/IconSet.h"
#include "app/ObjectListModel.h"
#include "app/RowMetrics.h"
#include "app/ThumbnailCache.h"
#include "datasets/ObjectInfoData.h"
#include "datasets/Thumbnail.h"

#include <QApplication>
#include <QPainter>

namespace nivor {
namespace {

// Between the texts of two columns.
constexpr int columnMargin = 2;

QPalette::ColorGroup colorGroup(const QStyleOptionViewItem& option)
{
    if (!option.state.testFlag(QStyle::State_Enabled))
        return QPalette::Disabled;
    return option.state.testFlag(QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;
}

QColor textColor(const QStyleOptionViewItem& option)
{
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    return option.palette.color(colorGroup(option),
                                isSelected ? QPalette::HighlightedText : QPalette::Text);
}

}  // namespace

ObjectDelegate::ObjectDelegate(const ObjectListModel& model, ThumbnailCache& thumbnails,
                               QObject* parent)
    : QStyledItemDelegate(parent)
    , model_(model)
    , thumbnails_(thumbnails)
    , noThumbnail_(plainIcon(QStringLiteral("no-thumbnail")))
{
}

void ObjectDelegate::setSlider(double value, double maximum)
{
    slider_ = value;
    maximum_ = maximum;
}

double ObjectDelegate::heightOf(const QModelIndex& index) const
{
    return rowHeight(model_.isFolder(index), slider_, maximum_) * pixelsPerPoint_;
}

QSize ObjectDelegate::sizeHint(const QStyleOptionViewItem& /*option*/,
                               const QModelIndex& index) const
{
    constexpr int anyWidth = 100;
    // The first cell of a row decides for all.
    if (index.column() != ObjectListModel::NameColumn)
        return {anyWidth, 1};
    return {anyWidth, qCeil(heightOf(index))};
}

void ObjectDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                           const QModelIndex& index) const
{
    QStyleOptionViewItem view = option;
    initStyleOption(&view, index);
    const QStyle* style = view.widget != nullptr ? view.widget->style() : QApplication::style();
    style->drawPrimitive(QStyle::PE_PanelItemViewItem, &view, painter, view.widget);

    QRectF room = view.rect;
    if (index.column() == ObjectListModel::NameColumn && !model_.isFolder(index)) {
        const QSizeF size = thumbnailFrame(heightOf(index));
        const QRectF frame(room.topLeft(), size);
        paintThumbnail(*painter, frame, index, view);
        room.setLeft(frame.right() + nameDistance * pixelsPerPoint_);
    } else if (index.column() != ObjectListModel::NameColumn) {
        room.adjust(columnMargin, 0, -columnMargin, 0);
    }

    painter->save();
    painter->setFont(view.font);
    painter->setPen(textColor(view));
    const bool isName = index.column() == ObjectListModel::NameColumn;
    const QString text = view.fontMetrics.elidedText(
        view.text, isName ? Qt::ElideMiddle : Qt::ElideRight, static_cast<int>(room.width()));
    painter->drawText(room, static_cast<int>(view.displayAlignment) | Qt::TextSingleLine, text);
    painter->restore();
}

void ObjectDelegate::paintThumbnail(QPainter& painter, const QRectF& frame,
                                    const QModelIndex& index,
                                    const QStyleOptionViewItem& view) const
{
    // Decoded once, as large as the slider can make it: then the slider only has to scale it.
    const QSizeF largest = thumbnailFrame(fileRowHeight(maximum_, maximum_)) * pixelsPerPoint_
        * painter.device()->devicePixelRatioF();
    const auto thumbnail = model_.object(index)->thumbnail();
    const QRectF inner = frame.adjusted(1, 1, -1, -1);
    if (!thumbnail || thumbnails_.isDamaged(thumbnail.get())) {
        // Made for the ground of a row that is not selected.
        if (view.state.testFlag(QStyle::State_Selected))
            painter.fillRect(inner, view.palette.base());
        noThumbnail_.paint(&painter, inner.toAlignedRect());
        return;
    }
    const QPixmap picture = thumbnails_.pixmap(thumbnail, largest.toSize());
    if (picture.isNull())
        return;  // on its way
    QRectF target(QPointF(), QSizeF(picture.size()).scaled(inner.size(), Qt::KeepAspectRatio));
    target.moveCenter(inner.center());
    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(target, picture, picture.rect());
    painter.restore();
}

}  // namespace nivor
