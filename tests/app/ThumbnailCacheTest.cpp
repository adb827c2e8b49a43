#include "app/ThumbnailCache.h"

#include "datasets/Thumbnail.h"
#include "support/ManualMainQueue.h"

#include <QBuffer>
#include <QImage>

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

using namespace nivor;
using namespace nivor::test;
using namespace std::chrono_literals;

namespace {

std::shared_ptr<const Thumbnail> thumbnailOf(QSize size, bool isDamaged = false)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::blue);
    QByteArray file;
    QBuffer buffer(&file);
    image.save(&buffer, "PNG");
    ByteBuffer bytes(file.begin(), file.end());
    if (isDamaged)
        bytes.resize(bytes.size() - 30);  // the header is whole
    return Thumbnail::fromFile(bytes);
}

class ThumbnailCacheTest : public ::testing::Test {
protected:
    /// Asks, and asks again once it has been decoded.
    QPixmap decoded(const std::shared_ptr<const Thumbnail>& thumbnail)
    {
        EXPECT_TRUE(cache.pixmap(thumbnail, bound).isNull());
        waitForChange();
        return cache.pixmap(thumbnail, bound);
    }

    void waitForChange()
    {
        const int before = changes;
        const auto end = std::chrono::steady_clock::now() + 10s;
        while (changes == before && std::chrono::steady_clock::now() < end) {
            std::this_thread::sleep_for(1ms);
            mainQueue.advance(20ms);
        }
        EXPECT_GT(changes, before);
    }

    static constexpr QSize bound{100, 50};

    ManualMainQueue mainQueue;
    int changes = 0;
    ThumbnailCache cache{mainQueue, [this] { ++changes; }};
};

TEST_F(ThumbnailCacheTest, APictureComesAMomentAfterItWasAskedFor)
{
    const QPixmap pixmap = decoded(thumbnailOf({160, 120}));
    // As large as its frame lets it be, in its own proportions.
    EXPECT_EQ(pixmap.height(), 50);
    EXPECT_NEAR(pixmap.width(), 67, 1);
}

TEST_F(ThumbnailCacheTest, ADamagedPictureIsKnownAsSuch)
{
    const auto thumbnail = thumbnailOf({64, 64}, true);
    EXPECT_TRUE(decoded(thumbnail).isNull());
    EXPECT_TRUE(cache.isDamaged(thumbnail.get()));
}

TEST_F(ThumbnailCacheTest, WhatIsForgottenIsDecodedAgain)
{
    const auto thumbnail = thumbnailOf({160, 120});
    decoded(thumbnail);
    cache.clear();
    EXPECT_FALSE(decoded(thumbnail).isNull());
}

TEST_F(ThumbnailCacheTest, WhatScrolledAwayBeforeItsTurnCanBeAskedForAgain)
{
    std::vector<std::shared_ptr<const Thumbnail>> many;
    for (int i = 0; i < 1000; ++i) {
        many.push_back(thumbnailOf({16, 16}));
        cache.pixmap(many.back(), bound);
    }
    const auto end = std::chrono::steady_clock::now() + 20s;
    std::size_t shown = 0;
    while (shown < many.size() && std::chrono::steady_clock::now() < end) {
        mainQueue.advance(20ms);
        shown = 0;
        for (std::size_t i = 0; i < many.size(); ++i)
            shown += cache.pixmap(many[i], bound).isNull() ? 0U : 1U;
    }
    EXPECT_EQ(shown, many.size());
}

TEST_F(ThumbnailCacheTest, ItMayEndWhilePicturesAreOnTheirWay)
{
    {
        ThumbnailCache other(mainQueue, [this] { ++changes; });
        for (int i = 0; i < 50; ++i)
            other.pixmap(thumbnailOf({64, 64}), bound);
    }
    mainQueue.advance(1s);
    EXPECT_EQ(changes, 0);
}

}  // namespace
