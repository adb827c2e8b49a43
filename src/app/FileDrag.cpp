#include "app/FileDrag.h"

#include "app/DirectSaveMimeData.h"
#include "content/LocalFileName.h"

#include <QDrag>
#include <QWidget>

#include <utility>

namespace nivor {

using namespace std::chrono_literals;

FileDrag::FileDrag(Callbacks callbacks, QObject* parent)
    : QObject(parent)
    , callbacks_(std::move(callbacks))
{
    decision_.setSingleShot(true);
    connect(&decision_, &QTimer::timeout, this, [this] { decide(); });
}

FileDrag::~FileDrag()
{
    leaveOffer();
}

bool FileDrag::isPossible()
{
    return DirectSaveProperty::isPossible();
}

bool FileDrag::exec(QWidget* source, const QStringList& names, const QPixmap& picture)
{
    // All drags share one property: a second one would take the first one's answer away.
    if (isBusy() || names.isEmpty() || !isPossible())
        return false;
    isDragging_ = true;
    folder_.reset();

    // Targets know of one file. They only append its name to that of the folder.
    auto* offer = new DirectSaveMimeData(localFileName(names.first()), [this](const QUrl& folder) {
        folder_ = folder;
        if (decision_.isActive())
            decision_.start(0ms);
    });
    offer_ = offer;
    connect(offer, &QObject::destroyed, this, [this] {
        // The target has finished. Who named no folder up to now never will.
        if (decision_.isActive())
            decision_.start(0ms);
    });
    auto* drag = new QDrag(source);
    drag->setMimeData(offer);
    drag->setPixmap(picture);

    const QPointer<FileDrag> self(this);
    const Qt::DropAction action = drag->exec(Qt::CopyAction);
    if (!self)
        return action == Qt::CopyAction;
    isDragging_ = false;
    if (action != Qt::CopyAction) {
        leaveOffer();
        return false;
    }
    // A quick target may have asked already.
    decision_.start(folder_ || !offer_ ? 0ms : std::chrono::milliseconds(longestSilence));
    return true;
}

void FileDrag::leaveOffer()
{
    // It may live on for minutes, and its end would be taken for that of a later drag's.
    if (DirectSaveMimeData* offer = offer_) {
        offer->close();
        offer->disconnect(this);
    }
    offer_.clear();
}

void FileDrag::decide()
{
    leaveOffer();
    // What follows may destroy this object.
    const Callbacks callbacks = callbacks_;
    if (const std::optional<QUrl> folder = std::exchange(folder_, std::nullopt))
        callbacks.droppedOnto(*folder);
    else
        callbacks.droppedNowhereNamed();
}

}  // namespace nivor
