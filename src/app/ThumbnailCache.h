/// The thumbnails that are on the screen, decoded in the background.
#pragma once

#include "foundation/OperationQueue.h"

#include <QCache>
#include <QHash>
#include <QPixmap>
#include <QSet>
#include <QSize>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace nivor {

class MainQueue;
class Thumbnail;

/// Lives on the main thread and decodes on one of its own, what was asked for last first: that is
/// what the user looks at. Keeps `mostKept` pictures.
class ThumbnailCache {
public:
    static constexpr int mostKept = 3000;

    /// `changed`: more pictures are there; called on the main thread, once for many.
    ThumbnailCache(MainQueue& mainQueue, std::function<void()> changed);

    /// Ends after the picture that is being decoded.
    ~ThumbnailCache();

    ThumbnailCache(const ThumbnailCache&) = delete;
    ThumbnailCache& operator=(const ThumbnailCache&) = delete;

    /// The picture, of `bound` pixels at most; null while it is not there, or when its file is
    /// damaged (`isDamaged`). Asking for it has it decoded.
    QPixmap pixmap(const std::shared_ptr<const Thumbnail>& thumbnail, const QSize& bound);

    /// Whether decoding has failed.
    [[nodiscard]] bool isDamaged(const Thumbnail* thumbnail) const
    {
        return damaged_.contains(thumbnail);
    }

    /// Forgets everything: there is another camera, or another scale.
    void clear();

private:
    struct Decoded;
    struct Exchange;

    void decodeNext();
    void takeDecoded();

    MainQueue& mainQueue_;
    const std::function<void()> changed_;

    QCache<const Thumbnail*, Decoded> kept_{mostKept};
    QSet<const Thumbnail*> asked_;
    QHash<const Thumbnail*, std::shared_ptr<const Thumbnail>>
        damaged_;  ///< kept: keys are addresses

    // What passes between the two threads, under a mutex of its own.
    const std::shared_ptr<Exchange> exchange_;

    OperationQueue decoder_;
};

}  // namespace nivor
