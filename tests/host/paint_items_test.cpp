// The Cairo item classes on their own surfaces: the passes' pen rules, the active-surface guard, turned
// texts, codes that cannot be encoded, Pango's text metrics and the command line's picture outputs.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include "host/paint/cairo_label.h"
#include "host/paint/export.h"
#include "orvex/formats/drawing_file.h"
#include "orvex/items/text_metrics.h"
#include "tests/host/paint_support.h"

namespace Orvex {
namespace {

using OrvexTest::TPicture;
using OrvexTest::TSurfacePtr;

constexpr double kDpi = 254.0;  // ten pixels per millimetre

std::string Drawing(const std::string& items) {
    return R"({"Version":3200,"EditorMode":2,"Units":0,"Measures":{"LabelWidth":20.0,"LabelHeight":20.0,"DrawScale":1},
      "BackSurface":{"Color":{"R":255,"G":255,"B":255,"A":255},"ToColor":{"R":255,"G":255,"B":255,"A":255},"Print":true},
      "Items":[)" +
           items + "]}";
}

std::string Item(int type, const std::string& points, const std::string& extra) {
    return R"({"Type":)" + std::to_string(type) +
           R"(,"Color":{"R":0,"G":0,"B":0,"A":255},"Options":{"Visible":true,"Print":true,"Selectable":true,"Export":true},"Points":)" +
           points + extra + "}";
}

// Paints every item of the document in one pass on a 20 mm square picture.
TPicture PaintPass(const TORXBaseLabel& document, TQVLDrawState pass) {
    TSurfacePtr surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 200, 200));
    cairo_t* cr = cairo_create(surface.get());
    cairo_set_source_rgb(cr, 1, 1, 1);
    cairo_paint(cr);
    {
        TCairoDraw draw(cr);
        draw.fDpix = draw.fDpiy = static_cast<std::int32_t>(kDpi);
        draw.fState = pass;
        for (std::int32_t i = 0; i < document.GetItemsCount(); ++i) {
            if (pass == TQVLDrawState::dsPrint)
                document.GetItem(i)->PrintElement(draw);
            else
                document.GetItem(i)->DrawElement(draw);
        }
    }
    cairo_destroy(cr);
    cairo_surface_flush(surface.get());
    return TPicture(std::move(surface), kDpi);
}

TEST(PaintItems, AZeroPenShowsOnScreenAndPrintsNothing) {
    TORXCairoLabel document;
    ASSERT_TRUE(LoadDrawingText(Drawing(Item(2, R"([{"X":2,"Y":10},{"X":18,"Y":10}])", R"(,"PenWidth":0)")),
                                "t", document));
    EXPECT_GT(PaintPass(document, TQVLDrawState::dsEdit).InkIn(5, 9.8, 15, 10.2), 100);
    EXPECT_EQ(PaintPass(document, TQVLDrawState::dsPrint).InkIn(0, 0, 19.9, 19.9), 0);
}

TEST(PaintItems, PenWidthsAreMillimetresInBothPasses) {
    TORXCairoLabel document;
    ASSERT_TRUE(LoadDrawingText(Drawing(Item(2, R"([{"X":2,"Y":10},{"X":18,"Y":10}])", R"(,"PenWidth":1.0)")),
                                "t", document));
    for (const auto pass : {TQVLDrawState::dsEdit, TQVLDrawState::dsPrint}) {
        SCOPED_TRACE(static_cast<int>(pass));
        const TPicture p = PaintPass(document, pass);
        EXPECT_TRUE(p.AtMM(10, 9.6).Dark());
        EXPECT_TRUE(p.AtMM(10, 10.4).Dark());
        EXPECT_TRUE(p.AtMM(10, 8.8).White());
        EXPECT_TRUE(p.AtMM(10, 11.2).White());
    }
}

TEST(PaintItems, OnlyTheActiveCairoSurfaceIsPaintedOn) {
    TORXCairoLabel document;
    ASSERT_TRUE(LoadDrawingText(
        Drawing(Item(6, R"([{"X":2,"Y":2},{"X":18,"Y":18}])",
                     R"(,"PenWidth":1,"Filled":true,"BackColor":{"R":0,"G":0,"B":0,"A":255})")),
        "t", document));
    TSurfacePtr surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 200, 200));
    cairo_t* cr = cairo_create(surface.get());
    TORXBaseDraw plain;  // not bound to any Cairo context
    {
        TCairoDraw outer(cr);
        {
            TCairoDraw inner(cr);
            EXPECT_EQ(TCairoDraw::Active(outer), nullptr);
            EXPECT_EQ(TCairoDraw::Active(inner), &inner);
        }
        EXPECT_EQ(TCairoDraw::Active(outer), &outer);
        document.GetItem(0)->Draw(plain);
        document.GetItem(0)->Print(plain);
    }
    EXPECT_EQ(TCairoDraw::Active(plain), nullptr);
    cairo_destroy(cr);
    const TPicture p(std::move(surface), kDpi);
    EXPECT_EQ(p.At(100, 100).A, 0);  // nothing was painted
}

