// Hit tests of TDraw2D: grip handles, outlines within a tolerance, and the side of a line.
#include <algorithm>
#include <cmath>

#include "orvex/render/draw2d.h"
#include "orvex/render/draw2d_internal.h"

namespace Orvex {

using namespace Draw2DDetail;  // NOLINT(google-build-using-namespace)

namespace {

// Squared distance from p to the segment a b compared with tol^2, exact: -1 nearer, 0 at, +1 farther.
int CompareSegmentDistance(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2,
                           std::int64_t px, std::int64_t py, std::int64_t tol) {
    const TInt128 dx = Wide(x2) - x1, dy = Wide(y2) - y1;
    const TInt128 ex = Wide(px) - x1, ey = Wide(py) - y1;
    const TInt128 along = Dot(ex, ey, dx, dy), dd = Dot(dx, dy, dx, dy);
    if (along <= 0) return CompareSumSquares(ex, ey, tol);
    if (along >= dd) return CompareSumSquares(Wide(px) - x2, Wide(py) - y2, tol);
    // Inside the strip: |cross| / |d| against tol, squared and multiplied out.
    return -CompareSumSquares(Mul(tol, dx), Mul(tol, dy), Cross(dx, dy, ex, ey));
}

double SegmentDistance(const TPoint2D& a, const TPoint2D& b, double px, double py) {
    const double dx = b.X - a.X, dy = b.Y - a.Y, dd = dx * dx + dy * dy;
    double t = dd > 0.0 ? ((px - a.X) * dx + (py - a.Y) * dy) / dd : 0.0;
    t = std::clamp(t, 0.0, 1.0);
    return std::hypot(px - (a.X + t * dx), py - (a.Y + t * dy));
}

}  // namespace

bool TDraw2D::CursorOnPos(std::int64_t x, std::int64_t y, std::int64_t px, std::int64_t py,
                          std::int64_t tol) {
    return Wide(x) - tol < px && px < Wide(x) + tol && Wide(y) - tol < py && py < Wide(y) + tol;
}

bool TDraw2D::CursorOnPosS(std::int64_t x, std::int64_t y, float px, float py, std::int64_t tol) {
    const double t = D(tol);
    return D(x) - t < px && px < D(x) + t && D(y) - t < py && py < D(y) + t;
}

bool TDraw2D::PointInLine(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2, std::int64_t px,
                          std::int64_t py, std::int64_t tol) {
    return tol >= 0 && CompareSegmentDistance(x1, y1, x2, y2, px, py, tol) <= 0;
}

bool TDraw2D::PointOnSegment(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2,
                             std::int64_t px, std::int64_t py) {
    return PointSide(x1, y1, x2, y2, px, py) == 0 && std::min(x1, x2) <= px && px <= std::max(x1, x2) &&
           std::min(y1, y2) <= py && py <= std::max(y1, y2);
}

bool TDraw2D::PointInArc(std::int64_t cx, std::int64_t cy, std::int64_t radius, double startAngle,
                         double endAngle, bool ccw, std::int64_t px, std::int64_t py, std::int64_t tol) {
    if (tol < 0) return false;
    if (radius <= 0) return CompareSumSquares(Wide(px) - cx, Wide(py) - cy, tol) <= 0;
    if (PointOnCircle(cx, cy, radius, px, py, tol) &&
        OnArc(startAngle, endAngle, ccw, std::atan2(D(py) - D(cy), D(px) - D(cx))))
        return true;
    // The ends are round, as a stroked arc looks.
    const double r = D(radius);
    for (const double a : {startAngle, endAngle}) {
        const double ex = D(cx) + r * std::cos(a), ey = D(cy) + r * std::sin(a);
        if (std::hypot(D(px) - ex, D(py) - ey) <= D(tol)) return true;
    }
    return false;
}

bool TDraw2D::PointInBezier(std::span<const TQVLPto64> points, std::int64_t px, std::int64_t py,
                            std::int64_t tol) {
    if (tol < 0 || points.empty()) return false;
    const std::vector<TPoint2D> flat = CurvePoints(points, 32);
    const double t = D(tol), x = D(px), y = D(py);
    if (flat.size() == 1) return SegmentDistance(flat[0], flat[0], x, y) <= t;
    for (std::size_t i = 0; i + 1 < flat.size(); ++i)
        if (SegmentDistance(flat[i], flat[i + 1], x, y) <= t) return true;
    return false;
}

bool TDraw2D::PointInCircle(std::int64_t cx, std::int64_t cy, std::int64_t radius, std::int64_t px,
                            std::int64_t py) {
    return radius >= 0 && CompareSumSquares(Wide(px) - cx, Wide(py) - cy, radius) <= 0;
}

bool TDraw2D::PointOnCircle(std::int64_t cx, std::int64_t cy, std::int64_t radius, std::int64_t px,
                            std::int64_t py, std::int64_t tol) {
    if (radius < 0 || tol < 0) return false;
    const TInt128 dx = Wide(px) - cx, dy = Wide(py) - cy;
    const TInt128 inner = Wide(radius) - tol;
    if (CompareSumSquares(dx, dy, Wide(radius) + tol) > 0) return false;
    return inner <= 0 || CompareSumSquares(dx, dy, inner) >= 0;
}

bool TDraw2D::PointInEllipse(std::int64_t cx, std::int64_t cy, std::int64_t rx, std::int64_t ry,
                             std::int64_t px, std::int64_t py) {
    if (rx <= 0 || ry <= 0) return false;
    // (dx/rx)^2 + (dy/ry)^2 <= 1 multiplied by (rx ry)^2, so a point exactly on the outline is on it.
    return CompareSumSquares(Mul(Wide(px) - cx, ry), Mul(Wide(py) - cy, rx), Mul(rx, ry)) <= 0;
}

bool TDraw2D::PointOnEllipse(std::int64_t cx, std::int64_t cy, std::int64_t rx, std::int64_t ry,
                             std::int64_t px, std::int64_t py, std::int64_t tol) {
    const std::int64_t h = tol / 2;
    return PointInEllipse(cx, cy, rx + h, ry + h, px, py) && !PointInEllipse(cx, cy, rx - h, ry - h, px, py);
}

int TDraw2D::PointSide(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2, std::int64_t px,
                       std::int64_t py) {
    const TInt128 c = Cross(Wide(x2) - x1, Wide(y2) - y1, Wide(px) - x1, Wide(py) - y1);
    return c > 0 ? 1 : (c < 0 ? -1 : 0);
}

bool TDraw2D::PosPoint(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2, std::int64_t px,
                       std::int64_t py) {
    if (y2 == y1) return py < y1;
    if (x2 == x1) return px > x1;
    const double m = ToDouble(Wide(y2) - y1) / ToDouble(Wide(x2) - x1);
    return m * D(px) + (D(y1) - m * D(x1)) > D(py);
}

}  // namespace Orvex
