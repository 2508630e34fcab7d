// Painting of flow elements (shape with shadow, gradient and text) and of the links between them.
#include <algorithm>
#include <cmath>
#include <numbers>

#include "host/paint/item_painters.h"
#include "host/paint/pango_text.h"
#include "orvex/items/flow_shapes.h"

namespace Orvex {

namespace {

using Paint::TDev;
using Paint::TDevBox;
using Paint::TPainter;

void DocumentPath(cairo_t* cr, const TDevBox& k) {
    // A sheet whose bottom edge is one wave: the quadratic halves written as cubic curves.
    const double a = k.H / 10.0;
    const double l = k.X, r = k.X + k.W, t = k.Y, y = k.Y + k.H - a;
    const auto quad = [&](double x0, double y0, double qx, double qy, double x1, double y1) {
        cairo_curve_to(cr, x0 + 2.0 / 3.0 * (qx - x0), y0 + 2.0 / 3.0 * (qy - y0), x1 + 2.0 / 3.0 * (qx - x1),
                       y1 + 2.0 / 3.0 * (qy - y1), x1, y1);
    };
    cairo_move_to(cr, l, t);
    cairo_line_to(cr, r, t);
    cairo_line_to(cr, r, y);
    quad(r, y, r - k.W / 4.0, y - 2.0 * a, l + k.W / 2.0, y);
    quad(l + k.W / 2.0, y, l + k.W / 4.0, y + 2.0 * a, l, y);
    cairo_close_path(cr);
}

// The shape's outline as the current path. Curved shapes are drawn as curves; the others follow the
// outline the item picks and links with.
void ShapePath(const TPainter& p, const TORXBaseFlow& item, const TDevBox& k, const TQVLRect& box) {
    cairo_t* cr = p.Cr;
    const double pi = std::numbers::pi;
    switch (item.FlowType()) {
        case TQVLFlowType::ftTerminator:
            Paint::RectPath(cr, k.X, k.Y, k.W, k.H, std::min(k.W, k.H) / 2.0);
            return;
        case TQVLFlowType::ftProcess:
        case TQVLFlowType::ftPredefined:
            cairo_rectangle(cr, k.X, k.Y, k.W, k.H);
            return;
        case TQVLFlowType::ftDocument:
            DocumentPath(cr, k);
            return;
        case TQVLFlowType::ftEllipse:
            Paint::EllipsePath(cr, k.X + k.W / 2.0, k.Y + k.H / 2.0, k.W / 2.0, k.H / 2.0);
            return;
        case TQVLFlowType::ftStart:
        case TQVLFlowType::ftEnd: {
            const double rad = std::min(k.W, k.H) / 2.0;
            Paint::EllipsePath(cr, k.X + k.W / 2.0, k.Y + k.H / 2.0, rad, rad);
            return;
        }
        case TQVLFlowType::ftDatabase: {
            const double ry = k.H / 10.0;
            const double rx = k.W / 2.0;
            cairo_save(cr);
            cairo_new_sub_path(cr);
            cairo_translate(cr, k.X + rx, k.Y + ry);
            cairo_scale(cr, rx, ry);
            cairo_arc(cr, 0.0, 0.0, 1.0, pi, 2.0 * pi);
            cairo_restore(cr);
            cairo_save(cr);
            cairo_translate(cr, k.X + rx, k.Y + k.H - ry);
            cairo_scale(cr, rx, ry);
            cairo_arc(cr, 0.0, 0.0, 1.0, 0.0, pi);
            cairo_restore(cr);
            cairo_close_path(cr);
            return;
        }
        default: {
            std::vector<TDev> pts;
            for (const auto& pt : FlowOutline(item.FlowType(), box)) pts.push_back(p.Pt(pt.X, pt.Y));
            Paint::PolyPath(cr, pts, true);
            return;
        }
    }
}

// The inner lines and dots some shapes carry besides their outline, in the pen's colour.
void ShapeDetails(const TPainter& p, const TORXBaseFlow& item, const TDevBox& k) {
    cairo_t* cr = p.Cr;
    switch (item.FlowType()) {
        case TQVLFlowType::ftPredefined: {
            const double s = k.W / 10.0;
            cairo_move_to(cr, k.X + s, k.Y);
            cairo_line_to(cr, k.X + s, k.Y + k.H);
            cairo_move_to(cr, k.X + k.W - s, k.Y);
            cairo_line_to(cr, k.X + k.W - s, k.Y + k.H);
            Paint::StrokePath(p, item.Color(), item.GetPenWidthMM(), item.LineType());
            return;
        }
        case TQVLFlowType::ftDatabase: {
            const double ry = k.H / 10.0;
            cairo_save(cr);
            cairo_translate(cr, k.X + k.W / 2.0, k.Y + ry);
            cairo_scale(cr, k.W / 2.0, ry);
            cairo_arc_negative(cr, 0.0, 0.0, 1.0, std::numbers::pi, 0.0);
            cairo_restore(cr);
            Paint::StrokePath(p, item.Color(), item.GetPenWidthMM(), item.LineType());
            return;
        }
        case TQVLFlowType::ftStart: {
            const double rad = std::min(k.W, k.H) / 2.0;
            Paint::EllipsePath(cr, k.X + k.W / 2.0, k.Y + k.H / 2.0, rad, rad);
            Paint::SetColor(cr, item.Color());
            cairo_fill(cr);
            return;
        }
        case TQVLFlowType::ftEnd: {
            const double rad = std::min(k.W, k.H) / 2.0 * 0.6;
            Paint::EllipsePath(cr, k.X + k.W / 2.0, k.Y + k.H / 2.0, rad, rad);
            Paint::SetColor(cr, item.Color());
            cairo_fill(cr);
            return;
        }
        default:
            return;
    }
}

void SetFill(const TPainter& p, const TORXBaseFlow& item, const TDevBox& k) {
    const TAlphaColor a = item.BackColor();
    const TAlphaColor b = item.GradColor();
    cairo_pattern_t* pattern = nullptr;
    switch (item.Gradient()) {
        case TQVLGradient::grNone:
            Paint::SetColor(p.Cr, a);
            return;
        case TQVLGradient::grVertical:
            pattern = cairo_pattern_create_linear(0.0, k.Y, 0.0, k.Y + k.H);
            break;
        case TQVLGradient::grHorizontal:
            pattern = cairo_pattern_create_linear(k.X, 0.0, k.X + k.W, 0.0);
            break;
        case TQVLGradient::grRadial: {
            const double cx = k.X + k.W / 2.0, cy = k.Y + k.H / 2.0;
            pattern = cairo_pattern_create_radial(cx, cy, 0.0, cx, cy, std::max(k.W, k.H) / 2.0);
            break;
        }
    }
    for (const auto& [offset, c] : {std::pair{0.0, a}, std::pair{1.0, b}})
        cairo_pattern_add_color_stop_rgba(pattern, offset, RedOf(c) / 255.0, GreenOf(c) / 255.0,
                                          BlueOf(c) / 255.0, AlphaOf(c) / 255.0);
    cairo_set_source(p.Cr, pattern);
    cairo_pattern_destroy(pattern);
}

void PaintShape(const TPainter& p, const TORXBaseFlow& item, const TDevBox& k, const TQVLRect& box) {
    const bool multi = item.FlowType() == TQVLFlowType::ftMultiDocument;
    // A multi-document is three sheets: the two behind stand up and to the right of the front one.
    const double step = std::min(k.W, k.H) / 12.0;
    const TDevBox front{k.X, k.Y + 2.0 * step, k.W - 2.0 * step, k.H - 2.0 * step};
    const auto outline = [&](double dx, double dy) {
        if (multi) {
            for (int i = 2; i >= 0; --i)
                DocumentPath(p.Cr, {front.X + dx + i * step, front.Y + dy - i * step, front.W, front.H});
            return;
        }
        cairo_save(p.Cr);
        cairo_translate(p.Cr, dx, dy);
        ShapePath(p, item, k, box);
        cairo_restore(p.Cr);
    };
    if (AlphaOf(item.ShadowColor()) != 0 && (item.ShadowDX() != 0.0f || item.ShadowDY() != 0.0f)) {
        outline(p.MM(item.ShadowDX()), p.MM(item.ShadowDY()));
        Paint::SetColor(p.Cr, item.ShadowColor());
        cairo_fill(p.Cr);
    }
    if (multi) {
        // Each sheet covers the one behind it, so each is filled and stroked in turn.
        for (int i = 2; i >= 0; --i) {
            DocumentPath(p.Cr, {front.X + i * step, front.Y - i * step, front.W, front.H});
            if (item.Filled()) {
                SetFill(p, item, k);
                cairo_fill_preserve(p.Cr);
            }
            Paint::StrokePath(p, item.Color(), item.GetPenWidthMM(), item.LineType());
        }
    } else if (item.FlowType() != TQVLFlowType::ftStart) {
        outline(0.0, 0.0);
        if (item.Filled() && AlphaOf(item.BackColor()) != 0) {
            SetFill(p, item, k);
            cairo_fill_preserve(p.Cr);
        }
        Paint::StrokePath(p, item.Color(), item.GetPenWidthMM(), item.LineType());
    }
    ShapeDetails(p, item, k);
}

void PaintText(const TPainter& p, const TORXBaseFlow& item, const TQVLRect& box) {
    const std::string& text = item.Text();
    for (const auto& line : item.TextPos()) {
        const auto from =
            static_cast<std::size_t>(std::clamp<std::int64_t>(line.FromPos, 0, std::ssize(text)));
        const auto to = static_cast<std::size_t>(std::clamp<std::int64_t>(line.ToPos, 0, std::ssize(text)));
        if (to <= from) continue;
        const TTextLinePos pos{text.substr(from, to - from), box.Left + SetBaseValue(line.BaseX),
                               box.Top + SetBaseValue(line.BaseY), 0};
        Paint::PaintLines(p, {pos}, item.Font(), 1.0);
    }
}

}  // namespace

void PaintItem(const TORXBaseFlow& item, const TPainter& p) {
    if (item.NumPoints() < 2) return;
    const TQVLRect box = item.Box();
    const TDevBox k = Paint::ItemBox(p, item);
    if (item.IsContainerFrame()) {
        Paint::PaintContainerFrame(item, p);
    } else {
        PaintShape(p, item, k, box);
    }
    PaintText(p, item, box);
}

void PaintItem(const TORXBaseLink& item, const TPainter& p) {
    const std::vector<TQVLPto64> course = item.Course();
    if (course.size() < 2) return;
    std::vector<TDev> pts;
    pts.reserve(course.size());
    for (const auto& pt : course) pts.push_back(p.Pt(pt.X, pt.Y));
    const double size = p.MM(item.QVLab()->Settings().fTermSize);
    const double pen = p.PenPx(item.GetPenWidthMM());
    const auto direction = [&](bool atEnd) {
        const TDev tip = atEnd ? pts.back() : pts.front();
        for (std::size_t n = 1; n < pts.size(); ++n) {
            const TDev q = atEnd ? pts[pts.size() - 1 - n] : pts[n];
            if (std::hypot(q.X - tip.X, q.Y - tip.Y) > 1e-6) return std::atan2(tip.Y - q.Y, tip.X - q.X);
        }
        return 0.0;
    };
    const double fromAngle = direction(false);
    const double toAngle = direction(true);
    const TDev fromTip = pts.front();
    const TDev toTip = pts.back();
    pts.front() = Paint::TerminatorBase(item.FromType(), fromTip, fromAngle, size);
    pts.back() = Paint::TerminatorBase(item.ToType(), toTip, toAngle, size);
    Paint::PolyPath(p.Cr, pts, false);
    if (Paint::SetPen(p, item.Color(), item.GetPenWidthMM(), item.LineType())) {
        cairo_set_line_join(p.Cr, CAIRO_LINE_JOIN_ROUND);  // routed corners and flattened curves stay smooth
        cairo_stroke(p.Cr);
    } else {
        cairo_new_path(p.Cr);
    }
    Paint::DrawTerminator(p, item.FromType(), fromTip, fromAngle, size, item.FromColor(), pen);
    Paint::DrawTerminator(p, item.ToType(), toTip, toAngle, size, item.ToColor(), pen);
}

}  // namespace Orvex
