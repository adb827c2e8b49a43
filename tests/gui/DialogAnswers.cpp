#include "gui/DialogAnswers.h"

#include "app/CopyProgressPanel.h"
#include "gui/Click.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QDirIterator>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>

#include <algorithm>
#include <chrono>
#include <utility>

namespace nivor {
namespace {

using namespace std::chrono_literals;

constexpr auto interval = 20ms;

std::uint64_t bytesIn(const QString& folder)
{
    std::uint64_t bytes = 0;
    for (QDirIterator files(folder, QDir::Files); files.hasNext();)
        bytes += static_cast<std::uint64_t>(files.nextFileInfo().size());
    return bytes;
}

}  // namespace

DialogAnswers::DialogAnswers()
{
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { look(); });
    timer_.start(interval);
}

void DialogAnswers::set(const Answers& answers)
{
    answers_ = answers;
    folder_.clear();
    bytesBefore_ = 0;
    surprises_.clear();
}

QStringList DialogAnswers::surprises() const
{
    QStringList all = surprises_;
    if (!answers_.folder.isEmpty())
        all += QStringLiteral("nothing asked for a folder");
    if (answers_.stopAt)
        all += QStringLiteral("no copy was stopped");
    if (answers_.isConfirming)
        all += QStringLiteral("there was no question");
    return all;
}

void DialogAnswers::look()
{
    QWidget* dialog = QApplication::activeModalWidget();
    if (auto* chooser = qobject_cast<QFileDialog*>(dialog))
        answer(*chooser);
    else if (auto* box = qobject_cast<QMessageBox*>(dialog))
        answer(*box);
    else if (const auto* panel = dynamic_cast<CopyProgressPanel*>(dialog))
        answer(*panel);
}

void DialogAnswers::answer(QFileDialog& chooser)
{
    auto* name = chooser.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    const auto* buttons = chooser.findChild<QDialogButtonBox*>();
    if (answers_.folder.isEmpty() || name == nullptr || buttons == nullptr) {
        surprises_ += QStringLiteral("a folder chooser could not be answered");
        chooser.reject();
        return;
    }
    folder_ = std::exchange(answers_.folder, {});
    bytesBefore_ = bytesIn(folder_);
    name->setText(folder_);
    if (!press(buttons->button(QDialogButtonBox::Open)))
        surprises_ += QStringLiteral("the folder chooser's button could not be pressed");
}

void DialogAnswers::answer(QMessageBox& box)
{
    const bool isConfirmed = std::exchange(answers_.isConfirming, false);
    const QList<QAbstractButton*> buttons = box.buttons();
    const auto yes = std::find_if(buttons.begin(), buttons.end(), [&box](QAbstractButton* button) {
        return box.buttonRole(button) == QMessageBox::AcceptRole;
    });
    if (isConfirmed && yes != buttons.end() && press(*yes))
        return;
    const QStringList texts{box.text(), box.informativeText(), box.detailedText()};
    surprises_ += QStringLiteral("it says: ") + texts.join(u' ').simplified();
    box.reject();
}

void DialogAnswers::answer(const CopyProgressPanel& panel)
{
    if (!answers_.stopAt || bytesIn(folder_) - bytesBefore_ < *answers_.stopAt)
        return;
    if (press(&panel.stopButton()))
        answers_.stopAt.reset();
}

}  // namespace nivor
