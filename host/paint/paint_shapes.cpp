// Painting of the closed shapes: rectangle, polygon, circle, ellipse and sector.
#include <cmath>
#include <numbers>

#include "host/paint/item_painters.h"

namespace Orvex {

namespace {

using Paint::TDev;
using Paint::TPainter;

using Paint::TDevBox;

TDevBox BoxOf(const TPainter& p, const TORXBaseItem& item) {
    return Paint::ItemBox(p, item);
}

void FillStroke(const TPainter& p, const TORXBoxShape& item) {
    Paint::FillAndStroke(p, item.Filled(), item.BackColor(), item.Color(), item.GetPenWidthMM(),
                         item.LineType());
}

}  // namespace

void PaintItem(const TORXBaseRectangle& item, const TPainter& p) {
    if (item.NumPoints() < 2) return;
    const TDevBox b = BoxOf(p, item);
    Paint::RectPath(p.Cr, b.X, b.Y, b.W, b.H, p.Len(item.BaseRadio()));
    FillStroke(p, item);
}

void PaintItem(const TORXBasePolygon& item, const TPainter& p) {
    if (item.NumPoints() < 2) return;
    std::vector<TDev> pts;
    for (const auto& pt : item.Points()) pts.push_back(p.Pt(pt));
    Paint::PolyPath(p.Cr, pts, true);
    // A polygon is a point-list item without a fill of its own: its outline is all there is.
    Paint::StrokePath(p, item.Color(), item.GetPenWidthMM(), item.LineType());
}

void PaintItem(const TORXBaseCircle& item, const TPainter& p) {
    if (item.BaseRadius() <= 0) return;
    const TDev c = p.Pt(item.BaseCenterX(), item.BaseCenterY());
    const double r = p.Len(item.BaseRadius());
    Paint::EllipsePath(p.Cr, c.X, c.Y, r, r);
    FillStroke(p, item);
}

void PaintItem(const TORXBaseEllipse& item, const TPainter& p) {
    if (item.NumPoints() < 2) return;
    const TDevBox b = BoxOf(p, item);
    Paint::EllipsePath(p.Cr, b.X + b.W / 2.0, b.Y + b.H / 2.0, b.W / 2.0, b.H / 2.0);
    FillStroke(p, item);
}

void PaintItem(const TORXBaseSector& item, const TPainter& p) {
    if (item.BaseRadius() <= 0) return;
    const TDev c = p.Pt(item.BaseCenterX(), item.BaseCenterY());
    const double r = p.Len(item.BaseRadius());
    if (std::abs(item.SweepAngle()) >= 360.0f) {
        Paint::EllipsePath(p.Cr, c.X, c.Y, r, r);
    } else {
        // Angles run counter-clockwise on screen, which is the negative direction in device space.
        const double a0 = -item.EffectiveStart() * std::numbers::pi / 180.0;
        const double a1 = a0 - item.SweepAngle() * std::numbers::pi / 180.0;
        cairo_move_to(p.Cr, c.X, c.Y);
        if (a1 < a0)
            cairo_arc_negative(p.Cr, c.X, c.Y, r, a0, a1);
        else
            cairo_arc(p.Cr, c.X, c.Y, r, a0, a1);
        cairo_close_path(p.Cr);
    }
    FillStroke(p, item);
}

}  // namespace Orvex
