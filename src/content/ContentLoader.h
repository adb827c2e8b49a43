/// Lists the objects on a connected camera.
#pragma once

#include "content/ContentListing.h"
#include "content/ListingBudget.h"

#include <QString>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace nivor {

class ObjectInfoData;
class PTPCommunication;

/// Reads the ObjectInfo of every object on the camera's first storage, in the order of their
/// handles, with sizes beyond 32 bits corrected and, if wanted, with thumbnails.
///
/// A camera that names only the objects at the top when asked for all of them is asked for the
/// contents of each folder, level by level. Two objects in a row that can't be read end the
/// listing with what there is. Blocks its caller for the whole listing; runs on any one thread.
class ContentLoader {
public:
    struct Options {
        bool thumbnails = true;  ///< fetch the thumbnail of each file that has one
    };

    /// How far a listing is. Valid during the observer's call only.
    struct Progress {
        std::size_t done = 0;   ///< objects asked for so far, failed ones included
        std::size_t total = 0;  ///< objects known of; rises when folders are looked into
        const ContentListing* listing = nullptr;
    };

    using Observer = std::function<void(const Progress&)>;
    using StopPredicate = std::function<bool()>;

    enum class End : std::uint8_t {
        Complete,
        NoStorage,  ///< the camera named no storage; nothing was listed
        TooManyFailures,
        TooMuch,  ///< more than `ListingBudget` allows; what was read so far is listed
        Stopped,
    };

    struct Result {
        End end = End::Complete;
        ContentListing listing{};
        std::size_t failedObjects = 0;  ///< objects named by the camera that could not be read
        bool handlesFailed = false;     ///< a list of handles was missing or incomplete
        std::string failure{};          ///< why the last of all these failed, UTF-8; may be empty

        /// Whether the listing names all that the camera has.
        [[nodiscard]] bool isComplete() const
        {
            return end == End::Complete && failedObjects == 0 && !handlesFailed;
        }
    };

    /// Folders deeper than this are not looked into.
    static constexpr int deepestLevel = 64;

    /// `observer` is called after each object; `stop` is asked then and before each folder.
    /// `budget`: an unused one, for each `load`.
    ContentLoader(PTPCommunication& engine, Options options, Observer observer = {},
                  StopPredicate stop = {}, const ListingBudget& budget = {});

    /// Lists the camera that the engine is connected to.
    Result load();

private:
    bool readHandles(std::uint32_t storageID, std::uint32_t association, HandlesDict& handles);
    bool readObjects(const HandlesDict& handles, const QString& folder);
    bool readObject(const HandleBlock& handle, const QString& folder);
    void completeFile(ObjectInfoData& object, const HandleBlock& handle);
    void readThumbnail(ObjectInfoData& object, const HandleBlock& handle);
    void place(ObjectInfoData& object, const QString& folder);
    [[nodiscard]] bool listsOnlyTheTop() const;
    void settleTop();
    void lookIntoFolders(std::uint32_t storageID);
    bool lookIntoFolder(std::uint32_t storageID, const HandleBlock& folder);
    [[nodiscard]] std::vector<HandleBlock> foldersFrom(std::size_t firstObject) const;
    bool goesOnAfterFailure(std::string reason);
    bool endIfTooMuch();
    bool endIfStopped();
    void report();

    PTPCommunication& engine_;
    const Options options_;
    const Observer observer_;
    const StopPredicate stop_;

    const ListingBudget fullBudget_;
    ListingBudget budget_;
    Result result_;
    std::size_t done_ = 0;
    int consecutiveFailures_ = 0;
    int failedThumbnails_ = 0;  ///< in a row
};

}  // namespace nivor
