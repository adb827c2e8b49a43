// What the mouse does in the list.

#include "app/ObjectListModel.h"
#include "app/OutlineView.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QMouseEvent>

#include <cstdlib>
#include <utility>

namespace nivor {

bool OutlineView::canDragFrom(const QPoint& position) const
{
    const QModelIndex index = indexAt(position);
    if (!index.isValid() || !selectionModel()->isSelected(index))
        return false;
    // Left of the cell is the arrow.
    const QModelIndex name = index.siblingAtColumn(ObjectListModel::NameColumn);
    return position.x() >= visualRect(name).left();
}

void OutlineView::mousePressEvent(QMouseEvent* event)
{
    // A right click opens a menu and leaves the selection as it is.
    if (event->button() == Qt::RightButton)
        return;
    QTreeView::mousePressEvent(event);
    if (event->button() != Qt::LeftButton)
        return;
    beginGesture(event->position().toPoint());
}

/// A press that follows another one soon may begin a drag as well.
void OutlineView::mouseDoubleClickEvent(QMouseEvent* event)
{
    QTreeView::mouseDoubleClickEvent(event);
    if (event->button() == Qt::LeftButton)
        beginGesture(event->position().toPoint());
}

void OutlineView::beginGesture(const QPoint& position)
{
    pressedAt_ = position;
    gesture_ = canDragFrom(position) ? Gesture::Undecided : Gesture::Selecting;
}

void OutlineView::mouseMoveEvent(QMouseEvent* event)
{
    if (gesture_ == Gesture::Undecided) {
        const QPoint way = event->position().toPoint() - pressedAt_;
        if (way.manhattanLength() < QApplication::startDragDistance())
            return;
        // Up and down extends the selection; only a motion to the side drags.
        gesture_ = std::abs(way.x()) > std::abs(way.y()) ? Gesture::Dragging : Gesture::Selecting;
        if (gesture_ == Gesture::Dragging) {
            setState(QAbstractItemView::NoState);
            actions_.dragWanted();
            gesture_ = Gesture::None;
            return;
        }
    }
    if (gesture_ == Gesture::Selecting)
        QTreeView::mouseMoveEvent(event);
}

void OutlineView::mouseReleaseEvent(QMouseEvent* event)
{
    const Gesture gesture = std::exchange(gesture_, Gesture::None);
    if (event->button() == Qt::RightButton)
        return;
    QTreeView::mouseReleaseEvent(event);
    if (event->button() == Qt::LeftButton && gesture != Gesture::None)
        actions_.wasClicked();
}

void OutlineView::contextMenuEvent(QContextMenuEvent* event)
{
    // From the keyboard there is no row under the mouse; the menu acts on the selection then.
    if (event->reason() == QContextMenuEvent::Mouse)
        clicked_ = objects_.object(indexAt(event->pos()));
    viewport()->update();
    const QRect current = visualRect(currentIndex());
    actions_.contextMenuWanted(event->reason() == QContextMenuEvent::Mouse
                                   ? event->globalPos()
                                   : viewport()->mapToGlobal(current.center()));
    clicked_ = nullptr;
    viewport()->update();
}

}  // namespace nivor
