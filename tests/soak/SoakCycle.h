/// One cycle of the soak: a camera is connected, listed, copied, stopped, tidied and disconnected.
#pragma once

#include "content/ContentListing.h"
#include "content/CopyResult.h"
#include "content/DeleteResult.h"
#include "simulator/SimulatedHost.h"
#include "soak/Random.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace nivor {

class MemoryCard;
class PTPCommunication;
class RollingLogger;

}  // namespace nivor

namespace nivor::soak {

class WindowListing;

/// What a worker works with from one cycle to the next.
struct Workplace {
    PTPCommunication& engine;
    RollingLogger& logger;
    SimulatedHost& host;
    std::filesystem::path folder;  ///< empty, and empty again after each cycle
};

/// Serves one cycle. Everything random follows from seed and number, the moment of a stop aside.
class SoakCycle {
public:
    /// Two faulty ones, then two with a camera that does all it should, and so on.
    static bool isFaulty(std::uint64_t number) { return number % 4 < 2; }

    SoakCycle(Workplace& workplace, std::uint64_t seed, std::uint64_t number);
    ~SoakCycle();

    SoakCycle(const SoakCycle&) = delete;
    SoakCycle& operator=(const SoakCycle&) = delete;

    /// What went wrong, a line each; none in a good cycle.
    std::vector<std::string> run();

    // For the totals.
    [[nodiscard]] std::size_t filesCopied() const { return copies_.copiedCount(); }
    [[nodiscard]] bool wasStopped() const { return copies_.isStopped; }

private:
    void connectAndList();
    void copy();
    void remove();
    void disconnect();

    void checkListing();
    void checkThumbnail(const ObjectInfoData& object);
    void checkCopies();
    void checkCopy(const CopiedFile& file);
    void checkFolder();
    void checkCard();

    void expect(bool isRight, const std::string& what);
    /// As `expect`, for what only a camera without faults has to fulfil.
    void expectOfGoodCamera(bool isRight, const std::string& what);

    Workplace& workplace_;
    Random random_;
    const bool isFaulty_;
    const std::filesystem::path destination_;

    std::shared_ptr<MemoryCard> card_;
    FaultPlan faults_;
    std::shared_ptr<SimulatedCamera> camera_;
    std::unique_ptr<WindowListing> window_;  ///< in some cycles only

    // What was on the card.
    std::vector<CardObject> before_;
    std::map<std::uint32_t, ByteBuffer> thumbnails_;

    ContentListing listing_;
    CopyResult copies_;
    DeleteResult removals_;
    std::vector<std::string> complaints_;
};

}  // namespace nivor::soak
