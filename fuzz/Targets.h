/// What is done with each input: the same for the fuzzers and for the tests that replay inputs.
#pragma once

#include "foundation/Bytes.h"

#include <span>
#include <string_view>

namespace nivor::fuzz {

// Each takes any bytes and ends the process when the program breaks a promise. The bytes ought to
// lie in a heap block of exactly their size, so that the sanitizers see a read past their end.

/// The first read of a container, and where containers end in a stream that arrives in any pieces.
void fuzzContainer(ByteView input);

/// A whole answer to GetObjectInfo.
void fuzzObjectInfo(ByteView input);

/// A whole answer to GetObjectPropValue.
void fuzzPropValue(ByteView input);

/// PTP strings, dates and arrays, and the texts made of them.
void fuzzStrings(ByteView input);

/// The file that a camera sends as an object's thumbnail.
void fuzzThumbnail(ByteView input);

/// Any calls of the engine, on a camera that answers with any bytes at any moment.
void fuzzEngine(ByteView input);

/// File names from a camera on their way into a folder, a log and a terminal.
void fuzzFileName(ByteView input);

/// Whatever lies where the log is, and any text that is written behind it.
void fuzzLog(ByteView input);

/// Any bytes on the simulated camera's bulk-out pipe and its control pipe.
void fuzzSimulator(ByteView input);

struct Target {
    std::string_view name;  ///< of the fuzzer and of its folders
    void (*run)(ByteView input);
};

/// All of them.
std::span<const Target> targets();

}  // namespace nivor::fuzz
