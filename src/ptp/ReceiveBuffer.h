/// The buffer that one transaction receives into.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace nivor {

/// 16 MiB of memory of which no page exists before it is read into, given back whole at the end.
class ReceiveBuffer {
public:
    static constexpr std::size_t size = 0x1000000;

    /// An unusable buffer (false) when the system has no memory.
    static ReceiveBuffer allocate();

    ReceiveBuffer() = default;
    ~ReceiveBuffer();
    ReceiveBuffer(ReceiveBuffer&& other) noexcept;
    ReceiveBuffer& operator=(ReceiveBuffer&& other) noexcept;
    ReceiveBuffer(const ReceiveBuffer&) = delete;
    ReceiveBuffer& operator=(const ReceiveBuffer&) = delete;

    explicit operator bool() const { return memory_ != nullptr; }

    [[nodiscard]] std::span<std::uint8_t> bytes() const;

private:
    explicit ReceiveBuffer(void* memory)
        : memory_(memory)
    {
    }

    void* memory_ = nullptr;
};

}  // namespace nivor
