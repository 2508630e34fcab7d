// Painting of the open line kinds: line, polyline, arc, arrow line, dimension and Bézier curve.
#include <cmath>
#include <numbers>

#include "host/paint/item_painters.h"
#include "host/paint/pango_text.h"

namespace Orvex {

namespace {

using Paint::TDev;
using Paint::TPainter;

double Direction(TDev from, TDev to) {
    return std::atan2(to.Y - from.Y, to.X - from.X);
}

bool Same(TDev a, TDev b) {
    return std::abs(a.X - b.X) < 1e-9 && std::abs(a.Y - b.Y) < 1e-9;
}

// The last point before the end that differs from it: the direction a terminator arrives from.
TDev Behind(const std::vector<TDev>& points, bool atEnd) {
    if (atEnd) {
        for (std::size_t i = points.size() - 1; i-- > 0;)
            if (!Same(points[i], points.back())) return points[i];
        return points.back();
    }
    for (std::size_t i = 1; i < points.size(); ++i)
        if (!Same(points[i], points.front())) return points[i];
    return points.front();
}

// A chain of points painted with its pen, ends pulled back under closed terminators, then the terminators.
void PaintTermChain(const TPainter& p, std::vector<TDev> points, const TORXTermLine& line) {
    if (points.size() < 2) return;
    const double pen = p.PenPx(line.GetPenWidthMM());
    const TDev fromTip = points.front();
    const TDev toTip = points.back();
    const double fromAngle = Direction(Behind(points, false), fromTip);
    const double toAngle = Direction(Behind(points, true), toTip);
    const double fromSize = p.Len(line.BaseSizeFrom());
    const double toSize = p.Len(line.BaseSizeTo());
    points.front() = Paint::TerminatorBase(line.FromType(), fromTip, fromAngle, fromSize);
    points.back() = Paint::TerminatorBase(line.ToType(), toTip, toAngle, toSize);
    Paint::PolyPath(p.Cr, points, false);
    Paint::StrokePath(p, line.Color(), line.GetPenWidthMM(), line.LineType());
    Paint::DrawTerminator(p, line.FromType(), fromTip, fromAngle, fromSize, line.FromColor(), pen);
    Paint::DrawTerminator(p, line.ToType(), toTip, toAngle, toSize, line.ToColor(), pen);
}

std::vector<TDev> DevPoints(const TPainter& p, const TQVLPtoA& points) {
    std::vector<TDev> out;
    out.reserve(points.size());
    for (const auto& pt : points) out.push_back(p.Pt(pt));
    return out;
}

// A label whose baseline is centred on anchor and runs towards angle (radians, device space).
void PaintLabel(const TPainter& p, const std::string& text, const TQVLFont& font, TDev anchor, double angle) {
    if (text.empty()) return;
    auto layout = Paint::MakeLayout(p.Cr, font, p.MM(font.FontHeight), text);
    const Paint::TTextExtent extent = Paint::Extent(layout.get());
    cairo_save(p.Cr);
    cairo_translate(p.Cr, anchor.X, anchor.Y);
    cairo_rotate(p.Cr, angle);
    Paint::ShowLayout(p.Cr, layout.get(), -extent.Width / 2.0, 0.0, font.FontColor);
    cairo_restore(p.Cr);
}

// Readable labels never stand upside down: a baseline pointing left is turned round.
double Upright(double angle) {
    while (angle > std::numbers::pi / 2.0 + 1e-9) angle -= std::numbers::pi;
    while (angle < -std::numbers::pi / 2.0 - 1e-9) angle += std::numbers::pi;
    return angle;
}

}  // namespace

void PaintItem(const TORXBaseLine& item, const TPainter& p) {
    if (item.NumPoints() < 2) return;
    Paint::PolyPath(p.Cr, DevPoints(p, item.Points()), false);
    Paint::StrokePath(p, item.Color(), item.GetPenWidthMM(), item.LineType());
}

void PaintItem(const TORXBasePolyLine& item, const TPainter& p) {
    PaintTermChain(p, DevPoints(p, item.Points()), item);
}

void PaintItem(const TORXBaseBezier& item, const TPainter& p) {
    const auto pts = DevPoints(p, item.Points());
    if (pts.size() < 2) return;
    // The curve itself, then the terminators along its end tangents (the control points).
    const double pen = p.PenPx(item.GetPenWidthMM());
    cairo_move_to(p.Cr, pts[0].X, pts[0].Y);
    std::size_t i = 1;
    for (; i + 2 < pts.size(); i += 3)
        cairo_curve_to(p.Cr, pts[i].X, pts[i].Y, pts[i + 1].X, pts[i + 1].Y, pts[i + 2].X, pts[i + 2].Y);
    for (; i < pts.size(); ++i) cairo_line_to(p.Cr, pts[i].X, pts[i].Y);
    Paint::StrokePath(p, item.Color(), item.GetPenWidthMM(), item.LineType());
    Paint::DrawTerminator(p, item.FromType(), pts.front(), Direction(Behind(pts, false), pts.front()),
                          p.Len(item.BaseSizeFrom()), item.FromColor(), pen);
    Paint::DrawTerminator(p, item.ToType(), pts.back(), Direction(Behind(pts, true), pts.back()),
                          p.Len(item.BaseSizeTo()), item.ToColor(), pen);
}

void PaintItem(const TORXBaseArc& item, const TPainter& p) {
    if (item.Radius() <= 0) return;
    // Arc angles run counter-clockwise on screen: negative in y-down device space. Flattened so that the
    // terminators find the arc's end directions like any chain's.
    const TDev c = p.Pt(item.Center().X, item.Center().Y);
    const double r = p.Len(item.Radius());
    const double start = -item.StartAngle() * std::numbers::pi / 180.0;
    const double sweep = -item.SignedSweep() * std::numbers::pi / 180.0;
    const int steps = std::max(8, static_cast<int>(std::abs(sweep) * std::max(r, 1.0) / 2.0));
    std::vector<TDev> pts;
    pts.reserve(static_cast<std::size_t>(steps) + 1);
    for (int k = 0; k <= std::min(steps, 4096); ++k) {
        const double a = start + sweep * k / std::min(steps, 4096);
        pts.push_back({c.X + r * std::cos(a), c.Y + r * std::sin(a)});
    }
    PaintTermChain(p, std::move(pts), item);
}

void PaintItem(const TORXBaseArrowLine& item, const TPainter& p) {
    if (item.NumPoints() < 2) return;
    const TDev a = p.Pt(item.GetPoint(1));
    const TDev b = p.Pt(item.GetPoint(2));
    const std::string text = item.LabelText();
    TQVLFont font;
    font.Name = item.Font();
    font.FontHeight = item.FontHeight();
    font.FontColor = item.FontColor();
    font.Bold = item.Bold();
    font.Italic = item.Italic();
    font.Underline = item.Underline();
    font.Strikeout = item.Strikeout();
    cairo_save(p.Cr);
    if (item.TextPos() == TQVLTextPos::tpMiddleRemove && !text.empty() && item.TextAngle() == 0.0f) {
        // The line breaks where the label stands: everything but a box round the label's middle is clipped
        // in.
        auto layout = Paint::MakeLayout(p.Cr, font, p.MM(font.FontHeight), text);
        const Paint::TTextExtent e = Paint::Extent(layout.get());
        const double gap = e.Width / 2.0 + e.Height * 0.3;
        if (std::hypot(b.X - a.X, b.Y - a.Y) > 2.0 * gap) {
            cairo_set_fill_rule(p.Cr, CAIRO_FILL_RULE_EVEN_ODD);
            cairo_rectangle(p.Cr, -1e6, -1e6, 2e6, 2e6);
            cairo_save(p.Cr);
            cairo_translate(p.Cr, (a.X + b.X) / 2.0, (a.Y + b.Y) / 2.0);
            cairo_rotate(p.Cr, Direction(a, b));
            cairo_rectangle(p.Cr, -gap, -e.Height, 2.0 * gap, 2.0 * e.Height);
            cairo_restore(p.Cr);  // the path keeps the turned box; only the transform goes back
            cairo_clip(p.Cr);
            cairo_set_fill_rule(p.Cr, CAIRO_FILL_RULE_WINDING);
        }
    }
    PaintTermChain(p, {a, b}, item);
    cairo_restore(p.Cr);
    if (item.NumPoints() >= 4 && !text.empty()) {
        const TDev anchor = p.Pt(item.GetPoint(3));
        const TDev end = p.Pt(item.GetPoint(4));
        const double angle = Same(anchor, end) ? 0.0 : Direction(anchor, end);
        PaintLabel(p, text, font, anchor, angle);
    }
}

void PaintItem(const TORXBaseDim& item, const TPainter& p) {
    const TORXDimStyle* style = item.Style();
    if (style == nullptr || item.NumPoints() < 2) return;
    const double head = p.MM(style->fHeadSize);
    const double pen = p.PenPx(GetBaseValue(style->fDimPenWidth));
    const auto ext = [&](std::int32_t feature, std::int32_t end) {
        if (item.NumPoints() < std::max(feature, end)) return;
        const TDev f = p.Pt(item.GetPoint(feature));
        const TDev e = p.Pt(item.GetPoint(end));
        const double len = std::hypot(e.X - f.X, e.Y - f.Y);
        const double gap = p.MM(style->fExtGap);
        if (len <= gap) return;
        const double ux = (e.X - f.X) / len;
        const double uy = (e.Y - f.Y) / len;
        const double over = len + p.MM(style->fExtSize);
        cairo_move_to(p.Cr, f.X + ux * gap, f.Y + uy * gap);
        cairo_line_to(p.Cr, f.X + ux * over, f.Y + uy * over);
        Paint::StrokePath(p, style->fExtColor, GetBaseValue(style->fExtPenWidth), style->fExtLineType);
    };
    std::vector<TDev> line;
    bool headStart = true;
    switch (item.DimType()) {
        case TQVDimType::dmtHorz:
        case TQVDimType::dmtVert:
        case TQVDimType::dmtAligned:
            if (item.DimExt() == 0 || item.DimExt() == 1) ext(3, 1);
            if (item.DimExt() == 0 || item.DimExt() == 2) ext(4, 2);
            line = {p.Pt(item.GetPoint(1)), p.Pt(item.GetPoint(2))};
            break;
        case TQVDimType::dmtRadial1:
        case TQVDimType::dmtRadial2:
        case TQVDimType::dmtDiameter2:
            line = {p.Pt(item.GetPoint(1)), p.Pt(item.GetPoint(2))};
            headStart = false;
            break;
        case TQVDimType::dmtDiameter1:
            line = {p.Pt(item.GetPoint(1)), p.Pt(item.GetPoint(2))};
            break;
        case TQVDimType::dmtAngle: {
            const TORXBaseDim::TAngleArc arc = item.AngleArc();
            if (arc.Radius <= 0) break;
            const TDev c = p.Pt(arc.Center.X, arc.Center.Y);
            const double r = p.Len(arc.Radius);
            const double start = -arc.StartDeg * std::numbers::pi / 180.0;
            const double sweep = -arc.SweepDeg * std::numbers::pi / 180.0;
            for (int k = 0; k <= 64; ++k) {
                const double a = start + sweep * k / 64.0;
                line.push_back({c.X + r * std::cos(a), c.Y + r * std::sin(a)});
            }
            break;
        }
    }
    if (line.size() >= 2) {
        Paint::PolyPath(p.Cr, line, false);
        Paint::StrokePath(p, style->fDimColor, GetBaseValue(style->fDimPenWidth), style->fDimLineType);
        if (headStart)
            Paint::DrawTerminator(p, style->fHeadType, line.front(),
                                  Direction(Behind(line, false), line.front()), head, style->fHeadColor, pen);
        Paint::DrawTerminator(p, style->fHeadType, line.back(), Direction(Behind(line, true), line.back()),
                              head, style->fHeadColor, pen);
    }
    if (item.NumPoints() >= 10 && !item.DisplayText().empty()) {
        TQVLFont font = style->fFont;
        if (AlphaOf(font.FontColor) == 0) font.FontColor = style->fDimColor;  // a style without a text colour
        const TDev anchor = p.Pt(item.GetPoint(9));
        const TDev end = p.Pt(item.GetPoint(10));
        PaintLabel(p, item.DisplayText(), font, anchor,
                   Same(anchor, end) ? 0.0 : Upright(Direction(anchor, end)));
    }
}

}  // namespace Orvex
