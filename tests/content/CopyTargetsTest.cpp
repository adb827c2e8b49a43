#include "content/CopyTargets.h"

#include "content/DestinationFolder.h"
#include "ptp/FileHandle.h"
#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <fstream>

using namespace nivor;
namespace fs = std::filesystem;

namespace {

class CopyTargetsTest : public ::testing::Test {
protected:
    void take(const char* name) { std::ofstream(folder.path() / name) << "mine"; }

    /// The local name that the next file gets, as in a run.
    std::string next(const char* name)
    {
        const QString cameraName = QString::fromUtf8(name);
        const std::string local = targets.create(cameraName)->path().filename().string();
        targets.recordUse(cameraName);
        return local;
    }

    test::TemporaryDirectory folder;
    CopyTargets targets{std::make_shared<DestinationFolder>(folder.path())};
};

TEST_F(CopyTargetsTest, EqualNamesOfOneRunAreNumbered)
{
    EXPECT_EQ(next("IMG.JPG"), "IMG.JPG");
    EXPECT_EQ(next("IMG.JPG"), "IMG_1.JPG");
    EXPECT_EQ(next("IMG.JPG"), "IMG_2.JPG");
    EXPECT_EQ(next("OTHER.JPG"), "OTHER.JPG");
}

TEST_F(CopyTargetsTest, TakenNamesCountAsUsed)
{
    take("IMG.JPG");
    take("IMG_1.JPG");
    EXPECT_EQ(next("IMG.JPG"), "IMG_2.JPG");
    EXPECT_EQ(next("IMG.JPG"), "IMG_3.JPG");
}

TEST_F(CopyTargetsTest, ANumberedNameOfTheCameraItselfIsNoObstacle)
{
    EXPECT_EQ(next("IMG_1.JPG"), "IMG_1.JPG");
    EXPECT_EQ(next("IMG.JPG"), "IMG.JPG");
    EXPECT_EQ(next("IMG.JPG"), "IMG_2.JPG");
}

TEST_F(CopyTargetsTest, WithoutAnExtensionTheVariantEndsWithADot)
{
    take("NAME");
    EXPECT_EQ(next("NAME"), "NAME_1.");
}

TEST_F(CopyTargetsTest, FoldersAndLinksThatLeadNowhereAreTaken)
{
    fs::create_directory(folder.path() / "A");
    fs::create_symlink("/nowhere/at/all", folder.path() / "B.JPG");
    EXPECT_EQ(next("A"), "A_1.");
    EXPECT_EQ(next("B.JPG"), "B_1.JPG");
    EXPECT_TRUE(fs::is_symlink(folder.path() / "B.JPG"));
}

TEST_F(CopyTargetsTest, NamesThatBecomeTheSameLocallyAreNumbered)
{
    EXPECT_EQ(next("a/b.txt"), "a_b.txt");
    EXPECT_EQ(next("a_b.txt"), "a_b_1.txt");
    EXPECT_EQ(next(".."), "_");
    EXPECT_EQ(next("."), "__1.");
    EXPECT_EQ(next(""), "__2.");
}

TEST_F(CopyTargetsTest, EverythingStaysInTheFolder)
{
    for (const char* name : {"../x", "/tmp/x", "..", "a/../../x"})
        EXPECT_EQ(targets.create(QString::fromUtf8(name))->path().parent_path(), folder.path());
}

TEST_F(CopyTargetsTest, WhatExistsKeepsItsBytes)
{
    take("IMG.JPG");
    next("IMG.JPG");
    EXPECT_EQ(fs::file_size(folder.path() / "IMG.JPG"), 4U);
}

TEST_F(CopyTargetsTest, ANameTakenInTheLastMomentCountsAsTaken)
{
    int calls = 0;
    CopyTargets racing(std::make_shared<DestinationFolder>(folder.path()),
                       [&](const fs::path& path) {
                           if (++calls == 1)
                               std::ofstream(path) << "somebody else's";
                           return std::make_shared<FileHandle>(FileHandle::create(path));
                       });
    EXPECT_EQ(racing.create(QStringLiteral("IMG.JPG"))->path().filename(), "IMG_1.JPG");
    EXPECT_EQ(calls, 2);
}

TEST_F(CopyTargetsTest, AFileSystemThatAlwaysSaysTakenDoesNotHangTheRun)
{
    int calls = 0;
    CopyTargets broken(std::make_shared<DestinationFolder>(folder.path()),
                       [&calls, this](const fs::path&) {
                           ++calls;
                           return std::make_shared<FileHandle>(FileHandle::create(folder.path()));
                       });
    EXPECT_EQ(broken.create(QStringLiteral("IMG.JPG"))->openError(), EEXIST);
    EXPECT_EQ(calls, 1000);
}

TEST_F(CopyTargetsTest, AMissingFolderIsTheHandlesError)
{
    CopyTargets missing(std::make_shared<DestinationFolder>(folder.path() / "gone"));
    const auto file = missing.create(QStringLiteral("IMG.JPG"));
    EXPECT_FALSE(file->isOpen());
    EXPECT_EQ(file->openError(), ENOENT);
}

}  // namespace