TEST(PaintItems, ATurnedTextStandsInItsTurnedBox) {
    TORXCairoLabel document;
    const std::string text =
        R"(,"Text":"TURNED","Font":"Arial","FontHeight":3,"FontColor":{"R":0,"G":0,"B":0,"A":255})";
    ASSERT_TRUE(LoadDrawingText(
        Drawing(Item(10, R"([{"X":8,"Y":2},{"X":12,"Y":18}])", R"(,"Angle":1)" + text)), "t", document));
    const TQVLRect box = document.GetItem(0)->BoundsRect();
    EXPECT_GT(box.GetHeight(), box.GetWidth());  // a quarter turn makes the box tall
    const TPicture p = PaintPass(document, TQVLDrawState::dsEdit);
    const auto mm = [](std::int64_t base) { return static_cast<double>(base) / 1000.0; };
    EXPECT_GT(p.DarkIn(mm(box.Left), mm(box.Top), mm(box.Right), mm(box.Bottom)), 100);
    EXPECT_EQ(p.InkIn(mm(box.Right) + 0.3, 0, 19.9, 19.9), 0);
    // The letters run down the box: ink in its top and bottom fifths.
    const double h = mm(box.GetHeight()) / 5.0;
    EXPECT_GT(p.DarkIn(mm(box.Left), mm(box.Top), mm(box.Right), mm(box.Top) + h), 0);
    EXPECT_GT(p.DarkIn(mm(box.Left), mm(box.Bottom) - h, mm(box.Right), mm(box.Bottom)), 0);
}

TEST(PaintItems, DataACodeCannotTakeShowsACrossedBox) {
    // EAN (symbology 13) takes digits only.
    TORXCairoLabel document;
    ASSERT_TRUE(
        LoadDrawingText(Drawing(Item(20, R"([{"X":2,"Y":2},{"X":18,"Y":18}])",
                                     R"(,"PenWidth":0.3,"PolyType":1,"BarcodeType":13,"Data":"letters")")),
                        "t", document));
    const TPicture p = PaintPass(document, TQVLDrawState::dsEdit);
    EXPECT_TRUE(p.AtMM(10, 10).Dark());  // where the diagonals cross
    EXPECT_TRUE(p.AtMM(10, 6).White());
    EXPECT_GT(p.DarkIn(1.9, 5, 2.1, 15), 0);  // the frame
}

