#include "datasets/TrimmingNullCharacters.h"

#include "support/Text.h"

#include <gtest/gtest.h>

#include <string_view>

namespace nivor::test {
namespace {

TEST(TrimmingNullCharacters, LeavesATextWithoutNulls)
{
    EXPECT_EQ(NVX_stringByTrimmingNullCharacters(text(u"abc")), text(u"abc"));
}

TEST(TrimmingNullCharacters, CutsAtTheFirstNull)
{
    EXPECT_EQ(NVX_stringByTrimmingNullCharacters(text({u"ab\0c", 4})), text(u"ab"));
    EXPECT_EQ(NVX_stringByTrimmingNullCharacters(text({u"a\0b\0", 4})), text(u"a"));
    EXPECT_EQ(NVX_stringByTrimmingNullCharacters(text({u"abc\0", 4})), text(u"abc"));
}

TEST(TrimmingNullCharacters, LeavesATextThatBeginsWithANull)
{
    EXPECT_EQ(NVX_stringByTrimmingNullCharacters(text({u"\0abc", 4})), text({u"\0abc", 4}));
    EXPECT_EQ(NVX_stringByTrimmingNullCharacters(text({u"\0abc\0", 5})), text({u"\0abc\0", 5}));
    EXPECT_EQ(NVX_stringByTrimmingNullCharacters(text({u"\0", 1})), text({u"\0", 1}));
}

TEST(TrimmingNullCharacters, LeavesAnEmptyText)
{
    EXPECT_EQ(NVX_stringByTrimmingNullCharacters(QLatin1String("")), QLatin1String(""));
    EXPECT_TRUE(NVX_stringByTrimmingNullCharacters(QString()).isNull());
}

TEST(TrimmingNullCharacters, LeavesTheTextItWasGiven)
{
    const QString whole = text({u"ab\0c", 4});
    static_cast<void>(NVX_stringByTrimmingNullCharacters(whole));
    EXPECT_EQ(whole.size(), 4);
}

}  // namespace
}  // namespace nivor::test
