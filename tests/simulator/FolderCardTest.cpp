#include "simulator/FolderCard.h"
#include "foundation/Errors.h"
#include "simulator/SimulationOptions.h"
#include "support/TemporaryDirectory.h"

#include <QImage>
#include <QString>

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <sys/stat.h>

namespace nivor::test {

namespace fs = std::filesystem;

class FolderCardTest : public testing::Test {
protected:
    FolderCardTest()
    {
        fs::create_directories(folder / "DCIM" / "100");
        write(folder / "DCIM" / "100" / "a.mov", "a film");
        write(folder / "readme.txt", "hello");
        write(outside.path() / "secret.txt", "secret");
    }

    static void write(const fs::path& path, const std::string& text)
    {
        std::ofstream(path, std::ios::binary) << text;
    }

    static std::string contentOf(Card& card, std::uint32_t handle)
    {
        const auto object = card.object(handle);
        ByteBuffer bytes(object ? object->size : 0);
        if (!object || !card.read(handle, 0, bytes))
            return "(unreadable)";
        return {bytes.begin(), bytes.end()};
    }

    /// The handle of the object of that name; 0 when there is none.
    static std::uint32_t handleOf(const Card& card, const std::u16string& name)
    {
        for (const std::uint32_t handle : card.handles()) {
            if (card.object(handle)->name == name)
                return handle;
        }
        return noHandle;
    }

