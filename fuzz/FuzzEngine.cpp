#include "Targets.h"

#include "EngineCall.h"
#include "FuzzedCamera.h"
#include "FuzzedInput.h"
#include "FuzzedSinks.h"
#include "Require.h"
#include "codes/ObjectPropCode.h"
#include "datasets/ObjectInfoData.h"
#include "datasets/ObjectPropValueObjectSize.h"
#include "foundation/Errors.h"
#include "logging/RollingLogger.h"
#include "ptp/FileHandle.h"
#include "ptp/GetObjectCallback.h"
#include "ptp/PTPCommunication.h"

#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace nivor::fuzz {
namespace {

constexpr std::size_t mostCalls = 16;

// Of calls that find the input of the pipe used up: they are all alike.
constexpr std::size_t mostUnanswered = 2;

constexpr unsigned pace = 1000;
constexpr std::size_t headerSize = 12;

// On a busy machine a transaction may run into its shortened time-out although all is well.
constexpr int mostAttempts = 40;

class Run {
public:
    explicit Run(FuzzedInput input)
        : calls_(input.run())
        , device_(makeDevice(input))
        , host_(std::make_shared<FuzzedHost>(device_))
        , engine_({.host = host_,
                   .logger = &logger_,
                   .runLoopSlice = [](std::chrono::milliseconds) {},
                   .agentPause = {},
                   .pace = pace})
    {
        pipes().setEngine(engine_);
        attach();
    }

    void execute()
    {
        std::size_t unanswered = 0;
        for (std::size_t i = 0; i < mostCalls && !calls_.isOver(); ++i) {
            if (pipes().isExhausted() && ++unanswered > mostUnanswered)
                break;
            call(static_cast<EngineCall>(
                calls_.choice(static_cast<std::size_t>(EngineCall::Count))));
            require(engine_.tmpBuffer() == nullptr, "a transaction leaves no buffer behind");
            require(engine_.transactionID() != 0xFFFFFFFF, "no transaction has the ID of none");
        }
        requireUsable();
    }

private:
    // Four parts of the input, in the order of the thread that uses them.
    static std::shared_ptr<FuzzedDevice> makeDevice(FuzzedInput& input)
    {
        const ByteView connection = input.run();
        const ByteView control = input.run();
        const ByteView writes = input.run();
        return std::make_shared<FuzzedDevice>(
            connection, control, std::make_shared<FuzzedInterface>(input.rest(), writes));
    }

    FuzzedInterface& pipes() { return *device_->interface(); }

    /// Puts the engine where a connection would have put it.
    void attach()
    {
        engine_.setUsbDevice(device_);
        engine_.setUsbInterface(device_->interface());
    }

    HandleBlock handle() { return HandleBlock::fromNumber(calls_.u32()); }

    void call(EngineCall next)
    {
        const std::size_t deliveredBefore = pipes().delivered();
        const auto delivered = [&] { return pipes().delivered() - deliveredBefore; };
        switch (next) {
        case EngineCall::OpenSession:
            engine_.openSession(1000);
            break;
        case EngineCall::CloseSession:
            engine_.closeSession();
            break;
        case EngineCall::GetStorageIDs: {
            std::vector<std::uint32_t> storageIDs;
            engine_.getStorageIDs(&storageIDs);
            require(4 * storageIDs.size() <= delivered(), "no storage is made up");
            break;
        }
        case EngineCall::GetObjectHandles: {
            HandlesDict handles;
            const std::uint32_t storageID = calls_.u32();
            try {
                engine_.getObjectHandles(storageID, handles, calls_.u32());
            } catch (const RangeError&) {
                // A camera that announces more than it sends.
            }
            require(4 * static_cast<std::size_t>(handles.size()) <= delivered(),
                    "no handle is made up");
            break;
        }
        case EngineCall::GetObjectPropValue: {
            ObjectPropValueObjectSize value;
            try {
                engine_.getObjectPropValue(
                    handle(), static_cast<std::uint32_t>(ObjectPropCode::ObjectSize), &value);
            } catch (const RangeError&) {
                require(!value.value(), "a size that is cut off is none");
            }
            break;
        }
        case EngineCall::GetObjectInfo: {
            std::shared_ptr<ObjectInfoData> record;
            const bool success = engine_.getObjectInfo(handle(), &record);
            require(!success || record != nullptr, "an answer comes with its record");
            break;
        }
        case EngineCall::GetObject: {
            ByteBuffer bytes;
            const bool success = engine_.getObject({}, calls_.u64(), &bytes, nullptr);
            require(bytes.empty() != success && bytes.size() <= delivered(), "no byte is made up");
            break;
        }
        case EngineCall::GetObjectToSink:
            getObjectToSink();
            break;
        case EngineCall::GetObjectToFile:
            getObjectToFile();
            break;
        case EngineCall::GetThumb: {
            ByteBuffer bytes;
            const bool success = engine_.getThumb({}, calls_.u64(), &bytes);
            require(bytes.empty() != success && bytes.size() <= delivered(), "no byte is made up");
            break;
        }
        case EngineCall::DeleteObject:
            engine_.deleteObject(handle());
            break;
        case EngineCall::Connect:
            require(engine_.connect(anyVendorID) || !engine_.connected(),
                    "what is not connected has failed");
            break;
        case EngineCall::Disconnect:
            engine_.disconnect();
            require(!engine_.connected() && !engine_.usbDevice(), "nothing stays connected");
            break;
        case EngineCall::ExistsDevice:
            host_->isAttached = (calls_.u8() & 1U) != 0;
            require((engine_.existsDevice(anyVendorID) != 0) == host_->isAttached,
                    "a camera is there when it is attached");
            host_->isAttached = true;
            break;
        case EngineCall::StopCopyFlgInit:
            engine_.stopCopyFlgInit();
            break;
        case EngineCall::CancelNothing:
            require(!engine_.cancelTransaction(), "a stop always answers the same");
            break;
        case EngineCall::SetTransactionID:
            // The engine's own IDs never reach the highest number.
            engine_.setTransactionID(std::min(calls_.u32(), 0xFFFFFFFEU));
            break;
        case EngineCall::Transaction:
        case EngineCall::Count:
            runTransaction();
            break;
        }
        if (!engine_.usbInterface())
            attach();
    }

