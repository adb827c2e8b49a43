#include "app/ThumbnailCache.h"

#include "content/MainQueue.h"
#include "datasets/Thumbnail.h"

#include <utility>

namespace nivor {
namespace {

// Decoded pictures come to the screen together, once a frame or so.
constexpr std::chrono::milliseconds frame{15};

// What was asked for before the last so many requests has scrolled away.
constexpr std::size_t mostWaiting = 200;

}  // namespace

/// Held with its thumbnail, whose address is its key.
struct ThumbnailCache::Decoded {
    std::shared_ptr<const Thumbnail> thumbnail;
    QPixmap pixmap;
};

struct ThumbnailCache::Exchange {
    struct Request {
        std::shared_ptr<const Thumbnail> thumbnail;
        QSize bound;
    };
    struct Result {
        std::shared_ptr<const Thumbnail> thumbnail;
        QImage image;
    };

    std::mutex mutex;
    std::vector<Request> requests;  ///< the last one is next
    std::vector<Result> results;
    bool isAlive = true;  ///< main thread
};

ThumbnailCache::ThumbnailCache(MainQueue& mainQueue, std::function<void()> changed)
    : mainQueue_(mainQueue)
    , changed_(std::move(changed))
    , exchange_(std::make_shared<Exchange>())
{
}

ThumbnailCache::~ThumbnailCache()
{
    exchange_->isAlive = false;
    clear();
}

QPixmap ThumbnailCache::pixmap(const std::shared_ptr<const Thumbnail>& thumbnail,
                               const QSize& bound)
{
    if (const Decoded* found = kept_.object(thumbnail.get()))
        return found->pixmap;
    if (damaged_.contains(thumbnail.get()) || asked_.contains(thumbnail.get()))
        return {};
    asked_.insert(thumbnail.get());
    {
        const std::lock_guard guard(exchange_->mutex);
        if (exchange_->requests.size() >= mostWaiting) {
            asked_.remove(exchange_->requests.front().thumbnail.get());
            exchange_->requests.erase(exchange_->requests.begin());
        }
        exchange_->requests.push_back({thumbnail, bound});
    }
    decoder_.addOperation([this] { decodeNext(); });
    return {};
}

void ThumbnailCache::clear()
{
    kept_.clear();
    asked_.clear();
    damaged_.clear();
    const std::lock_guard guard(exchange_->mutex);
    exchange_->requests.clear();
    exchange_->results.clear();
}

/// On the decoder.
void ThumbnailCache::decodeNext()
{
    Exchange::Request request;
    {
        const std::lock_guard guard(exchange_->mutex);
        if (exchange_->requests.empty())
            return;
        request = std::move(exchange_->requests.back());
        exchange_->requests.pop_back();
    }
    QImage image = request.thumbnail->image();
    if (!image.isNull())
        image = image.scaled(request.bound, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    bool isFirst = false;
    {
        const std::lock_guard guard(exchange_->mutex);
        isFirst = exchange_->results.empty();
        exchange_->results.push_back({std::move(request.thumbnail), std::move(image)});
    }
    if (isFirst) {
        mainQueue_.runAfter(frame, [this, exchange = exchange_] {
            if (exchange->isAlive)
                takeDecoded();
        });
    }
}

void ThumbnailCache::takeDecoded()
{
    std::vector<Exchange::Result> results;
    {
        const std::lock_guard guard(exchange_->mutex);
        results = std::exchange(exchange_->results, {});
    }
    for (Exchange::Result& result : results) {
        const Thumbnail* key = result.thumbnail.get();
        // Asked for before everything was forgotten.
        if (!asked_.remove(key))
            continue;
        if (result.image.isNull())
            damaged_.insert(key, result.thumbnail);
        else
            kept_.insert(key,
                         new Decoded{std::move(result.thumbnail),
                                     QPixmap::fromImage(std::move(result.image))});
    }
    changed_();
}

}  // namespace nivor
