/// Ways to read an object from a camera: its bytes are thrown away, or written to a file as they
/// are.
#pragma once

#include "BareCamera.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace nivor::bench {

/// How many transfers of what size wait at a time; one means plain synchronous reads.
struct ReadingWay {
    std::size_t depth = 1;
    std::size_t transferSize = 0;  ///< bytes, whole packets

    /// From "DEPTHxKIB", such as "16x128".
    static ReadingWay parse(const std::string& text);

    [[nodiscard]] std::string text() const;
};

/// Asks for the object and reads its data and the response; the bytes of the data with the header.
/// The object goes to the open file `file`, straight from where libusb has put it; -1: nowhere.
std::uint64_t readObject(BareCamera& camera, std::uint32_t handle, const ReadingWay& way, int file);

}  // namespace nivor::bench
