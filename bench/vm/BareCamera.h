/// A camera on the USB with as little as possible in between: libusb, one request at a time.
#pragma once

#include <libusb.h>

#include <cstdint>
#include <span>
#include <vector>

namespace nivor::bench {

/// Knows nothing of time-outs that end well, of cancelling and of cameras that leave: whatever is
/// not as it should be ends the program.
class BareCamera {
public:
    /// Claims the first still-image interface on the bus and opens a session.
    BareCamera();

    /// Closes the session and lets the interface go.
    ~BareCamera();

    BareCamera(const BareCamera&) = delete;
    BareCamera& operator=(const BareCamera&) = delete;

    /// Sends a command; the answer is still to be read. At most five parameters.
    void send(std::uint16_t operation, std::span<const std::uint32_t> parameters);

    /// Reads into `buffer` until it is full or a short packet comes; the count of bytes.
    std::size_t read(std::span<std::uint8_t> buffer);

    /// Runs a transaction with a data phase that fits into a small buffer; the data without its
    /// header, valid until the next call.
    std::span<const std::uint8_t> ask(std::uint16_t operation,
                                      std::span<const std::uint32_t> parameters);

    [[nodiscard]] libusb_context* context() const { return context_; }
    [[nodiscard]] libusb_device_handle* handle() const { return handle_; }
    [[nodiscard]] std::uint8_t bulkIn() const { return bulkIn_; }

private:
    bool claim(libusb_device* device);

    libusb_context* context_ = nullptr;
    libusb_device_handle* handle_ = nullptr;
    int interface_ = 0;
    std::uint8_t bulkIn_ = 0;
    std::uint8_t bulkOut_ = 0;
    std::uint32_t transaction_ = 0;
    std::vector<std::uint8_t> answer_;
};

inline constexpr std::size_t containerHeader = 12;
inline constexpr std::uint16_t dataContainer = 2;
inline constexpr std::uint16_t responseContainer = 3;

/// The little-endian number at `offset`.
std::uint16_t u16At(std::span<const std::uint8_t> bytes, std::size_t offset);
std::uint32_t u32At(std::span<const std::uint8_t> bytes, std::size_t offset);

[[noreturn]] void giveUp(const char* what, int code);

}  // namespace nivor::bench
