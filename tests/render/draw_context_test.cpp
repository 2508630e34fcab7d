#include "orvex/render/draw_context.h"

#include <gtest/gtest.h>

using namespace Orvex;

namespace {
TORXBaseDraw Surface(std::int32_t dpi, std::int64_t scale = 1) {
    TORXBaseDraw d;
    d.fDpix = dpi;
    d.fDpiy = dpi * 2;
    d.fDrawScale = scale;
    return d;
}
}  // namespace

TEST(DrawContext, OneInchOfTheDrawingIsDpiPixels) {
    for (std::int64_t scale : {1, 2, 50}) {
        SCOPED_TRACE(scale);
        const TORXBaseDraw d = Surface(300, scale);
        EXPECT_FLOAT_EQ(d.GetDrawX(25400 * scale), 300.0f);
        EXPECT_FLOAT_EQ(d.GetDrawY(25400 * scale), 600.0f);
        EXPECT_FLOAT_EQ(DrawFromBaseX(25400 * scale, d), 300.0f);
        EXPECT_EQ(PrintFromBaseY(25400 * scale, d), 600);
    }
}

TEST(DrawContext, PrintConversionsRoundHalfToEven) {
    const TORXBaseDraw d = Surface(100);
    EXPECT_EQ(PrintFromBaseX(127, d), 0);  // 0.5 pixel
    EXPECT_EQ(PrintFromBaseX(381, d), 2);  // 1.5 pixels
    TQVLPto p;
    p.SetBase(254, 381);
    EXPECT_EQ(p.PrintX(d), 1);
    EXPECT_EQ(p.PrintY(d), 3);
    EXPECT_FLOAT_EQ(p.DrawX(d), 1.0f);
    EXPECT_FLOAT_EQ(p.DrawGapX(254, d), 2.0f);
}

TEST(DrawContext, PenWidthsKeepAOnePixelFloorOnScreenOnly) {
    const TORXBaseDraw at96 = Surface(96);
    EXPECT_FLOAT_EQ(at96.DrawBasePtoX(0.01f), 1.0f);
    EXPECT_FLOAT_EQ(at96.DrawBasePtoX(0.0f), 1.0f);
    EXPECT_FLOAT_EQ(BasePtoX(0.01f, at96), 1.0f);
    EXPECT_NEAR(at96.BasePtoX(0.01f), 0.0378f, 1e-4f);
    EXPECT_EQ(at96.PrintBasePtoX(0.0f), 0);
    EXPECT_FLOAT_EQ(Surface(100).DrawBasePtoX(0.254f), 1.0f);
    EXPECT_FLOAT_EQ(Surface(300).DrawBasePtoX(0.254f), 3.0f);
    EXPECT_EQ(Surface(300).PrintBasePtoX(0.254f), 3);
    EXPECT_EQ(Surface(300).PrintBasePtoY(0.254f), 6);
}

TEST(DrawContext, AZeroScaleCountsAsFullSize) {
    const TORXBaseDraw d = Surface(96, 0);
    EXPECT_FLOAT_EQ(d.GetDrawX(25400), 96.0f);
}

TEST(DrawConf, IniLeavesTheFontAndIniFontLeavesThePen) {
    TQVLDrawConf c;
    c.fRound = c.fScalePen = c.fPath = c.fIniPath = true;
    c.fFontName = "Courier";
    c.Ini(0xFF112233, 0xFF445566, false, TQVLineType::ii22, 0.5f);
    EXPECT_FALSE(c.fRound || c.fScalePen || c.fPath || c.fIniPath);
    EXPECT_EQ(c.fLinType, TQVLineType::ii22);
    EXPECT_EQ(c.fFontName, "Courier");
    c.IniFont(0xFF00FF00, true, true, false, "Verdana", 3.0f, 2.0f);
    EXPECT_EQ(c.fFColor, 0xFF112233u);
    EXPECT_EQ(c.fFontName, "Verdana");
    EXPECT_TRUE(c.fBold && c.fItalic && !c.fUnderline);
    c.Reset();
    EXPECT_EQ(c.fFColor, 0xFF000000u);
    EXPECT_EQ(c.fBColor, 0xFFFFFFFFu);
    EXPECT_TRUE(c.fFill);
    EXPECT_FLOAT_EQ(c.fPenWidth, 0.1f);
    EXPECT_EQ(c.fFontName, "Arial");
    EXPECT_FLOAT_EQ(c.fFontHeight, 5.0f);
}
