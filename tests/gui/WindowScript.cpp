#include "gui/WindowScript.h"

#include "app/AppDelegate.h"
#include "app/MainWindow.h"
#include "app/OutlineView.h"
#include "datasets/ObjectInfoData.h"
#include "datasets/TrimmingNullCharacters.h"
#include "gui/Click.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QFile>
#include <QPixmap>
#include <QToolButton>

#include <algorithm>
#include <chrono>
#include <functional>
#include <iostream>
#include <map>
#include <utility>

namespace nivor {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto interval = 50ms;
constexpr auto longestListing = 60s;
constexpr auto longestUnplugging = 60s;
constexpr auto longestEnabling = 5s;

// From the last word to the camera to a list that is whole; a moment more for the event loop.
constexpr auto publication = BackgroundLoader::publicationDelay + 250ms;

/// Turns the event loop until that is so, or until the time is up; answers whether it is so.
bool turnUntil(const std::function<bool()>& isSo, Clock::duration longest)
{
    const auto end = Clock::now() + longest;
    bool isReached = false;
    QEventLoop loop;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &loop, [&] {
        isReached = isSo();
        if (isReached || Clock::now() >= end)
            loop.quit();
    });
    timer.start(interval);
    loop.exec();
    return isReached;
}

QString nameOf(const ObjectInfoData& object)
{
    return NVX_stringByTrimmingNullCharacters(object.fileName());
}

}  // namespace

WindowScript::WindowScript(MainWindow& window, const AppDelegate& controller)
    : window_(window)
    , controller_(controller)
{
    const QString name = qEnvironmentVariable("NIVOR_WINDOW_SCRIPT");
    if (name.isEmpty())
        return;
    QFile file(name);
    // An unreadable script is one that fails, not one without commands.
    lines_ = file.open(QIODevice::ReadOnly)
        ? QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts)
        : QStringList{QStringLiteral("read ") + name};
    QTimer::singleShot(0, &window_, [this] { run(); });
}

void WindowScript::run()
{
    for (const QString& line : lines_) {
        answers_.set({});
        QStringList reasons{carryOut(line)};
        reasons += answers_.surprises();
        reasons.removeAll(QString());
        const QString why = reasons.join(QStringLiteral("; "));
        const QString verdict = why.isEmpty() ? QStringLiteral("ok %1").arg(line)
                                              : QStringLiteral("failed %1: %2").arg(line, why);
        std::cout << verdict.toStdString() << std::endl;  // at once, for others wait for it
        if (!why.isEmpty()) {
            QCoreApplication::exit(1);
            return;
        }
    }
}

QString WindowScript::carryOut(const QString& line)
{
    const QString verb = line.section(u' ', 0, 0);
    const QString argument = line.section(u' ', 1);
    const std::map<QString, std::function<QString()>> words{
        {QStringLiteral("wait-for-no-camera"), [&] { return waitForNoCamera(); }},
        {QStringLiteral("sort"), [&] { return sort(argument); }},
        {QStringLiteral("select"), [&] { return select(argument); }},
        {QStringLiteral("select-all"), [&] { return selectAll(); }},
        {QStringLiteral("copy"), [&] { return copy(argument); }},
        {QStringLiteral("delete"), [&] { return deleteSelected(); }},
        {QStringLiteral("picture"), [&] { return picture(argument); }},
        {QStringLiteral("close"), [&] { return close(); }},
    };
    if (const auto word = words.find(verb); word != words.end())
        return word->second();

    bool isNumber = false;
    const int number = argument.toInt(&isNumber);
    if (isNumber && verb == QStringLiteral("wait-for-list"))
        return waitForList(number);
    if (isNumber && verb == QStringLiteral("expect-rows"))
        return expectRows(number);
    if (isNumber && number >= 0 && verb == QStringLiteral("stop-after")) {
        stopAt_ = static_cast<std::uint64_t>(number);
        return {};
    }
    return QStringLiteral("there is no such command");
}

QString WindowScript::waitForList(int count)
{
    auto lastRead = Clock::now();
    const bool isThere = turnUntil(
        [&] {
            if (controller_.loader().isLoading())
                lastRead = Clock::now();
            return Clock::now() - lastRead >= publication && !controller_.isUpdateView()
                && window_.numberOfRows() >= count;
        },
        longestListing);
    return isThere ? QString() : rowsAndStatus();
}