    void getObjectToSink()
    {
        const std::uint64_t objectSize = calls_.u64();
        const std::size_t piecesTaken = calls_.u8();
        CheckingSink sink(piecesTaken, (calls_.u8() & 1U) != 0);
        const bool success = engine_.getObject({}, objectSize, nullptr, &sink);
        require(!success || !sink.isOver(), "what was refused has failed");
    }

    void getObjectToFile()
    {
        const std::uint64_t objectSize = calls_.u64();
        const bool isFull = (calls_.u8() & 1U) != 0;
        const int descriptor = isFull ? -1 : ::memfd_create("copy", MFD_CLOEXEC);
        const auto progress = std::make_shared<Progress>();
        const auto file = isFull
            ? std::make_shared<FileHandle>(FileHandle::openForWriting("/dev/full"))
            : std::make_shared<FileHandle>(descriptor, "copy");
        GetObjectCallback sink(progress, file);
        const bool success = engine_.getObject({}, objectSize, nullptr, &sink);
        if (isFull) {
            require(!success || progress->copiedSize() == 0, "what a disk refuses has failed");
            return;
        }
        struct stat status { };
        require(::fstat(descriptor, &status) == 0, "the file stays open");
        // One header per data container; hostile cameras send several, of which the first is cut.
        const std::uint64_t size = static_cast<std::uint64_t>(status.st_size);
        require(!success || progress->copiedSize() == (size == 0 ? 0 : size + headerSize),
                "a file holds what was counted");
    }

    void runTransaction()
    {
        const ByteView bytes = calls_.run();
        ByteBuffer command(bytes.begin(), bytes.end());
        command.resize(std::max(command.size(), headerSize));
        PTPCommunication::ReceiveSlot received;
        const std::uint64_t size = calls_.u64();
        const bool success = engine_.executePTPTransaction(command, nullptr, &received, size,
                                                           nullptr, (calls_.u8() & 1U) != 0, 1000);
        require(received != nullptr || !success, "what was received is handed back");
    }

    // Whatever has happened, a camera that behaves is served again.
    void requireUsable()
    {
        device_->behaveWell();
        attach();
        engine_.stopCopyFlgInit();
        std::vector<std::uint32_t> storageIDs;
        bool success = false;
        for (int i = 0; i < mostAttempts && !success; ++i) {
            pipes().behaveWell();
            success = engine_.getStorageIDs(&storageIDs);
        }
        require(success && storageIDs == std::vector<std::uint32_t>{0x00010001},
                "the engine stays usable");
    }

    RollingLogger logger_;  // without a folder it drops every record
    FuzzedInput calls_;
    std::shared_ptr<FuzzedDevice> device_;
    std::shared_ptr<FuzzedHost> host_;
    PTPCommunication engine_;
};

}  // namespace

void fuzzEngine(ByteView input)
{
    Run(FuzzedInput(input)).execute();
}

}  // namespace nivor::fuzz
