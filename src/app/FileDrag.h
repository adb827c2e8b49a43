/// Drags files out of the program, onto a folder of a file manager.
#pragma once

#include <QObject>
#include <QPixmap>
#include <QPointer>
#include <QStringList>
#include <QTimer>
#include <QUrl>

#include <chrono>
#include <functional>
#include <optional>

class QWidget;

namespace nivor {

class DirectSaveMimeData;

/// The files need not exist: what the target of a drop gives is the folder that they shall go to,
/// and the program makes them there. On the main thread.
class FileDrag : public QObject {
public:
    /// Exactly one of the two follows a drop that a target has accepted, and nothing follows any
    /// other drag. Called from the event loop, when `exec` has returned and the target has got its
    /// answer; either may take long, turn the event loop, and destroy the FileDrag.
    struct Callbacks {
        std::function<void(const QUrl& folder)> droppedOnto;  ///< an existing local folder

        /// The target took the drop, but has done without a folder, or has not named one within
        /// `longestSilence`.
        std::function<void()> droppedNowhereNamed;
    };

    /// A file manager that has much to do needs its time; one that never asks says so at once.
    static constexpr std::chrono::seconds longestSilence{3};

    explicit FileDrag(Callbacks callbacks, QObject* parent = nullptr);
    ~FileDrag() override;

    /// Whether the desktop can do this at all: it needs an X server.
    [[nodiscard]] static bool isPossible();

    /// A drag is under way, or the callback of the last drop is due.
    [[nodiscard]] bool isBusy() const { return isDragging_ || decision_.isActive(); }

    /// Drags until the button is released; the event loop turns meanwhile. `names`: the files'
    /// names on the camera. Answers whether a target has accepted the drop. Does nothing without
    /// names, where dragging is not possible, and while `isBusy`.
    bool exec(QWidget* source, const QStringList& names, const QPixmap& picture);

private:
    void leaveOffer();
    void decide();

    const Callbacks callbacks_;
    bool isDragging_ = false;
    QPointer<DirectSaveMimeData> offer_;  ///< gone when the target has nothing left to ask
    std::optional<QUrl> folder_;          ///< named by the target
    QTimer decision_;                     ///< runs from the drop to the callback
};

}  // namespace nivor
