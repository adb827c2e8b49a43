#include "foundation/Errors.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace nivor::test {
namespace {

TEST(Errors, NameTheOperationToOverride)
{
    EXPECT_STREQ(InternalInconsistencyError::mustOverride("tryParse:").what(),
                 "Must override tryParse: in your subclass");
}

TEST(Errors, KeepTheErrnoOfTheFileSystem)
{
    const FileError error(ENOSPC, "DSC_0001.MOV");
    EXPECT_EQ(error.code(), std::errc::no_space_on_device);
    EXPECT_EQ(std::string(error.what()).find("DSC_0001.MOV"), 0U);
}

TEST(Errors, AreToldApart)
{
    EXPECT_THROW(throw RangeError("19 bytes"), std::out_of_range);
    EXPECT_THROW(throw InternalInconsistencyError("a bug"), std::logic_error);
    EXPECT_THROW(throw FileError(EIO, "a disk"), std::system_error);
}

}  // namespace
}  // namespace nivor::test