    TemporaryDirectory directory;
    TemporaryDirectory outside;
    const fs::path folder = directory.path();
};

TEST_F(FolderCardTest, ShowsFilesAndFolders)
{
    FolderCard card(folder);
    ASSERT_EQ(card.handles().size(), 4U);
    const std::uint32_t film = handleOf(card, u"a.mov");
    const CardObject object = card.object(film).value();
    EXPECT_EQ(object.format, ObjectFormatCode::QuickTime);
    EXPECT_EQ(object.size, 6U);
    EXPECT_EQ(object.modificationDate.size(), 15U);
    const CardObject parent = card.object(object.parent).value();
    EXPECT_EQ(parent.name, u"100");
    EXPECT_TRUE(parent.isFolder());
    EXPECT_EQ(card.object(parent.parent)->name, u"DCIM");
    EXPECT_EQ(contentOf(card, film), "a film");
}

TEST_F(FolderCardTest, KeepsNamesInAnyScript)
{
    write(folder / "夕焼け.JPG", "x");
    const FolderCard card(folder);
    EXPECT_NE(handleOf(card, u"夕焼け.JPG"), noHandle);
}

TEST_F(FolderCardTest, LeavesTheUsersFolderAloneWhenObjectsAreDeleted)
{
    FolderCard card(folder);
    const std::uint32_t file = handleOf(card, u"readme.txt");
    EXPECT_EQ(card.remove(file), CardRemoval::Removed);
    EXPECT_EQ(card.remove(file), CardRemoval::NotFound);
    EXPECT_FALSE(card.object(file).has_value());
    EXPECT_TRUE(fs::exists(folder / "readme.txt"));
}

TEST_F(FolderCardTest, DeletesFilesWhenItIsWritable)
{
    FolderCard card(folder, FolderAccess::Writable);
    EXPECT_EQ(card.remove(handleOf(card, u"100")), CardRemoval::NotEmpty);
    EXPECT_EQ(card.remove(handleOf(card, u"a.mov")), CardRemoval::Removed);
    EXPECT_EQ(card.remove(handleOf(card, u"100")), CardRemoval::Removed);
    EXPECT_FALSE(fs::exists(folder / "DCIM" / "100"));
    EXPECT_TRUE(fs::exists(folder / "DCIM"));
}

TEST_F(FolderCardTest, SaysSoWhenAFileCannotBeDeleted)
{
    FolderCard card(folder, FolderAccess::Writable);
    fs::remove(folder / "readme.txt");
    const std::uint32_t file = handleOf(card, u"readme.txt");
    EXPECT_EQ(card.remove(file), CardRemoval::Failed);
    EXPECT_TRUE(card.object(file).has_value());
}

TEST_F(FolderCardTest, DoesNotFollowLinksOutOfTheFolder)
{
    fs::create_symlink(outside.path() / "secret.txt", folder / "link.txt");
    fs::create_directory_symlink(outside.path(), folder / "way-out");
    const FolderCard card(folder);
    EXPECT_EQ(card.handles().size(), 4U);
}

TEST_F(FolderCardTest, DoesNotFollowALinkThatTakesAFilesPlaceLater)
{
    FolderCard card(folder);
    fs::remove(folder / "readme.txt");
    write(outside.path() / "5byte", "other");
    fs::create_symlink(outside.path() / "5byte", folder / "readme.txt");
    EXPECT_EQ(contentOf(card, handleOf(card, u"readme.txt")), "(unreadable)");
}

TEST_F(FolderCardTest, DoesNotFollowALinkThatTakesAFoldersPlaceLater)
{
    FolderCard card(folder, FolderAccess::Writable);
    write(outside.path() / "a.mov", "stolen");
    fs::rename(folder / "DCIM" / "100", folder / "moved");
    fs::create_directory_symlink(outside.path(), folder / "DCIM" / "100");
    EXPECT_EQ(contentOf(card, handleOf(card, u"a.mov")), "(unreadable)");
    EXPECT_EQ(card.remove(handleOf(card, u"a.mov")), CardRemoval::Failed);
    EXPECT_TRUE(fs::exists(outside.path() / "a.mov"));
}

TEST_F(FolderCardTest, LeavesOutWhatIsNeitherFileNorFolder)
{
    ASSERT_EQ(::mkfifo((folder / "pipe.mov").c_str(), 0600), 0);
    write(folder / ".hidden", "x");
    const FolderCard card(folder);
    EXPECT_EQ(card.handles().size(), 4U);
}

TEST_F(FolderCardTest, DoesNotWaitForAPipeThatTakesAFilesPlaceLater)
{
    FolderCard card(folder);
    fs::remove(folder / "readme.txt");
    ASSERT_EQ(::mkfifo((folder / "readme.txt").c_str(), 0600), 0);
    EXPECT_EQ(contentOf(card, handleOf(card, u"readme.txt")), "(unreadable)");
}

TEST_F(FolderCardTest, RefusesAFileThatHasShrunkOrGone)
{
    FolderCard card(folder);
    write(folder / "readme.txt", "hi");
    EXPECT_EQ(contentOf(card, handleOf(card, u"readme.txt")), "(unreadable)");
    fs::remove(folder / "readme.txt");
    EXPECT_EQ(contentOf(card, handleOf(card, u"readme.txt")), "(unreadable)");
}

TEST_F(FolderCardTest, MakesThumbnailsOfPictures)
{
    QImage image(800, 400, QImage::Format_RGB888);
    image.fill(Qt::red);
    ASSERT_TRUE(image.save(QString::fromStdString((folder / "p.jpg").string())));
    FolderCard card(folder);
    const std::uint32_t picture = handleOf(card, u"p.jpg");
    const CardObject object = card.details(picture).value();
    EXPECT_EQ(object.imageWidth, 800U);
    EXPECT_EQ(object.imageHeight, 400U);
    EXPECT_EQ(object.thumbnailWidth, 160U);
    EXPECT_EQ(object.thumbnailHeight, 80U);
    const ByteBuffer bytes = card.thumbnail(picture).value();
    EXPECT_EQ(bytes.size(), object.thumbnailSize);
    const QImage thumbnail = QImage::fromData(bytes.data(), static_cast<int>(bytes.size()));
    EXPECT_EQ(thumbnail.size(), QSize(160, 80));
    EXPECT_GT(qRed(thumbnail.pixel(80, 40)), 200);
}

TEST_F(FolderCardTest, HasNoThumbnailForWhatIsNoPicture)
{
    write(folder / "broken.jpg", "no picture");
    FolderCard card(folder);
    const std::uint32_t broken = handleOf(card, u"broken.jpg");
    EXPECT_EQ(card.details(broken)->thumbnailSize, 0U);
    EXPECT_EQ(card.thumbnail(broken), std::nullopt);
}

TEST_F(FolderCardTest, RefusesThumbnailsOfHugePictures)
{
    // A bitmap header alone: 20,000 by 20,000 pixels of one bit.
    const auto word = [](std::uint32_t value) {
        return std::string{static_cast<char>(value), static_cast<char>(value >> 8),
                           static_cast<char>(value >> 16), static_cast<char>(value >> 24)};
    };
    write(folder / "huge.bmp",
          "BM" + word(1000) + word(0) + word(62)                // size, reserved, data offset
              + word(40) + word(20'000) + word(20'000)          // header size, width, height
              + std::string("\x01\x00\x01\x00", 4)              // planes, bits per pixel
              + word(0) + word(0) + word(0) + word(0)           // compression … resolution
              + word(2) + word(0) + word(0) + word(0xFFFFFF));  // colours
    FolderCard card(folder);
    EXPECT_EQ(card.details(handleOf(card, u"huge.bmp"))->thumbnailSize, 0U);
}

TEST_F(FolderCardTest, RaisesAnErrorForAFolderThatIsNotThere)
{
    EXPECT_THROW(FolderCard(folder / "nowhere"), FileError);
    EXPECT_THROW(FolderCard(folder / "readme.txt"), FileError);
}

TEST_F(FolderCardTest, IsServedByTheSimulatedHost)
{
    const auto host = makeSimulatedHost({.folder = folder});
    EXPECT_EQ(host->stillImageInterfaces().size(), 1U);
    EXPECT_THROW(makeSimulatedHost({.folder = folder / "nowhere"}), FileError);
}

}  // namespace nivor::test
