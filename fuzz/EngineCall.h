/// What the engine's target calls next.
#pragma once

#include <cstdint>

namespace nivor::fuzz {

/// The numbers are those of the input; seeds use them. An input for the engine is a run of calls, a
/// run of results of connecting, one of control requests, one of writes, then what the bulk-in pipe
/// brings (`BulkInStep`).
enum class EngineCall : std::uint8_t {
    OpenSession,
    CloseSession,
    GetStorageIDs,
    GetObjectHandles,    ///< u32 storage, u32 association
    GetObjectPropValue,  ///< u32 handle
    GetObjectInfo,       ///< u32 handle
    GetObject,           ///< u64 expected size
    GetObjectToSink,     ///< u64 expected size, u8 pieces that are taken, u8 raises after them
    GetObjectToFile,     ///< u64 expected size, u8 which file
    GetThumb,            ///< u64 expected size
    DeleteObject,        ///< u32 handle
    Connect,
    Disconnect,
    ExistsDevice,      ///< u8 bit 0: it is attached
    StopCopyFlgInit,   ///< lets transactions run again after a stop
    CancelNothing,     ///< a stop between two transactions
    SetTransactionID,  ///< u32
    Transaction,       ///< run: a command of any bytes; u64 expected size; u8 bit 0: with data
    Count
};

}  // namespace nivor::fuzz
