// Intersections, extension and trimming of TDraw2D. Decisions (parallel, tangent, on the boundary) are taken
// on exact 128-bit integers where the inputs are integers; only the resulting points are rounded.
//
// [SECTION] Shared crossings
// [SECTION] Lines
// [SECTION] Extension, trimming, joining
// [SECTION] Circles and ellipses
// [SECTION] Rectangles
#include <algorithm>
#include <array>
#include <cmath>

#include "orvex/render/draw2d.h"
#include "orvex/render/draw2d_internal.h"

namespace Orvex {

using namespace Draw2DDetail;  // NOLINT(google-build-using-namespace)

// [SECTION] Shared crossings -------------------------------------------------------------------------------

int Draw2DDetail::LineCircleParams(TInt128 px, TInt128 py, TInt128 dx, TInt128 dy, TInt128 cx, TInt128 cy,
                                   TInt128 r, double& t1, double& t2) {
    const TInt128 dd = Dot(dx, dy, dx, dy);
    if (dd == 0 || r <= 0) return 0;
    const TInt128 ex = cx - px, ey = cy - py;
    const TInt128 s = Cross(dx, dy, ex, ey);  // |d| times the centre's distance from the line
    // r^2 |d|^2 against s^2 decides between miss, touch and cross.
    const int cmp = CompareSumSquares(Mul(r, dx), Mul(r, dy), s);
    if (cmp < 0) return 0;
    const long double foot = LD(Dot(ex, ey, dx, dy)) / LD(dd);
    if (cmp == 0) {
        t1 = t2 = static_cast<double>(foot);
        return 1;
    }
    const long double rl = LD(r), sl = LD(s), ddl = LD(dd);
    const long double half = std::sqrt(std::max(0.0L, rl * rl * ddl - sl * sl)) / ddl;
    t1 = static_cast<double>(foot - half);
    t2 = static_cast<double>(foot + half);
    return 2;
}

bool Draw2DDetail::LineSegmentParam(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2,
                                    std::int64_t x3, std::int64_t y3, std::int64_t x4, std::int64_t y4,
                                    double& t) {
    const TInt128 dx = Wide(x2) - x1, dy = Wide(y2) - y1, ex = Wide(x4) - x3, ey = Wide(y4) - y3;
    const TInt128 denom = Cross(dx, dy, ex, ey);
    if (denom == 0) return false;
    const TInt128 wx = Wide(x3) - x1, wy = Wide(y3) - y1;
    // The crossing lies at u along the boundary; 0 <= u <= 1 tested without dividing.
    TInt128 un = Cross(wx, wy, dx, dy), ud = denom;
    if (ud < 0) un = -un, ud = -ud;
    if (un < 0 || un > ud) return false;
    t = static_cast<double>(LD(Cross(wx, wy, ex, ey)) / LD(denom));
    return true;
}

namespace {

// Crossings of the line p1 p2 with an axis-aligned ellipse, as parameters along the line: the plane is
// stretched so that the ellipse becomes a circle of radius rx * ry, which keeps line parameters unchanged.
int LineEllipseParams(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2, std::int64_t cx,
                      std::int64_t cy, std::int64_t rx, std::int64_t ry, double& t1, double& t2) {
    if (rx <= 0 || ry <= 0) return 0;
    const TInt128 sx = ry, sy = rx;
    return LineCircleParams(Mul(Wide(x1) - cx, sx), Mul(Wide(y1) - cy, sy), Mul(Wide(x2) - x1, sx),
                            Mul(Wide(y2) - y1, sy), 0, 0, Mul(rx, ry), t1, t2);
}

int CircleParams(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2, std::int64_t cx,
                 std::int64_t cy, std::int64_t radius, double& t1, double& t2) {
    return LineCircleParams(x1, y1, Wide(x2) - x1, Wide(y2) - y1, cx, cy, radius, t1, t2);
}

std::array<TQVLPto64, 4> Corners(const TQVLRect& rect) {
    TQVLRect r = rect;
    r.NormalizeRect();
    return {TQVLPto64(r.Left, r.Top), TQVLPto64(r.Right, r.Top), TQVLPto64(r.Right, r.Bottom),
            TQVLPto64(r.Left, r.Bottom)};
}

}  // namespace

// [SECTION] Lines ------------------------------------------------------------------------------------------

bool TDraw2D::IntersectLines(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2,
                             std::int64_t x3, std::int64_t y3, std::int64_t x4, std::int64_t y4,
                             std::int64_t& x, std::int64_t& y) {
    const TInt128 dx = Wide(x2) - x1, dy = Wide(y2) - y1, ex = Wide(x4) - x3, ey = Wide(y4) - y3;
    const TInt128 denom = Cross(dx, dy, ex, ey);
    if (denom == 0) return false;  // zero-length lines land here too
    const long double t = LD(Cross(Wide(x3) - x1, Wide(y3) - y1, ex, ey)) / LD(denom);
    x = Round(static_cast<double>(x1 + t * LD(dx)));
    y = Round(static_cast<double>(y1 + t * LD(dy)));
    return true;
}

bool TDraw2D::LinePerpenFromPoint(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2,
                                  std::int64_t px, std::int64_t py, std::int64_t& fx, std::int64_t& fy) {
    const TInt128 dx = Wide(x2) - x1, dy = Wide(y2) - y1;
    const TInt128 dd = Dot(dx, dy, dx, dy);
    if (dd == 0) return false;
    const long double t = LD(Dot(Wide(px) - x1, Wide(py) - y1, dx, dy)) / LD(dd);
    fx = Round(static_cast<double>(x1 + t * LD(dx)));
    fy = Round(static_cast<double>(y1 + t * LD(dy)));
    return true;
}

// [SECTION] Extension, trimming, joining -------------------------------------------------------------------

bool TDraw2D::ExtendLines(std::int64_t& x1, std::int64_t& y1, std::int64_t& x2, std::int64_t& y2,
                          std::int64_t x3, std::int64_t y3, std::int64_t x4, std::int64_t y4) {
    TExtendPick pick;
    double t = 0.0;
    if (LineSegmentParam(x1, y1, x2, y2, x3, y3, x4, y4, t)) pick.Add(t);
    return pick.Apply(x1, y1, x2, y2);
}

bool TDraw2D::ExtendLineToCircle(std::int64_t& x1, std::int64_t& y1, std::int64_t& x2, std::int64_t& y2,
                                 std::int64_t cx, std::int64_t cy, std::int64_t radius) {
    TExtendPick pick;
    double t1 = 0.0, t2 = 0.0;
    if (CircleParams(x1, y1, x2, y2, cx, cy, radius, t1, t2) > 0) pick.Add(t1), pick.Add(t2);
    return pick.Apply(x1, y1, x2, y2);
}

bool TDraw2D::ExtendLineToEllipse(std::int64_t& x1, std::int64_t& y1, std::int64_t& x2, std::int64_t& y2,
                                  std::int64_t cx, std::int64_t cy, std::int64_t rx, std::int64_t ry) {
    TExtendPick pick;
    double t1 = 0.0, t2 = 0.0;
    if (LineEllipseParams(x1, y1, x2, y2, cx, cy, rx, ry, t1, t2) > 0) pick.Add(t1), pick.Add(t2);
    return pick.Apply(x1, y1, x2, y2);
}

bool TDraw2D::ExtendLineToRectangle(std::int64_t& x1, std::int64_t& y1, std::int64_t& x2, std::int64_t& y2,
                                    const TQVLRect& rect) {
    const std::array<TQVLPto64, 4> c = Corners(rect);
    return ExtendLineToPolyline(x1, y1, x2, y2, c, true);
}

bool TDraw2D::ExtendLineToPolyline(std::int64_t& x1, std::int64_t& y1, std::int64_t& x2, std::int64_t& y2,
                                   std::span<const TQVLPto64> points, bool closed) {
    TExtendPick pick;
    const std::size_t n = points.size();
    const std::size_t edges = n < 2 ? 0 : (closed ? n : n - 1);
    for (std::size_t i = 0; i < edges; ++i) {
        const TQVLPto64& a = points[i];
        const TQVLPto64& b = points[(i + 1) % n];
        double t = 0.0;
        if (LineSegmentParam(x1, y1, x2, y2, a.X, a.Y, b.X, b.Y, t)) pick.Add(t);
    }
    return pick.Apply(x1, y1, x2, y2);
}

bool TDraw2D::ExtendLineToArc(std::int64_t& x1, std::int64_t& y1, std::int64_t& x2, std::int64_t& y2,
                              std::int64_t cx, std::int64_t cy, std::int64_t radius, double startAngle,
                              double endAngle, bool ccw) {
    TExtendPick pick;
    double t[2] = {0.0, 0.0};
    const int n = CircleParams(x1, y1, x2, y2, cx, cy, radius, t[0], t[1]);
    for (int i = 0; i < n; ++i) {
        const TPoint2D p = At(x1, y1, x2, y2, t[i]);
        if (OnArc(startAngle, endAngle, ccw, std::atan2(p.Y - D(cy), p.X - D(cx)))) pick.Add(t[i]);
    }
    return pick.Apply(x1, y1, x2, y2);
}

bool TDraw2D::TrimLineAtArc(std::int64_t& x1, std::int64_t& y1, std::int64_t& x2, std::int64_t& y2,
                            std::int64_t cx, std::int64_t cy, std::int64_t radius, double startAngle,
                            double endAngle, bool ccw, std::int64_t pickX, std::int64_t pickY) {
    double t[2] = {0.0, 0.0};
    const int n = CircleParams(x1, y1, x2, y2, cx, cy, radius, t[0], t[1]);
    const TInt128 dx = Wide(x2) - x1, dy = Wide(y2) - y1;
    const TInt128 dd = Dot(dx, dy, dx, dy);
    if (n == 0 || dd == 0) return false;
    const double tp = static_cast<double>(LD(Dot(Wide(pickX) - x1, Wide(pickY) - y1, dx, dy)) / LD(dd));
    bool found = false;
    double cut = 0.0;
    for (int i = 0; i < n; ++i) {
        if (!(t[i] > 0.0 && t[i] < 1.0)) continue;
        const TPoint2D p = At(x1, y1, x2, y2, t[i]);
        if (!OnArc(startAngle, endAngle, ccw, std::atan2(p.Y - D(cy), p.X - D(cx)))) continue;
        if (!found || std::abs(t[i] - tp) < std::abs(cut - tp)) cut = t[i], found = true;
    }
    if (!found) return false;
    const TPoint2D p = At(x1, y1, x2, y2, cut);
    if (tp >= cut)
        x2 = Round(p.X), y2 = Round(p.Y);
    else
        x1 = Round(p.X), y1 = Round(p.Y);
    return true;
}

bool TDraw2D::JoinLines(std::int64_t& x1, std::int64_t& y1, std::int64_t& x2, std::int64_t& y2,
                        std::int64_t& x3, std::int64_t& y3, std::int64_t& x4, std::int64_t& y4) {
    std::int64_t x = 0, y = 0;
    if (!IntersectLines(x1, y1, x2, y2, x3, y3, x4, y4, x, y)) return false;
    const auto moveNearer = [&](std::int64_t& ax, std::int64_t& ay, std::int64_t& bx, std::int64_t& by) {
        const TInt128 da = Dot(Wide(ax) - x, Wide(ay) - y, Wide(ax) - x, Wide(ay) - y);
        const TInt128 db = Dot(Wide(bx) - x, Wide(by) - y, Wide(bx) - x, Wide(by) - y);
        if (da < db)
            ax = x, ay = y;
        else
            bx = x, by = y;
    };
    moveNearer(x1, y1, x2, y2);
    moveNearer(x3, y3, x4, y4);
    return true;
}

// [SECTION] Circles and ellipses ---------------------------------------------------------------------------

namespace {

// Shared tail of the two circle-circle forms, once the count is decided.
void CirclePoints(const TPoint2D& c1, double r1, const TPoint2D& c2, double r2, bool tangent, TPoint2D& p1,
                  TPoint2D& p2) {
    const double dx = c2.X - c1.X, dy = c2.Y - c1.Y, d = std::hypot(dx, dy);
    const double a = (r1 * r1 - r2 * r2 + d * d) / (2.0 * d);
    const double h = tangent ? 0.0 : std::sqrt(std::max(0.0, r1 * r1 - a * a));
    const double mx = c1.X + a * dx / d, my = c1.Y + a * dy / d;
    p1 = {mx - h * dy / d, my + h * dx / d};
    p2 = {mx + h * dy / d, my - h * dx / d};
}

}  // namespace

int TDraw2D::CircleCircleIntersections(const TPoint2D& c1, double r1, const TPoint2D& c2, double r2,
                                       TPoint2D& p1, TPoint2D& p2) {
    if (!(r1 >= 0.0 && r2 >= 0.0)) return 0;
    const double dx = c2.X - c1.X, dy = c2.Y - c1.Y, dd = dx * dx + dy * dy;
    const double sum = (r1 + r2) * (r1 + r2), diff = (r1 - r2) * (r1 - r2);
    if (dd == 0.0 || dd > sum || dd < diff) return 0;
    const bool tangent = dd == sum || dd == diff;
    CirclePoints(c1, r1, c2, r2, tangent, p1, p2);
    return tangent ? 1 : 2;
}

bool TDraw2D::CircleCrossCircle(std::int64_t cx1, std::int64_t cy1, std::int64_t r1, std::int64_t cx2,
                                std::int64_t cy2, std::int64_t r2, std::int64_t& x1, std::int64_t& y1,
                                std::int64_t& x2, std::int64_t& y2) {
    if (r1 < 0 || r2 < 0) return false;
    const TInt128 dx = Wide(cx2) - cx1, dy = Wide(cy2) - cy1;
    if (dx == 0 && dy == 0) return false;
    const int vsSum = CompareSumSquares(dx, dy, Wide(r1) + r2);
    const int vsDiff = CompareSumSquares(dx, dy, Wide(r1) - r2);
    if (vsSum > 0 || vsDiff < 0) return false;
    TPoint2D p1, p2;
    CirclePoints({D(cx1), D(cy1)}, D(r1), {D(cx2), D(cy2)}, D(r2), vsSum == 0 || vsDiff == 0, p1, p2);
    x1 = Round(p1.X), y1 = Round(p1.Y), x2 = Round(p2.X), y2 = Round(p2.Y);
    return true;
}

int TDraw2D::LineCrossCircle(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2,
                             std::int64_t cx, std::int64_t cy, std::int64_t radius, TPoint2D& p1,
                             TPoint2D& p2) {
    double t1 = 0.0, t2 = 0.0;
    const int n = CircleParams(x1, y1, x2, y2, cx, cy, radius, t1, t2);
    if (n > 0) p1 = At(x1, y1, x2, y2, t1), p2 = At(x1, y1, x2, y2, t2);
    return n;
}

int TDraw2D::LineCrossEllipse(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2,
                              std::int64_t cx, std::int64_t cy, std::int64_t rx, std::int64_t ry,
                              TPoint2D& p1, TPoint2D& p2) {
    double t1 = 0.0, t2 = 0.0;
    const int n = LineEllipseParams(x1, y1, x2, y2, cx, cy, rx, ry, t1, t2);
    if (n > 0) p1 = At(x1, y1, x2, y2, t1), p2 = At(x1, y1, x2, y2, t2);
    return n;
}

// [SECTION] Rectangles -------------------------------------------------------------------------------------

bool TDraw2D::LineCrossRect(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2,
                            const TQVLRect& rect) {
    const std::array<TQVLPto64, 4> c = Corners(rect);
    const auto inside = [&](std::int64_t x, std::int64_t y) {
        return c[0].X <= x && x <= c[2].X && c[0].Y <= y && y <= c[2].Y;
    };
    if (inside(x1, y1) || inside(x2, y2)) return true;
    // Both ends outside: the segment meets the rectangle only by touching or crossing an edge.
    const auto touches = [&](const TQVLPto64& a, const TQVLPto64& b) {
        const int s1 = PointSide(x1, y1, x2, y2, a.X, a.Y), s2 = PointSide(x1, y1, x2, y2, b.X, b.Y);
        const int s3 = PointSide(a.X, a.Y, b.X, b.Y, x1, y1), s4 = PointSide(a.X, a.Y, b.X, b.Y, x2, y2);
        if (s1 * s2 < 0 && s3 * s4 < 0) return true;
        return PointOnSegment(x1, y1, x2, y2, a.X, a.Y) || PointOnSegment(x1, y1, x2, y2, b.X, b.Y) ||
               PointOnSegment(a.X, a.Y, b.X, b.Y, x1, y1) || PointOnSegment(a.X, a.Y, b.X, b.Y, x2, y2);
    };
    for (std::size_t i = 0; i < 4; ++i)
        if (touches(c[i], c[(i + 1) % 4])) return true;
    return false;
}

bool TDraw2D::RectangleIntersectLine(const TQVLRect& rect, std::int64_t x1, std::int64_t y1, std::int64_t x2,
                                     std::int64_t y2, TPoint2D& entry, TPoint2D& exit) {
    const std::array<TQVLPto64, 4> c = Corners(rect);
    const double dx = D(x2) - D(x1), dy = D(y2) - D(y1);
    // Clip the parameter range [0, 1] against the four half-planes.
    const double p[4] = {-dx, dx, -dy, dy};
    const double q[4] = {D(x1) - D(c[0].X), D(c[2].X) - D(x1), D(y1) - D(c[0].Y), D(c[2].Y) - D(y1)};
    double t0 = 0.0, t1 = 1.0;
    for (int i = 0; i < 4; ++i) {
        if (p[i] == 0.0) {
            if (q[i] < 0.0) return false;
            continue;
        }
        const double r = q[i] / p[i];
        if (p[i] < 0.0)
            t0 = std::max(t0, r);
        else
            t1 = std::min(t1, r);
    }
    if (t0 > t1) return false;
    entry = At(x1, y1, x2, y2, t0);
    exit = At(x1, y1, x2, y2, t1);
    return true;
}

bool TDraw2D::ArcIntersectsRect(std::int64_t cx, std::int64_t cy, std::int64_t radius, double startAngle,
                                double endAngle, bool ccw, const TQVLRect& rect) {
    const std::array<TQVLPto64, 4> c = Corners(rect);
    const auto inside = [&](double x, double y) {
        return D(c[0].X) <= x && x <= D(c[2].X) && D(c[0].Y) <= y && y <= D(c[2].Y);
    };
    if (radius <= 0) return inside(D(cx), D(cy));
    const double r = D(radius);
    for (const double a : {startAngle, endAngle})
        if (inside(D(cx) + r * std::cos(a), D(cy) + r * std::sin(a))) return true;
    for (std::size_t i = 0; i < 4; ++i) {
        const TQVLPto64& a = c[i];
        const TQVLPto64& b = c[(i + 1) % 4];
        double t[2] = {0.0, 0.0};
        const int n = CircleParams(a.X, a.Y, b.X, b.Y, cx, cy, radius, t[0], t[1]);
        for (int k = 0; k < n; ++k) {
            if (t[k] < 0.0 || t[k] > 1.0) continue;
            const TPoint2D p = At(a.X, a.Y, b.X, b.Y, t[k]);
            if (OnArc(startAngle, endAngle, ccw, std::atan2(p.Y - D(cy), p.X - D(cx)))) return true;
        }
    }
    return false;
}

bool TDraw2D::EllipseIntersectsRect(std::int64_t cx, std::int64_t cy, std::int64_t rx, std::int64_t ry,
                                    const TQVLRect& rect) {
    // The rectangle's point nearest the centre per axis is also nearest in the ellipse's own metric, since
    // stretching the axes keeps the rectangle a rectangle.
    const std::array<TQVLPto64, 4> c = Corners(rect);
    return PointInEllipse(cx, cy, rx, ry, std::clamp(cx, c[0].X, c[2].X), std::clamp(cy, c[0].Y, c[2].Y));
}

}  // namespace Orvex
