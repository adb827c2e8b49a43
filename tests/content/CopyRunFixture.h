/// Copies from a simulated camera, with a witness.
#pragma once

#include "content/CopyProgress.h"
#include "content/CopyRun.h"
#include "content/CopyRunObserver.h"
#include "content/SimulatedCameraFixture.h"
#include "datasets/ObjectInfoData.h"
#include "datasets/TrimmingNullCharacters.h"

#include <functional>

namespace nivor::test {

inline constexpr const char* copyEvent = "AppDelegate startCopyingItems:toDestination:";

/// Writes down what it hears, and stops when it is told to.
class RecordingObserver : public CopyRunObserver {
public:
    void copyWillBegin(const CopyProgress& progress) override
    {
        total = progress.totalSize();
        items = progress.numberOfTotalItems();
        EXPECT_EQ(progress.copiedSize(), 0U);
        EXPECT_EQ(progress.numberOfCopiedItems(), 0U);
        EXPECT_TRUE(progress.sourceFile().isEmpty());
    }

    void copyIsUnderWay(const CopyProgress& progress) override
    {
        ++turns;
        now = &progress;
    }

    bool isStopRequested() override { return stopWhen && stopWhen(); }

    void copyWasStopped(bool isConfirmed) override { confirmations.push_back(isConfirmed); }

    void fileWasReceived() override { ++received; }

    void fileDidFinish(const CopiedFile& file, std::uint64_t number,
                       const CopyProgress& /*progress*/) override
    {
        finished.push_back(
            NVX_stringByTrimmingNullCharacters(file.object->fileName()).toStdString());
        numbers.push_back(number);
        lastReason = file.failure;
    }

    std::function<bool()> stopWhen{};
    std::uint64_t total = 0;
    std::uint64_t items = 0;
    int turns = 0;
    std::size_t received = 0;
    const CopyProgress* now = nullptr;
    std::vector<bool> confirmations;
    std::vector<std::string> finished;
    std::vector<std::uint64_t> numbers;
    std::string lastReason;
};

/// Lists the camera and copies all of it into a folder of its own.
class CopyRunFixture : public SimulatedCameraFixture {
protected:
    /// Lists the camera and copies all of it.
    CopyResult copyAll(CopyTargets::CreateFile createFile = {})
    {
        const ContentListing listing = load({.thumbnails = false}).listing;
        CopyRun run(engine, log.logger(), listing.handles, observer, std::move(createFile));
        return run.startCopyingItems(listing.objects, folder(), progress);
    }

    const std::filesystem::path& folder() const { return destination.path(); }

    std::size_t filesInFolder() const
    {
        return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder()),
                                                      std::filesystem::directory_iterator()));
    }

    /// Five files of 2 MB at 2 MB/s, stopped in the second.
    void prepareStopInSecondFile(FaultPlan faults = {})
    {
        for (const char16_t* name : {u"1.MOV", u"2.MOV", u"3.MOV", u"4.MOV", u"5.MOV"})
            handles.push_back(card->addFile(name, fileSize));
        connect({.pace = {.megabytesPerSecond = 2}, .faults = std::move(faults)});
        observer.stopWhen = [this] {
            return progress->numberOfCopiedItems() == 2
                && progress->copiedSize() > fileSize + fileSize / 4;
        };
    }

    static constexpr std::uint64_t fileSize = 2'000'000;

    std::vector<std::uint32_t> handles;
    RecordingObserver observer;
    std::shared_ptr<CopyProgress> progress = std::make_shared<CopyProgress>();
};

}  // namespace nivor::test
