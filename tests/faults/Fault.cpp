#include "faults/Fault.h"

#include <algorithm>
#include <iterator>

namespace nivor::test {

std::optional<Outcome> Fault::outcome(const Operation& operation, WireKind wire) const
{
    if (const auto own = exceptions.find(operation.name); own != exceptions.end())
        return own->second;
    if (const auto own = overLibusb.find(operation.kind);
        wire == WireKind::Libusb && own != overLibusb.end())
        return own->second;
    const auto found = outcomes.find(operation.kind);
    return found == outcomes.end() ? std::nullopt : std::optional(found->second);
}

Answer Fault::answer(const Operation& operation) const
{
    const auto size = containerSize.find(operation.kind);
    return operation.answer(size == containerSize.end() ? 0 : size->second);
}

const std::vector<Fault>& faults()
{
    static const std::vector<Fault> all = [] {
        std::vector<Fault> table;
        for (const auto part : {&headerFaults, &splitFaults, &phaseFaults, &packetFaults,
                                &edgeFaults, &failureFaults, &endlessFaults, &packetSizeFaults}) {
            std::vector<Fault> more = part();
            std::ranges::move(more, std::back_inserter(table));
        }
        return table;
    }();
    return all;
}

}  // namespace nivor::test
