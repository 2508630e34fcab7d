// PNG and PDF output of a drawing with one item of each kind: sizes, pages, and ink where the items are.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <sstream>

#include "host/paint/cairo_label.h"
#include "host/paint/export.h"
#include "orvex/document/headless.h"
#include "orvex/formats/drawing_file.h"
#include "tests/host/paint_support.h"

namespace Orvex {
namespace {

using OrvexTest::SourcePath;
using OrvexTest::TPicture;

constexpr double kDpi = 200.0;

class PaintExport : public ::testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(LoadDrawingFile(SourcePath("examples/drawings/all_kinds.json"), fDocument));
    }
    TPicture Paint(TQVLRasterOptions options = {}) {
        if (options.Dpi == 96) options.Dpi = static_cast<std::int32_t>(kDpi);
        std::vector<std::uint8_t> png;
        std::string error;
        EXPECT_TRUE(EncodePng(fDocument, options, png, error)) << error;
        return TPicture(png, options.Dpi * static_cast<double>(options.Scale));
    }
    TORXCairoLabel fDocument;
};

TEST_F(PaintExport, PngSizeFollowsResolutionAndScale) {
    struct TCase {
        std::int32_t Dpi;
        float Scale;
        int Side;  // the 200 mm label, rounded up to whole pixels
    };
    for (const TCase c :
         {TCase{96, 1.0f, 756}, TCase{150, 1.0f, 1182}, TCase{96, 2.0f, 1512}, TCase{72, 0.5f, 284}}) {
        SCOPED_TRACE(testing::Message() << c.Dpi << " dpi x " << c.Scale);
        TQVLRasterOptions options;
        options.Dpi = c.Dpi;
        options.Scale = c.Scale;
        std::vector<std::uint8_t> png;
        std::string error;
        ASSERT_TRUE(EncodePng(fDocument, options, png, error)) << error;
        const TPicture picture(png, c.Dpi * static_cast<double>(c.Scale));
        ASSERT_TRUE(picture.Valid());
        EXPECT_EQ(picture.Width(), c.Side);
        EXPECT_EQ(picture.Height(), c.Side);
        EXPECT_EQ(RasterSize(fDocument, options).Width, c.Side);
    }
}

TEST_F(PaintExport, InkWhereTheItemsAreAndNowhereElse) {
    const TPicture p = Paint();
    struct TSpot {
        const char* Name;
        double X, Y;  // millimetres
        std::uint8_t R, G, B;
    };
    const TSpot spots[] = {
        {"rectangle fill", 30, 65, 255, 230, 150},          {"circle fill", 125, 65, 150, 200, 255},
        {"ellipse fill", 170, 65, 200, 255, 200},           {"sector fill", 30, 100, 255, 180, 180},
        {"sector's empty quarter", 15, 115, 255, 255, 255}, {"triangle is not filled", 80, 72, 255, 255, 255},
        {"empty page corner", 3, 3, 255, 255, 255},         {"between rows", 100, 45, 255, 255, 255},
        {"paragraph background", 35, 155, 240, 240, 255},
    };
    for (const auto& s : spots) {
        SCOPED_TRACE(s.Name);
        const auto px = p.AtMM(s.X, s.Y);
        EXPECT_NEAR(px.R, s.R, 2);
        EXPECT_NEAR(px.G, s.G, 2);
        EXPECT_NEAR(px.B, s.B, 2);
    }
    // Outlines: the rectangle's left edge, the circle's top, the polygon's base.
    EXPECT_GT(p.DarkIn(9.8, 64, 10.2, 66), 0);
    EXPECT_GT(p.DarkIn(124, 49.8, 126, 50.2), 0);
    EXPECT_GT(p.DarkIn(75, 79.8, 85, 80.2), 0);
    // The codes are ink, and nothing strays into the margin between them.
    EXPECT_GT(p.DarkIn(130.2, 130.2, 132, 132), 20);  // the QR code's finder pattern
    EXPECT_GT(p.DarkIn(166, 131, 189, 154), 200);
    EXPECT_EQ(p.InkIn(157, 131, 163, 154), 0);
    EXPECT_GT(p.DarkIn(11, 166, 59, 185), 500);  // bars
}

TEST_F(PaintExport, DashesAlternateAlongTheLine) {
    // A 0.5 mm pen with the 2-2 pattern: dashes and gaps 2 mm long from the line's start at x = 10 mm.
    const TPicture p = Paint();
    for (double start = 10.0; start < 48.0; start += 4.0) {
        SCOPED_TRACE(start);
        EXPECT_TRUE(p.AtMM(start + 1.0, 15.0).Dark());
        EXPECT_TRUE(p.AtMM(start + 3.0, 15.0).White());
    }
}

