#include "Seeds.h"

#include "EngineCall.h"
#include "FuzzedCamera.h"
#include "SeedCamera.h"
#include "foundation/ByteWriter.h"

#include <string>

namespace nivor::fuzz {
namespace {

/// Writes an input for the engine's target; its parts stand in EngineCall.h.
class EngineProgram {
public:
    EngineProgram& call(EngineCall next, const ByteBuffer& arguments = {})
    {
        calls_.push_back(static_cast<std::uint8_t>(next));
        calls_.insert(calls_.end(), arguments.begin(), arguments.end());
        return *this;
    }

    EngineProgram& connection(ByteBuffer results)
    {
        connection_ = std::move(results);
        return *this;
    }

    EngineProgram& control(ByteBuffer results)
    {
        control_ = std::move(results);
        return *this;
    }

    EngineProgram& step(BulkInStep next, const ByteBuffer& arguments = {})
    {
        bulkIn_.push_back(static_cast<std::uint8_t>(next));
        bulkIn_.insert(bulkIn_.end(), arguments.begin(), arguments.end());
        return *this;
    }

    EngineProgram& transfers(const std::vector<ByteBuffer>& all)
    {
        for (const ByteBuffer& transfer : all) {
            ByteBuffer arguments;
            appendLittleEndian(arguments, static_cast<std::uint16_t>(transfer.size()));
            arguments.insert(arguments.end(), transfer.begin(), transfer.end());
            step(BulkInStep::Raw, arguments);
        }
        return *this;
    }

    EngineProgram& respond() { return step(BulkInStep::Response, {0x01, 0x20}); }

    [[nodiscard]] ByteBuffer bytes() const
    {
        ByteBuffer all;
        for (const ByteBuffer& run : {calls_, connection_, control_, ByteBuffer()}) {
            all.push_back(static_cast<std::uint8_t>(run.size()));
            all.insert(all.end(), run.begin(), run.end());
        }
        all.insert(all.end(), bulkIn_.begin(), bulkIn_.end());
        return all;
    }

private:
    ByteBuffer calls_;
    ByteBuffer connection_;
    ByteBuffer control_;
    ByteBuffer bulkIn_;
};

const ByteBuffer size700{0xBC, 0x02, 0, 0, 0, 0, 0, 0};

ByteBuffer with(ByteBuffer arguments, const ByteBuffer& more)
{
    arguments.insert(arguments.end(), more.begin(), more.end());
    return arguments;
}

/// As a listing goes.
EngineProgram listing(std::uint8_t mostAtOnce)
{
    SeedCamera camera;
    EngineProgram program;
    program.step(BulkInStep::Pieces, {mostAtOnce, 0});
    program.call(EngineCall::Connect).respond();
    program.call(EngineCall::GetStorageIDs).transfers(camera.answer(OperationCode::GetStorageIDs));
    program.call(EngineCall::GetObjectHandles, {1, 0, 1, 0, 0, 0, 0, 0})
        .transfers(camera.answer(OperationCode::GetObjectHandles, {0x00010001, 0, 0}));
    program.call(EngineCall::GetObjectInfo, {2, 0, 0, 0})
        .transfers(camera.answer(OperationCode::GetObjectInfo, {2}));
    program.call(EngineCall::GetObjectPropValue, {2, 0, 0, 0})
        .transfers(camera.answer(OperationCode::GetObjectPropValue, {2, 0xDC04}));
    program.call(EngineCall::GetThumb, {60, 0, 0, 0, 0, 0, 0, 0})
        .transfers(camera.answer(OperationCode::GetThumb, {2}));
    program.call(EngineCall::Disconnect).respond();
    return program;
}

/// The three ways in which an object is taken, then a deletion.
EngineProgram copying(std::uint8_t piecesTaken, std::uint8_t whichFile)
{
    SeedCamera camera;
    EngineProgram program;
    const auto object = camera.answer(OperationCode::GetObject, {2});
    program.step(BulkInStep::Pieces, {100, 0});
    program.call(EngineCall::GetObject, size700).transfers(object);
    program.call(EngineCall::GetObjectToSink, with(size700, {piecesTaken, 0})).transfers(object);
    program.call(EngineCall::GetObjectToFile, with(size700, {whichFile})).transfers(object);
    program.call(EngineCall::DeleteObject, {2, 0, 0, 0})
        .transfers(camera.answer(OperationCode::DeleteObject, {2, 0}));
    return program;
}

/// One transaction that `step` disturbs, and another one after it.
ByteBuffer disturbed(BulkInStep step, const ByteBuffer& arguments)
{
    EngineProgram program;
    program.call(EngineCall::GetObjectToSink, with(size700, {255, 0}));
    program.step(BulkInStep::Pieces, {20, 0});
    program.step(BulkInStep::UntrueData, {0xC8, 0x02, 0, 0, 0x09, 0x10, 3, 1, 2, 3});
    program.step(step, arguments);
    program.call(EngineCall::StopCopyFlgInit).call(EngineCall::GetStorageIDs);
    program.respond().step(BulkInStep::Data, {0x04, 0x10, 8, 0});
    return program.bytes();
}

}  // namespace

std::vector<Seed> engineSeeds()
{
    EngineProgram refusedConnection;
    refusedConnection.connection({0, 0xC2}).call(EngineCall::Connect).call(EngineCall::Connect);
    EngineProgram own;
    own.call(EngineCall::SetTransactionID, {0xFE, 0xFF, 0xFF, 0xFF});
    own.call(EngineCall::Transaction, {2, 9, 9, 0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 0, 0, 1});
    own.step(BulkInStep::UntrueData, {0xFF, 0xFF, 0xFF, 0xFF, 0x09, 0x10, 2, 1, 2}).respond();
    own.call(EngineCall::CancelNothing).call(EngineCall::ExistsDevice, {0});
    return {
        {"Listing", listing(0).bytes()},
        {"ListingInSmallPieces", listing(16).bytes()},
        {"Copying", copying(255, 0).bytes()},
        {"CopyingRefused", copying(1, 1).bytes()},
        {"CopyingRefusedWithStatuses", copying(0, 0).control({0, 0x84, 4, 0, 0x19, 0x20}).bytes()},
        {"Silence", disturbed(BulkInStep::Silence, {})},
        {"Timeout", disturbed(BulkInStep::Timeout, {})},
        {"Failure", disturbed(BulkInStep::Failure, {3})},
        {"Cancel", disturbed(BulkInStep::Cancel, {})},
        {"EmptyPacket", disturbed(BulkInStep::Empty, {})},
        {"Event", disturbed(BulkInStep::Event, {0x02, 0x40})},
        {"RefusedConnection", refusedConnection.bytes()},
        {"OwnTransaction", own.bytes()}};
}

}  // namespace nivor::fuzz
