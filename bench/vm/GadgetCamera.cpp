// A simulated camera as a real USB device of the machine that it runs on, by way of FunctionFS.
//
// usage: nivor-gadget-camera FUNCTIONFS-FOLDER CARD-FOLDER [BYTES-A-WRITE]
//
// It is to be no brake: the card's files ought to lie in memory, and their data goes to the kernel
// in large writes. What a write holds when its transaction is cancelled still reaches the host.

#include "StillImageFunction.h"

#include "codes/StillImageClass.h"
#include "simulator/FolderCard.h"
#include "simulator/SimulatedCamera.h"

#include <linux/usb/functionfs.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>

namespace {

using namespace nivor;
using namespace nivor::bench;
using namespace std::chrono_literals;

constexpr std::size_t defaultWriteSize = std::size_t{1} << 20;

// No command is longer; larger than a packet of any speed.
constexpr std::size_t largestCommand = 1024;

class GadgetCamera {
public:
    GadgetCamera(const std::string& functionFolder, const std::string& cardFolder,
                 std::size_t writeSize)
        : function_(functionFolder)
        , camera_(std::make_shared<FolderCard>(cardFolder))
        , pipe_(camera_.plugIn())
        , buffer_(writeSize)
    {
    }

    /// Until the process is killed.
    void run()
    {
        std::thread([this] { takeCommands(); }).detach();
        std::thread([this] { sendAnswers(); }).detach();
        serveControl();
    }

private:
    void takeCommands()
    {
        std::array<std::uint8_t, largestCommand> command{};
        for (;;) {
            // Waits while no host has configured the device.
            const ssize_t size = ::read(function_.bulkOut.get(), command.data(), command.size());
            if (size > 0)
                camera_.receive(ByteView(command).first(static_cast<std::size_t>(size)), *pipe_);
            else if (size < 0 && errno != EINTR)
                std::this_thread::sleep_for(10ms);
        }
    }

    void sendAnswers()
    {
        constexpr UsbTimeouts patience{1h, 1h};
        for (;;) {
            std::size_t size = 0;
            if (!succeeded(pipe_->read(buffer_, size, patience)))
                continue;
            if (size > 0)
                write(size);
            // What ended here without filling the buffer, and without a short packet on the wire,
            // ends with an empty one.
            if (size < buffer_.size() && size % packetSize_ == 0)
                write(0);
        }
    }

    void write(std::size_t size)
    {
        while (::write(function_.bulkIn.get(), buffer_.data(), size) < 0 && errno == EINTR) { }
    }

    void serveControl()
    {
        usb_functionfs_event event{};
        while (::read(function_.control.get(), &event, sizeof event) > 0) {
            if (event.type == FUNCTIONFS_ENABLE)
                noteSpeed();
            else if (event.type == FUNCTIONFS_SETUP)
                answer(event.u.setup);
        }
    }

    void noteSpeed()
    {
        usb_endpoint_descriptor description{};
        if (::ioctl(function_.bulkIn.get(), FUNCTIONFS_ENDPOINT_DESC, &description) == 0)
            packetSize_ = description.wMaxPacketSize;
        std::fprintf(stderr, "enabled, packets of %zu bytes\n", packetSize_.load());
    }

    void answer(const usb_ctrlrequest& setup)
    {
        ByteBuffer data(setup.wLength);
        ControlRequest request{.bmRequestType = setup.bRequestType,
                               .bRequest = setup.bRequest,
                               .wValue = setup.wValue,
                               .wIndex = 0,  // the only interface that it knows
                               .data = data};
        const int control = function_.control.get();
        const bool isIn = (setup.bRequestType & USB_DIR_IN) != 0;
        // Reading the data stage of a request to the device also acknowledges it.
        if (!isIn && !data.empty() && ::read(control, data.data(), data.size()) < 0)
            return;
        const bool isDone = succeeded(camera_.control(request, *pipe_));
        ssize_t ignored = 0;
        if (isIn && isDone)
            ignored = ::write(control, data.data(), request.transferred);
        else if (isIn)
            ignored = ::read(control, nullptr, 0);  // against the request's direction: a stall
        else if (data.empty() && isDone)
            ignored = ::read(control, nullptr, 0);
        else if (data.empty())
            ignored = ::write(control, nullptr, 0);
        static_cast<void>(ignored);
    }

    StillImageFunction function_;
    SimulatedCamera camera_;
    std::shared_ptr<BulkInPipe> pipe_;
    ByteBuffer buffer_;
    std::atomic<std::size_t> packetSize_ = 512;
};

}  // namespace

int main(int argc, char* argv[])
{
    if (argc != 3 && argc != 4) {
        std::fputs("usage: nivor-gadget-camera FUNCTIONFS-FOLDER CARD-FOLDER [BYTES-A-WRITE]\n",
                   stderr);
        return 2;
    }
    const std::size_t writeSize = argc == 4 ? std::strtoul(argv[3], nullptr, 10) : defaultWriteSize;
    if (writeSize == 0 || writeSize % 1024 != 0)
        giveUp("a write must be of whole packets");
    GadgetCamera(argv[1], argv[2], writeSize).run();
    return EXIT_SUCCESS;
}
