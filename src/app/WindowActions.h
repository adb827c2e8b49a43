/// What the menus and shortcuts of the window offer.
#pragma once

#include "content/SortDescriptor.h"

#include <QAction>
#include <QActionGroup>
#include <QMenuBar>
#include <QPalette>

#include <array>

namespace nivor {

/// Makes the actions with their texts, shortcuts and icons, and puts them into menus. What they do
/// is for their owner to connect.
class WindowActions {
public:
    /// The actions and menus belong to `menuBar`.
    explicit WindowActions(QMenuBar& menuBar);

    QAction* copyToFolder;
    QAction* deleteFiles;
    QAction* quit;
    QAction* selectAll;
    QAction* largerThumbnails;
    QAction* smallerThumbnails;
    QAction* showLogFolder;
    QAction* about;

    /// In the order of the columns.
    std::array<QAction*, 3> sortBy;
    QAction* sortAscending;
    QAction* sortDescending;

    /// Sets the icons anew for a palette.
    void setPalette(const QPalette& palette);

    /// Marks the order that the list is in.
    void showOrder(int column, Qt::SortOrder order);

private:
    void makeSortMenu(QMenu& menu);
};

}  // namespace nivor
