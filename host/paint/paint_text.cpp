// Painting of the text kinds: text, paragraph, rich text, and the multi-purpose item as text (its codes
// are in paint_codes.cpp).
#include <algorithm>
#include <cmath>

#include "host/paint/item_painters.h"
#include "host/paint/pango_text.h"
#include "orvex/items/rich_text_layout.h"
#include "orvex/items/text_metrics.h"

namespace Orvex {

namespace Paint {

TDevBox ItemBox(const TPainter& p, const TORXBaseItem& item) {
    const TDev a = p.Pt(item.GetPoint(1));
    const TDev b = p.Pt(item.GetPoint(2));
    return {std::min(a.X, b.X), std::min(a.Y, b.Y), std::abs(b.X - a.X), std::abs(b.Y - a.Y)};
}

TQVLRect ItemRect(const TORXBaseItem& item) {
    TQVLRect r(item.GetPointX(1), item.GetPointY(1), item.GetPointX(2), item.GetPointY(2));
    r.NormalizeRect();
    return r;
}

void FillBox(const TPainter& p, const TDevBox& box, float radiusMM, TAlphaColor color) {
    if (AlphaOf(color) == 0) return;
    RectPath(p.Cr, box.X, box.Y, box.W, box.H, p.MM(radiusMM));
    SetColor(p.Cr, color);
    cairo_fill(p.Cr);
}

void PaintLines(const TPainter& p, const std::vector<TTextLinePos>& lines, const TQVLFont& font,
                double scaleX) {
    for (const auto& line : lines) {
        if (line.Text.empty()) continue;
        auto layout = MakeLayout(p.Cr, font, p.MM(font.FontHeight), line.Text);
        cairo_save(p.Cr);
        cairo_translate(p.Cr, p.X(line.X), p.Y(line.Y));
        if (scaleX > 0.0 && scaleX != 1.0) cairo_scale(p.Cr, scaleX, 1.0);
        ShowLayout(p.Cr, layout.get(), 0.0, 0.0, font.FontColor);
        cairo_restore(p.Cr);
    }
}

}  // namespace Paint

namespace {

using Paint::TPainter;

// The lines stand in the text's own frame; turning the frame about the box's centre puts them in place.
void PaintTurnedLines(const TPainter& p, const TORXBaseItem& item, const std::vector<TTextLinePos>& lines,
                      const TQVLFont& font, double scaleX) {
    const Paint::TDevBox box = Paint::ItemBox(p, item);
    cairo_save(p.Cr);
    Paint::RotateAbout(p.Cr, item.Angle(), box.X + box.W / 2.0, box.Y + box.H / 2.0);
    Paint::PaintLines(p, lines, font, scaleX);
    cairo_restore(p.Cr);
}

}  // namespace

void PaintItem(const TORXBaseText& item, const TPainter& p) {
    if (item.NumPoints() < 2) return;
    if (item.Filled()) Paint::FillBox(p, Paint::ItemBox(p, item), item.Radio(), item.BackColor());
    PaintTurnedLines(p, item, item.TextLines(), item.Font(), item.ScaleX());
}

void PaintItem(const TORXBasePara& item, const TPainter& p) {
    if (item.NumPoints() < 2) return;
    Paint::FillBox(p, Paint::ItemBox(p, item), item.Radio(), item.BackColor());
    PaintTurnedLines(p, item, item.TextLines(), item.Font(), 1.0);
}

void PaintItem(const TORXBaseRichText& item, const TPainter& p) {
    if (item.NumPoints() < 2) return;
    const Paint::TDevBox devBox = Paint::ItemBox(p, item);
    if (item.Filled()) Paint::FillBox(p, devBox, 0.0f, item.BackColor());
    const ITextMetrics& metrics = QVLTextMetrics(item.QVLab());
    const TRichTextPlacement placement = PlaceRichText(item, metrics);
    cairo_save(p.Cr);
    Paint::RotateAbout(p.Cr, item.Angle(), devBox.X + devBox.W / 2.0, devBox.Y + devBox.H / 2.0);
    for (const TRichTextPlacedLine& line : placement.Lines) {
        std::int64_t x = line.Left;
        for (const TRichTextRun& run : line.Line.Runs) {
            const TRichTextFormat& format =
                placement.Parsed.Formats[static_cast<std::size_t>(run.FormatIndex)];
            const TQVLFont font = RichTextFont(format);
            if (!run.Text.empty()) {
                if (AlphaOf(format.BackColor) != 0) {
                    const std::int64_t runTop = line.Baseline - metrics.Ascent(font);
                    cairo_rectangle(p.Cr, p.X(x), p.Y(runTop), p.Len(run.Width), p.Len(line.Height));
                    Paint::SetColor(p.Cr, format.BackColor);
                    cairo_fill(p.Cr);
                }
                Paint::PaintLines(p, {TTextLinePos{run.Text, x, line.Baseline, run.Width}}, font, 1.0);
            }
            x += run.Width;
        }
    }
    cairo_restore(p.Cr);
}

void PaintItem(const TORXDataPoly& item, const TPainter& p) {
    if (item.NumPoints() < 2) return;
    const Paint::TDevBox box = Paint::ItemBox(p, item);
    if (item.Filled()) Paint::FillBox(p, box, item.Radio(), item.BackColor());
    if (item.PolyType() != TQVLPolyType::poText) {
        Paint::PaintCode(p, item, box);
        return;
    }
    // A text fills the box: the font follows the box's height and the number of lines.
    const ITextMetrics& metrics = QVLTextMetrics(item.QVLab());
    const std::vector<std::string> lines = WrapText(item.ShownText(), TQVLFont{}, 0, metrics);
    const TQVLRect rect = Paint::ItemRect(item);
    const TQVLRect frame = AdjustRect(rect, item.Angle());
    const double fit = GetBaseValue(frame.GetHeight() - 2 * SetBaseValue(item.PaddingY())) /
                       (1.2 * static_cast<double>(std::max<std::size_t>(lines.size(), 1)));
    TQVLFont font;
    font.FontColor = item.Color();
    font.FontHeight = static_cast<float>(std::clamp(fit, 0.5, 12.0));
    // A long line would run out of the box: the font shrinks until the widest line fits its width too.
    std::int64_t widest = 0;
    for (const auto& line : lines) widest = std::max(widest, metrics.TextWidth(line, font));
    const std::int64_t room = frame.GetWidth() - 2 * SetBaseValue(item.PaddingX());
    if (widest > room && room > 0)
        font.FontHeight = std::max(0.5f, static_cast<float>(font.FontHeight * static_cast<double>(room) /
                                                            static_cast<double>(widest)));
    const auto placed =
        PosBaseLinesText(lines, font, rect, item.HorzAlign(), item.VertAlign(), item.Angle(),
                         SetBaseValue(item.PaddingX()), SetBaseValue(item.PaddingY()), 0, metrics);
    PaintTurnedLines(p, item, placed, font, 1.0);
}

}  // namespace Orvex