TEST_F(PaintExport, ArrowHeadsPointAlongTheirLines) {
    const TPicture p = Paint();
    // The arrow line runs right to (190, 20) with a 6 mm filled head: ink just short of the tip and wide at
    // the head's back, none past the tip or beside the tip.
    EXPECT_TRUE(p.AtMM(189.5, 20.0).Dark());
    EXPECT_TRUE(p.AtMM(191.0, 20.0).White());
    EXPECT_TRUE(p.AtMM(185.5, 21.8).Dark());
    EXPECT_TRUE(p.AtMM(185.5, 18.2).Dark());
    EXPECT_TRUE(p.AtMM(189.5, 21.8).White());
    // The arc ends at (110, 25) travelling down, in its red terminator colour: the head lies above the tip.
    const auto red = p.AtMM(110.0, 23.0);
    EXPECT_GT(red.R, 150);
    EXPECT_LT(red.G, 80);
    EXPECT_TRUE(p.AtMM(110.0, 27.0).White());
    // A hollow circle at the polyline's start stays hollow: the line stops at its rim.
    EXPECT_TRUE(p.AtMM(60.0, 10.0).White());
    EXPECT_GT(p.DarkIn(58.3, 9.5, 58.7, 10.5), 0);
    // The link ends at the decision's left corner (140, 180) with a filled head.
    EXPECT_TRUE(p.AtMM(139.3, 180.0).Dark());
    EXPECT_TRUE(p.AtMM(138.0, 180.9).Dark());
}

TEST_F(PaintExport, TextsAreDrawnInsideTheirBoxes) {
    const TPicture p = Paint();
    const TORXBaseItem* caption = fDocument.GetItem(11);
    ASSERT_EQ(caption->ItemType(), TQVLItemType::itText);
    const TQVLRect box = caption->BoundsRect();
    const auto mm = [](std::int64_t base) { return static_cast<double>(base) / 1000.0; };
    const double l = mm(box.Left), t = mm(box.Top), r = mm(box.Right), b = mm(box.Bottom);
    EXPECT_GT(p.DarkIn(l, t, r, b), 300);
    EXPECT_EQ(p.InkIn(r + 0.5, t, 199, b), 0);  // the box is as wide as the glyphs
    EXPECT_GT(p.DarkIn(l, t, l + (r - l) / 5.0, b), 0);
    EXPECT_GT(p.DarkIn(r - (r - l) / 5.0, t, r, b), 0);
    // The arrow line's label, the dimension's measure, the flow texts and the rich text all show.
    EXPECT_GT(p.InkIn(166, 15, 174, 18.5), 10);
    EXPECT_GT(p.DarkIn(104, 96, 116, 99.5), 10);
    EXPECT_GT(p.DarkIn(82, 177, 98, 183), 10);
    EXPECT_GT(p.DarkIn(158, 177, 172, 183), 10);
    const auto marked = p.AtMM(87.5, 138.3);  // behind "marked": a yellow background
    EXPECT_GT(marked.R, 200);
    EXPECT_LT(marked.B, 60);
}

TEST_F(PaintExport, HiddenAndNonExportItemsAreLeftOut) {
    TORXBaseItem* rectangle = fDocument.GetItem(4);
    ASSERT_EQ(rectangle->ItemType(), TQVLItemType::itRectangle);
    TQVLayerOpts options = rectangle->Options();
    options.Exclude(TQVLayerOp::lopExport);
    rectangle->SetOptions(options);
    EXPECT_TRUE(Paint().AtMM(30, 65).White());
    TQVLRasterOptions edit;
    edit.Pass = TQVLDrawState::dsEdit;  // the editor still shows it
    EXPECT_FALSE(Paint(edit).AtMM(30, 65).White());
    options.Exclude(TQVLayerOp::lopVisible);
    rectangle->SetOptions(options);
    EXPECT_TRUE(Paint(edit).AtMM(30, 65).White());
}

TEST_F(PaintExport, AHeadlessDocumentPaintsTheSame) {
    TORXHeadlessLabel headless;
    ASSERT_TRUE(LoadDrawingFile(SourcePath("examples/drawings/all_kinds.json"), headless));
    std::vector<std::uint8_t> a, b;
    std::string error;
    ASSERT_TRUE(EncodePng(headless, {}, a, error)) << error;
    ASSERT_TRUE(EncodePng(fDocument, {}, b, error)) << error;
    EXPECT_EQ(a, b);
    EXPECT_EQ(headless.GetItemsCount(), fDocument.GetItemsCount());
}

