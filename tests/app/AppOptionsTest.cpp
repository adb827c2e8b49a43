#include "app/AppOptions.h"

#include "ptp/PTPCommunication.h"

#include <gmock/gmock.h>

using namespace nivor;
using ::testing::HasSubstr;

namespace {

AppOptionsResult parse(std::vector<std::string> arguments)
{
    return parseAppOptions(arguments, {.vendorID = anyVendorID, .logDirectory = "/logs"}, "1.2.0");
}

TEST(AppOptions, WithoutArgumentsTheDefaultsHold)
{
    const auto result = parse({});
    ASSERT_TRUE(result.options);
    EXPECT_EQ(result.options->vendorID, anyVendorID);
    EXPECT_EQ(result.options->logDirectory, "/logs");
    EXPECT_FALSE(result.options->isSimulation);
    EXPECT_TRUE(result.options->windowPicture.empty());
}

TEST(AppOptions, ASimulationMayHaveAFolder)
{
    EXPECT_TRUE(parse({"--simulate"}).options->isSimulation);
    const auto options = parse({"--simulate=/card", "--simulate-pace", "2.5"}).options;
    EXPECT_TRUE(options->isSimulation);
    EXPECT_EQ(options->simulationFolder, "/card");
    EXPECT_DOUBLE_EQ(options->simulationPace, 2.5);
}

TEST(AppOptions, TheRestIsTakenAsWritten)
{
    const auto options = parse({"--vendor-id", "0x04b0", "--log-directory", "/tmp/log"}).options;
    EXPECT_EQ(options->vendorID, 0x04b0);
    EXPECT_EQ(options->logDirectory, "/tmp/log");
}

TEST(AppOptions, HelpAndVersionEndTheProgramWell)
{
    const auto help = parse({"--help"});
    EXPECT_FALSE(help.options);
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_THAT(help.message, HasSubstr("--simulate"));
    EXPECT_THAT(parse({"--version"}).message, HasSubstr("1.2.0"));
}

TEST(AppOptions, WhatIsWrongIsSaidAndEndsTheProgram)
{
    for (const auto& wrong : std::vector<std::vector<std::string>>{
             {"--vendor-id", "12"}, {"--unknown"}, {"--simulate-pace", "-1"}}) {
        const auto result = parse(wrong);
        EXPECT_FALSE(result.options);
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_FALSE(result.message.empty());
    }
}

}  // namespace
