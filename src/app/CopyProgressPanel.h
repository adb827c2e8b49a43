/// The window that shows how far a copy is, with a button to stop it.
#pragma once

#include <QDialog>

#include <functional>

class QLabel;
class QProgressBar;
class QPushButton;

namespace nivor {

/// Filled by its controller. Esc and closing it press the stop button; it goes only when the
/// session ends that has opened it.
class CopyProgressPanel : public QDialog {
public:
    /// `stop`: the stop button's action.
    explicit CopyProgressPanel(std::function<void()> stop);

    [[nodiscard]] QLabel& messageField() const { return *messageField_; }
    [[nodiscard]] QLabel& sourceFileField() const { return *sourceFileField_; }
    [[nodiscard]] QLabel& amountField() const { return *amountField_; }
    [[nodiscard]] QLabel& rateField() const { return *rateField_; }
    [[nodiscard]] QProgressBar& progressBar() const { return *progressBar_; }
    [[nodiscard]] QPushButton& stopButton() const { return *stopButton_; }

    void reject() override;

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    QLabel* messageField_;
    QLabel* sourceFileField_;
    QProgressBar* progressBar_;
    QLabel* amountField_;
    QLabel* rateField_;
    QPushButton* stopButton_;
};

}  // namespace nivor
