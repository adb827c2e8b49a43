#include "logging/RecordText.h"

#include <gtest/gtest.h>

using namespace nivor;

namespace {

TEST(RecordText, WhatHarmsNoReaderStays)
{
    for (const std::string text :
         {"", "IMG_0001.JPG", "<b>&\"\t\r</b>", "<log time", "log time=\""}) {
        EXPECT_FALSE(hasRecordMarks(text)) << text;
        EXPECT_EQ(withoutRecordMarks(text), text);
    }
    const std::string withTerminator("A\0", 2);
    EXPECT_EQ(withoutRecordMarks(withTerminator), withTerminator);
}

TEST(RecordText, ALineFeedIsShownByItsSign)
{
    EXPECT_TRUE(hasRecordMarks("A\nB"));
    EXPECT_EQ(withoutRecordMarks("A\nB\n"), "A\u240AB\u240A");
}

TEST(RecordText, TheMarkOfARecordLosesItsBracket)
{
    EXPECT_TRUE(hasRecordMarks("<log time=\"2099-01-01T00:00:00Z\">"));
    EXPECT_EQ(withoutRecordMarks("<<log time=\"x"), "<\u2039log time=\"x");
}

}  // namespace
