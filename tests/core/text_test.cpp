#include "orvex/core/text.h"

#include <gtest/gtest.h>

using namespace Qvl::Utils;

TEST(Text, TrimAndCase) {
    EXPECT_EQ(Trim(" \t a b \r\n"), "a b");
    EXPECT_EQ(Trim("   "), "");
    EXPECT_TRUE(SameTextIgnoringCase("Letter", "LETTER"));
    EXPECT_FALSE(SameTextIgnoringCase("Letter", "Letters"));
    EXPECT_TRUE(StartsWithIgnoringCase("claRed", "CLA"));
    EXPECT_EQ(ToLowerAscii("ÄbC"), "Äbc");  // only ASCII folds
}

TEST(Text, Utf16LengthCountsSurrogatePairs) {
    EXPECT_EQ(Utf16Length("abc"), 3u);
    EXPECT_EQ(Utf16Length("é"), 1u);
    EXPECT_EQ(Utf16Length("€"), 1u);
    EXPECT_EQ(Utf16Length("😀"), 2u);
    EXPECT_EQ(Utf16Length("a\xFF"), 2u);
}

TEST(Text, Utf8Validation) {
    EXPECT_TRUE(IsValidUtf8("Grüße 😀"));
    EXPECT_FALSE(IsValidUtf8("\xC0\xAF"));          // overlong
    EXPECT_FALSE(IsValidUtf8("\xED\xA0\x80"));      // a surrogate
    EXPECT_FALSE(IsValidUtf8("\xE2\x82"));          // cut short
    EXPECT_FALSE(IsValidUtf8("\xF4\x90\x80\x80"));  // beyond U+10FFFF
}

TEST(Text, DecodeTextFileFallsBackToWindows1252) {
    EXPECT_EQ(DecodeTextFile("\xEF\xBB\xBFgraph TD"), "graph TD");
    EXPECT_EQ(DecodeTextFile("Caf\xE9 \x80"), "Café €");
    EXPECT_EQ(DecodeTextFile("Café"), "Café");
}

TEST(Text, Base64EncodePadsToWholeQuads) {
    EXPECT_EQ(Base64Encode(""), "");
    EXPECT_EQ(Base64Encode("f"), "Zg==");
    EXPECT_EQ(Base64Encode("fo"), "Zm8=");
    EXPECT_EQ(Base64Encode("foo"), "Zm9v");
    EXPECT_EQ(Base64Encode("foobar"), "Zm9vYmFy");
    EXPECT_EQ(Base64Encode(std::string("\xFF\x00\x80", 3)), "/wCA");
}
