// Every input that a fuzzer has found a fault with, and every seed, once through its target.

#include "Seeds.h"
#include "Targets.h"
#include "support/HeapBytes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>

using namespace nivor;
using namespace nivor::fuzz;

namespace {

namespace fs = std::filesystem;

struct Input {
    Target target;
    std::string name;
    ByteBuffer bytes{};

    friend std::ostream& operator<<(std::ostream& out, const Input& input)
    {
        return out << input.bytes.size() << " bytes";
    }
};

ByteBuffer contentsOf(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::vector<Input> seeds()
{
    std::vector<Input> inputs;
    for (const Target& target : targets()) {
        for (const Seed& seed : seedsOf(target.name))
            inputs.push_back({target, seed.name, seed.bytes});
    }
    return inputs;
}

std::vector<Input> regressions()
{
    std::vector<Input> inputs;
    for (const Target& target : targets()) {
        const fs::path folder = fs::path(NIVOR_FUZZ_REGRESSIONS) / target.name;
        std::error_code missing;
        for (const auto& entry : fs::directory_iterator(folder, missing))
            inputs.push_back({target, entry.path().filename().string(), contentsOf(entry.path())});
    }
    std::sort(inputs.begin(), inputs.end(), [](const Input& one, const Input& other) {
        return std::pair(one.target.name, one.name) < std::pair(other.target.name, other.name);
    });
    return inputs;
}

class Replay : public ::testing::TestWithParam<Input> { };

std::string nameOf(const ::testing::TestParamInfo<Input>& info)
{
    return std::string(info.param.target.name) + "_" + info.param.name;
}

// A target ends the process where a promise is broken, and says which.
TEST_P(Replay, KeepsEveryPromise)
{
    const test::HeapBytes input(GetParam().bytes);
    GetParam().target.run(input.view());
}

INSTANTIATE_TEST_SUITE_P(Seed, Replay, ::testing::ValuesIn(seeds()), nameOf);
INSTANTIATE_TEST_SUITE_P(Regression, Replay, ::testing::ValuesIn(regressions()), nameOf);

TEST(ReplayedInputs, EveryTargetHasSeeds)
{
    for (const Target& target : targets())
        EXPECT_FALSE(seedsOf(target.name).empty()) << target.name;
}

TEST(ReplayedInputs, EveryFolderOfRegressionsBelongsToATarget)
{
    for (const auto& entry : fs::directory_iterator(NIVOR_FUZZ_REGRESSIONS)) {
        const std::string name = entry.path().filename().string();
        EXPECT_TRUE(std::any_of(targets().begin(), targets().end(), [&](const Target& target) {
            return target.name == name;
        })) << name;
    }
}

}  // namespace
