#include "soak/SoakCycle.h"

#include "content/ContentLoader.h"
#include "content/CopyProgress.h"
#include "content/CopyRun.h"
#include "content/DeleteRun.h"
#include "content/DeleteRunObserver.h"
#include "ptp/PTPCommunication.h"
#include "soak/RandomCard.h"
#include "soak/RandomFaults.h"
#include "soak/RandomStop.h"
#include "soak/WindowListing.h"

#include <fmt/format.h>

#include <algorithm>
#include <exception>
#include <thread>
#include <utility>

namespace nivor::soak {
namespace {

/// How long copying the whole card takes in a cycle with a stop, so that the stop finds it at work.
constexpr std::chrono::milliseconds stoppedCopyTime{60};

/// Any slower, and the 24 bytes about an empty file alone would run into a time-out.
constexpr double leastPace = 0.1;

double megabytesPerSecondFor(const std::vector<CardObject>& objects)
{
    double bytes = 1;
    for (const CardObject& object : objects)
        bytes += static_cast<double>(object.size);
    const double pace = bytes / 1e6 / std::chrono::duration<double>(stoppedCopyTime).count();
    return std::max(pace, leastPace);
}

}  // namespace

SoakCycle::SoakCycle(Workplace& workplace, std::uint64_t seed, std::uint64_t number)
    : workplace_(workplace)
    , random_(seed, number)
    , isFaulty_(isFaulty(number))
    , destination_(workplace.folder / "copies")
    , card_(makeRandomCard(random_, isFaulty_))
{
    if (isFaulty_)
        faults_ = makeRandomFaults(random_);
    for (const std::uint32_t handle : card_->handles()) {
        before_.push_back(card_->object(handle).value());
        if (auto thumbnail = card_->thumbnail(handle))
            thumbnails_.emplace(handle, std::move(*thumbnail));
    }
    if (random_.chance(25))
        window_ = std::make_unique<WindowListing>(workplace_.engine);
}

SoakCycle::~SoakCycle() = default;

std::vector<std::string> SoakCycle::run()
{
    camera_ = std::make_shared<SimulatedCamera>(card_,
                                                CameraSettings{.faults = faults_,
                                                               .listing = random_.chance(50)
                                                                   ? ListingStyle::WholeStorage
                                                                   : ListingStyle::RootOnly});
    workplace_.host.attach(camera_);
    std::filesystem::create_directory(destination_);
    try {
        connectAndList();
        copy();
        remove();
    } catch (const std::exception& error) {
        complaints_.push_back(fmt::format("raised: {}", error.what()));
    }
    disconnect();

    checkListing();
    checkCopies();
    checkFolder();
    checkCard();
    std::filesystem::remove_all(destination_);
    if (!complaints_.empty() && isFaulty_)
        complaints_.push_back("the faults were: " + describe(faults_));
    return std::move(complaints_);
}

void SoakCycle::connectAndList()
{
    PTPCommunication& engine = workplace_.engine;
    if (window_) {
        listing_ = window_->list();
        expectOfGoodCamera(engine.connected(), "the window did not connect");
        return;
    }
    const bool isDone = engine.connect(anyVendorID);
    expectOfGoodCamera(isDone && engine.connected(), "the camera was not connected to");
    expect(engine.connected() || engine.lastConnectFailure().step != ConnectFailure::Step::None,
           "no reason for a failed connection");
    if (!engine.connected())
        return;
    ContentLoader::Result result = ContentLoader(engine, {.thumbnails = true}).load();
    expectOfGoodCamera(result.end == ContentLoader::End::Complete && result.failedObjects == 0
                           && !result.handlesFailed,
                       "the listing is not complete: " + result.failure);
    listing_ = std::move(result.listing);
}

void SoakCycle::copy()
{
    const bool isToBeStopped = random_.chance(33);
    RandomStop stop;
    std::jthread stopper;
    if (isToBeStopped) {
        camera_->setPace({.megabytesPerSecond = megabytesPerSecondFor(before_)});
        const std::chrono::milliseconds delay(random_.below(80));
        stopper = std::jthread([&stop, delay] { stop.requestAfter(delay); });
    }
    CopyRun run(workplace_.engine, workplace_.logger, listing_.handles, stop);
    copies_ =
        run.startCopyingItems(listing_.objects, destination_, std::make_shared<CopyProgress>());
    camera_->setPace({});
}

void SoakCycle::remove()
{
    ObjectList chosen;
    for (const auto& object : listing_.objects) {
        if (random_.chance(40))
            chosen.push_back(object);
    }
    DeleteRunObserver observer;
    removals_ = DeleteRun(workplace_.engine, workplace_.logger, listing_.handles, observer)
                    .startDeletingItems(chosen);
}

void SoakCycle::disconnect()
{
    PTPCommunication& engine = workplace_.engine;
    expect(!engine.isStopCopyFlg(), "the stop of the copy is still on");
    if (window_) {
        // As at the end of the program, or with the plug pulled first.
        workplace_.host.detach(camera_);
        expect(window_->noticesThatItIsGone(), "the window still shows what is gone");
        window_.reset();
    }
    engine.disconnect();
    expectOfGoodCamera(!camera_->hasOpenSession() || !workplace_.host.isAttached(camera_),
                       "a session was left open");
    workplace_.host.detach(camera_);
    expect(!engine.connected() && !engine.usbDevice() && !engine.usbInterface(),
           "the engine holds on to the camera");
}

void SoakCycle::expect(bool isRight, const std::string& what)
{
    if (!isRight)
        complaints_.push_back(what);
}

void SoakCycle::expectOfGoodCamera(bool isRight, const std::string& what)
{
    expect(isRight || isFaulty_, what);
}

}  // namespace nivor::soak
