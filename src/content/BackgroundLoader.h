/// Loads the camera's contents in the background and hands them over piece by piece.
#pragma once

#include "content/ContentLoader.h"
#include "content/ContentModel.h"
#include "content/SortDescriptor.h"
#include "foundation/AtomicProperty.h"
#include "foundation/OperationQueue.h"

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>

namespace nivor {

class CameraPriority;
class MainQueue;
class PTPCommunication;

/// One load after another on a worker thread of its own. A load publishes into the model whenever
/// its last snapshot has been taken (`isUpdateView` is clear), and the whole list in the end; when
/// snapshots of a long list take long, it makes them more seldom.
/// Operations belong to the main thread unless they say otherwise.
class BackgroundLoader {
public:
    /// Between the camera's appearance and the first word to it.
    static constexpr std::chrono::milliseconds startDelay{1000};

    /// Between the last object and the publication of the whole list.
    static constexpr std::chrono::milliseconds publicationDelay{2000};

    struct Parts {
        PTPCommunication& engine;
        ContentModel& model;
        CameraPriority& priority;
        MainQueue& mainQueue;
        std::int32_t vendorID;
    };

    /// All parts must outlive the loader.
    explicit BackgroundLoader(const Parts& parts);

    /// Ends a running load after its object and waits for that.
    ~BackgroundLoader();

    BackgroundLoader(const BackgroundLoader&) = delete;
    BackgroundLoader& operator=(const BackgroundLoader&) = delete;

    /// Schedules a load and returns at once. Whatever an earlier one has published is gone, since
    /// there may be another camera now; one that is still running ends after its object.
    void setupDataModels();

    /// The order that snapshots are published in. Any thread.
    [[nodiscard]] SortDescriptors sortDescriptors() const { return sortDescriptors_.get(); }
    void setSortDescriptors(SortDescriptors descriptors);

    /// The program is about to end: loads end after their object, and nothing is published any
    /// more. Any thread.
    [[nodiscard]] bool isClosed() const { return isClosed_; }
    void setIsClosed(bool isClosed) { isClosed_ = isClosed; }

    /// A load is connecting, listing or waiting for its turn. Any thread.
    [[nodiscard]] bool isLoading() const { return progress().isLoading; }

    /// The last load has ended without a list: the camera could not be connected to, or has no
    /// storage. Any thread.
    [[nodiscard]] bool hasFailed() const { return progress().hasFailed; }

    /// The last load has ended with a list that lacks something: objects that could not be read, or
    /// all that would have come after the camera stopped answering. Any thread.
    [[nodiscard]] bool isIncomplete() const { return progress().isIncomplete; }

    /// Objects asked for so far and objects known of, both 0 until the camera has named them.
    [[nodiscard]] std::size_t objectsDone() const { return progress().done; }
    [[nodiscard]] std::size_t objectsTotal() const { return progress().total; }

    /// The thread that loads run on.
    [[nodiscard]] OperationQueue& operationQueue() { return operationQueue_; }

private:
    using Clock = std::chrono::steady_clock;
    using LoadNumber = ContentModel::LoadNumber;

    /// How far a load is.
    struct Progress {
        LoadNumber load = 0;
        bool isLoading = false;
        bool hasFailed = false;
        bool isIncomplete = false;
        std::size_t done = 0;
        std::size_t total = 0;
    };

    [[nodiscard]] Progress progress() const;
    void setProgress(const Progress& progress);
    void startLoad(LoadNumber number);
    void load(LoadNumber number);
    ContentLoader::Result list(LoadNumber number);
    void publishAtLast(LoadNumber number, ContentListing listing);
    void publishSnapshot(LoadNumber number, const ContentListing& listing);
    void noteProgress(const ContentLoader::Progress& progress, LoadNumber number);
    [[nodiscard]] bool isOver(LoadNumber number) const;

    PTPCommunication& engine_;
    ContentModel& model_;
    CameraPriority& priority_;
    MainQueue& mainQueue_;
    const std::int32_t vendorID_;

    AtomicProperty<SortDescriptors> sortDescriptors_;
    std::atomic<bool> isClosed_{false};

    // Of the last load only: what an earlier one has to say comes too late.
    mutable std::mutex progressMutex_;
    Progress progress_;

    Clock::time_point nextSnapshot_{};  ///< not before; the worker's own

    // Gone when the loader is: what waits in the main queue looks at it first.
    std::shared_ptr<const bool> lifeline_ = std::make_shared<const bool>(true);

    // Behind all that its operations work on.
    OperationQueue operationQueue_;
};

}  // namespace nivor
