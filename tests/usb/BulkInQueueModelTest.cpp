// Random packets and random reads against the plain meaning of a read.
#include "support/ConnectedCamera.h"

#include <deque>
#include <random>

namespace nivor {
namespace {

using namespace test;

/// What reads see of a pipe without any queue: a run of bytes with marks where the device ended.
class PipeModel {
public:
    void send(const ByteBuffer& bytes, WireEnd end)
    {
        const bool marked = end == WireEnd::Marked || bytes.size() % 512 != 0;
        pending_.push_back({bytes, marked});
    }

    [[nodiscard]] bool empty() const { return pending_.empty(); }

    /// The bytes of the next read, which ends where the model has no more.
    ByteBuffer read(std::size_t size)
    {
        ByteBuffer got;
        while (!pending_.empty() && got.size() < size) {
            auto& [bytes, marked] = pending_.front();
            const auto count = std::min(size - got.size(), bytes.size());
            const auto end = bytes.begin() + static_cast<std::ptrdiff_t>(count);
            got.insert(got.end(), bytes.begin(), end);
            bytes.erase(bytes.begin(), end);
            if (!bytes.empty())
                break;
            const bool ended = marked;
            pending_.pop_front();
            if (ended)
                break;
        }
        return got;
    }

private:
    std::deque<std::pair<ByteBuffer, bool>> pending_;
};

class BulkInQueueModelTest : public testing::TestWithParam<unsigned> { };

TEST_P(BulkInQueueModelTest, ReadsAreExactAcrossTheRing)
{
    std::mt19937 random(GetParam());
    const auto below = [&random](std::size_t end) { return random() % end; };
    ConnectedCamera camera;
    // A small ring crosses its own end often.
    if (GetParam() % 2 == 1)
        camera.camera.usbfs().setMemoryLimit(100 * 1024);
    ASSERT_EQ(camera.open(), UsbResult::Success);
    PipeModel model;
    std::size_t position = 0;
    for (int round = 0; round < 1500; ++round) {
        // A last message that ends openly would leave its bytes in a transfer on its way.
        for (std::size_t messages = 1 + below(3); messages > 0; --messages) {
            std::size_t size = 0;
            switch (below(4)) {
            case 0:
                size = 1 + below(40);
                break;
            case 1:
                size = 512 * (1 + below(40));
                break;
            case 2:
                size = 1 + below(40'000);
                break;
            default:
                size = 16 * 1024 * (1 + below(3));
                break;
            }
            const WireEnd end = messages > 1 && below(2) == 0 ? WireEnd::Open : WireEnd::Marked;
            ByteBuffer bytes = numberedBytes(size, position);
            position += size;
            model.send(bytes, end);
            camera.camera.send(std::move(bytes), end);
        }
        while (!model.empty()) {
            static constexpr std::size_t sizes[] = {1, 12, 511, 512, 5120, 16 * 1024, 50'000};
            const std::size_t size =
                below(2) == 0 ? sizes[below(std::size(sizes))] : 4096 + below(60'000);
            const ByteBuffer expected = model.read(size);
            const ReadResult got = camera.read(size);
            ASSERT_EQ(got.result, UsbResult::Success) << "round " << round;
            ASSERT_EQ(got.bytes.size(), expected.size()) << "round " << round;
            ASSERT_TRUE(got.bytes == expected) << "round " << round;
        }
    }
    EXPECT_EQ(camera.camera.usbfs().unsentBytes(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Seeds, BulkInQueueModelTest, testing::Range(1U, 5U));

}  // namespace
}  // namespace nivor
