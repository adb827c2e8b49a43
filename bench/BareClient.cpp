#include "BareClient.h"

#include "codes/ContainerType.h"
#include "codes/StillImageClass.h"
#include "foundation/ByteReader.h"
#include "foundation/ByteWriter.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace nivor::bench {
namespace {

constexpr std::uint32_t anyFormat = 0;
constexpr UsbTimeouts patient{std::chrono::seconds(5), std::chrono::seconds(30)};

void require(bool isMet, const char* what)
{
    if (isMet)
        return;
    std::fprintf(stderr, "the bare client failed: %s\n", what);
    std::exit(1);
}

}  // namespace

BareClient::BareClient(UsbHost& host)
{
    const auto cameras = host.stillImageInterfaces();
    require(!cameras.empty(), "no camera");
    device_ = cameras.front().device;
    require(succeeded(device_->open())
                && succeeded(device_->findInterface(stillImageTriple, interface_))
                && succeeded(interface_->open()),
            "the camera could not be opened");
    transact(OperationCode::OpenSession, {1});
}

std::size_t BareClient::read(std::size_t size)
{
    buffer_.resize(std::max(buffer_.size(), size));
    std::size_t received = 0;
    require(succeeded(interface_->readPipe(std::span(buffer_).first(size), received, patient)),
            "a read failed");
    return received;
}

void BareClient::transact(OperationCode operation, std::initializer_list<std::uint32_t> parameters,
                          ByteBuffer* data, std::size_t readSize)
{
    ByteBuffer command;
    appendLittleEndian(command,
                       static_cast<std::uint32_t>(containerHeaderSize + 4 * parameters.size()));
    appendLittleEndian(command, static_cast<std::uint16_t>(ContainerType::Command));
    appendLittleEndian(command, static_cast<std::uint16_t>(operation));
    appendLittleEndian(command, transactionID_++);
    for (const std::uint32_t parameter : parameters)
        appendLittleEndian(command, parameter);
    require(succeeded(interface_->writePipe(command)), "a write failed");
    if (data != nullptr)
        data->clear();
    for (;;) {
        std::size_t received = read(readSize);
        ByteReader header(ByteView(buffer_).first(received));
        const std::uint64_t length = header.u32();
        const bool isData = header.u16() == static_cast<std::uint16_t>(ContainerType::Data);
        if (!isData)
            return;
        for (std::uint64_t total = 0;;) {
            total += received;
            if (data != nullptr)
                data->insert(data->end(), buffer_.begin(),
                             buffer_.begin() + static_cast<std::ptrdiff_t>(received));
            if (total >= length)
                break;
            received = read(readSize);
        }
    }
}

std::vector<std::uint32_t> BareClient::handles()
{
    ByteBuffer data;
    transact(OperationCode::GetStorageIDs, {}, &data);
    ByteReader storages(data, containerHeaderSize + sizeof(std::uint32_t));
    const std::uint32_t storage = storages.u32();
    transact(OperationCode::GetObjectHandles, {storage, anyFormat, 0}, &data);
    ByteReader list(data, containerHeaderSize);
    std::vector<std::uint32_t> handles(list.u32());
    for (std::uint32_t& handle : handles)
        handle = list.u32();
    require(list.ok(), "the list of handles is too short");
    return handles;
}

}  // namespace nivor::bench
