/// Uses the window as a user does, by a script; for programs that are built to be tested.
#pragma once

#include "content/SortDescriptor.h"
#include "gui/DialogAnswers.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>

class QAbstractButton;

namespace nivor {

class AppDelegate;
class MainWindow;

/// The file that the environment variable `NIVOR_WINDOW_SCRIPT` names has a command in each line;
/// without the variable nothing is done. Standard output gets a line for each, "ok COMMAND" or
/// "failed COMMAND: WHY". The first that fails ends the program with 1. Every wait has a bound.
///
///     wait-for-list COUNT      the camera has been read, and so many rows are shown
///     wait-for-no-camera       the list is empty because the camera is gone
///     expect-rows COUNT        so many rows are shown, neither more nor fewer
///     sort name|modified|size  the menu brings the list into this order
///     select NAME              clicks on the first row with this name
///     select-all               presses the button for that
///     copy FOLDER              presses the button for that, and chooses the folder
///     stop-after BYTES         the stop button ends the next copy once so much has arrived
///     delete                   presses the button for that, and confirms
///     picture FILE             saves a picture of the window
///     close                    closes the window
///
/// A dialog that a command does not expect is cancelled and fails it. The program goes on when the
/// script is over.
class WindowScript {
public:
    /// Begins when the event loop runs. Both must outlive the script.
    WindowScript(MainWindow& window, const AppDelegate& controller);

private:
    void run();
    QString carryOut(const QString& line);

    // Each command answers why it has failed; nothing when it hasn't.
    QString waitForList(int count);
    QString waitForNoCamera();
    QString expectRows(int count);
    QString sort(const QString& keyName);
    QString select(const QString& name);
    QString selectAll();
    QString copy(const QString& folder);
    QString deleteSelected();
    QString picture(const QString& file);
    QString close();

    QString pressWhenEnabled(QAbstractButton& button);
    [[nodiscard]] int rowOf(const QString& name) const;
    [[nodiscard]] bool isInOrder(SortKey key) const;
    [[nodiscard]] QString rowsAndStatus() const;

    MainWindow& window_;
    const AppDelegate& controller_;
    QStringList lines_;
    DialogAnswers answers_;
    std::optional<std::uint64_t> stopAt_;
};

}  // namespace nivor
