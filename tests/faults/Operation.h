/// The operations of the engine, as rows of the fault matrix.
#pragma once

#include "faults/Answer.h"
#include "ptp/PTPCommunication.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace nivor::test {

/// What an operation does with the data phase decides what a fault does to it.
enum class Kind {
    Plain,      ///< there is none
    Dataset,    ///< collected and unpacked
    Collected,  ///< collected and handed out as it is
    File,       ///< written to a file piece by piece
};

/// What running an operation has brought.
struct OperationRun {
    bool success = false;
    bool raised = false;    ///< a `RangeError` came instead of a result
    bool unpacked = false;  ///< dataset: the values are those that were sent
    ByteBuffer bytes{};     ///< object: what was handed out or stands in the file
};

class Operation {
public:
    virtual ~Operation() = default;

    Operation(const Operation&) = delete;
    Operation& operator=(const Operation&) = delete;

    /// Runs it; a file goes into that folder.
    [[nodiscard]] virtual OperationRun run(PTPCommunication& engine, const Answer& answer,
                                           const std::filesystem::path& folder) const = 0;

    /// The record that it leaves in the log.
    [[nodiscard]] virtual std::string record(bool success, std::uint16_t responseCode,
                                             const Answer& answer) const = 0;

    /// The sound answer, its data container of that many bytes, or of a usual size for 0.
    [[nodiscard]] Answer answer(std::size_t containerSize = 0) const;

    const std::string name;   ///< of the test
    const std::string event;  ///< of its log record
    const Kind kind;
    const std::uint16_t code;
    const std::uint32_t timeout;  ///< in ms

protected:
    Operation(std::string testName, const char* selector, Kind operationKind,
              std::uint16_t operationCode, std::uint32_t operationTimeout = 5000);

    /// The data phase's content, of `size` bytes or of the usual size for 0.
    [[nodiscard]] virtual ByteBuffer payload(std::size_t size) const = 0;
};

/// Notes what the operation answers or raises.
[[nodiscard]] OperationRun runOf(const std::function<bool()>& call);

/// The object that the operations are about.
inline const HandleBlock testedHandle = HandleBlock::fromNumber(7);

/// All ten, in the order of the engine's interface.
const std::vector<const Operation*>& operations();

}  // namespace nivor::test