TEST(PaintItems, ADataBoundItemWithoutDataShowsItsTemplate) {
    TORXCairoLabel document;
    ASSERT_TRUE(LoadDrawingText(
        Drawing(Item(20, R"([{"X":2,"Y":2},{"X":18,"Y":18}])",
                     R"(,"PolyType":2,"FillType":1,"Field":"url","Data":"https://example.org")")),
        "t", document));
    ASSERT_TRUE(document.GetItem(0)->IsData());
    TQVLRasterOptions options;
    options.Dpi = 254;
    std::vector<std::uint8_t> png;
    std::string error;
    ASSERT_TRUE(EncodePng(document, options, png, error)) << error;
    EXPECT_GT(TPicture(png, kDpi).DarkIn(2, 2, 18, 18), 2000);  // the QR code of the template's value
}

TEST(PaintItems, PangoMeasuresTextsWhileACairoDocumentLives) {
    TQVLFont font;
    font.FontHeight = 5.0f;
    const ITextMetrics& before = QVLTextMetrics();
    EXPECT_EQ(before.TextWidth("WWWW", font), before.TextWidth("iiii", font));  // the approximation
    {
        TORXCairoLabel document;
        const ITextMetrics& pango = QVLTextMetrics();
        EXPECT_GT(pango.TextWidth("WWWW", font), 2 * pango.TextWidth("iiii", font));
        EXPECT_EQ(pango.TextWidth("", font), 0);
        font.FontHeight = 10.0f;
        const std::int64_t twice = pango.TextWidth("Orvex", font);
        font.FontHeight = 5.0f;
        EXPECT_NEAR(static_cast<double>(twice), 2.0 * static_cast<double>(pango.TextWidth("Orvex", font)),
                    2.0);
        EXPECT_GT(pango.LineHeight(font), pango.Ascent(font));
        EXPECT_GT(pango.Ascent(font), 2500);  // most of a 5 mm font is above its baseline
    }
    EXPECT_EQ(&QVLTextMetrics(), &before);
}

TEST(PaintItems, TheDrawingScaleShrinksItemsOnTheLabelsPaper) {
    TORXCairoLabel document;
    ASSERT_TRUE(LoadDrawingText(Drawing(Item(6, R"([{"X":0,"Y":0},{"X":100,"Y":100}])",
                                             R"(,"Filled":true,"BackColor":{"R":0,"G":0,"B":0,"A":255})")),
                                "t", document));
    document.Measure().fDrawScale = 10;  // 100 mm of a 1:10 drawing are 10 mm of paper
    TQVLRasterOptions options;
    options.Dpi = 254;
    EXPECT_EQ(RasterSize(document, options).Width, 200);  // the 20 mm label stays 20 mm
    std::vector<std::uint8_t> png;
    std::string error;
    ASSERT_TRUE(EncodePng(document, options, png, error)) << error;
    const TPicture p(png, kDpi);
    EXPECT_TRUE(p.AtMM(5, 5).Dark());
    EXPECT_TRUE(p.AtMM(15, 15).White());
}

TEST(PaintItems, ThePictureGrowsToItemsBeyondTheLabel) {
    TORXCairoLabel document;
    ASSERT_TRUE(LoadDrawingText(Drawing(Item(2, R"([{"X":-5,"Y":10},{"X":30,"Y":10}])", R"(,"PenWidth":1)")),
                                "t", document));
    TQVLRasterOptions options;
    options.Dpi = 254;
    const TQVLPixelSize size = RasterSize(document, options);
    EXPECT_EQ(size.Width, 360);  // from -5.5 to 30.5 mm, the pen's half width included
    EXPECT_EQ(size.Height, 200);
    std::vector<std::uint8_t> png;
    std::string error;
    ASSERT_TRUE(EncodePng(document, options, png, error)) << error;
    const TPicture p(png, kDpi);
    EXPECT_TRUE(p.AtMM(1.0, 10).Dark());  // x = -4.5 mm of the drawing
    EXPECT_TRUE(p.AtMM(35.0, 10).Dark());
}

// The command line writes pictures by the output's extension.
int RunCli(const std::string& args) {
    FILE* pipe = popen((std::string(ORVEX_CLI_PATH) + " " + args + " 2>/dev/null").c_str(), "r");
    if (pipe == nullptr) return -1;
    char buffer[256];
    while (fgets(buffer, sizeof buffer, pipe) != nullptr) {
    }
    const int status = pclose(pipe);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(PaintItems, ConvertWritesPngAndPdf) {
    const std::string input = OrvexTest::SourcePath("examples/drawings/all_kinds.json");
    const auto dir = std::filesystem::temp_directory_path() / ("orvex_paint_" + std::to_string(getpid()));
    std::filesystem::create_directories(dir);
    const std::string png = (dir / "kinds.PNG").string();
    const std::string pdf = (dir / "kinds.pdf").string();
    EXPECT_EQ(RunCli("convert '" + input + "' -o '" + png + "' --dpi 48 --scale 1.5"), 0);
    TSurfacePtr surface(cairo_image_surface_create_from_png(png.c_str()));
    ASSERT_EQ(cairo_surface_status(surface.get()), CAIRO_STATUS_SUCCESS);
    EXPECT_EQ(cairo_image_surface_get_width(surface.get()), 567);  // 200 mm at 72 pixels per inch
    EXPECT_EQ(RunCli("convert '" + input + "' -o '" + pdf + "'"), 0);
    EXPECT_GT(std::filesystem::file_size(pdf), 1000u);
    EXPECT_EQ(RunCli("convert '" + input + "' -o '" + png + "' --dpi 0"), 2);
    EXPECT_EQ(RunCli("convert '" + input + "' -o '" + (dir / "missing" / "x.pdf").string() + "'"), 2);
    std::filesystem::remove_all(dir);
}

}  // namespace
}  // namespace Orvex
