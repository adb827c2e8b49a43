#include "cli/CliFixture.h"
#include "cli/CommandLineParser.h"
#include "content/VendorID.h"

using namespace nivor;
using namespace nivor::test;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

ParsedCommandLine parse(const std::vector<std::string>& arguments)
{
    return parseCommandLine(arguments, "NIVOR 1", 0x1234);
}

TEST(CommandLineParser, OptionsStandBeforeOrAfterTheCommand)
{
    const std::vector<std::vector<std::string>> lines{
        {"--json", "--vendor-id", "0xABCD", "copy", "dest", "A", "B"},
        {"copy", "dest", "A", "B", "--json", "--vendor-id", "0xABCD"},
        {"copy", "--json", "dest", "--vendor-id=0xABCD", "A", "B"},
        {"--vendor-id=0xABCD", "copy", "dest", "A", "--json", "B"},
    };
    for (const auto& line : lines) {
        const auto parsed = parse(line);
        ASSERT_TRUE(parsed.options) << parsed.error;
        EXPECT_EQ(parsed.options->command, CliOptions::Command::Copy);
        EXPECT_TRUE(parsed.options->isJson);
        EXPECT_EQ(parsed.options->vendorID, 0xABCD);
        EXPECT_EQ(parsed.options->destination, "dest");
        EXPECT_EQ(parsed.options->words, QStringList({QStringLiteral("A"), QStringLiteral("B")}));
    }
}

TEST(CommandLineParser, TheValueOfSimulateNeedsItsEqualsSign)
{
    const auto plain = parse({"copy", "--simulate", "dest"});
    ASSERT_TRUE(plain.options) << plain.error;
    EXPECT_TRUE(plain.options->simulation.isWanted);
    EXPECT_EQ(plain.options->simulation.folder, "");
    EXPECT_EQ(plain.options->destination, "dest");

    const auto before = parse({"--simulate", "list"});
    ASSERT_TRUE(before.options) << before.error;
    EXPECT_EQ(before.options->command, CliOptions::Command::List);

    const auto folder = parse({"list", "--simulate=/a b", "--simulate-writable"});
    ASSERT_TRUE(folder.options) << folder.error;
    EXPECT_TRUE(folder.options->simulation.isWanted);
    EXPECT_EQ(folder.options->simulation.folder, "/a b");
    EXPECT_TRUE(folder.options->simulation.isWritable);
}

TEST(CommandLineParser, WithoutOptionsTheDefaultsHold)
{
    const auto parsed = parse({"list"});
    ASSERT_TRUE(parsed.options);
    EXPECT_EQ(parsed.options->vendorID, 0x1234);
    EXPECT_FALSE(parsed.options->simulation.isWanted);
    EXPECT_FALSE(parsed.options->isJson);
    EXPECT_FALSE(parsed.options->isYes);
}

TEST(CommandLineParser, PatternsArriveAsTheyAreTyped)
{
    const auto parsed =
        parse({"delete", "[ab]", "a,b", "*.JPG", "{}", "%%", "[c]", "--", "--simulate=x", "-y"});
    ASSERT_TRUE(parsed.options) << parsed.error;
    EXPECT_EQ(parsed.options->words.join(u'|'),
              QStringLiteral("[ab]|a,b|*.JPG|{}|%%|[c]|--simulate=x|-y"));
    EXPECT_FALSE(parsed.options->isYes);
}

TEST(CommandLineParser, AFileMayBeCalledLikeACommandOrAnOption)
{
    const auto parsed = parse({"copy", "delete", "list", "--json", "copy", "-", "--", "--json"});
    ASSERT_TRUE(parsed.options) << parsed.error;
    EXPECT_EQ(parsed.options->command, CliOptions::Command::Copy);
    EXPECT_EQ(parsed.options->destination, "delete");
    EXPECT_EQ(parsed.options->words.join(u'|'), QStringLiteral("list|copy|-|--json"));

    const auto values = parse({"--log-directory", "list", "copy", "dest", "--vendor-id", "0x1"});
    ASSERT_TRUE(values.options) << values.error;
    EXPECT_EQ(values.options->logDirectory, "list");
    EXPECT_EQ(values.options->vendorID, 1);
    EXPECT_TRUE(values.options->words.isEmpty());
}

