#include "orvex/items/item_geometry.h"

#include <algorithm>
#include <cmath>

#include "orvex/document/document.h"
#include "orvex/io/json.h"
#include "orvex/items/svg_style.h"
#include "orvex/render/draw2d.h"

namespace Orvex::ItemGeo {

double NormDeg(double degrees) {
    double a = std::fmod(degrees, 360.0);
    if (a < 0.0) a += 360.0;
    return a >= 360.0 ? 0.0 : a;
}

TQVLPto64 PolarPoint(std::int64_t cx, std::int64_t cy, double radius, double degrees) {
    const double a = Rad(degrees);
    return {cx + static_cast<std::int64_t>(std::llround(radius * std::cos(a))),
            cy - static_cast<std::int64_t>(std::llround(radius * std::sin(a)))};
}

double ScreenAngle(std::int64_t cx, std::int64_t cy, std::int64_t x, std::int64_t y) {
    return NormDeg(Deg(std::atan2(static_cast<double>(cy - y), static_cast<double>(x - cx))));
}

TArcD2 ToDraw2D(double startDeg, double sweepDeg) {
    // Stored y grows downwards, so a turn counter-clockwise on screen is a decreasing atan2 angle.
    return {TDraw2D::NormalizeAngle(Rad(-startDeg)), TDraw2D::NormalizeAngle(Rad(-(startDeg + sweepDeg))),
            sweepDeg < 0.0};
}

bool AngleInSweep(double angleDeg, double startDeg, double sweepDeg) {
    if (std::fabs(sweepDeg) >= 360.0) return true;
    const double from = sweepDeg >= 0.0 ? startDeg : startDeg + sweepDeg;
    return NormDeg(angleDeg - from) <= std::fabs(sweepDeg) + 1e-9;
}

TQVLRect ArcBounds(std::int64_t cx, std::int64_t cy, std::int64_t radius, double startDeg, double sweepDeg) {
    const TQVLPto64 a = PolarPoint(cx, cy, static_cast<double>(radius), startDeg);
    const TQVLPto64 b = PolarPoint(cx, cy, static_cast<double>(radius), startDeg + sweepDeg);
    TQVLRect r(std::min(a.X, b.X), std::min(a.Y, b.Y), std::max(a.X, b.X), std::max(a.Y, b.Y));
    for (int quarter = 0; quarter < 4; ++quarter) {
        if (!AngleInSweep(quarter * 90.0, startDeg, sweepDeg)) continue;
        const TQVLPto64 p = PolarPoint(cx, cy, static_cast<double>(radius), quarter * 90.0);
        r.Left = std::min(r.Left, p.X), r.Right = std::max(r.Right, p.X);
        r.Top = std::min(r.Top, p.Y), r.Bottom = std::max(r.Bottom, p.Y);
    }
    return r;
}

TQVLPto64 NearestOnSegment(const TQVLPto64& a, const TQVLPto64& b, std::int64_t x, std::int64_t y) {
    const double dx = static_cast<double>(b.X - a.X);
    const double dy = static_cast<double>(b.Y - a.Y);
    const double len2 = dx * dx + dy * dy;
    if (len2 == 0.0) return a;
    const double t =
        std::clamp((static_cast<double>(x - a.X) * dx + static_cast<double>(y - a.Y) * dy) / len2, 0.0, 1.0);
    return {a.X + static_cast<std::int64_t>(std::llround(t * dx)),
            a.Y + static_cast<std::int64_t>(std::llround(t * dy))};
}

bool NearPoint(TORXBaseItem* item, std::int64_t x, std::int64_t y, std::int32_t tolerance, const TQVLPto64& p,
               std::int32_t index, TQVLRef& ref) {
    if (Distance(x, y, p.X, p.Y) > tolerance) return false;
    ref = TQVLRef{item, index, p.X, p.Y};
    return true;
}

namespace {
std::size_t SegmentCount(std::span<const TQVLPto64> points, bool closed) {
    if (points.size() < 2) return 0;
    return closed ? points.size() : points.size() - 1;
}
}  // namespace

bool SnapNearestOnChain(TORXBaseItem* item, std::span<const TQVLPto64> points, bool closed, std::int64_t x,
                        std::int64_t y, std::int32_t tolerance, TQVLRef& ref) {
    const std::size_t n = SegmentCount(points, closed);
    for (std::size_t i = 0; i < n; ++i) {
        const TQVLPto64 p = NearestOnSegment(points[i], points[(i + 1) % points.size()], x, y);
        if (NearPoint(item, x, y, tolerance, p, static_cast<std::int32_t>(i + 1), ref)) return true;
    }
    return false;
}

bool SnapMidOfChain(TORXBaseItem* item, std::span<const TQVLPto64> points, bool closed, std::int64_t x,
                    std::int64_t y, std::int32_t tolerance, TQVLRef& ref) {
    const std::size_t n = SegmentCount(points, closed);
    for (std::size_t i = 0; i < n; ++i) {
        const TQVLPto64& a = points[i];
        const TQVLPto64& b = points[(i + 1) % points.size()];
        if (NearPoint(item, x, y, tolerance, {(a.X + b.X) / 2, (a.Y + b.Y) / 2},
                      static_cast<std::int32_t>(i + 1), ref))
            return true;
    }
    return false;
}

bool PickChain(std::span<const TQVLPto64> points, bool closed, std::int64_t x, std::int64_t y,
               std::int64_t tolerance) {
    if (points.size() == 1) return TDraw2D::CursorOnPos(x, y, points[0].X, points[0].Y, tolerance + 1);
    const std::size_t n = SegmentCount(points, closed);
    for (std::size_t i = 0; i < n; ++i) {
        const TQVLPto64& a = points[i];
        const TQVLPto64& b = points[(i + 1) % points.size()];
        if (TDraw2D::PointInLine(a.X, a.Y, b.X, b.Y, x, y, tolerance)) return true;
    }
    return false;
}

bool SnapIntersection(TORXBaseItem* item, std::int64_t x, std::int64_t y, std::int32_t tolerance,
                      TQVLRef& ref) {
    for (const TIntSecPoint& p : item->QVLab()->GetIntersections()) {
        if (p.ItemA != item->InID() && p.ItemB != item->InID()) continue;
        if (NearPoint(item, x, y, tolerance, {p.X, p.Y}, 0, ref)) return true;
    }
    return false;
}

std::vector<TQVLPto64> ToPto64(const TQVLPtoA& points) {
    std::vector<TQVLPto64> out;
    out.reserve(points.size());
    for (const auto& p : points) out.emplace_back(p.X, p.Y);
    return out;
}

std::string SvgXY(const TQVLPto64& p, TQVLUnits unit) {
    return SvgLength(p.X, unit) + "," + SvgLength(p.Y, unit);
}

std::string SvgPointList(std::span<const TQVLPto64> points, TQVLUnits unit) {
    std::string out;
    for (const auto& p : points) {
        if (!out.empty()) out += ' ';
        out += SvgXY(p, unit);
    }
    return out;
}

void AddInspector(TJSON& array, const char* name, TJSON value) {
    array.push_back(TJSON{{"Name", name}, {"Value", std::move(value)}});
}

bool SnapOnChain(TORXBaseItem* item, std::span<const TQVLPto64> points, bool closed, std::int64_t x,
                 std::int64_t y, std::int32_t tolerance, TQVLSnap snap, TQVLRef& ref) {
    switch (snap) {
        case TQVLSnap::snEndPoint:
        case TQVLSnap::snCenter:
            return item->TORXBaseItem::CheckPoint(x, y, tolerance, snap, ref);
        case TQVLSnap::snMidPoint:
            return SnapMidOfChain(item, points, closed, x, y, tolerance, ref);
        case TQVLSnap::snNearest:
            return SnapNearestOnChain(item, points, closed, x, y, tolerance, ref);
        case TQVLSnap::snIntersection:
            return SnapIntersection(item, x, y, tolerance, ref);
        case TQVLSnap::snNone:
            return false;
    }
    return false;
}

}  // namespace Orvex::ItemGeo
