// Several processes that log into one folder.
#include "logging/FolderLock.h"
#include "logging/RollingLoggerFixture.h"

#include <set>
#include <vector>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace nivor;
using namespace nivor::test;

namespace {

constexpr int processCount = 4;
constexpr int recordsEach = 150;

class RollingLoggerProcesses : public RollingLoggerFixture {
protected:
    /// Each process has a logger that has chosen its file, as a program's has when it has been
    /// running for a while, and all of them begin at once.
    void writeRecordsInProcesses()
    {
        int ready[2];
        int gate[2];
        ASSERT_EQ(::pipe(ready), 0);
        ASSERT_EQ(::pipe(gate), 0);
        std::vector<pid_t> children;
        for (int process = 0; process < processCount; ++process) {
            const pid_t child = ::fork();
            if (child == 0) {
                ::close(gate[1]);
                writeRecords(process, ready[1], gate[0]);
                ::_exit(0);
            }
            children.push_back(child);
        }
        ::close(ready[1]);
        ::close(gate[0]);
        for (int process = 0; process < processCount; ++process) {
            char one = 0;
            ASSERT_EQ(::read(ready[0], &one, 1), 1);
        }
        ::close(ready[0]);
        ::close(gate[1]);  // opens it
        for (const pid_t child : children) {
            int status = 0;
            ::waitpid(child, &status, 0);
            EXPECT_EQ(status, 0);
        }
    }

    void writeRecords(int process, int ready, int gate) const
    {
        RollingLogger logger;
        logger.setLogBaseName("NIVOR File Transfer");
        logger.setSaveDirectory(folder());
        logger.selectLogFile();
        char one = 0;
        static_cast<void>(::write(ready, &one, 1));
        static_cast<void>(::read(gate, &one, 1));
        const std::string padding(3000, '.');
        for (int i = 0; i < recordsEach; ++i)
            logger.writeToFile("C", "p:", messageOf(process, i) + padding);
    }

    static std::string messageOf(int process, int i)
    {
        return "record " + std::to_string(process) + "/" + std::to_string(i) + " ";
    }

    [[nodiscard]] std::vector<std::string> missingRecords() const
    {
        const std::string all = textOf(log1()) + textOf(log2());
        std::vector<std::string> missing;
        for (int process = 0; process < processCount; ++process) {
            for (int i = 0; i < recordsEach; ++i) {
                if (all.find("<message>" + messageOf(process, i)) == std::string::npos)
                    missing.push_back(messageOf(process, i));
            }
        }
        return missing;
    }
};

TEST_F(RollingLoggerProcesses, LoseNoRecordWhenTheyBeginAtOnce)
{
    writeRecordsInProcesses();
    EXPECT_EQ(missingRecords(), std::vector<std::string>());
    EXPECT_FALSE(std::filesystem::exists(log2()));
}

TEST_F(RollingLoggerProcesses, LoseNoRecordWhenTheFileIsFullForAllOfThem)
{
    createFolder();
    // Room for about a tenth of the records.
    setFileOfSize(log1(), RollingLogger::fullSize - 200'000, earlier);
    setText(log2(), recordOf("2024-01-01T00:00:00Z"));
    writeRecordsInProcesses();
    EXPECT_EQ(missingRecords(), std::vector<std::string>());
    // Emptied, and once only.
    EXPECT_EQ(textOf(log2()).find("2024-01-01"), std::string::npos);
}

TEST_F(RollingLoggerProcesses, GoOnWhenOneOfThemKeepsTheFolderLocked)
{
    createFolder();
    const int folderDescriptor = ::open(folder().c_str(), O_RDONLY | O_DIRECTORY);
    ASSERT_EQ(::flock(folderDescriptor, LOCK_EX), 0);
    writeRecord();
    EXPECT_EQ(textOf(log1()), recordOf(nowStamp));
    ::close(folderDescriptor);
}

TEST_F(RollingLoggerProcesses, DoNotEmptyAFileWhileAnotherOneIsChoosing)
{
    createFolder();
    setFileOfSize(log1(), RollingLogger::fullSize - 1, nowStamp);
    setText(log2(), recordOf(earlier));
    writeRecord();  // takes the file that is almost full as the target
    const int folderDescriptor = ::open(folder().c_str(), O_RDONLY | O_DIRECTORY);
    ASSERT_EQ(::flock(folderDescriptor, LOCK_EX), 0);
    writeRecord();
    writeRecord();
    EXPECT_EQ(textOf(log2()), recordOf(earlier));
    EXPECT_TRUE(
        textOf(log1()).ends_with(recordOf(nowStamp) + recordOf(nowStamp) + recordOf(nowStamp)));
    ::close(folderDescriptor);
    writeRecord();
    EXPECT_EQ(textOf(log2()), recordOf(nowStamp));
}

TEST(FolderLock, IsHeldByOneAtATime)
{
    const TemporaryDirectory folder;
    {
        const FolderLock first(folder.path(), {});
        EXPECT_TRUE(first.isHeld());
        const FolderLock second(folder.path(), {});
        EXPECT_FALSE(second.isHeld());
        EXPECT_TRUE(second.isOthers());
    }
    EXPECT_TRUE(FolderLock(folder.path(), {}).isHeld());
}

TEST(FolderLock, OfAMissingFolderIsNobodys)
{
    const FolderLock lock("/nowhere", {});
    EXPECT_FALSE(lock.isHeld());
    EXPECT_FALSE(lock.isOthers());
}

}  // namespace
