#include "app/WindowActions.h"

#include "app/IconSet.h"
#include "app/LocalizedText.h"

#include <QMenu>

namespace nivor {
namespace {

QAction* addAction(QMenu& menu, const char* key, const QList<QKeySequence>& shortcuts = {})
{
    QAction* action = menu.addAction(localizedText(key));
    action->setShortcuts(shortcuts);
    return action;
}

QAction* addChoice(QMenu& menu, QActionGroup& group, const char* key)
{
    QAction* action = addAction(menu, key);
    action->setCheckable(true);
    group.addAction(action);
    return action;
}

}  // namespace

WindowActions::WindowActions(QMenuBar& menuBar)
{
    QMenu& file = *menuBar.addMenu(localizedText(TextKey::menuFile));
    copyToFolder = addAction(file, TextKey::actionCopyToFolder,
                             {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_C)});
    deleteFiles = addAction(file, TextKey::actionDelete, {QKeySequence::Delete});
    file.addSeparator();
    quit = addAction(file, TextKey::actionQuit, {QKeySequence(Qt::CTRL | Qt::Key_Q)});
    quit->setMenuRole(QAction::QuitRole);

    QMenu& edit = *menuBar.addMenu(localizedText(TextKey::menuEdit));
    selectAll = addAction(edit, TextKey::actionSelectAll, {QKeySequence::SelectAll});

    QMenu& view = *menuBar.addMenu(localizedText(TextKey::menuView));
    makeSortMenu(*view.addMenu(localizedText(TextKey::menuSortBy)));
    view.addSeparator();
    // "+" needs Shift on many keyboards; "=" is what is pressed then.
    largerThumbnails =
        addAction(view, TextKey::actionLargerThumbnails,
                  {QKeySequence(Qt::CTRL | Qt::Key_Plus), QKeySequence(Qt::CTRL | Qt::Key_Equal)});
    smallerThumbnails =
        addAction(view, TextKey::actionSmallerThumbnails, {QKeySequence(Qt::CTRL | Qt::Key_Minus)});

    QMenu& help = *menuBar.addMenu(localizedText(TextKey::menuHelp));
    showLogFolder = addAction(help, TextKey::actionShowLogFolder);
    about = addAction(help, TextKey::actionAbout);
    about->setMenuRole(QAction::AboutRole);
    setPalette(menuBar.palette());
}

void WindowActions::makeSortMenu(QMenu& menu)
{
    auto* columns = new QActionGroup(&menu);
    sortBy = {addChoice(menu, *columns, TextKey::columnName),
              addChoice(menu, *columns, TextKey::columnModified),
              addChoice(menu, *columns, TextKey::columnSize)};
    menu.addSeparator();
    auto* orders = new QActionGroup(&menu);
    sortAscending = addChoice(menu, *orders, TextKey::actionSortAscending);
    sortDescending = addChoice(menu, *orders, TextKey::actionSortDescending);
}

void WindowActions::setPalette(const QPalette& palette)
{
    const auto set = [&palette](QAction* action, const char* name) {
        action->setIcon(lineIcon(QString::fromLatin1(name), palette));
    };
    set(copyToFolder, "copy-to-folder");
    set(deleteFiles, "trash");
    set(quit, "quit");
    set(selectAll, "select-all");
    set(largerThumbnails, "thumbnail-large");
    set(smallerThumbnails, "thumbnail-small");
    set(showLogFolder, "log-folder");
    set(about, "about");
}

void WindowActions::showOrder(int column, Qt::SortOrder order)
{
    sortBy.at(static_cast<std::size_t>(column))->setChecked(true);
    (order == Qt::AscendingOrder ? sortAscending : sortDescending)->setChecked(true);
}

}  // namespace nivor
