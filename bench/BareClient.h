/// Sends a camera the same requests as the program, and does nothing else with the answers.
#pragma once

#include "codes/OperationCode.h"
#include "foundation/Bytes.h"
#include "usb/UsbHost.h"

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <vector>

namespace nivor::bench {

/// What the wire and the camera cost: one thread, no log, nothing decoded but container lengths.
/// Any failure ends the process, for there is nothing to measure then.
class BareClient {
public:
    /// Opens the first camera of `host` and a session with it.
    explicit BareClient(UsbHost& host);

    /// Sends a command and reads up to its response, `readSize` bytes at a time. The data, if
    /// any, is what `data` holds then, the container's header included; without `data` it is
    /// dropped.
    void transact(OperationCode operation, std::initializer_list<std::uint32_t> parameters,
                  ByteBuffer* data = nullptr, std::size_t readSize = 5120);

    /// All objects of the first storage.
    std::vector<std::uint32_t> handles();

private:
    std::size_t read(std::size_t size);

    std::shared_ptr<UsbDevice> device_;
    std::shared_ptr<UsbInterface> interface_;
    std::uint32_t transactionID_ = 0;
    ByteBuffer buffer_;
};

}  // namespace nivor::bench
