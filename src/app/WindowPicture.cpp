#include "app/WindowPicture.h"

#include "app/AppDelegate.h"
#include "app/MainWindow.h"

#include <QCoreApplication>
#include <QPixmap>

#include <chrono>
#include <utility>

namespace nivor {
namespace {

using namespace std::chrono_literals;

constexpr auto interval = 100ms;
constexpr int mostLooks = 600;

// The whole list comes two seconds after the last object, and the thumbnails a moment later.
constexpr int looksForThumbnails = 40;

}  // namespace

WindowPicture::WindowPicture(MainWindow& window, const AppDelegate& controller,
                             std::filesystem::path file)
    : window_(window)
    , controller_(controller)
    , file_(std::move(file))
{
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { look(); });
    timer_.start(interval);
}

void WindowPicture::look()
{
    ++looks_;
    const bool isListed =
        controller_.dataModels() && !controller_.loader().isLoading() && !window_.isHintShown();
    looksAfterList_ = isListed ? looksAfterList_ + 1 : 0;
    if (looksAfterList_ < looksForThumbnails && looks_ < mostLooks)
        return;
    timer_.stop();
    const bool isSaved = window_.grab().save(QString::fromStdString(file_.string()));
    QCoreApplication::exit(isSaved && isListed ? 0 : 1);
}

}  // namespace nivor
