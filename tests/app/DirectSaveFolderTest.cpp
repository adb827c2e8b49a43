#include "app/DirectSaveFolder.h"
#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

using namespace nivor;

namespace {

const QString ownHost = QStringLiteral("Darkroom.example");

class DirectSaveFolder : public ::testing::Test {
protected:
    /// Makes a folder below the test's own and returns its path.
    QByteArray makeFolder(const char* name)
    {
        std::filesystem::create_directory(directory_.path() / name);
        return path(name);
    }

    [[nodiscard]] QByteArray path(const char* name) const
    {
        return QByteArray::fromStdString((directory_.path() / name).string());
    }

    /// The path of the folder that the answer names; null when it names none.
    static QString folder(const QByteArray& answer)
    {
        const std::optional<QUrl> url = directSaveFolder(answer, ownHost);
        return url ? url->toLocalFile() : QString();
    }

    test::TemporaryDirectory directory_;
};

TEST_F(DirectSaveFolder, IsTheParentOfTheFile)
{
    const QByteArray pictures = makeFolder("pictures");
    const auto url = directSaveFolder("file://" + pictures + "/A.JPG", ownHost);
    ASSERT_TRUE(url.has_value());
    EXPECT_TRUE(url->isLocalFile());
    EXPECT_EQ(url->toLocalFile(), QString::fromUtf8(pictures));
}

TEST_F(DirectSaveFolder, MayBeTheRoot)
{
    EXPECT_EQ(folder("file:///A.JPG"), QStringLiteral("/"));
}

TEST_F(DirectSaveFolder, TakesAnySpellingOfTheScheme)
{
    const QByteArray pictures = makeFolder("pictures");
    EXPECT_EQ(folder("FILE://" + pictures + "/A.JPG"), QString::fromUtf8(pictures));
    EXPECT_EQ(folder("file:" + pictures + "/A.JPG"), QString::fromUtf8(pictures));
}

TEST_F(DirectSaveFolder, IgnoresOneNulAtTheEnd)
{
    const QByteArray pictures = makeFolder("pictures");
    EXPECT_EQ(folder("file://" + pictures + "/A.JPG" + QByteArray(1, '\0')),
              QString::fromUtf8(pictures));
    EXPECT_TRUE(folder("file://" + pictures + "/A.JPG" + QByteArray(2, '\0')).isNull());
}

TEST_F(DirectSaveFolder, RefusesNulWithin)
{
    const QByteArray pictures = makeFolder("pictures");
    EXPECT_TRUE(folder("file://" + pictures + QByteArray(1, '\0') + "/A.JPG").isNull());
    EXPECT_TRUE(folder("file://" + pictures + "%00/A.JPG").isNull());
}

TEST_F(DirectSaveFolder, RefusesRawControlCharacters)
{
    const QByteArray pictures = makeFolder("pictures");
    EXPECT_TRUE(folder("file://" + pictures + "/A.JPG\r\n").isNull());
    EXPECT_TRUE(folder("file://" + pictures + "/A\x7F.JPG").isNull());
}

TEST_F(DirectSaveFolder, DecodesEscapes)
{
    makeFolder("K\u00FCste 100%? #1");
    EXPECT_EQ(folder("file://" + path("K%C3%bcste%20100%25%3F%20%231") + "/A%20B.JPG"),
              QString::fromUtf8(path("K\u00FCste 100%? #1")));
}

TEST_F(DirectSaveFolder, DecodesOnce)
{
    makeFolder("100%20");
    EXPECT_EQ(folder("file://" + path("100%2520") + "/A.JPG"), QString::fromUtf8(path("100%20")));
}

TEST_F(DirectSaveFolder, TakesUnescapedText)
{
    const QByteArray coast = makeFolder("K\u00FCste 1");
    EXPECT_EQ(folder("file://" + coast + "/A.JPG"), QString::fromUtf8(coast));
}

TEST_F(DirectSaveFolder, RefusesMalformedEscapes)
{
    const QByteArray percent = makeFolder("100%");
    const QByteArray pictures = makeFolder("pictures");
    EXPECT_TRUE(folder("file://" + percent + "/A.JPG").isNull());
    for (const char* name : {"A%", "A%4", "A%4G", "A%G4", "A%-1", "A% 4"})
        EXPECT_TRUE(folder("file://" + pictures + "/" + name).isNull()) << name;
}

TEST_F(DirectSaveFolder, RefusesAnEscapedSlash)
{
    const QByteArray pictures = makeFolder("pictures");
    EXPECT_TRUE(folder("file://" + pictures + "%2FA.JPG").isNull());
}

TEST_F(DirectSaveFolder, RefusesQueryAndFragment)
{
    const QByteArray pictures = makeFolder("pictures");
    EXPECT_TRUE(folder("file://" + pictures + "/A.JPG?x=/y").isNull());
    EXPECT_TRUE(folder("file://" + pictures + "/A.JPG#x").isNull());
}

TEST_F(DirectSaveFolder, MayBeOnThisHostByName)
{
    const QByteArray pictures = makeFolder("pictures");
    EXPECT_EQ(folder("file://Darkroom.example" + pictures + "/A.JPG"), QString::fromUtf8(pictures));
    EXPECT_EQ(folder("file://darkroom.EXAMPLE" + pictures + "/A.JPG"), QString::fromUtf8(pictures));
    EXPECT_EQ(folder("file://localhost" + pictures + "/A.JPG"), QString::fromUtf8(pictures));
}

TEST_F(DirectSaveFolder, IsNotOnAnotherHost)
{
    const QByteArray pictures = makeFolder("pictures");
    EXPECT_TRUE(folder("file://attic.example" + pictures + "/A.JPG").isNull());
    EXPECT_TRUE(folder("file://Darkroom" + pictures + "/A.JPG").isNull());
    EXPECT_TRUE(folder("file://user@localhost" + pictures + "/A.JPG").isNull());
}

TEST_F(DirectSaveFolder, RefusesHostWithoutPath)
{
    EXPECT_TRUE(folder("file://localhost").isNull());
    EXPECT_TRUE(folder("file://").isNull());
    EXPECT_TRUE(folder("file:").isNull());
}

TEST_F(DirectSaveFolder, IsNotNamedByABareName)
{
    EXPECT_TRUE(folder("A.JPG").isNull());
    EXPECT_TRUE(folder("file:A.JPG").isNull());
}

TEST_F(DirectSaveFolder, IsNotNamedByAPath)
{
    const QByteArray pictures = makeFolder("pictures");
    EXPECT_TRUE(folder(pictures + "/A.JPG").isNull());
}

TEST_F(DirectSaveFolder, IsNotNamedByARelativePath)
{
    EXPECT_TRUE(folder("file:./A.JPG").isNull());
    EXPECT_TRUE(folder("file:../A.JPG").isNull());
}

TEST_F(DirectSaveFolder, RefusesOtherSchemes)
{
    const QByteArray pictures = makeFolder("pictures");
    EXPECT_TRUE(folder("http://localhost" + pictures + "/A.JPG").isNull());
    EXPECT_TRUE(folder("sftp://" + pictures + "/A.JPG").isNull());
    EXPECT_TRUE(folder("files://" + pictures + "/A.JPG").isNull());
}

TEST_F(DirectSaveFolder, RefusesAnEmptyAnswer)
{
    EXPECT_TRUE(folder({}).isNull());
    EXPECT_TRUE(folder(QByteArray(1, '\0')).isNull());
}

TEST_F(DirectSaveFolder, RefusesAFolderWithoutAName)
{
    const QByteArray pictures = makeFolder("pictures");
    EXPECT_TRUE(folder("file://" + pictures + "/").isNull());
    EXPECT_TRUE(folder("file:///").isNull());
}

TEST_F(DirectSaveFolder, RefusesPathsThatAreNoText)
{
    std::filesystem::create_directory(directory_.path() / "K\xFCste");  // Latin-1
    EXPECT_TRUE(folder("file://" + path("K%FCste") + "/A.JPG").isNull());
    EXPECT_TRUE(folder("file://" + path("K\xFCste") + "/A.JPG").isNull());
}

TEST_F(DirectSaveFolder, MustExist)
{
    EXPECT_TRUE(folder("file://" + path("missing") + "/A.JPG").isNull());
}

TEST_F(DirectSaveFolder, MustBeAFolder)
{
    std::ofstream(directory_.path() / "file").put('x');
    EXPECT_TRUE(folder("file://" + path("file") + "/A.JPG").isNull());
}

TEST_F(DirectSaveFolder, MayBeALink)
{
    const QByteArray pictures = makeFolder("pictures");
    std::filesystem::create_directory_symlink("pictures", directory_.path() / "link");
    EXPECT_EQ(folder("file://" + path("link") + "/A.JPG"), QString::fromUtf8(path("link")));
}

TEST_F(DirectSaveFolder, HasABoundedLength)
{
    const QByteArray beginning = "file://" + makeFolder("pictures") + "/";
    const qsizetype room = longestDirectSaveAnswer - beginning.size();
    EXPECT_FALSE(folder(beginning + QByteArray(room, 'A')).isNull());
    EXPECT_TRUE(folder(beginning + QByteArray(room + 1, 'A')).isNull());
}

TEST_F(DirectSaveFolder, LongestPathOfEscapesFits)
{
    // The longest path that the system takes has 4095 bytes.
    const QByteArray file = "file://" + ownHost.toUtf8() + QByteArray(4095 * 3, 'A');
    EXPECT_LE(file.size(), longestDirectSaveAnswer);
}

}  // namespace
