#include "Targets.h"

#include "FuzzedInput.h"
#include "Require.h"
#include "codes/ContainerType.h"
#include "codes/StillImageClass.h"
#include "foundation/ByteReader.h"
#include "simulator/MemoryCard.h"
#include "simulator/SimulatedCamera.h"

#include <vector>

namespace nivor::fuzz {
namespace {

constexpr std::size_t mostSteps = 32;
constexpr UsbTimeouts noWait{};

std::shared_ptr<MemoryCard> smallCard()
{
    auto card = std::make_shared<MemoryCard>();
    const std::uint32_t folder = card->addFolder(u"DCIM");
    card->addFile(u"A.JPG", 100, folder);
    // With its header a multiple of the packet size, so an empty packet follows.
    const std::uint32_t withThumbnail = card->addFile(u"B.JPG", 1012, folder);
    card->setThumbnail(withThumbnail, ByteBuffer(52, 0xFF));
    card->addFile(u"EMPTY.TXT", 0);
    card->setUnreadable(card->addFile(u"BAD.MOV", 100));
    return card;
}

/// The command in these bytes as the wire format has it, field by field.
bool isCommand(ByteView bytes)
{
    ByteReader reader(bytes);
    const std::uint32_t length = reader.u32();
    const std::uint16_t type = reader.u16();
    return bytes.size() >= containerHeaderSize
        && bytes.size() <= containerHeaderSize + std::size_t{5} * 4 && bytes.size() % 4 == 0
        && length == bytes.size() && type == 1;
}

void parseCommand(ByteView bytes)
{
    const auto command = PtpCommand::parse(bytes);
    require(command.has_value() == isCommand(bytes), "what is a command is parsed as one");
    if (!command)
        return;
    ByteReader reader(bytes, 6);
    require(static_cast<std::uint16_t>(command->operation) == reader.u16(),
            "the operation is that of the wire");
    require(command->transactionID == reader.u32(), "the ID is that of the wire");
    for (std::size_t i = 0; i < PtpCommand::mostParameters; ++i) {
        require((i < command->parameterCount) == (reader.remaining() > 0),
                "each parameter that is sent counts");
        require(command->parameters[i] == reader.u32(), "parameters are 0 where none is sent");
    }
}

class Session {
public:
    Session()
        : camera_(smallCard(), CameraSettings{.maxPacketSize = 64})
        , pipe_(camera_.plugIn())
    {
    }

    void write(ByteView bytes) { camera_.receive(bytes, *pipe_); }

    UsbResult read(std::size_t size)
    {
        // A block of its own, so that a byte too many is seen.
        buffer_.assign(size, 0);
        buffer_.shrink_to_fit();
        std::size_t received = 0;
        const UsbResult result = pipe_->read(buffer_, received, noWait);
        require(received <= size, "no more is received than there is room for");
        buffer_.resize(received);
        return result;
    }

    void drain()
    {
        UsbResult result = UsbResult::Success;
        for (int i = 0; result != UsbResult::TransactionTimeout; ++i) {
            require(i < 200, "what a camera has to say comes to an end");
            result = read(4096);
        }
    }

    /// Writes a command and takes its whole answer.
    void ask(ByteView bytes)
    {
        drain();
        write(bytes);
        if (!isCommand(bytes)) {
            require(read(4096) == UsbResult::PipeStalled, "what is no command stalls the pipe");
            require(read(4096) == UsbResult::TransactionTimeout, "and has no answer");
            return;
        }
        ByteReader reader(bytes, 8);
        const std::uint32_t transactionID = reader.u32();
        bool responded = false;
        while (!responded) {
            require(read(4096) == UsbResult::Success, "a command has an answer");
            ByteReader header(buffer_);
            require(header.u32() == buffer_.size(), "a container is as long as it says");
            const auto type = static_cast<ContainerType>(header.u16());
            require(type == ContainerType::Data || type == ContainerType::Response,
                    "an answer is data and a response");
            responded = type == ContainerType::Response;
            header.skip(2);
            require(header.u32() == transactionID, "an answer names its transaction");
        }
        require(read(4096) == UsbResult::TransactionTimeout, "a response is the end of an answer");
    }

    void control(FuzzedInput& choices)
    {
        const ByteView sent = choices.run();
        ByteBuffer data(sent.begin(), sent.end());
        ControlRequest request{.bmRequestType =
                                   (choices.u8() & 1U) != 0 ? classRequestIn : classRequestOut,
                               // The four requests of the class, and their neighbours.
                               .bRequest = static_cast<std::uint8_t>(0x63 + choices.choice(6)),
                               .data = data};
        static_cast<void>(camera_.control(request, *pipe_));
        require(request.transferred <= data.size(), "no more moves than there is room for");
    }

private:
    SimulatedCamera camera_;
    std::shared_ptr<BulkInPipe> pipe_;
    ByteBuffer buffer_;
};

}  // namespace

void fuzzSimulator(ByteView input)
{
    parseCommand(input);

    FuzzedInput choices(input);
    Session session;
    for (std::size_t i = 0; i < mostSteps && !choices.isOver(); ++i) {
        switch (choices.choice(4)) {
        case 0:
            session.ask(choices.run());
            break;
        case 1:
            session.write(choices.run());
            break;
        case 2:
            static_cast<void>(session.read(choices.u16() % 4096));
            break;
        default:
            session.control(choices);
            break;
        }
    }
    session.drain();
}

}  // namespace nivor::fuzz
