// Prints what was measured in the machine as a table like that of the other benchmarks.
//
// usage: nivor-rates-table <LINES
//
// Reads "FIGURE WORKLOAD|WHO|VALUE|UNIT"; other lines are passed over. What the program does is
// held against every other client of the same workload. They were measured in turn, so that the
// n-th value of one belongs to the n-th of the other, and the times are the median of the pairs'.

#include "Measuring.h"
#include "Table.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace nivor::bench;

struct Client {
    std::string name;
    std::vector<double> values{};
};

struct Workload {
    std::string name;
    std::string unit;
    std::vector<Client> clients{};
};

template <typename Named>
Named& entryOf(std::vector<Named>& entries, const std::string& name, Named fresh)
{
    const auto found = std::find_if(entries.begin(), entries.end(),
                                    [&name](const Named& entry) { return entry.name == name; });
    return found != entries.end() ? *found : entries.emplace_back(std::move(fresh));
}

std::vector<Workload> readWorkloads(std::istream& in)
{
    constexpr std::string_view mark = "FIGURE ";
    std::vector<Workload> workloads;
    for (std::string line; std::getline(in, line);) {
        if (!line.starts_with(mark))
            continue;
        std::istringstream parts(line.substr(mark.size()));
        std::array<std::string, 4> words;
        for (std::string& word : words)
            std::getline(parts, word, '|');
        const auto& [name, who, value, unit] = words;
        Workload& workload = entryOf(workloads, name, Workload{.name = name, .unit = unit});
        Client& client = entryOf(workload.clients, who, Client{.name = who});
        client.values.push_back(std::strtod(value.c_str(), nullptr));
    }
    return workloads;
}

double medianOfRatios(const std::vector<double>& values, const std::vector<double>& others)
{
    std::vector<double> ratios;
    for (std::size_t i = 0; i < std::min(values.size(), others.size()); ++i)
        ratios.push_back(values[i] / others[i]);
    return median(std::move(ratios));
}

void printWorkload(const Workload& workload)
{
    printTitle(workload.name);
    const auto program =
        std::find_if(workload.clients.begin(), workload.clients.end(),
                     [](const Client& client) { return client.name == "program"; });
    for (const Client& client : workload.clients) {
        if (client.name == "program")
            continue;
        print({.name = client.name, .unit = workload.unit, .values = client.values});
        if (program == workload.clients.end())
            continue;
        print({.name = program->name,
               .unit = workload.unit,
               .values = program->values,
               .limit = Limit{.value = median(client.values),
                              .name = client.name,
                              .times = medianOfRatios(program->values, client.values)}});
    }
}

}  // namespace

int main()
{
    const std::vector<Workload> workloads = readWorkloads(std::cin);
    for (const Workload& workload : workloads)
        printWorkload(workload);
    return workloads.empty() ? EXIT_FAILURE : EXIT_SUCCESS;
}
