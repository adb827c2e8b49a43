#include "content/PortableFileName.h"

#include "support/Text.h"

#include <gtest/gtest.h>

using namespace nivor;
using nivor::test::text;

namespace {

TEST(PortableFileName, AnOrdinaryNameStays)
{
    for (const char* name : {"IMG_0001.JPG", "写真 1.jpg", ".profile", "-rf", "CONCERT.JPG",
                             "icon.con", "COM10.TXT", "a.b c.d"})
        EXPECT_EQ(portableFileName(text(name)), text(name)) << name;
}

TEST(PortableFileName, WhatOtherSystemsForbidBecomesAnUnderscore)
{
    EXPECT_EQ(portableFileName(text("a\\b:c*d?e\"f<g>h|i")), text("a_b_c_d_e_f_g_h_i"));
    EXPECT_EQ(portableFileName(text("C:\\x")), text("C__x"));
}

TEST(PortableFileName, NoDotOrBlankStaysAtTheEnd)
{
    EXPECT_EQ(portableFileName(text("a. .")), text("a___"));
    EXPECT_EQ(portableFileName(text("...")), text("___"));
    EXPECT_EQ(portableFileName(text(" ")), text("_"));
}

TEST(PortableFileName, ADevicesNameIsNoFiles)
{
    for (const char* name : {"CON", "nul.txt", "Aux.tar.gz", "LPT1", "com9 .x"})
        EXPECT_EQ(portableFileName(text(name)), u'_' + text(name)) << name;
}

TEST(PortableFileName, TheLongestNameStaysTheLongest)
{
    const QString longest = text("CON.") + QString(251, u'a');
    EXPECT_EQ(portableFileName(longest), u'_' + longest.left(254));
}

}  // namespace