QString WindowScript::waitForNoCamera()
{
    const bool isGone = turnUntil(
        [this] {
            return !controller_.NIVORConnected() && window_.numberOfRows() == 0
                && window_.isHintShown() && !window_.selectAllButton().isEnabled();
        },
        longestUnplugging);
    return isGone ? QString() : rowsAndStatus();
}

QString WindowScript::expectRows(int count)
{
    return window_.numberOfRows() == count ? QString() : rowsAndStatus();
}

QString WindowScript::rowsAndStatus() const
{
    return QStringLiteral("%1 rows, \"%2\"").arg(window_.numberOfRows()).arg(window_.statusText());
}

QString WindowScript::sort(const QString& keyName)
{
    const std::map<QString, std::pair<SortKey, ObjectListModel::Column>> keys{
        {QStringLiteral("name"), {SortKey::FileName, ObjectListModel::NameColumn}},
        {QStringLiteral("modified"), {SortKey::ModifiedDate, ObjectListModel::ModifiedColumn}},
        {QStringLiteral("size"), {SortKey::ObjectCompressedSize, ObjectListModel::SizeColumn}},
    };
    const auto found = keys.find(keyName);
    if (found == keys.end())
        return QStringLiteral("there is no such order");
    const auto [key, column] = found->second;
    window_.actions().sortAscending->trigger();
    window_.actions().sortBy.at(column)->trigger();
    return isInOrder(key) ? QString() : QStringLiteral("the rows are in another order");
}

/// Each folder's contents by themselves.
bool WindowScript::isInOrder(SortKey key) const
{
    std::map<QString, ObjectList> folders;
    for (int row = 0; row < window_.numberOfRows(); ++row) {
        const auto item = window_.itemAtRow(row);
        folders[item->parentObject()].push_back(item);
    }
    return std::all_of(folders.begin(), folders.end(), [key](const auto& folder) {
        ObjectList sorted = folder.second;
        sortObjects(sorted, {{key, true}});
        return sorted == folder.second;
    });
}

int WindowScript::rowOf(const QString& name) const
{
    for (int row = 0; row < window_.numberOfRows(); ++row) {
        if (nameOf(*window_.itemAtRow(row)) == name)
            return row;
    }
    return -1;
}

QString WindowScript::select(const QString& name)
{
    const int row = rowOf(name);
    if (row == -1)
        return QStringLiteral("there is no such row");
    OutlineView& list = window_.outlineView();
    const QModelIndex index = window_.objects().indexOf(window_.itemAtRow(row).get());
    list.scrollTo(index);
    clickOn(*list.viewport(), list.visualRect(index).center());
    return list.selectedRowIndexes() == std::vector<int>{row}
        ? QString()
        : QStringLiteral("another selection came of it");
}

QString WindowScript::selectAll()
{
    const QString why = pressWhenEnabled(window_.selectAllButton());
    if (!why.isEmpty())
        return why;
    return window_.numberOfSelectedRows() == window_.numberOfRows()
        ? QString()
        : QStringLiteral("%1 rows are selected").arg(window_.numberOfSelectedRows());
}

QString WindowScript::copy(const QString& folder)
{
    const bool isToBeStopped = stopAt_.has_value();
    answers_.set({.folder = folder, .stopAt = std::exchange(stopAt_, {})});
    const QString why = pressWhenEnabled(window_.copyButton());
    if (!why.isEmpty() || isToBeStopped)
        return why;
    return controller_.isError() ? QStringLiteral("it ended with an error") : QString();
}

QString WindowScript::deleteSelected()
{
    answers_.set({.isConfirming = true});
    const QString why = pressWhenEnabled(window_.trashButton());
    if (!why.isEmpty())
        return why;
    return controller_.isError() ? QStringLiteral("it ended with an error") : QString();
}

/// Buttons follow the selection a little later.
QString WindowScript::pressWhenEnabled(QAbstractButton& button)
{
    turnUntil([&button] { return button.isEnabled(); }, longestEnabling);
    return press(&button) ? QString() : QStringLiteral("the button is disabled");
}

QString WindowScript::picture(const QString& file)
{
    return window_.grab().save(file) ? QString() : QStringLiteral("it could not be written");
}

QString WindowScript::close()
{
    return window_.close() ? QString() : QStringLiteral("it stays open");
}

}  // namespace nivor
