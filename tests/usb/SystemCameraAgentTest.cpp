#include "usb/SystemCameraAgent.h"

#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdlib.h>

#ifndef __APPLE__

namespace nivor {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

/// A PATH with nothing in it but a `gio` of the test's own, which notes how it is called.
class SystemCameraAgentTest : public testing::Test {
protected:
    SystemCameraAgentTest()
        : oldPath_(getenv("PATH"))
    {
        setenv("PATH", directory_.c_str(), 1);
    }

    ~SystemCameraAgentTest() override { setenv("PATH", oldPath_.c_str(), 1); }

    void makeGio(const std::string& body)
    {
        const fs::path gio = directory_ / "gio";
        std::ofstream(gio) << "#!/bin/sh\necho \"$@\" >> " << (directory_ / "calls").string()
                           << "\n"
                           << body << "\n";
        fs::permissions(gio, fs::perms::owner_all);
    }

    [[nodiscard]] std::string calls() const
    {
        std::ostringstream text;
        std::ifstream file(directory_ / "calls");
        if (file.peek() != std::ifstream::traits_type::eof())
            text << file.rdbuf();
        return text.str();
    }

    const std::string oldPath_;
    const test::TemporaryDirectory temporary_;
    const fs::path directory_ = temporary_.path();
};

constexpr const char* mountedCamera = R"(case "$2" in
-l) echo 'Drive(0): A Disk'; echo 'Mount(0): A Camera -> gphoto2://A_Camera/' ;;
esac)";

TEST_F(SystemCameraAgentTest, WithoutTheToolThereIsNothingToAsk)
{
    EXPECT_EQ(SystemCameraAgent().release(), "");
}

TEST_F(SystemCameraAgentTest, WithoutACameraMountedNothingIsUnmounted)
{
    makeGio("echo 'Mount(0): A Server -> sftp://server/'; echo 'Volume(0): gphoto2'");
    EXPECT_EQ(SystemCameraAgent().release(), "");
    EXPECT_EQ(calls(), "mount -l\n");
}

TEST_F(SystemCameraAgentTest, MountedCamerasAreUnmountedByTheirScheme)
{
    makeGio(mountedCamera);
    EXPECT_EQ(SystemCameraAgent().release(), "");
    EXPECT_EQ(calls(), "mount -l\nmount -s gphoto2\n");
}

TEST_F(SystemCameraAgentTest, ReturnsWhatTheToolComplainsOf)
{
    makeGio(std::string(mountedCamera)
            + "\n[ \"$2\" = -s ] && echo 'gio: the camera is busy' >&2 && exit 1");
    EXPECT_EQ(SystemCameraAgent().release(), "gio: the camera is busy\n");
}

TEST_F(SystemCameraAgentTest, ReadsMuchOutputToItsEnd)
{
    makeGio("i=0; while [ $i -lt 4000 ]; do echo \"Volume($i): a line of about forty characters\"; "
            "echo \"complaint $i\" >&2; i=$((i+1)); done\n"
            + std::string(mountedCamera));
    const std::string complaints = SystemCameraAgent(60s).release();
    EXPECT_NE(complaints.find("complaint 0\n"), std::string::npos);
    EXPECT_NE(complaints.find("complaint 3999\n"), std::string::npos);
    EXPECT_EQ(calls(), "mount -l\nmount -s gphoto2\n");
}

TEST_F(SystemCameraAgentTest, AToolThatHangsIsEnded)
{
    makeGio("echo 'waiting' >&2; exec /bin/sleep 60");
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(SystemCameraAgent(500ms).release(), "waiting\n");
    EXPECT_LT(std::chrono::steady_clock::now() - start, 20s);
}

TEST_F(SystemCameraAgentTest, AToolThatCantBeRunIsNoError)
{
    std::ofstream(directory_ / "gio") << "#!/no/such/interpreter\n";
    fs::permissions(directory_ / "gio", fs::perms::owner_all);
    EXPECT_EQ(SystemCameraAgent().release(), "");
}

}  // namespace
}  // namespace nivor

#endif
