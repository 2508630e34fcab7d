// A rich text breaks at the same places when painted with Cairo and when written as SVG: tricky texts in a
// narrow box, with Pango's metrics, compared line by line.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/paint/cairo_label.h"
#include "orvex/items/rich_text_item.h"
#include "orvex/items/rich_text_layout.h"
#include "orvex/items/text_metrics.h"
#include "tests/host/paint_support.h"

namespace Orvex {
namespace {

using OrvexTest::TPicture;
using OrvexTest::TSurfacePtr;

constexpr double kDpi = 254.0;  // ten pixels per millimetre
constexpr double kBoxLeft = 2.0, kBoxTop = 2.0, kBoxRight = 16.0, kBoxBottom = 38.0;  // mm

TPicture Paint(TORXBaseItem& item) {
    TSurfacePtr surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 300, 400));
    cairo_t* cr = cairo_create(surface.get());
    cairo_set_source_rgb(cr, 1, 1, 1);
    cairo_paint(cr);
    {
        TCairoDraw draw(cr);
        draw.fDpix = draw.fDpiy = static_cast<std::int32_t>(kDpi);
        draw.fState = TQVLDrawState::dsEdit;
        item.DrawElement(draw);
    }
    cairo_destroy(cr);
    cairo_surface_flush(surface.get());
    return TPicture(std::move(surface), kDpi);
}

// The texts of the lines of the SVG writer's <text>: a run placed with x and y starts a line.
std::vector<std::string> SvgLines(const TORXBaseItem& item) {
    std::vector<std::string> defs, body;
    item.WriteSVG(defs, body, TQVLExportSVG::esFile, 1.0f, true);
    std::vector<std::string> lines;
    for (const std::string& part : body) {
        for (std::size_t at = part.find("<tspan"); at != std::string::npos;
             at = part.find("<tspan", at + 1)) {
            const std::size_t open = part.find('>', at);
            const std::size_t close = part.find("</tspan>", open);
            if (part.compare(at, 9, "<tspan x=") == 0 || lines.empty()) lines.emplace_back();
            lines.back() += part.substr(open + 1, close - open - 1);
        }
    }
    return lines;
}

TEST(RichTextPaint, PainterAndSvgBreakTheSameLines) {
    const char* const texts[] = {
        "Antidisestablishmentarianism",  // one word wider than the box
        "plain <B>bold and</B> <I>italic words</I> <B><I>both at once</I></B>",  // runs cut at their spaces
        "first<BR><BR>third line, long enough to wrap<BR>",  // explicit breaks among wraps
        "\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E\xE3\x81\xAE\xE6\x96\x87\xE7\xAB\xA0\xE3\x82\x92\xE6\x8A\x98"
        "\xE3\x82\x8A\xE8\xBF\x94\xE3\x81\x99",  // CJK without spaces
    };
    for (const char* markup : texts) {
        SCOPED_TRACE(markup);
        TORXCairoLabel document;  // paints with Pango, and measures with it while it lives
        auto* item = static_cast<TORXBaseRichText*>(document.CreateItem(TQVLItemType::itRichText));
        ASSERT_NE(item, nullptr);
        item->SetBase(1, static_cast<std::int64_t>(kBoxLeft * 1000),
                      static_cast<std::int64_t>(kBoxTop * 1000));
        item->SetBase(2, static_cast<std::int64_t>(kBoxRight * 1000),
                      static_cast<std::int64_t>(kBoxBottom * 1000));
        item->SetRichText(markup);

        const TRichTextPlacement placement = PlaceRichText(*item, QVLTextMetrics());
        std::vector<std::string> placed;
        for (const auto& line : placement.Lines) {
            std::string text;
            for (const auto& run : line.Line.Runs) text += run.Text;
            if (!text.empty()) placed.push_back(text);
        }
        ASSERT_GT(placed.size(), 1u);  // the box is narrow enough that every text wraps
        EXPECT_EQ(SvgLines(*item), placed);

        // The painter inks every placed line inside the box and nothing beside it.
        const TPicture picture = Paint(*item);
        for (const auto& line : placement.Lines) {
            if (line.Line.Width == 0) continue;
            const double top = static_cast<double>(line.Top) / 1000.0;
            const double bottom = static_cast<double>(line.Top + line.Height) / 1000.0;
            EXPECT_GT(picture.InkIn(kBoxLeft, top, kBoxRight, bottom), 0) << "line at " << top << " mm";
        }
        EXPECT_EQ(picture.InkIn(kBoxRight + 0.5, 0.0, 29.9, 39.9), 0);
        const double lastBottom =
            static_cast<double>(placement.Lines.back().Top + placement.Lines.back().Height) / 1000.0;
        EXPECT_EQ(picture.InkIn(kBoxLeft + 0.5, lastBottom + 0.5, kBoxRight - 0.5, kBoxBottom - 0.5), 0);
    }
}

}  // namespace
}  // namespace Orvex
