#include "content/CopyFileName.h"

#include "support/Text.h"

#include <gtest/gtest.h>

using namespace nivor;
using nivor::test::text;

namespace {

TEST(CopyFileName, ANameThatIsNotUsedStays)
{
    EXPECT_EQ(makeCopyFileName({}, text("IMG.JPG")), text("IMG.JPG"));
    EXPECT_EQ(makeCopyFileName({text("img.jpg")}, text("IMG.JPG")), text("IMG.JPG"));
}

TEST(CopyFileName, TheNumberCountsTheUses)
{
    const QString name = text("IMG0001.JPG");
    EXPECT_EQ(makeCopyFileName({name}, name), text("IMG0001_1.JPG"));
    EXPECT_EQ(makeCopyFileName({name, text("OTHER.JPG"), name}, name), text("IMG0001_2.JPG"));
}

TEST(CopyFileName, WithoutAnExtensionTheDotIsThereAllTheSame)
{
    EXPECT_EQ(makeCopyFileName({text("README")}, text("README")), text("README_1."));
    EXPECT_EQ(makeCopyFileName({text("a.")}, text("a.")), text("a_1."));
    EXPECT_EQ(makeCopyFileName({text(".profile")}, text(".profile")), text(".profile_1."));
}

TEST(CopyFileName, OnlyTheLastExtensionCounts)
{
    EXPECT_EQ(makeCopyFileName({text("a.tar.gz")}, text("a.tar.gz")), text("a.tar_1.gz"));
    EXPECT_EQ(makeCopyFileName({text(".a.txt")}, text(".a.txt")), text(".a_1.txt"));
}

TEST(CopyFileName, PercentSignsMeanNothing)
{
    EXPECT_EQ(makeCopyFileName({text("100%1.%2")}, text("100%1.%2")), text("100%1_1.%2"));
}

TEST(CopyFileName, PathExtension)
{
    EXPECT_EQ(pathExtension(text("a.tar.gz")), text("gz"));
    EXPECT_EQ(pathExtension(text("README")), QString());
    EXPECT_EQ(pathExtension(text("a.")), QString());
    EXPECT_EQ(pathExtension(text(".profile")), QString());
    EXPECT_EQ(pathExtension(text("")), QString());
    EXPECT_EQ(deletingPathExtension(text("a.tar.gz")), text("a.tar"));
    EXPECT_EQ(deletingPathExtension(text("a.")), text("a"));
    EXPECT_EQ(deletingPathExtension(text(".profile")), text(".profile"));
    EXPECT_EQ(deletingPathExtension(text("")), QString());
}

}  // namespace