TEST(CommandLineParser, WhatMakesNoSenseIsAUsageError)
{
    const std::vector<std::vector<std::string>> lines{
        {},
        {"frobnicate"},
        {"list", "--frobnicate"},
        {"list", "surplus"},
        {"copy"},
        {"delete"},
        {"list", "--vendor-id", "1234"},
        {"list", "--vendor-id", "0x12345"},
        {"list", "--vendor-id", "0x"},
        {"list", "--vendor-id", "0xwxyz"},
        {"list", "--vendor-id", ""},
        {"list", "--vendor-id"},
        {"list", "--simulate="},
        {"list", "--simulate-writable"},
        {"list", "--simulate", "--simulate-pace", "-3"},
        {"list", "--simulate", "--simulate-pace", "nan"},
        {"list", "--verify"},
    };
    for (const auto& line : lines) {
        const auto parsed = parse(line);
        EXPECT_FALSE(parsed.options) << ::testing::PrintToString(line);
        EXPECT_EQ(parsed.exitCode, ExitCode::Usage);
        EXPECT_THAT(parsed.error, HasSubstr("nivor: "));
        EXPECT_THAT(parsed.error, HasSubstr("--help"));
        EXPECT_THAT(parsed.output, IsEmpty());
    }
}

TEST(CommandLineParser, AMissingCommandIsAskedFor)
{
    EXPECT_THAT(parse({"--json"}).error, HasSubstr("There are devices, list, copy"));
    EXPECT_THAT(parse({"--vendor-id", "any", "frob"}).error,
                HasSubstr("'frob' is no command; there are devices, list, copy"));
    EXPECT_THAT(parse({"copy"}).error, HasSubstr("DEST is required"));
    EXPECT_THAT(parse({"list", "surplus"}).error, HasSubstr("not expected: surplus\n"));
}

TEST(CommandLineParser, AnEmptyValueDoesNotSwallowTheNextWord)
{
    for (const char* option : {"--log-directory=", "--vendor-id=", "--simulate-pace="}) {
        for (const auto& parsed :
             {parse({option, "--simulate", "list"}), parse({"list", option})}) {
            EXPECT_FALSE(parsed.options);
            EXPECT_EQ(parsed.exitCode, ExitCode::Usage);
            EXPECT_THAT(parsed.error,
                        HasSubstr(std::string("nivor: ") + option + " needs a value"));
        }
    }
    EXPECT_THAT(parse({"--simulate=", "list"}).error, HasSubstr("--simulate= needs a folder"));
    EXPECT_THAT(parse({"--log-directory", "", "list"}).error,
                HasSubstr("--log-directory needs a value"));
    EXPECT_THAT(parse({"--log-directory", "--simulate", "list"}).error,
                HasSubstr("--log-directory needs a folder before --simulate"));
    EXPECT_TRUE(parse({"delete", "--", "--log-directory="}).options);
    EXPECT_TRUE(parse({"list", "--log-directory", "./--x"}).options);
}

TEST(CommandLineParser, VerifyStandsBeforeOrAfterItsCommand)
{
    for (const auto& parsed :
         {parse({"--verify", "copy", "dest"}), parse({"copy", "--verify", "dest"}),
          parse({"copy", "dest", "--verify"})}) {
        ASSERT_TRUE(parsed.options) << parsed.error;
        EXPECT_TRUE(parsed.options->isVerify);
    }
    EXPECT_THAT(parse({"--verify", "list"}).error, HasSubstr("goes with the command copy only"));
}

