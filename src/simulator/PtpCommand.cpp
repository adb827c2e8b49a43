#include "simulator/PtpCommand.h"

#include "codes/ContainerType.h"
#include "codes/StillImageClass.h"
#include "foundation/ByteReader.h"

namespace nivor {

std::optional<PtpCommand> PtpCommand::parse(ByteView bytes)
{
    ByteReader reader(bytes);
    const std::uint32_t length = reader.u32();
    const auto type = static_cast<ContainerType>(reader.u16());
    PtpCommand command;
    command.operation = static_cast<OperationCode>(reader.u16());
    command.transactionID = reader.u32();
    if (!reader.ok() || length != bytes.size() || type != ContainerType::Command)
        return std::nullopt;

    constexpr std::size_t parameterSize = sizeof(std::uint32_t);
    command.parameterCount = reader.remaining() / parameterSize;
    if (reader.remaining() % parameterSize != 0 || command.parameterCount > mostParameters)
        return std::nullopt;
    for (std::size_t i = 0; i < command.parameterCount; ++i)
        command.parameters[i] = reader.u32();
    return command;
}

}  // namespace nivor
