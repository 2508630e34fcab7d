#include "orvex/items/flow_shapes.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "orvex/items/svg_style.h"
#include "orvex/render/draw2d.h"

namespace Orvex {

namespace {

TQVLPto64 P(double x, double y) {
    return {static_cast<std::int64_t>(std::llround(x)), static_cast<std::int64_t>(std::llround(y))};
}

// Points of an elliptic arc from angle a0 to a1 (radians, y down), both ends included.
void AppendArc(std::vector<TQVLPto64>& out, double cx, double cy, double rx, double ry, double a0, double a1,
               int steps) {
    for (int i = 0; i <= steps; ++i) {
        const double a = a0 + (a1 - a0) * i / steps;
        out.push_back(P(cx + rx * std::cos(a), cy + ry * std::sin(a)));
    }
}

// The wavy bottom of a document: two quadratic halves from the right end to the left end.
void AppendWave(std::vector<TQVLPto64>& out, double l, double r, double y, double a) {
    const double w = r - l;
    const auto quad = [&](double x0, double y0, double qx, double qy, double x1, double y1) {
        for (int i = 1; i <= 12; ++i) {
            const double t = i / 12.0;
            const double u = 1 - t;
            out.push_back(P(u * u * x0 + 2 * u * t * qx + t * t * x1, u * u * y0 + 2 * u * t * qy + t * t * y1));
        }
    };
    quad(r, y, r - w / 4, y - 2 * a, l + w / 2, y);
    quad(l + w / 2, y, l + w / 4, y + 2 * a, l, y);
}

struct TBox {
    double l, t, r, b, w, h, cx, cy;
    explicit TBox(const TQVLRect& box)
        : l(static_cast<double>(box.Left)), t(static_cast<double>(box.Top)), r(static_cast<double>(box.Right)),
          b(static_cast<double>(box.Bottom)), w(r - l), h(b - t), cx((l + r) / 2), cy((t + b) / 2) {}
};

// The front sheet of a multi-document; the two behind it are moved up and right by one and two steps.
TQVLRect FrontSheet(const TQVLRect& box) {
    const std::int64_t step = std::min(box.GetWidth(), box.GetHeight()) / 12;
    return {box.Left, box.Top + 2 * step, box.Right - 2 * step, box.Bottom};
}

std::vector<TQVLPto64> DocumentOutline(const TBox& k) {
    std::vector<TQVLPto64> out{P(k.l, k.t), P(k.r, k.t)};
    const double a = k.h / 10;
    out.push_back(P(k.r, k.b - a));
    AppendWave(out, k.l, k.r, k.b - a, a);
    return out;
}

std::string Num(double base, TQVLUnits unit) {
    return SvgLength(static_cast<std::int64_t>(std::llround(base)), unit);
}

std::string Polygon(const std::vector<TQVLPto64>& points, TQVLUnits unit, const std::string& paint) {
    std::string list;
    for (const auto& p : points) list += (list.empty() ? "" : " ") + SvgLength(p.X, unit) + "," + SvgLength(p.Y, unit);
    return fmt::format("<polygon points=\"{}\"{}/>", list, paint);
}

std::string DocumentPath(const TBox& k, TQVLUnits unit, const std::string& paint) {
    const double a = k.h / 10;
    const auto n = [&](double v) { return Num(v, unit); };
    return fmt::format("<path d=\"M{},{} L{},{} L{},{} Q{},{} {},{} T{},{} Z\"{}/>", n(k.l), n(k.t), n(k.r), n(k.t),
                       n(k.r), n(k.b - a), n(k.r - k.w / 4), n(k.b - 3 * a), n(k.cx), n(k.b - a), n(k.l), n(k.b - a),
                       paint);
}

}  // namespace

std::vector<TQVLPto64> FlowOutline(TQVLFlowType type, const TQVLRect& box) {
    const TBox k(box);
    const double pi = std::numbers::pi;
    std::vector<TQVLPto64> out;
    switch (type) {
        case TQVLFlowType::ftTerminator: {
            const double rad = std::min(k.w, k.h) / 2;
            AppendArc(out, k.r - rad, k.t + rad, rad, rad, -pi / 2, 0, 8);
            AppendArc(out, k.r - rad, k.b - rad, rad, rad, 0, pi / 2, 8);
            AppendArc(out, k.l + rad, k.b - rad, rad, rad, pi / 2, pi, 8);
            AppendArc(out, k.l + rad, k.t + rad, rad, rad, pi, 1.5 * pi, 8);
            return out;
        }
        case TQVLFlowType::ftProcess:
        case TQVLFlowType::ftPredefined:
            return {P(k.l, k.t), P(k.r, k.t), P(k.r, k.b), P(k.l, k.b)};
        case TQVLFlowType::ftDocument:
            return DocumentOutline(k);
        case TQVLFlowType::ftMultiDocument:
            return DocumentOutline(TBox(FrontSheet(box)));
        case TQVLFlowType::ftDecision:
            return {P(k.cx, k.t), P(k.r, k.cy), P(k.cx, k.b), P(k.l, k.cy)};
        case TQVLFlowType::ftData: {
            const double s = k.w / 5;
            return {P(k.l + s, k.t), P(k.r, k.t), P(k.r - s, k.b), P(k.l, k.b)};
        }
        case TQVLFlowType::ftDatabase: {
            const double ry = k.h / 10;
            AppendArc(out, k.cx, k.t + ry, k.w / 2, ry, pi, 2 * pi, 16);
            AppendArc(out, k.cx, k.b - ry, k.w / 2, ry, 0, pi, 16);
            return out;
        }
        case TQVLFlowType::ftManualInput:
            return {P(k.l, k.t + k.h / 4), P(k.r, k.t), P(k.r, k.b), P(k.l, k.b)};
        case TQVLFlowType::ftManualOperation: {
            const double s = k.w / 5;
            return {P(k.l, k.t), P(k.r, k.t), P(k.r - s, k.b), P(k.l + s, k.b)};
        }
        case TQVLFlowType::ftPreparation: {
            const double s = std::min(k.w / 5, k.h / 2);
            return {P(k.l, k.cy), P(k.l + s, k.t), P(k.r - s, k.t), P(k.r, k.cy), P(k.r - s, k.b), P(k.l + s, k.b)};
        }
        case TQVLFlowType::ftEllipse:
            AppendArc(out, k.cx, k.cy, k.w / 2, k.h / 2, 0, 2 * pi, 48);
            out.pop_back();
            return out;
        case TQVLFlowType::ftStart:
        case TQVLFlowType::ftEnd: {
            const double rad = std::min(k.w, k.h) / 2;
            AppendArc(out, k.cx, k.cy, rad, rad, 0, 2 * pi, 48);
            out.pop_back();
            return out;
        }
        case TQVLFlowType::ftStep: {
            const double s = std::min(k.w / 4, k.h / 2);
            return {P(k.l, k.t), P(k.r - s, k.t), P(k.r, k.cy), P(k.r - s, k.b), P(k.l, k.b), P(k.l + s, k.cy)};
        }
    }
    return {P(k.l, k.t), P(k.r, k.t), P(k.r, k.b), P(k.l, k.b)};
}

std::string FlowShapeSVG(TQVLFlowType type, const TQVLRect& box, TQVLUnits unit, const std::string& paint,
                         const std::string& ink, const std::string& line) {
    const TBox k(box);
    const auto n = [&](double v) { return Num(v, unit); };
    switch (type) {
        case TQVLFlowType::ftTerminator: {
            const double rad = std::min(k.w, k.h) / 2;
            return fmt::format("<rect x=\"{}\" y=\"{}\" width=\"{}\" height=\"{}\" rx=\"{}\"{}/>", n(k.l), n(k.t),
                               n(k.w), n(k.h), n(rad), paint);
        }
        case TQVLFlowType::ftProcess:
            return fmt::format("<rect x=\"{}\" y=\"{}\" width=\"{}\" height=\"{}\"{}/>", n(k.l), n(k.t), n(k.w),
                               n(k.h), paint);
        case TQVLFlowType::ftPredefined: {
            const double s = k.w / 10;
            return fmt::format(
                "<rect x=\"{}\" y=\"{}\" width=\"{}\" height=\"{}\"{}/><path d=\"M{},{} V{} M{},{} V{}\"{}/>",
                n(k.l), n(k.t), n(k.w), n(k.h), paint, n(k.l + s), n(k.t), n(k.b), n(k.r - s), n(k.t), n(k.b), line);
        }
        case TQVLFlowType::ftDocument:
            return DocumentPath(k, unit, paint);
        case TQVLFlowType::ftMultiDocument: {
            const TQVLRect front = FrontSheet(box);
            const std::int64_t step = std::min(box.GetWidth(), box.GetHeight()) / 12;
            std::string out;
            for (int i = 2; i >= 0; --i) {
                TQVLRect sheet = front;
                sheet.Offset(i * step, -i * step);
                out += DocumentPath(TBox(sheet), unit, paint);
            }
            return out;
        }
        case TQVLFlowType::ftEllipse:
            return fmt::format("<ellipse cx=\"{}\" cy=\"{}\" rx=\"{}\" ry=\"{}\"{}/>", n(k.cx), n(k.cy), n(k.w / 2),
                               n(k.h / 2), paint);
        case TQVLFlowType::ftDatabase: {
            const double ry = k.h / 10;
            const double rx = k.w / 2;
            return fmt::format(
                "<path d=\"M{},{} V{} A{},{} 0 0 0 {},{} V{} A{},{} 0 0 0 {},{} Z\"{}/>"
                "<path d=\"M{},{} A{},{} 0 0 0 {},{}\"{}/>",
                n(k.l), n(k.t + ry), n(k.b - ry), n(rx), n(ry), n(k.r), n(k.b - ry), n(k.t + ry), n(rx), n(ry), n(k.l),
                n(k.t + ry), paint, n(k.l), n(k.t + ry), n(rx), n(ry), n(k.r), n(k.t + ry), line);
        }
        case TQVLFlowType::ftStart: {
            const double rad = std::min(k.w, k.h) / 2;
            return fmt::format("<circle cx=\"{}\" cy=\"{}\" r=\"{}\"{}/>", n(k.cx), n(k.cy), n(rad), ink);
        }
        case TQVLFlowType::ftEnd: {
            const double rad = std::min(k.w, k.h) / 2;
            return fmt::format("<circle cx=\"{}\" cy=\"{}\" r=\"{}\"{}/><circle cx=\"{}\" cy=\"{}\" r=\"{}\"{}/>",
                               n(k.cx), n(k.cy), n(rad), paint, n(k.cx), n(k.cy), n(rad * 0.6), ink);
        }
        case TQVLFlowType::ftDecision:
        case TQVLFlowType::ftData:
        case TQVLFlowType::ftManualInput:
        case TQVLFlowType::ftManualOperation:
        case TQVLFlowType::ftPreparation:
        case TQVLFlowType::ftStep:
            return Polygon(FlowOutline(type, box), unit, paint);
    }
    return Polygon(FlowOutline(type, box), unit, paint);
}

TQVLRect FlowTextArea(TQVLFlowType type, const TQVLRect& box) {
    const std::int64_t w = box.GetWidth();
    const std::int64_t h = box.GetHeight();
    TQVLRect r = box;
    switch (type) {
        case TQVLFlowType::ftDecision: r.Inflate(-w / 4, -h / 4); break;
        case TQVLFlowType::ftEllipse:
        case TQVLFlowType::ftStart:
        case TQVLFlowType::ftEnd: r.Inflate(-w * 3 / 20, -h * 3 / 20); break;
        case TQVLFlowType::ftData:
        case TQVLFlowType::ftManualOperation:
        case TQVLFlowType::ftPreparation: r.Inflate(-w / 5, 0); break;
        case TQVLFlowType::ftPredefined: r.Inflate(-w / 10, 0); break;
        case TQVLFlowType::ftStep: r.Inflate(-std::min(w / 4, h / 2), 0); break;
        case TQVLFlowType::ftDocument: r.Bottom -= h / 5; break;
        case TQVLFlowType::ftMultiDocument: r = FrontSheet(box), r.Bottom -= h / 5; break;
        case TQVLFlowType::ftDatabase: r.Top += h / 5; break;
        case TQVLFlowType::ftManualInput: r.Top += h / 4; break;
        case TQVLFlowType::ftTerminator: r.Inflate(-std::min(w, h) / 4, 0); break;
        case TQVLFlowType::ftProcess: break;
    }
    return r;
}

bool PointInPolygon(const std::vector<TQVLPto64>& polygon, std::int64_t x, std::int64_t y) {
    bool inside = false;
    const std::size_t n = polygon.size();
    for (std::size_t i = 0, j = n - 1; i < n; j = i++) {
        const auto& a = polygon[i];
        const auto& b = polygon[j];
        if ((a.Y > y) != (b.Y > y)) {
            const double cross = static_cast<double>(b.X - a.X) * static_cast<double>(y - a.Y) /
                                     static_cast<double>(b.Y - a.Y) +
                                 static_cast<double>(a.X);
            if (static_cast<double>(x) < cross) inside = !inside;
        }
    }
    return inside;
}

bool PointOnPolyline(const std::vector<TQVLPto64>& points, bool closed, std::int64_t x, std::int64_t y,
                     std::int64_t tolerance) {
    if (points.size() == 1) return TDraw2D::PointInLine(points[0].X, points[0].Y, points[0].X, points[0].Y, x, y, tolerance);
    for (std::size_t i = 0; i + 1 < points.size(); ++i)
        if (TDraw2D::PointInLine(points[i].X, points[i].Y, points[i + 1].X, points[i + 1].Y, x, y, tolerance))
            return true;
    return closed && points.size() > 2 &&
           TDraw2D::PointInLine(points.back().X, points.back().Y, points.front().X, points.front().Y, x, y, tolerance);
}

}  // namespace Orvex
