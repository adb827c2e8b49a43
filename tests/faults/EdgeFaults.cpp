// Data that ends on the edges of packets and of reads, and one byte beside them.
#include "datasets/Thumbnail.h"
#include "faults/Outcomes.h"

#include <fmt/format.h>

namespace nivor::test {
namespace {

constexpr std::size_t firstRead = 5120;
constexpr std::size_t largeRead = 16 * 1024 * 1024;

Fault containerOf(std::size_t size, std::map<Kind, Outcome> outcomes)
{
    std::map<Kind, std::size_t> sizes;
    for (const auto& [kind, outcome] : outcomes)
        sizes[kind] = size;
    return {.name = fmt::format("ContainerOf{}", size),
            .script = &soundScript,
            .outcomes = std::move(outcomes),
            .containerSize = std::move(sizes)};
}

// Only those of these operations that are named.
Fault answerOf(std::size_t size, Kind kind, std::map<std::string, Outcome> outcomes)
{
    Fault fault = containerOf(size, {});
    fault.exceptions = std::move(outcomes);
    fault.containerSize = {{kind, size}};
    return fault;
}

// The last byte that an answer may have, and one more.
void addBounds(std::vector<Fault>& faults)
{
    constexpr std::size_t smallDataset = 64 * 1024;
    constexpr std::size_t handleList = 4 * 1024 * 1024;
    constexpr std::size_t thumbnail = 12 + Thumbnail::largestFile;
    const auto everySmall = [](const Outcome& outcome) {
        return std::map<std::string, Outcome>{{"GetStorageIDs", outcome},
                                              {"GetObjectPropValue", outcome},
                                              {"GetObjectInfo", outcome}};
    };
    faults.push_back(answerOf(smallDataset, Kind::Dataset, everySmall(yes())));
    faults.push_back(answerOf(smallDataset + 1, Kind::Dataset, everySmall(no(0))));
    faults.push_back(answerOf(handleList + 1, Kind::Dataset, {{"GetObjectHandles", no(0)}}));
    faults.push_back(answerOf(thumbnail, Kind::Collected, {{"GetThumb", yes()}}));
    faults.push_back(answerOf(thumbnail + 1, Kind::Collected, {{"GetThumb", no(0)}}));
}

}  // namespace

std::vector<Fault> edgeFaults()
{
    std::vector<Fault> faults;
    for (const std::size_t edge : {std::size_t{512}, std::size_t{1024}, firstRead, 2 * firstRead}) {
        for (const std::size_t size : {edge - 1, edge, edge + 1})
            faults.push_back(containerOf(size, withData(yes())));
    }
    // The reads of 16 MiB begin behind the first one; both edges, the second for files only.
    for (const std::size_t size : {largeRead - 1, largeRead, largeRead + 1}) {
        faults.push_back(containerOf(size, objects(yes())));
        faults.back().exceptions = {{"GetThumb", no(0)}};
    }
    for (const std::size_t size :
         {firstRead + largeRead - 1, firstRead + largeRead, firstRead + largeRead + 1})
        faults.push_back(containerOf(size, {{Kind::File, yes()}}));
    addBounds(faults);
    return faults;
}

}  // namespace nivor::test
