/// What the fuzzers start from: inputs that the program itself makes.
#pragma once

#include "foundation/Bytes.h"

#include <string>
#include <string_view>
#include <vector>

namespace nivor::fuzz {

struct Seed {
    std::string name;  ///< letters and digits
    ByteBuffer bytes{};
};

/// The seeds of a target, by its name.
std::vector<Seed> seedsOf(std::string_view target);

// By group; `seedsOf` puts them together.
std::vector<Seed> containerSeeds();
std::vector<Seed> objectInfoSeeds();
std::vector<Seed> propValueSeeds();
std::vector<Seed> stringSeeds();
std::vector<Seed> thumbnailSeeds();
std::vector<Seed> engineSeeds();
std::vector<Seed> fileNameSeeds();
std::vector<Seed> logSeeds();
std::vector<Seed> simulatorSeeds();

}  // namespace nivor::fuzz
