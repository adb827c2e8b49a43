#include "ptp/CommandContainer.h"
#include "ptp/PTPTransactionCallback.h"
#include "support/EngineFixture.h"

#include <chrono>
#include <thread>

using namespace nivor;
using namespace nivor::test;
using namespace std::chrono_literals;

namespace {

constexpr std::uint32_t quietTimeout = 1000;  // milliseconds

/// Takes every piece, each in more than a time-out.
class SlowSink : public PTPTransactionCallback {
public:
    bool callbackProc(std::uint64_t receivedSize, std::uint64_t /*completeDataSize*/,
                      const std::uint8_t* /*data*/, std::uint64_t /*dataSize*/) override
    {
        std::this_thread::sleep_for(2 * std::chrono::milliseconds(quietTimeout));
        received = receivedSize;
        return true;
    }

    std::uint64_t received = 0;
};

class SlowSinkTransaction : public EngineFixture {
protected:
    SlowSinkTransaction() { attachDirectly(); }

    bool run()
    {
        CommandContainer command(OperationCode::GetObject, 0);
        return engine.executePTPTransaction(command.bytes(), nullptr, nullptr, data.size(), &sink,
                                            true, quietTimeout);
    }

    SlowSink sink;
    // 5120 bytes are the first read; the rest is the second.
    const ByteBuffer data = container(2, 0x1009, 1, ByteBuffer(6000, 0x55));
};

TEST_F(SlowSinkTransaction, TheTimeTheSinkTakesIsNotTheCamerasSilence)
{
    pipes().answerWrite(1, {data, response(0x2001)});
    EXPECT_TRUE(run());
    EXPECT_EQ(sink.received, 6012U);
    EXPECT_EQ(engine.lastResponseCode(), 0x2001);
}

TEST_F(SlowSinkTransaction, ACameraThatSaysNothingAfterwardsStillTimesOut)
{
    pipes().answerWrite(1, {data});
    EXPECT_FALSE(run());
    EXPECT_EQ(sink.received, 6012U);
    EXPECT_EQ(engine.lastTransactionFailure().cause, TransactionFailure::Cause::TimedOut);
}

}  // namespace
