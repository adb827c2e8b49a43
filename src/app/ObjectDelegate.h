/// Paints the rows of the list.
#pragma once

#include <QIcon>
#include <QStyledItemDelegate>

namespace nivor {

class ObjectListModel;
class ThumbnailCache;

/// In the first column, a file shows its thumbnail in a frame twice as wide as it is high and its
/// name behind that; a folder shows its name alone.
class ObjectDelegate : public QStyledItemDelegate {
public:
    ObjectDelegate(const ObjectListModel& model, ThumbnailCache& thumbnails, QObject* parent);

    /// The slider's value and its largest one; rows must be laid out anew afterwards.
    void setSlider(double value, double maximum);

    /// Pixels of a point: more than 1 where the font needs more room than the smallest row has.
    void setPixelsPerPoint(double pixels) { pixelsPerPoint_ = pixels; }

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    [[nodiscard]] double heightOf(const QModelIndex& index) const;
    void paintThumbnail(QPainter& painter, const QRectF& frame, const QModelIndex& index,
                        const QStyleOptionViewItem& view) const;

    const ObjectListModel& model_;
    ThumbnailCache& thumbnails_;
    const QIcon noThumbnail_;
    double slider_ = 0;
    double maximum_ = 1;
    double pixelsPerPoint_ = 1;
};

}  // namespace nivor
