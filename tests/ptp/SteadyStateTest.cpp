// What the engine takes from the heap while an object streams: nothing.
#include "codes/ContainerType.h"
#include "codes/OperationCode.h"
#include "codes/ResponseCode.h"
#include "codes/StillImageClass.h"
#include "foundation/ByteWriter.h"
#include "ptp/FileHandle.h"
#include "ptp/GetObjectCallback.h"
#include "support/EngineFixture.h"
#include "support/TemporaryDirectory.h"

#include <algorithm>
#include <atomic>

using namespace nivor;
using namespace nivor::test;

// Of every sanitizer's allocator; gcc comes without the header of it.
extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*onMalloc)(const volatile void*,
                                                                          std::size_t),
                                                         void (*onFree)(const volatile void*));

namespace {

constexpr std::uint64_t objectSize = 40'000'000;  // two large reads, then small ones

std::atomic<bool> isCounting{false};
std::atomic<int> allocations{0};

void onMalloc(const volatile void* /*memory*/, std::size_t /*size*/)
{
    if (isCounting)
        ++allocations;
}

void onFree(const volatile void* /*memory*/) { }

/// Answers the one command with an object of zeros.
class ZerosInterface : public UsbInterface {
public:
    UsbResult open() override { return UsbResult::Success; }
    UsbResult close() override { return UsbResult::Success; }

    UsbResult writePipe(ByteView /*bytes*/) override
    {
        left_ = objectSize + containerHeaderSize;
        return UsbResult::Success;
    }

    UsbResult readPipe(std::span<std::uint8_t> buffer, std::size_t& received,
                       const UsbTimeouts& /*timeouts*/) override
    {
        received = 0;
        if (left_ == 0 && !isFirst_) {
            putHeader(buffer, containerHeaderSize, ContainerType::Response,
                      static_cast<std::uint16_t>(ResponseCode::OK));
            received = containerHeaderSize;
            return UsbResult::Success;
        }
        if (left_ == 0)
            return UsbResult::TransactionTimeout;
        received = static_cast<std::size_t>(std::min<std::uint64_t>(left_, buffer.size()));
        std::fill_n(buffer.begin(), received, std::uint8_t{0});
        if (isFirst_.exchange(false))
            putHeader(buffer, objectSize + containerHeaderSize, ContainerType::Data,
                      static_cast<std::uint16_t>(OperationCode::GetObject));
        left_ -= received;
        return UsbResult::Success;
    }

private:
    static void putHeader(std::span<std::uint8_t> buffer, std::uint64_t length, ContainerType type,
                          std::uint16_t code)
    {
        ByteBuffer header;
        appendLittleEndian(header, static_cast<std::uint32_t>(length));
        appendLittleEndian(header, static_cast<std::uint16_t>(type));
        appendLittleEndian(header, code);
        appendLittleEndian(header, std::uint32_t{1});
        std::copy(header.begin(), header.end(), buffer.begin());
    }

    std::atomic<std::uint64_t> left_{0};
    std::atomic<bool> isFirst_{true};
};

/// Counts from the second large piece to the last piece but one.
class CountingCallback : public GetObjectCallback {
public:
    using GetObjectCallback::GetObjectCallback;

    bool callbackProc(std::uint64_t receivedSize, std::uint64_t completeDataSize,
                      const std::uint8_t* data, std::uint64_t dataSize) override
    {
        const bool goesOn =
            GetObjectCallback::callbackProc(receivedSize, completeDataSize, data, dataSize);
        ++pieces;
        isCounting = pieces >= 2 && receivedSize + dataSize < completeDataSize;
        return goesOn;
    }

    int pieces = 0;
};

class SteadyState : public EngineFixture { };

TEST_F(SteadyState, AStreamingObjectTakesNothingFromTheHeap)
{
    ASSERT_NE(__sanitizer_install_malloc_and_free_hooks(&onMalloc, &onFree), 0);
    isCounting = true;
    const ByteBuffer probe(100);
    isCounting = false;
    ASSERT_EQ(allocations.exchange(0), 1);

    const TemporaryDirectory folder;
    engine.setUsbInterface(std::make_shared<ZerosInterface>());
    engine.setTransactionID(1);
    const auto file = std::make_shared<FileHandle>(FileHandle::create(folder.path() / "object"));
    CountingCallback sink(nullptr, file);
    EXPECT_TRUE(engine.getObject(HandleBlock::fromNumber(1), objectSize, nullptr, &sink));
    engine.setUsbInterface(nullptr);
    EXPECT_GT(sink.pieces, 1000);
    EXPECT_EQ(allocations, 0);
    EXPECT_EQ(std::filesystem::file_size(folder.path() / "object"), objectSize);
}

}  // namespace
