#include "orvex/items/svg_style.h"

#include <gtest/gtest.h>

using namespace Orvex;

TEST(SvgStyle, NumbersAreShortAndStable) {
    EXPECT_EQ(SvgNumber(12.0), "12");
    EXPECT_EQ(SvgNumber(0.1 + 0.2), "0.3");
    EXPECT_EQ(SvgNumber(-0.0001), "0");
    EXPECT_EQ(SvgNumber(2.0625), "2.062");  // an exact half goes to the even neighbour
    EXPECT_EQ(SvgLength(25400, TQVLUnits::unINCH), "1");
    EXPECT_EQ(SvgLength(1500, TQVLUnits::unMM), "1.5");
}

TEST(SvgStyle, EscapesMarkupAndDropsForbiddenControls) {
    EXPECT_EQ(SvgEscape("a<b & \"c\" 'd'>"), "a&lt;b &amp; &quot;c&quot; &apos;d&apos;&gt;");
    EXPECT_EQ(SvgEscape(std::string("x\x01y\tz", 5)), "xy\tz");
}

TEST(SvgStyle, StrokesCarryOpacityAndDashes) {
    EXPECT_EQ(SvgStroke(0xFF102030, 0.5f, TQVLineType::iiSolid, TQVLUnits::unMM),
              " stroke=\"#102030\" stroke-width=\"0.5\"");
    EXPECT_EQ(SvgStroke(0x80FF0000, 2.0f, TQVLineType::ii21, TQVLUnits::unMM),
              " stroke=\"#FF0000\" stroke-width=\"2\" stroke-opacity=\"0.502\" stroke-dasharray=\"4 2\"");
    // Thin pens still get dashes a viewer can see: the pattern's unit is at least 1 mm.
    EXPECT_EQ(SvgStroke(0xFF000000, 0.0f, TQVLineType::ii411, TQVLUnits::unMM),
              " stroke=\"#000000\" stroke-width=\"0.1\" stroke-dasharray=\"4 1 1 1\"");
    EXPECT_EQ(SvgFill(0xFFFFFFFF, false), " fill=\"none\"");
    EXPECT_EQ(SvgFill(0x00FFFFFF, true), " fill=\"none\"");
    EXPECT_EQ(SvgFill(0xFF00FF00, true), " fill=\"#00FF00\"");
}

TEST(SvgStyle, EachTerminatorIsDefinedOnce) {
    std::vector<std::string> defs;
    EXPECT_EQ(SvgTerminatorMarker(TQVLTermType::ttNone, 0xFF000000, defs), "");
    const std::string a = SvgTerminatorMarker(TQVLTermType::ttFillArrow, 0xFF000000, defs);
    const std::string b = SvgTerminatorMarker(TQVLTermType::ttFillArrow, 0xFF000000, defs);
    const std::string c = SvgTerminatorMarker(TQVLTermType::ttFillArrow, 0xFFFF0000, defs);
    EXPECT_EQ(a, b);
    EXPECT_NE(a, c);
    ASSERT_EQ(defs.size(), 2u);
    EXPECT_NE(defs[0].find("orient=\"auto-start-reverse\""), std::string::npos);
    EXPECT_EQ(a, "url(#term4_FF000000)");
}
