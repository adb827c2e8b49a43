// The program itself, as a process of its own.

#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <string>

using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

class Program : public ::testing::Test {
protected:
    /// Runs a line of shell in which $NIVOR is the program with a log of its own; both output
    /// streams arrive in `output`.
    int shell(const std::string& line)
    {
        const std::string command = "NIVOR='" NIVOR_PROGRAM " --log-directory "
            + log.path().string() + "'; exec 2>&1; " + line;
        std::FILE* pipe = ::popen(command.c_str(), "r");
        if (pipe == nullptr)
            return -1;
        output.clear();
        std::array<char, 4096> buffer{};
        for (std::size_t count = 0;
             (count = std::fread(buffer.data(), 1, buffer.size(), pipe)) > 0;)
            output.append(buffer.data(), count);
        const int status = ::pclose(pipe);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    nivor::test::TemporaryDirectory log;
    nivor::test::TemporaryDirectory folder;
    std::string output;
};

TEST_F(Program, ShowsItsVersion)
{
    EXPECT_EQ(shell("$NIVOR --version"), 0);
    EXPECT_THAT(output, HasSubstr("NIVOR File Transfer "));
    EXPECT_THAT(output, HasSubstr("\nQt 6"));
    EXPECT_THAT(output, HasSubstr("\nlibusb 1"));
}

TEST_F(Program, ListsAndCopiesTheSimulatedCard)
{
    const std::string card = folder.path().string() + "/card";
    ASSERT_EQ(shell("mkdir -p " + card + "/DCIM && echo first > " + card
                    + "/DCIM/A.TXT && echo second > " + card + "/DCIM/B.TXT"),
              0);
    EXPECT_EQ(shell("LC_ALL=C $NIVOR --simulate=" + card + " list"), 0);
    EXPECT_THAT(output, HasSubstr("A.TXT\n"));
    EXPECT_THAT(output, HasSubstr("2 files, 1 folder, "));
    EXPECT_EQ(shell("$NIVOR copy --simulate=" + card + " " + card + "-copy && cmp " + card
                    + "/DCIM/B.TXT " + card + "-copy/B.TXT"),
              0);
    EXPECT_EQ(shell("$NIVOR delete A.TXT --yes --simulate=" + card + " && test -e " + card
                    + "/DCIM/A.TXT"),
              0);
    EXPECT_EQ(shell("$NIVOR delete A.TXT --yes --simulate-writable --simulate=" + card
                    + " && test ! -e " + card + "/DCIM/A.TXT"),
              0);
    EXPECT_EQ(shell("cat " + log.path().string() + "/*Log.1.log"), 0);
    EXPECT_THAT(output, HasSubstr("Application start (ver"));
}

TEST_F(Program, WorksWithoutALog)
{
    const std::string card = folder.path().string() + "/card";
    const std::string copies = folder.path().string() + "/copies";
    const std::string blocked = folder.path().string() + "/file";
    ASSERT_EQ(shell("mkdir " + card + " && echo first > " + card + "/A.TXT && touch " + blocked
                    + " && mkdir " + folder.path().string() + "/full && ln -s /dev/full "
                    + folder.path().string() + "/full/NIVOR\\ File\\ TransferLog.1.log"),
              0);
    // A folder that is a file, one that nobody may make, a disk that is full.
    for (const std::string& logs :
         {blocked, std::string("/proc/nowhere/logs"), folder.path().string() + "/full"}) {
        EXPECT_EQ(shell("rm -rf " + copies + " && " NIVOR_PROGRAM " --log-directory " + logs
                        + " copy --simulate=" + card + " " + copies + " && cmp " + card + "/A.TXT "
                        + copies + "/A.TXT"),
                  0)
            << logs << '\n'
            << output;
    }
}

TEST_F(Program, AFileBeyondTheUsersLimitIsAFailureAndTheNextIsCopied)
{
    const std::string card = folder.path().string() + "/card";
    ASSERT_EQ(shell("mkdir " + card + " && head -c 3000000 /dev/zero > " + card
                    + "/A.MOV && echo second > " + card + "/B.TXT"),
              0);
    // ulimit counts in blocks of 512 bytes; the log has to fit as well.
    EXPECT_EQ(shell("ulimit -f 2000; $NIVOR copy --simulate=" + card + " " + card + "-copy"), 1);
    EXPECT_THAT(output, HasSubstr("A.MOV: File too large"));
    EXPECT_EQ(shell("cmp " + card + "/B.TXT " + card + "-copy/B.TXT"), 0);
}

TEST_F(Program, AMissingSimulationFolderIsAUsageError)
{
    EXPECT_EQ(shell("$NIVOR list --simulate=/nowhere/at/all"), 2);
    EXPECT_THAT(output, HasSubstr("/nowhere/at/all"));
}

TEST_F(Program, AFullOrClosedOutputIsAFailure)
{
    EXPECT_EQ(shell("$NIVOR --version > /dev/full"), 1);
    EXPECT_THAT(output, HasSubstr("the output could not be written"));
    EXPECT_EQ(shell("$NIVOR --version >&-"), 1);
    // The reader is gone before anything is written.
    EXPECT_EQ(shell("{ sleep 2; $NIVOR --version; echo $? >&2; } | true"), 0);
    EXPECT_EQ(output, "1\n");
}

TEST_F(Program, CtrlCStopsACopyAndTheCameraConfirms)
{
    const std::string card = folder.path().string() + "/card";
    ASSERT_EQ(shell("mkdir " + card + " && head -c 40000000 /dev/zero > " + card + "/BIG.MOV"), 0);
    // A shell's background jobs don't hear of Ctrl-C unless they are told to.
    EXPECT_EQ(shell("env --default-signal=INT $NIVOR copy --simulate=" + card
                    + " --simulate-pace 2 " + card
                    + "-copy & pid=$!; for i in $(seq 100); do test -s " + card
                    + "-copy/BIG.MOV && break; sleep 0.1; done; kill -INT $pid; wait $pid"),
              5);
    EXPECT_THAT(output, HasSubstr("the camera confirmed it"));
}

TEST_F(Program, AClosedErrorStreamDoesNotBecomeAFile)
{
    EXPECT_EQ(shell("$NIVOR copy --simulate --simulate-pace 2 " + folder.path().string()
                    + " 2>&- & pid=$!; for i in $(seq 100); do ls " + folder.path().string()
                    + " | grep -q . && break; sleep 0.1; done; readlink /proc/$pid/fd/2;"
                      " kill -TERM $pid; wait $pid"),
              5);
    EXPECT_THAT(output, HasSubstr("/dev/null\n"));
}

TEST_F(Program, WhatQtComplainsAboutGoesIntoTheLog)
{
    // The beginning of a picture, and then nothing that belongs to one.
    const std::string card = folder.path().string() + "/card";
    ASSERT_EQ(shell("mkdir " + card
                    + " && printf '\\377\\330\\377\\340\\0\\020JFIF\\0\\1\\1\\0\\0\\1"
                      "\\0\\1\\0\\0\\377\\300junkjunkjunk' > "
                    + card + "/BAD.JPG"),
              0);
    EXPECT_EQ(shell("$NIVOR --simulate=" + card + " list >/dev/null"), 0);
    EXPECT_THAT(output, IsEmpty());
}

TEST_F(Program, TheSecondCtrlCLeavesTheTerminalsLine)
{
    EXPECT_EQ(
        shell("script -qec \"env --default-signal=INT $NIVOR copy --simulate --simulate-pace 1 "
              + folder.path().string()
              + " & pid=\\$!; sleep 1; kill -STOP \\$pid; kill -INT \\$pid; kill -TERM \\$pid;"
                " kill -CONT \\$pid; wait \\$pid\" /dev/null </dev/null"),
        5);
    EXPECT_TRUE(output.ends_with("\n")) << output;
}

TEST_F(Program, DoctorWorksWithoutAnyUsb)
{
    EXPECT_EQ(shell("$NIVOR doctor"), 0);
    EXPECT_THAT(output, HasSubstr("Versions"));
}

}  // namespace