TEST_F(PaintExport, TransparentLeavesThePageClear) {
    TQVLRasterOptions options;
    options.Transparent = true;
    const TPicture p = Paint(options);
    EXPECT_EQ(p.AtMM(3, 3).A, 0);
    EXPECT_EQ(p.AtMM(30, 65).A, 255);
}

TEST_F(PaintExport, UnusableOptionsAreRefused) {
    struct TCase {
        std::int32_t Dpi;
        float Scale;
        const char* Error;
    };
    for (const TCase c : {TCase{0, 1.0f, "resolution 0 dpi is outside 1 to 2400"},
                          TCase{96, 0.0f, "scale 0 is outside (0, 100]"},
                          TCase{2400, 100.0f, "a picture of 1889764 x 1889764 pixels is too large"}}) {
        SCOPED_TRACE(c.Error);
        TQVLRasterOptions options;
        options.Dpi = c.Dpi;
        options.Scale = c.Scale;
        std::vector<std::uint8_t> png{1, 2, 3};
        std::string error;
        EXPECT_FALSE(EncodePng(fDocument, options, png, error));
        EXPECT_EQ(error, c.Error);
    }
}

TEST_F(PaintExport, PdfIsOnePageOfThePaper) {
    std::vector<std::uint8_t> pdf;
    std::string error;
    ASSERT_TRUE(EncodePdf(fDocument, pdf, error)) << error;
    ASSERT_GT(pdf.size(), 1000u);
    EXPECT_EQ(std::string(pdf.begin(), pdf.begin() + 5), "%PDF-");
    const std::string text(pdf.begin(), pdf.end());
    const std::size_t box = text.find("/MediaBox [");
    ASSERT_NE(box, std::string::npos);
    std::istringstream numbers(text.substr(box + 11, 60));
    double x0 = -1, y0 = -1, width = 0, height = 0;
    numbers >> x0 >> y0 >> width >> height;
    EXPECT_EQ(x0, 0.0);
    EXPECT_EQ(y0, 0.0);
    EXPECT_NEAR(width, 595.28, 0.01);  // A4 in points
    EXPECT_NEAR(height, 841.89, 0.01);
    int pages = 0;  // page objects, not the page tree ("/Pages")
    for (std::size_t at = text.find("/Type /Page"); at != std::string::npos;
         at = text.find("/Type /Page", at + 1))
        pages += text.compare(at, 12, "/Type /Pages") == 0 ? 0 : 1;
    EXPECT_EQ(pages, 1);

    // pdfinfo, where poppler-utils is installed, reads the file as a viewer would.
    const std::string file = ::testing::TempDir() + "orvex_paint_kinds.pdf";
    ASSERT_TRUE(ExportPdf(fDocument, file, error)) << error;
    if (FILE* pipe = popen(("pdfinfo '" + file + "' 2>/dev/null").c_str(), "r")) {
        std::string out;
        char buffer[256];
        while (fgets(buffer, sizeof buffer, pipe) != nullptr) out += buffer;
        if (pclose(pipe) == 0) {
            const std::size_t at = out.find("Pages:");
            ASSERT_NE(at, std::string::npos) << out;
            EXPECT_EQ(std::stoi(out.substr(at + 6)), 1) << out;
            EXPECT_NE(out.find("595.276 x 841.89 pts (A4)"), std::string::npos) << out;
        }
    }
    std::remove(file.c_str());
}

TEST_F(PaintExport, PdfPageFollowsALabelLargerThanItsPaper) {
    fDocument.Measure().fLabelWidth = 300000;  // 300 mm does not fit on A4
    const TQVLPageSize page = PdfPageSize(fDocument);
    EXPECT_NEAR(page.Width, 300.0 / 25.4 * 72.0, 1e-6);
    EXPECT_NEAR(page.Height, 200.0 / 25.4 * 72.0, 1e-6);
    EXPECT_EQ(page.LabelX, 0.0);
    fDocument.Measure().fLabelWidth = 200000;
    const TQVLPageSize a4 = PdfPageSize(fDocument);
    EXPECT_NEAR(a4.LabelX, 5.0 / 25.4 * 72.0, 1e-6);  // the margins place the label
    EXPECT_NEAR(a4.LabelY, 5.0 / 25.4 * 72.0, 1e-6);
}

TEST_F(PaintExport, WriteFailuresAreReported) {
    std::string error;
    EXPECT_FALSE(ExportPng(fDocument, "/nonexistent-dir/x.png", {}, error));
    EXPECT_EQ(error, "/nonexistent-dir/x.png: cannot be written");
    EXPECT_FALSE(ExportPdf(fDocument, "/nonexistent-dir/x.pdf", error));
    EXPECT_EQ(error, "/nonexistent-dir/x.pdf: cannot be written");
}

}  // namespace
}  // namespace Orvex
