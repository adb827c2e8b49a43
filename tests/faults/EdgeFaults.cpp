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

// A thumbnail that would not be kept is not fetched to its end.
Fault thumbnailOf(std::size_t size, const Outcome& outcome)
{
    Fault fault = containerOf(size, {});
    fault.exceptions = {{"GetThumb", outcome}};
    fault.containerSize = {{Kind::Collected, size}};
    return fault;
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
    constexpr std::size_t largestThumbnail = 12 + Thumbnail::largestFile;
    faults.push_back(thumbnailOf(largestThumbnail, yes()));
    faults.push_back(thumbnailOf(largestThumbnail + 1, no(0)));
    return faults;
}

}  // namespace nivor::test
