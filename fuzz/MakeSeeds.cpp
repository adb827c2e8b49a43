// Writes the seeds of one target into a folder: MakeSeeds TARGET FOLDER

#include "Seeds.h"

#include <filesystem>
#include <fstream>
#include <iostream>

int main(int count, char** arguments)
{
    if (count != 3) {
        std::cerr << "Usage: MakeSeeds TARGET FOLDER\n";
        return 2;
    }
    const std::filesystem::path folder = arguments[2];
    std::filesystem::create_directories(folder);
    const auto seeds = nivor::fuzz::seedsOf(arguments[1]);
    for (const nivor::fuzz::Seed& seed : seeds) {
        std::ofstream file(folder / seed.name, std::ios::binary);
        file.write(reinterpret_cast<const char*>(seed.bytes.data()),
                   static_cast<std::streamsize>(seed.bytes.size()));
    }
    return seeds.empty() ? 1 : 0;
}