TEST(CommandLineParser, AnEmptyDestinationIsAUsageError)
{
    EXPECT_THAT(parse({"copy", ""}).error, HasSubstr("DEST is empty"));
}

TEST(CommandLineParser, APaceThatIsNoneIsToldInWords)
{
    EXPECT_THAT(parse({"list", "--simulate-pace=abc"}).error, HasSubstr("'abc' is no pace"));
    const auto parsed = parse({"list", "--simulate-pace=2.5"});
    ASSERT_TRUE(parsed.options) << parsed.error;
    EXPECT_DOUBLE_EQ(parsed.options->simulation.pace, 2.5);
}

TEST(CommandLineParser, HelpAndVersionGoToTheOutput)
{
    const auto help = parse({"--help"});
    EXPECT_EQ(help.exitCode, ExitCode::Done);
    for (const char* word : {"devices", "list", "copy", "delete", "doctor", "--vendor-id",
                             "--simulate", "--log-directory", "--json", "--yes", "--version"})
        EXPECT_THAT(help.output, HasSubstr(word));
    EXPECT_THAT(help.output, ::testing::Not(HasSubstr("--simulate-folder")));

    const auto copyHelp = parse({"copy", "--help"});
    EXPECT_THAT(copyHelp.output, HasSubstr("DEST"));
    EXPECT_THAT(copyHelp.output, HasSubstr("handle"));
    EXPECT_EQ(copyHelp.exitCode, ExitCode::Done);

    const auto version = parse({"--version"});
    EXPECT_EQ(version.output, "NIVOR 1\n");
    EXPECT_EQ(version.exitCode, ExitCode::Done);
}

TEST(VendorID, IsHexadecimalWithItsPrefix)
{
    EXPECT_EQ(parseVendorID("0x04b0"), 0x04B0);
    EXPECT_EQ(parseVendorID("0Xf"), 0xF);
    EXPECT_EQ(parseVendorID("0xFFFF"), 0xFFFF);
    EXPECT_EQ(parseVendorID(""), anyVendorID);
    EXPECT_EQ(parseVendorID("any"), anyVendorID);
    for (const char* text : {"0x", "0x10000", "04b0", "0x-1", "0x+1", "0x 1", "0x1 ", "x", "0"})
        EXPECT_FALSE(parseVendorID(text)) << text;
}

using Usage = CliFixture;

TEST_F(Usage, VersionNamesTheLibraries)
{
    const RunResult result = run({"--version"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "NIVOR File Transfer 1.2.3\nQt 6.4.2\nlibusb 1.0.26\n");
    EXPECT_THAT(result.err, IsEmpty());
    // A question about the program is no run of it.
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(Usage, NoCommandIsAUsageError)
{
    const RunResult result = run({});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_THAT(result.err, HasSubstr("nivor: "));
}

TEST_F(Usage, EachRunBeginsAndEndsInTheLog)
{
    attach();
    run({"list"});
    const auto records = log.records();
    EXPECT_EQ(
        records.front(),
        (LogRecord{"AppDelegate applicationDidFinishLaunching:", "Application start (ver1.2.3)"}));
    EXPECT_EQ(records.back(),
              (LogRecord{"AppDelegate applicationWillTerminate:", "Application end"}));
}

TEST_F(Usage, TheLogGoesWhereItIsTold)
{
    TemporaryDirectory elsewhere;
    attach();
    run({"list", "--log-directory", (elsewhere.path() / "new").string()});
    EXPECT_TRUE(std::filesystem::exists(elsewhere.path() / "new" / "TestLog.1.log"));
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(Usage, ASimulationThatCannotBeMadeIsAUsageError)
{
    for (const char* command : {"list", "devices", "doctor"}) {
        const RunResult result = run({command, "--simulate=missing"});
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_EQ(result.err, "nivor: there is no folder missing\n");
    }
}

}  // namespace
