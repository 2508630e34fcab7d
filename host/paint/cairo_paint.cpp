#include "host/paint/cairo_paint.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "orvex/items/svg_style.h"
#include "orvex/render/draw2d.h"

namespace Orvex::Paint {

double TPainter::X(std::int64_t base) const {
    return Print ? static_cast<double>(Qvl::Utils::PrintFromBaseX(base, Draw)) : Draw.GetDrawX(base);
}

double TPainter::Y(std::int64_t base) const {
    return Print ? static_cast<double>(Qvl::Utils::PrintFromBaseY(base, Draw)) : Draw.GetDrawY(base);
}

double TPainter::Len(std::int64_t base) const {
    return static_cast<double>(base) * Draw.fDpix /
           (static_cast<double>(Draw.fDrawScale) * static_cast<double>(kBasePerInch));
}

double TPainter::MM(float mm) const {
    return static_cast<double>(mm) * Draw.fDpix / kMMPerInch;
}

double TPainter::PenPx(float mm) const {
    return Print ? static_cast<double>(Draw.PrintBasePtoX(mm)) : static_cast<double>(Draw.DrawBasePtoX(mm));
}

void SetColor(cairo_t* cr, TAlphaColor color) {
    cairo_set_source_rgba(cr, RedOf(color) / 255.0, GreenOf(color) / 255.0, BlueOf(color) / 255.0,
                          AlphaOf(color) / 255.0);
}

bool SetPen(const TPainter& p, TAlphaColor color, float widthMM, TQVLineType type) {
    const double width = p.PenPx(widthMM);
    if (width <= 0.0 || AlphaOf(color) == 0) return false;
    SetColor(p.Cr, color);
    cairo_set_line_width(p.Cr, width);
    cairo_set_line_join(p.Cr, CAIRO_LINE_JOIN_MITER);
    const auto pattern = DashPattern(type);
    if (pattern.empty()) {
        cairo_set_dash(p.Cr, nullptr, 0, 0.0);
        cairo_set_line_cap(p.Cr, CAIRO_LINE_CAP_BUTT);
        return true;
    }
    const double step = std::max(width, p.MM(1.0f));
    std::vector<double> dashes;
    dashes.reserve(pattern.size());
    for (double part : pattern) dashes.push_back(part * step);
    cairo_set_dash(p.Cr, dashes.data(), static_cast<int>(dashes.size()), 0.0);
    cairo_set_line_cap(p.Cr, CAIRO_LINE_CAP_BUTT);
    return true;
}

void FillAndStroke(const TPainter& p, bool fill, TAlphaColor back, TAlphaColor pen, float widthMM,
                   TQVLineType type) {
    if (fill && AlphaOf(back) != 0) {
        SetColor(p.Cr, back);
        cairo_fill_preserve(p.Cr);
    }
    StrokePath(p, pen, widthMM, type);
}

void StrokePath(const TPainter& p, TAlphaColor pen, float widthMM, TQVLineType type) {
    if (SetPen(p, pen, widthMM, type))
        cairo_stroke(p.Cr);
    else
        cairo_new_path(p.Cr);
}

namespace {

TDev Along(TDev from, double angle, double distance) {
    return {from.X + distance * std::cos(angle), from.Y + distance * std::sin(angle)};
}

void Finish(cairo_t* cr, bool filled, TAlphaColor color, double penPx) {
    SetColor(cr, color);
    cairo_set_dash(cr, nullptr, 0, 0.0);
    cairo_set_line_width(cr, std::max(penPx, 1.0));
    if (filled) cairo_fill_preserve(cr);
    cairo_stroke(cr);
}

// An entity relation's end: bars for "one", a foot of three prongs for "many", a hollow ring for "zero"
// furthest from the entity, as crow's-foot notation reads.
void DrawCrowsFoot(cairo_t* cr, TQVLTermType type, TDev tip, double angle, double size, TAlphaColor color,
                   double penPx) {
    const double back = angle + std::numbers::pi;
    const double half = size / 2.0;
    auto bar = [&](double at) {
        const TDev mid = Along(tip, back, at);
        const TDev a = Along(mid, angle + std::numbers::pi / 2.0, half);
        const TDev b = Along(mid, angle - std::numbers::pi / 2.0, half);
        cairo_move_to(cr, a.X, a.Y);
        cairo_line_to(cr, b.X, b.Y);
    };
    const bool many = type == TQVLTermType::ttCrowOneMany || type == TQVLTermType::ttCrowZeroMany;
    if (many) {
        const TDev heel = Along(tip, back, size);
        for (const double side : {std::numbers::pi / 2.0, 0.0, -std::numbers::pi / 2.0}) {
            const TDev prong = side == 0.0 ? tip : Along(tip, angle + side, half);
            cairo_move_to(cr, heel.X, heel.Y);
            cairo_line_to(cr, prong.X, prong.Y);
        }
    }
    if (type == TQVLTermType::ttCrowOnlyOne) bar(size * 0.4);
    if (type == TQVLTermType::ttCrowOnlyOne || type == TQVLTermType::ttCrowZeroOne) bar(size * 0.75);
    if (type == TQVLTermType::ttCrowOneMany) bar(size * 1.3);
    Finish(cr, false, color, penPx);
    if (type == TQVLTermType::ttCrowZeroOne || type == TQVLTermType::ttCrowZeroMany) {
        const TDev ring = Along(tip, back, many ? size * 1.55 : size * 1.2);
        cairo_new_path(cr);
        cairo_arc(cr, ring.X, ring.Y, size * 0.3, 0.0, 2.0 * std::numbers::pi);
        cairo_set_source_rgb(cr, 1.0, 1.0, 1.0);
        cairo_fill_preserve(cr);
        Finish(cr, false, color, penPx);
    }
}

}  // namespace

TDev TerminatorBase(TQVLTermType type, TDev tip, double angle, double size) {
    // Lines stop at the back of closed terminators, so that hollow ones stay hollow and filled heads keep
    // their points.
    const double back = angle + std::numbers::pi;
    switch (type) {
        case TQVLTermType::ttFillArrow:
            return Along(tip, back, size * std::cos(std::numbers::pi / TDraw2D::kArrowDivisor));
        case TQVLTermType::ttCircle:
        case TQVLTermType::ttFillCircle:
        case TQVLTermType::ttSquare:
        case TQVLTermType::ttFillSquare:
            return Along(tip, back, size / 2.0);
        case TQVLTermType::ttRhombus:
        case TQVLTermType::ttFillRhombus:
            return Along(tip, back, size);
        case TQVLTermType::ttTriangle:
            return Along(tip, back, size * std::cos(std::numbers::pi / TDraw2D::kArrowDivisor));
        default:
            return tip;
    }
}

void DrawTerminator(const TPainter& p, TQVLTermType type, TDev tip, double angle, double size,
                    TAlphaColor color, double penPx) {
    if (type == TQVLTermType::ttNone || size <= 0.0) return;
    cairo_t* cr = p.Cr;
    cairo_save(cr);
    cairo_new_path(cr);
    cairo_set_line_join(cr, CAIRO_LINE_JOIN_MITER);
    const double half = size / 2.0;
    switch (type) {
        case TQVLTermType::ttNone:
            break;
        case TQVLTermType::ttCircle:
        case TQVLTermType::ttFillCircle:
            cairo_arc(cr, tip.X, tip.Y, half, 0.0, 2.0 * std::numbers::pi);
            Finish(cr, type == TQVLTermType::ttFillCircle, color, penPx);
            break;
        case TQVLTermType::ttArrow:
        case TQVLTermType::ttFillArrow: {
            float ax1 = 0, ay1 = 0, ax2 = 0, ay2 = 0;
            TDraw2D::DrawArrow(static_cast<float>(tip.X), static_cast<float>(tip.Y), angle,
                               static_cast<float>(size), ax1, ay1, ax2, ay2, TDraw2D::kArrowDivisor);
            cairo_move_to(cr, ax1, ay1);
            cairo_line_to(cr, tip.X, tip.Y);
            cairo_line_to(cr, ax2, ay2);
            if (type == TQVLTermType::ttFillArrow) cairo_close_path(cr);
            Finish(cr, type == TQVLTermType::ttFillArrow, color, penPx);
            break;
        }
        case TQVLTermType::ttSquare:
        case TQVLTermType::ttFillSquare:
            cairo_save(cr);
            cairo_translate(cr, tip.X, tip.Y);
            cairo_rotate(cr, angle);
            cairo_rectangle(cr, -half, -half, size, size);
            cairo_restore(cr);
            Finish(cr, type == TQVLTermType::ttFillSquare, color, penPx);
            break;
        case TQVLTermType::ttRhombus:
        case TQVLTermType::ttFillRhombus: {
            // The rhombus ends at the tip and lies along the line, as the diamonds of class diagrams.
            const TDev back = Along(tip, angle + std::numbers::pi, size);
            const TDev mid = Along(tip, angle + std::numbers::pi, half);
            const TDev l = Along(mid, angle + std::numbers::pi / 2.0, half * 0.6);
            const TDev r = Along(mid, angle - std::numbers::pi / 2.0, half * 0.6);
            cairo_move_to(cr, tip.X, tip.Y);
            cairo_line_to(cr, l.X, l.Y);
            cairo_line_to(cr, back.X, back.Y);
            cairo_line_to(cr, r.X, r.Y);
            cairo_close_path(cr);
            Finish(cr, type == TQVLTermType::ttFillRhombus, color, penPx);
            break;
        }
        case TQVLTermType::ttLeftDia:
        case TQVLTermType::ttRightDia: {
            // A tick 45 degrees off the line through the tip; its forward end leans left or right.
            const double lean =
                type == TQVLTermType::ttLeftDia ? -std::numbers::pi / 4.0 : std::numbers::pi / 4.0;
            const TDev ahead = Along(tip, angle + lean, half);
            const TDev behind = Along(tip, angle + lean + std::numbers::pi, half);
            cairo_move_to(cr, behind.X, behind.Y);
            cairo_line_to(cr, ahead.X, ahead.Y);
            Finish(cr, false, color, penPx);
            break;
        }
        case TQVLTermType::ttTriangle: {
            float ax1 = 0, ay1 = 0, ax2 = 0, ay2 = 0;
            TDraw2D::DrawArrow(static_cast<float>(tip.X), static_cast<float>(tip.Y), angle,
                               static_cast<float>(size), ax1, ay1, ax2, ay2, TDraw2D::kArrowDivisor);
            cairo_move_to(cr, ax1, ay1);
            cairo_line_to(cr, tip.X, tip.Y);
            cairo_line_to(cr, ax2, ay2);
            cairo_close_path(cr);
            Finish(cr, false, color, penPx);
            break;
        }
        case TQVLTermType::ttCrowOnlyOne:
        case TQVLTermType::ttCrowZeroOne:
        case TQVLTermType::ttCrowOneMany:
        case TQVLTermType::ttCrowZeroMany:
            DrawCrowsFoot(cr, type, tip, angle, size, color, penPx);
            break;
        case TQVLTermType::ttCross: {
            for (double a : {std::numbers::pi / 4.0, -std::numbers::pi / 4.0}) {
                const TDev e1 = Along(tip, angle + a, half);
                const TDev e2 = Along(tip, angle + a + std::numbers::pi, half);
                cairo_move_to(cr, e1.X, e1.Y);
                cairo_line_to(cr, e2.X, e2.Y);
            }
            Finish(cr, false, color, penPx);
            break;
        }
    }
    cairo_restore(cr);
}

void RectPath(cairo_t* cr, double x, double y, double w, double h, double radius) {
    radius = std::min({radius, std::abs(w) / 2.0, std::abs(h) / 2.0});
    if (radius <= 0.0) {
        cairo_rectangle(cr, x, y, w, h);
        return;
    }
    const double pi = std::numbers::pi;
    cairo_new_sub_path(cr);
    cairo_arc(cr, x + w - radius, y + radius, radius, -pi / 2.0, 0.0);
    cairo_arc(cr, x + w - radius, y + h - radius, radius, 0.0, pi / 2.0);
    cairo_arc(cr, x + radius, y + h - radius, radius, pi / 2.0, pi);
    cairo_arc(cr, x + radius, y + radius, radius, pi, 3.0 * pi / 2.0);
    cairo_close_path(cr);
}

void EllipsePath(cairo_t* cr, double cx, double cy, double rx, double ry) {
    if (rx <= 0.0 || ry <= 0.0) return;
    cairo_save(cr);
    cairo_translate(cr, cx, cy);
    cairo_scale(cr, rx, ry);
    cairo_new_sub_path(cr);
    cairo_arc(cr, 0.0, 0.0, 1.0, 0.0, 2.0 * std::numbers::pi);
    cairo_close_path(cr);
    cairo_restore(cr);  // the path keeps its shape; the pen is not scaled with it
}

void PolyPath(cairo_t* cr, const std::vector<TDev>& points, bool closed) {
    if (points.empty()) return;
    cairo_move_to(cr, points[0].X, points[0].Y);
    for (std::size_t i = 1; i < points.size(); ++i) cairo_line_to(cr, points[i].X, points[i].Y);
    if (closed) cairo_close_path(cr);
}

void RotateAbout(cairo_t* cr, TQVLAngle angle, double cx, double cy) {
    if (angle == TQVLAngle::ag0) return;
    // ag90 is a quarter turn clockwise on screen, as the items' SVG turns it.
    const double turns = static_cast<double>(static_cast<int>(angle));
    cairo_translate(cr, cx, cy);
    cairo_rotate(cr, turns * std::numbers::pi / 2.0);
    cairo_translate(cr, -cx, -cy);
}

}  // namespace Orvex::Paint
