#include "simulator/AnswerShape.h"

namespace nivor {

namespace {

/// Notes each effect in the shape that it gives the answer.
struct Shaper {
    AnswerShape& shape;

    void operator()(const fault::Refuse& effect) const { shape.refusal = effect; }
    void operator()(const fault::Stall& effect) const
    {
        shape.halt = effect.forever ? InTransfer::Halt::Forever : InTransfer::Halt::Once;
    }
    void operator()(const fault::Silence&) const { shape.silent = true; }
    void operator()(const fault::Delay& effect) const { shape.delay = effect.by; }
    void operator()(const fault::CutData& effect) const
    {
        shape.dataLimit = effect.bytes;
        if (effect.thenSilence)
            shape.responses = 0;
    }
    void operator()(const fault::GlueResponse&) const { shape.responseGlued = true; }
    void operator()(const fault::RepeatResponse& effect) const { shape.responses = effect.times; }
    void operator()(const fault::ResponseParameters& effect) const
    {
        shape.responseParameters = effect.values;
    }
    void operator()(const fault::EventFirst& effect) const { shape.eventFirst = effect.code; }
    void operator()(const fault::ContainerLength& effect) const
    {
        header(effect.container).length = effect.value;
    }
    void operator()(const fault::ContainerKind& effect) const
    {
        header(effect.container).type = effect.value;
    }
    void operator()(const fault::TransactionID& effect) const
    {
        shape.transactionID = effect.value;
    }
    void operator()(const fault::SplitHeader& effect) const { shape.splitAt = effect.bytes; }
    void operator()(const fault::MissingData&) const { shape.dataPhases = 0; }
    void operator()(const fault::DoubledData&) const { shape.dataPhases = 2; }
    void operator()(const fault::ZeroPacket& effect) const
    {
        if (effect.error == fault::ZeroPacket::Error::Missing)
            shape.zeroPacketMissing = true;
        else
            shape.zeroPacketExtra = true;
    }
    void operator()(const fault::UntrueObjectInfo& effect) const { shape.objectInfo = effect; }
    void operator()(const fault::RawAnswer& effect) const { shape.raw = effect.transfers; }
    void operator()(const fault::Vanish& effect) const { shape.vanish = effect; }
    void operator()(const fault::KeepObject&) const { shape.keepsObject = true; }

    [[nodiscard]] HeaderErrors& header(ContainerType container) const
    {
        return container == ContainerType::Response ? shape.responseHeader : shape.dataHeader;
    }
};

}  // namespace

AnswerShape AnswerShape::of(const std::vector<const fault::Effect*>& effects)
{
    AnswerShape shape;
    for (const fault::Effect* effect : effects)
        std::visit(Shaper{shape}, *effect);
    return shape;
}

bool AnswerShape::carriesOut() const
{
    const bool refuses = refusal && refusal->place == fault::Refuse::Place::InsteadOfData;
    const bool vanishesAtOnce = vanish && !vanish->afterBytes;
    return !refuses && !silent && !keepsObject && !raw && !vanishesAtOnce
        && halt == InTransfer::Halt::No;
}

}  // namespace nivor
