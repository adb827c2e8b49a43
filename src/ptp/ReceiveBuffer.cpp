#include "ptp/ReceiveBuffer.h"

#include <sys/mman.h>

#include <utility>

namespace nivor {

// Mapped rather than taken from the heap: a heap keeps freed memory of this size resident.
ReceiveBuffer ReceiveBuffer::allocate()
{
    void* memory =
        ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    return ReceiveBuffer(memory == MAP_FAILED ? nullptr : memory);
}

ReceiveBuffer::~ReceiveBuffer()
{
    if (memory_ != nullptr)
        ::munmap(memory_, size);
}

ReceiveBuffer::ReceiveBuffer(ReceiveBuffer&& other) noexcept
    : memory_(std::exchange(other.memory_, nullptr))
{
}

ReceiveBuffer& ReceiveBuffer::operator=(ReceiveBuffer&& other) noexcept
{
    std::swap(memory_, other.memory_);
    return *this;
}

std::span<std::uint8_t> ReceiveBuffer::bytes() const
{
    return {static_cast<std::uint8_t*>(memory_), memory_ == nullptr ? 0 : size};
}

}  // namespace nivor
