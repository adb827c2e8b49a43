/// Answers the dialogs of the window as a script wants it.
#pragma once

#include <QString>
#include <QStringList>
#include <QTimer>

#include <cstdint>
#include <optional>

class QFileDialog;
class QMessageBox;

namespace nivor {

class CopyProgressPanel;

/// Looks many times a second which dialog is in front. What nobody has given an answer for is
/// cancelled, so that no script waits for a user.
class DialogAnswers {
public:
    DialogAnswers();

    /// What to answer; each holds for one dialog.
    struct Answers {
        QString folder{};                       ///< to the folder chooser; empty cancels it
        std::optional<std::uint64_t> stopAt{};  ///< a copy is stopped at so many bytes in it
        bool isConfirming = false;              ///< whether a question is answered with yes
    };
    void set(const Answers& answers);

    /// What was not as the script expected it since the answers were set: a dialog that nobody has
    /// given an answer for, an answer that nobody has asked for. Empty when all was.
    [[nodiscard]] QStringList surprises() const;

private:
    void look();
    void answer(QFileDialog& chooser);
    void answer(QMessageBox& box);
    void answer(const CopyProgressPanel& panel);

    Answers answers_;
    QString folder_;  ///< that was chosen
    std::uint64_t bytesBefore_ = 0;
    QStringList surprises_;
    QTimer timer_;
};

}  // namespace nivor
