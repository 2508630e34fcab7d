#include <gtest/gtest.h>

#include "orvex/core/types.h"

using namespace Orvex;

TEST(Paper, LookUpIsCaseInsensitive) {
    float w = -1, h = -1;
    EXPECT_EQ(GetPaperSize("a4", w, h), 9);
    EXPECT_FLOAT_EQ(w, 210.0f);
    EXPECT_FLOAT_EQ(h, 297.0f);
    EXPECT_EQ(GetPaperSize("Letter", w, h), 1);
    EXPECT_FLOAT_EQ(w, 215.9f);
    EXPECT_EQ(GetPaperSize("sobre b6", w, h), 35);
    EXPECT_GT(w, h);  // wider than high, as printers define it
    EXPECT_EQ(GetPaperSize("B4", w, h), 12);
    EXPECT_FLOAT_EQ(h, 354.0f);
    EXPECT_EQ(GetPaperSize("B4 (ISO)", w, h), 42);
    EXPECT_FLOAT_EQ(h, 353.0f);
}

TEST(Paper, UnknownNameLeavesTheSizeAlone) {
    float w = 1.5f, h = 2.5f;
    EXPECT_EQ(GetPaperSize("A7", w, h), -1);
    EXPECT_EQ(w, 1.5f);
    EXPECT_EQ(h, 2.5f);
    EXPECT_EQ(GetPaperSize("", w, h), -1);
}

TEST(Paper, UserIsTheLastOfTwentySeven) {
    ASSERT_EQ(PaperSizes().size(), 27u);
    EXPECT_EQ(UserPaperIndex(), 26);
    EXPECT_EQ(PaperSizes()[26].Name, "User");
    EXPECT_EQ(PaperSizes()[26].Code, 256);
}
