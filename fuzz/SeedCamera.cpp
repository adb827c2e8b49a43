#include "SeedCamera.h"

#include "codes/ContainerType.h"
#include "codes/StillImageClass.h"
#include "foundation/ByteWriter.h"
#include "simulator/AnswerComposer.h"

namespace nivor::fuzz {
namespace {

std::shared_ptr<MemoryCard> variedCard()
{
    auto card = std::make_shared<MemoryCard>();
    const std::uint32_t folder = card->addFolder(u"DCIM");
    card->setThumbnail(card->addFile(u"DSC_0001.JPG", 700, folder), ByteBuffer(60, 0xFF));
    // With its header 512 bytes, a multiple of the packet size.
    card->addFile(u"\u5199\u771F \U0001F4F7.jpg", 500, folder);
    card->addFile(u"MOV_0002.MOV", 6000, folder);
    card->addFile(std::u16string(254, u'N'), 1);
    card->addFile(u"", 0);
    return card;
}

}  // namespace

SeedCamera::SeedCamera()
    : card_(variedCard())
    , responder_(card_, {}, ListingStyle::WholeStorage, 0x00010001)
{
    answer(OperationCode::OpenSession, {1});
}

ByteBuffer SeedCamera::command(OperationCode operation,
                               const std::vector<std::uint32_t>& parameters)
{
    ByteBuffer bytes;
    appendLittleEndian(bytes,
                       static_cast<std::uint32_t>(containerHeaderSize + 4 * parameters.size()));
    appendLittleEndian(bytes, static_cast<std::uint16_t>(ContainerType::Command));
    appendLittleEndian(bytes, static_cast<std::uint16_t>(operation));
    appendLittleEndian(bytes, std::uint32_t{1});
    for (const std::uint32_t parameter : parameters)
        appendLittleEndian(bytes, parameter);
    return bytes;
}

std::vector<ByteBuffer> SeedCamera::answer(OperationCode operation,
                                           const std::vector<std::uint32_t>& parameters)
{
    const PtpCommand parsed = PtpCommand::parse(command(operation, parameters)).value();
    std::vector<ByteBuffer> transfers;
    for (const InTransfer& transfer :
         AnswerComposer(parsed).compose(responder_.answer(parsed), AnswerShape{})) {
        ByteBuffer bytes(transfer.size());
        static_cast<void>(transfer.produce(0, bytes));
        transfers.push_back(std::move(bytes));
    }
    return transfers;
}

}  // namespace nivor::fuzz
