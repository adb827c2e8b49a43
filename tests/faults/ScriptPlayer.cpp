#include "faults/ScriptPlayer.h"

#include "codes/ClassRequest.h"
#include "ptp/ContainerHeader.h"
#include "support/ConnectedCamera.h"
#include "support/ScriptedCamera.h"

#include <utility>

namespace nivor::test {

std::vector<std::uint32_t> soundStorageIDs()
{
    return {0x00070001, 0x00080001, 0x00090001};
}

ScriptPlayer::ScriptPlayer(Wire& wire, unsigned pace)
    : wire_(wire)
    , pace_(pace)
{
    wire_.onCommand([this](ByteView command) { onCommand(command); });
    wire_.onControl([this](std::uint8_t request) -> std::optional<ByteBuffer> {
        if (request != static_cast<std::uint8_t>(ClassRequest::CancelRequest))
            return deviceStatusBlock(0x2001);
        stop();
        wire_.forget();
        return ByteBuffer();
    });
}

ScriptPlayer::~ScriptPlayer()
{
    wire_.onCommand([](ByteView) {});
    wire_.onControl([](std::uint8_t) { return std::nullopt; });
    stop();
    if (thread_.joinable())
        thread_.join();
}

void ScriptPlayer::answerNextWith(Script script)
{
    const std::lock_guard guard(mutex_);
    next_ = std::move(script);
}

void ScriptPlayer::stop()
{
    const std::lock_guard guard(mutex_);
    stopped_ = true;
    changed_.notify_all();
}

void ScriptPlayer::onCommand(ByteView command)
{
    std::optional<Script> script;
    {
        const std::lock_guard guard(mutex_);
        script.swap(next_);
    }
    if (!script)
        return answerWell(command);
    playing_ = std::move(*script);
    for (std::size_t i = 0; i < playing_.size(); ++i) {
        if (playing_[i].after.count() > 0) {
            thread_ = std::thread([this, i] { play(i); });
            return;
        }
        perform(playing_[i]);
    }
}

void ScriptPlayer::answerWell(ByteView command)
{
    const ContainerHeader header = ContainerHeader::parse(command);
    if (header.code == 0x1004) {
        ByteBuffer payload = parameters({static_cast<std::uint32_t>(soundStorageIDs().size())});
        const ByteBuffer elements = parameters(soundStorageIDs());
        payload.insert(payload.end(), elements.begin(), elements.end());
        wire_.send(data(header.code, payload, header.transactionID), WireEnd::Marked);
    }
    wire_.send(response(0x2001, header.transactionID), WireEnd::Marked);
}

void ScriptPlayer::play(std::size_t first)
{
    for (std::size_t i = first; i < playing_.size(); ++i) {
        if (!pause(playing_[i].after))
            return;
        perform(playing_[i]);
    }
}

void ScriptPlayer::perform(const Step& step)
{
    switch (step.what) {
    case Step::What::Send:
        return wire_.send(step.bytes, step.end);
    case Step::What::SendForEver:
        return wire_.sendForEver(step.bytes, step.end);
    case Step::What::Fail:
        return wire_.fail(step.failure);
    case Step::What::StallForEver:
        return wire_.stallForEver();
    case Step::What::Leave:
        return wire_.leave();
    }
}

// False when the script has been stopped meanwhile.
bool ScriptPlayer::pause(std::chrono::milliseconds duration)
{
    std::unique_lock lock(mutex_);
    return !changed_.wait_for(lock, duration / pace_, [this] { return stopped_; });
}

}  // namespace nivor::test
