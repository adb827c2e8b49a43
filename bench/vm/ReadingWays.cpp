#include "ReadingWays.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <vector>

namespace nivor::bench {
namespace {

constexpr std::uint16_t getObject = 0x1009;

/// What has come of one answer: counts the data, and notices the response behind it.
struct Answer {
    int file;
    std::uint64_t length = 0;
    std::uint64_t received = 0;
    bool isComplete = false;

    void take(std::span<const std::uint8_t> bytes)
    {
        if (length == 0 && bytes.size() >= containerHeader && u16At(bytes, 4) == dataContainer)
            length = u32At(bytes, 0);
        if (length == 0)
            giveUp("data expected", static_cast<int>(bytes.size()));
        if (received < length) {
            write(bytes.subspan(received == 0 ? containerHeader : 0));
            received += bytes.size();
        } else if (!bytes.empty()) {
            isComplete = u16At(bytes, 4) == responseContainer;
        }
    }

    void write(std::span<const std::uint8_t> bytes) const
    {
        if (file >= 0 && ::write(file, bytes.data(), bytes.size()) != std::ssize(bytes))
            giveUp("the file takes no more", errno);
    }
};

/// A ring that stays full until the response has come.
class Ring {
public:
    Ring(BareCamera& camera, const ReadingWay& way, Answer& answer)
        : camera_(camera)
        , answer_(answer)
        , buffers_(way.depth * way.transferSize)
    {
        for (std::size_t i = 0; i < way.depth; ++i) {
            libusb_transfer* const transfer = libusb_alloc_transfer(0);
            // The kernel's own memory, where there is any, saves a copy; so does the program.
            std::uint8_t* buffer = libusb_dev_mem_alloc(camera.handle(), way.transferSize);
            kernelMemory_.push_back(buffer);
            if (buffer == nullptr)
                buffer = buffers_.data() + i * way.transferSize;
            libusb_fill_bulk_transfer(transfer, camera.handle(), camera.bulkIn(), buffer,
                                      static_cast<int>(way.transferSize), &Ring::finished, this, 0);
            transfers_.push_back(transfer);
        }
    }

    ~Ring()
    {
        for (std::size_t i = 0; i < transfers_.size(); ++i) {
            if (kernelMemory_[i] != nullptr) {
                libusb_dev_mem_free(camera_.handle(), kernelMemory_[i],
                                    static_cast<std::size_t>(transfers_[i]->length));
            }
            libusb_free_transfer(transfers_[i]);
        }
    }

    Ring(const Ring&) = delete;
    Ring& operator=(const Ring&) = delete;

    void run()
    {
        for (libusb_transfer* const transfer : transfers_)
            submit(transfer);
        while (!answer_.isComplete)
            libusb_handle_events(camera_.context());
        for (auto transfer = transfers_.rbegin(); transfer != transfers_.rend(); ++transfer)
            libusb_cancel_transfer(*transfer);
        while (inFlight_ > 0)
            libusb_handle_events(camera_.context());
    }

private:
    void submit(libusb_transfer* transfer)
    {
        if (const int error = libusb_submit_transfer(transfer); error != LIBUSB_SUCCESS)
            giveUp("a transfer was not taken", error);
        ++inFlight_;
    }

    static void LIBUSB_CALL finished(libusb_transfer* transfer)
    {
        Ring& ring = *static_cast<Ring*>(transfer->user_data);
        --ring.inFlight_;
        if (ring.answer_.isComplete)
            return;
        if (transfer->status != LIBUSB_TRANSFER_COMPLETED)
            giveUp("a transfer failed", transfer->status);
        ring.answer_.take({transfer->buffer, static_cast<std::size_t>(transfer->actual_length)});
        if (!ring.answer_.isComplete)
            ring.submit(transfer);
    }

    BareCamera& camera_;
    Answer& answer_;
    std::vector<std::uint8_t> buffers_;
    std::vector<std::uint8_t*> kernelMemory_;
    std::vector<libusb_transfer*> transfers_;
    std::size_t inFlight_ = 0;
};

}  // namespace

ReadingWay ReadingWay::parse(const std::string& text)
{
    ReadingWay way;
    std::size_t kibibytes = 0;
    if (std::sscanf(text.c_str(), "%zux%zu", &way.depth, &kibibytes) != 2 || way.depth == 0
        || kibibytes == 0)
        giveUp("not a way to read, such as 16x128", 0);
    way.transferSize = kibibytes * 1024;
    return way;
}

std::string ReadingWay::text() const
{
    const std::string size = std::to_string(transferSize / 1024) + " KiB";
    return depth == 1 ? "libusb, " + size + " at a time"
                      : "libusb, " + std::to_string(depth) + " x " + size + " queued";
}

std::uint64_t readObject(BareCamera& camera, std::uint32_t handle, const ReadingWay& way, int file)
{
    Answer answer{.file = file};
    if (way.depth > 1) {
        Ring ring(camera, way, answer);
        camera.send(getObject, {&handle, 1});
        ring.run();
        return answer.received;
    }
    std::vector<std::uint8_t> buffer(way.transferSize);
    camera.send(getObject, {&handle, 1});
    while (!answer.isComplete)
        answer.take(std::span(buffer).first(camera.read(buffer)));
    return answer.received;
}

}  // namespace nivor::bench
