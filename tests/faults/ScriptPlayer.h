/// A camera on a wire that answers well, but for one command, to which it plays a script.
#pragma once

#include "faults/Script.h"
#include "faults/Wire.h"

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace nivor::test {

/// Steps that wait run on a thread of their own; all others before the command is written. A
/// Cancel Request ends the script, drops what is left of it and is confirmed at once, unless
/// somebody else answers the control requests.
class ScriptPlayer {
public:
    /// `pace`: how many milliseconds of the script pass in a real one.
    ScriptPlayer(Wire& wire, unsigned pace);
    ~ScriptPlayer();

    ScriptPlayer(const ScriptPlayer&) = delete;
    ScriptPlayer& operator=(const ScriptPlayer&) = delete;

    /// The next command is answered so. Once.
    void answerNextWith(Script script);

    /// Ends a script that is waiting.
    void stop();

private:
    void onCommand(ByteView command);
    void answerWell(ByteView command);
    void play(std::size_t first);
    void perform(const Step& step);
    bool pause(std::chrono::milliseconds duration);

    Wire& wire_;
    const unsigned pace_;
    std::mutex mutex_;
    std::condition_variable changed_;
    bool stopped_ = false;
    std::optional<Script> next_;
    Script playing_;
    std::thread thread_;
};

/// The storages that the camera names when it answers well.
std::vector<std::uint32_t> soundStorageIDs();

}  // namespace nivor::test
