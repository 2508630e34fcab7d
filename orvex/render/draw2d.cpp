// Arrow heads, offsets, vectors, rotation and rectangles of TDraw2D. Arcs, intersections and hit tests live
// in draw2d_arcs.cpp, draw2d_intersect.cpp and draw2d_hit.cpp.
//
// [SECTION] Arrow heads
// [SECTION] Offsets
// [SECTION] Vectors and rotation
// [SECTION] Rectangles
#include "orvex/render/draw2d.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

#include "orvex/render/draw2d_internal.h"

namespace Orvex {

using namespace Draw2DDetail;  // NOLINT(google-build-using-namespace)

namespace {

// Barb ends of a head at (tx, ty) arriving in direction theta; the tip itself when there is no opening.
void Barbs(double tx, double ty, double theta, double size, float divisor, double& bx1, double& by1,
           double& bx2, double& by2) {
    if (!(divisor > 0.0f)) {
        bx1 = bx2 = tx, by1 = by2 = ty;
        return;
    }
    const double phi = std::numbers::pi / static_cast<double>(divisor);
    bx1 = tx - size * std::cos(theta - phi);
    by1 = ty - size * std::sin(theta - phi);
    bx2 = tx - size * std::cos(theta + phi);
    by2 = ty - size * std::sin(theta + phi);
}

bool IntArrow(double tx, double ty, double theta, std::int64_t size, std::int64_t& ax1, std::int64_t& ay1,
              std::int64_t& ax2, std::int64_t& ay2, float divisor) {
    double bx1, by1, bx2, by2;
    Barbs(tx, ty, theta, D(size), divisor, bx1, by1, bx2, by2);
    ax1 = Round(bx1), ay1 = Round(by1), ax2 = Round(bx2), ay2 = Round(by2);
    return size > 0 && divisor > 0.0f;
}

bool FloatArrow(float tx, float ty, double theta, float size, float& ax1, float& ay1, float& ax2, float& ay2,
                float divisor) {
    double bx1, by1, bx2, by2;
    Barbs(tx, ty, theta, size, divisor, bx1, by1, bx2, by2);
    ax1 = static_cast<float>(bx1), ay1 = static_cast<float>(by1);
    ax2 = static_cast<float>(bx2), ay2 = static_cast<float>(by2);
    return size > 0.0f && divisor > 0.0f;
}

bool Tick(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2, std::int64_t size, double turn,
          std::int64_t& ax1, std::int64_t& ay1, std::int64_t& ax2, std::int64_t& ay2) {
    const double psi = std::atan2(D(y2) - D(y1), D(x2) - D(x1)) + turn;
    const double ux = D(size) * std::cos(psi), uy = D(size) * std::sin(psi);
    ax1 = Round(D(x2) - ux), ay1 = Round(D(y2) - uy);
    ax2 = Round(D(x2) + ux), ay2 = Round(D(y2) + uy);
    return size > 0;
}

// Unit normal (VectorPerpendicular direction) scaled by distance; false for a zero-length segment.
bool Offset(double dx, double dy, double distance, double& ox, double& oy) {
    const double len = std::hypot(dx, dy);
    if (len == 0.0) return false;
    ox = -dy / len * distance;
    oy = dx / len * distance;
    return true;
}

}  // namespace

// [SECTION] Arrow heads ------------------------------------------------------------------------------------

bool TDraw2D::DrawArrow(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2, std::int64_t size,
                        std::int64_t& ax1, std::int64_t& ay1, std::int64_t& ax2, std::int64_t& ay2,
                        float divisor) {
    const double theta = std::atan2(D(y2) - D(y1), D(x2) - D(x1));
    return IntArrow(D(x2), D(y2), theta, size, ax1, ay1, ax2, ay2, divisor);
}

bool TDraw2D::DrawArrow(float x1, float y1, float x2, float y2, float size, float& ax1, float& ay1,
                        float& ax2, float& ay2, float divisor) {
    const double theta = std::atan2(static_cast<double>(y2) - y1, static_cast<double>(x2) - x1);
    return FloatArrow(x2, y2, theta, size, ax1, ay1, ax2, ay2, divisor);
}

bool TDraw2D::DrawArrow(std::int64_t x, std::int64_t y, double angle, std::int64_t size, std::int64_t& ax1,
                        std::int64_t& ay1, std::int64_t& ax2, std::int64_t& ay2, float divisor) {
    return IntArrow(D(x), D(y), angle, size, ax1, ay1, ax2, ay2, divisor);
}

bool TDraw2D::DrawArrow(float x, float y, double angle, float size, float& ax1, float& ay1, float& ax2,
                        float& ay2, float divisor) {
    return FloatArrow(x, y, angle, size, ax1, ay1, ax2, ay2, divisor);
}

bool TDraw2D::DrawArrowArc(std::int64_t cx, std::int64_t cy, std::int64_t radius, double angle, bool ccw,
                           std::int64_t size, std::int64_t& tx, std::int64_t& ty, std::int64_t& ax1,
                           std::int64_t& ay1, std::int64_t& ax2, std::int64_t& ay2, float divisor) {
    const double r = D(radius);
    const double px = D(cx) + r * std::cos(angle), py = D(cy) + r * std::sin(angle);
    tx = Round(px), ty = Round(py);
    const double travel = ccw ? 1.0 : -1.0;
    double theta = angle + travel * std::numbers::pi / 2.0;  // the tangent, when there is no chord to take
    if (radius > 0 && size > 0) {
        // Going back more than a quarter turn would point the head across the circle.
        const double back = std::min(D(size) / r, std::numbers::pi / 2.0);
        const double b = angle - travel * back;
        theta = std::atan2(py - (D(cy) + r * std::sin(b)), px - (D(cx) + r * std::cos(b)));
    }
    return IntArrow(px, py, theta, size, ax1, ay1, ax2, ay2, divisor);
}

bool TDraw2D::DrawLeft(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2, std::int64_t size,
                       std::int64_t& ax1, std::int64_t& ay1, std::int64_t& ax2, std::int64_t& ay2) {
    return Tick(x1, y1, x2, y2, size, -std::numbers::pi / 4.0, ax1, ay1, ax2, ay2);
}

bool TDraw2D::DrawRight(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2, std::int64_t size,
                        std::int64_t& ax1, std::int64_t& ay1, std::int64_t& ax2, std::int64_t& ay2) {
    return Tick(x1, y1, x2, y2, size, std::numbers::pi / 4.0, ax1, ay1, ax2, ay2);
}

// [SECTION] Offsets ----------------------------------------------------------------------------------------

bool TDraw2D::DrawParallelLine(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2,
                               std::int64_t distance, std::int64_t& px1, std::int64_t& py1, std::int64_t& px2,
                               std::int64_t& py2) {
    double ox = 0.0, oy = 0.0;
    const bool ok = Offset(D(x2) - D(x1), D(y2) - D(y1), D(distance), ox, oy);
    px1 = Round(D(x1) + ox), py1 = Round(D(y1) + oy);
    px2 = Round(D(x2) + ox), py2 = Round(D(y2) + oy);
    return ok;
}

bool TDraw2D::DrawParallelLine(float x1, float y1, float x2, float y2, float distance, float& px1, float& py1,
                               float& px2, float& py2) {
    double ox = 0.0, oy = 0.0;
    const bool ok = Offset(static_cast<double>(x2) - x1, static_cast<double>(y2) - y1, distance, ox, oy);
    px1 = static_cast<float>(x1 + ox), py1 = static_cast<float>(y1 + oy);
    px2 = static_cast<float>(x2 + ox), py2 = static_cast<float>(y2 + oy);
    return ok;
}

bool TDraw2D::DrawParalLine(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2,
                            std::int64_t px, std::int64_t py, std::int64_t& qx1, std::int64_t& qy1,
                            std::int64_t& qx2, std::int64_t& qy2) {
    qx1 = x1, qy1 = y1, qx2 = x2, qy2 = y2;
    const TInt128 dx = Wide(x2) - x1, dy = Wide(y2) - y1;
    const TInt128 len2 = Dot(dx, dy, dx, dy);
    if (len2 == 0) return false;
    // The move is (-dy, dx) times the cross product over the squared length: exact until the last division.
    const long double f = LD(Cross(dx, dy, Wide(px) - x1, Wide(py) - y1)) / LD(len2);
    const long double ox = -LD(dy) * f, oy = LD(dx) * f;
    qx1 = Round(static_cast<double>(x1 + ox)), qy1 = Round(static_cast<double>(y1 + oy));
    qx2 = Round(static_cast<double>(x2 + ox)), qy2 = Round(static_cast<double>(y2 + oy));
    return true;
}

bool TDraw2D::PosMidParal(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2,
                          std::int64_t distance, std::int64_t& mx, std::int64_t& my) {
    double ox = 0.0, oy = 0.0;
    const bool ok = Offset(D(x2) - D(x1), D(y2) - D(y1), D(distance), ox, oy);
    mx = Round((D(x1) + D(x2)) / 2.0 + ox), my = Round((D(y1) + D(y2)) / 2.0 + oy);
    return ok;
}

bool TDraw2D::PosMidParal(float x1, float y1, float x2, float y2, float distance, float& mx, float& my) {
    double ox = 0.0, oy = 0.0;
    const bool ok = Offset(static_cast<double>(x2) - x1, static_cast<double>(y2) - y1, distance, ox, oy);
    mx = static_cast<float>((static_cast<double>(x1) + x2) / 2.0 + ox);
    my = static_cast<float>((static_cast<double>(y1) + y2) / 2.0 + oy);
    return ok;
}

bool TDraw2D::PoligonParalel(std::span<const TQVLPto64> points, std::int64_t distance, bool closed,
                             std::vector<TQVLPto64>& result) {
    result.clear();
    std::vector<TQVLPto64> p;
    for (const TQVLPto64& q : points)
        if (p.empty() || !(p.back() == q)) p.push_back(q);
    if (closed && p.size() > 1 && p.front() == p.back()) p.pop_back();
    if (p.size() < 2) return false;

    const std::size_t n = p.size();
    const std::size_t edges = closed ? n : n - 1;
    struct TEdge {
        double ux, uy;  // unit direction
    };
    std::vector<TEdge> e(edges);
    for (std::size_t i = 0; i < edges; ++i) {
        const TQVLPto64& a = p[i];
        const TQVLPto64& b = p[(i + 1) % n];
        const double dx = D(b.X) - D(a.X), dy = D(b.Y) - D(a.Y), len = std::hypot(dx, dy);
        e[i] = {dx / len, dy / len};
    }
    const double d = D(distance);
    result.reserve(n);
    for (std::size_t i = 0; i < n; ++i) {
        const bool hasIn = closed || i > 0;
        const bool hasOut = closed || i + 1 < n;
        const TEdge& in = e[hasIn ? (i + edges - 1) % edges : 0];
        const TEdge& out = e[hasOut ? i % edges : edges - 1];
        const double px = D(p[i].X), py = D(p[i].Y);
        // Offset points of the incoming (a) and outgoing (b) edges at this vertex.
        const double ax = px - in.uy * d, ay = py + in.ux * d;
        const double bx = px - out.uy * d, by = py + out.ux * d;
        double x = hasIn ? ax : bx, y = hasIn ? ay : by;
        const double denom = in.ux * out.uy - in.uy * out.ux;
        if (hasIn && hasOut && std::abs(denom) > 1e-12) {
            const double s = ((bx - ax) * out.uy - (by - ay) * out.ux) / denom;
            x = ax + s * in.ux, y = ay + s * in.uy;
        }
        result.emplace_back(Round(x), Round(y));
    }
    return true;
}

bool TDraw2D::EquidistArc(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2, std::int64_t x3,
                          std::int64_t y3, std::int64_t distance, std::int64_t& qx1, std::int64_t& qy1,
                          std::int64_t& qx2, std::int64_t& qy2, std::int64_t& qx3, std::int64_t& qy3) {
    TPoint2D c;
    double r = 0.0;
    if (!CircleThreePoints(x1, y1, x2, y2, x3, y3, c, r) || r + D(distance) <= 0.0) return false;
    const double k = (r + D(distance)) / r;
    qx1 = Round(c.X + (D(x1) - c.X) * k), qy1 = Round(c.Y + (D(y1) - c.Y) * k);
    qx2 = Round(c.X + (D(x2) - c.X) * k), qy2 = Round(c.Y + (D(y2) - c.Y) * k);
    qx3 = Round(c.X + (D(x3) - c.X) * k), qy3 = Round(c.Y + (D(y3) - c.Y) * k);
    return true;
}

bool TDraw2D::EquidistArc(const TPoint2D& p1, const TPoint2D& p2, const TPoint2D& p3, double distance,
                          TPoint2D& q1, TPoint2D& q2, TPoint2D& q3) {
    TPoint2D c;
    double r = 0.0, a0 = 0.0, a1 = 0.0;
    bool ccw = false;
    if (!ArcThreePoints(p1, p2, p3, c, r, a0, a1, ccw) || r + distance <= 0.0) return false;
    const double k = (r + distance) / r;
    q1 = {c.X + (p1.X - c.X) * k, c.Y + (p1.Y - c.Y) * k};
    q2 = {c.X + (p2.X - c.X) * k, c.Y + (p2.Y - c.Y) * k};
    q3 = {c.X + (p3.X - c.X) * k, c.Y + (p3.Y - c.Y) * k};
    return true;
}

bool TDraw2D::EquidistArc(std::int64_t cx, std::int64_t cy, std::int64_t radius, double startAngle,
                          double endAngle, std::int64_t distance, std::int64_t& newRadius, TQVLPto64& start,
                          TQVLPto64& end) {
    const TInt128 r = Wide(radius) + distance;
    if (r <= 0) return false;
    newRadius = static_cast<std::int64_t>(r);
    const double rr = D(newRadius);
    start = {Round(D(cx) + rr * std::cos(startAngle)), Round(D(cy) + rr * std::sin(startAngle))};
    end = {Round(D(cx) + rr * std::cos(endAngle)), Round(D(cy) + rr * std::sin(endAngle))};
    return true;
}

// [SECTION] Vectors and rotation ---------------------------------------------------------------------------

double TDraw2D::CrossProduct(const TPoint2D& a, const TPoint2D& b) {
    return a.X * b.Y - a.Y * b.X;
}

double TDraw2D::CrossProduct(std::int64_t ax, std::int64_t ay, std::int64_t bx, std::int64_t by) {
    return ToDouble(Cross(ax, ay, bx, by));
}

double TDraw2D::DotProduct(const TPoint2D& a, const TPoint2D& b) {
    return a.X * b.X + a.Y * b.Y;
}

double TDraw2D::DotProduct(std::int64_t ax, std::int64_t ay, std::int64_t bx, std::int64_t by) {
    return ToDouble(Dot(ax, ay, bx, by));
}

double TDraw2D::Magnitude(const TPoint2D& v) {
    return std::hypot(v.X, v.Y);
}

double TDraw2D::Magnitude(std::int64_t x, std::int64_t y) {
    return std::hypot(D(x), D(y));
}

double TDraw2D::Distance(const TPoint2D& a, const TPoint2D& b) {
    return std::hypot(b.X - a.X, b.Y - a.Y);
}

double TDraw2D::Distance(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2) {
    return ToDouble(Wide(x2) - x1) == 0.0 ? std::abs(ToDouble(Wide(y2) - y1))
                                          : std::hypot(ToDouble(Wide(x2) - x1), ToDouble(Wide(y2) - y1));
}

std::int64_t TDraw2D::DistancePointToLine(std::int64_t px, std::int64_t py, std::int64_t x1, std::int64_t y1,
                                          std::int64_t x2, std::int64_t y2) {
    // 64-bit arithmetic as the rule has it; unsigned so that out-of-range values wrap instead of trapping.
    using U = std::uint64_t;
    const U a = static_cast<U>(y2) - static_cast<U>(y1);
    const U b = static_cast<U>(x1) - static_cast<U>(x2);
    const U c = static_cast<U>(x2) * static_cast<U>(y1) - static_cast<U>(x1) * static_cast<U>(y2);
    const auto num = static_cast<std::int64_t>(a * static_cast<U>(px) + b * static_cast<U>(py) + c);
    const auto den2 = static_cast<std::int64_t>(a * a + b * b);
    const std::int64_t den = Int64Sqrt(den2);
    if (den == 0) return 0;
    const U magnitude = num < 0 ? U{0} - static_cast<U>(num) : static_cast<U>(num);
    return static_cast<std::int64_t>(magnitude / static_cast<U>(den));
}

double TDraw2D::AnglePointToLine(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2,
                                 std::int64_t px, std::int64_t py) {
    if ((x1 == x2 && y1 == y2) || (x1 == px && y1 == py)) return 0.0;
    return AngleDiff(AngleSegment(x1, y1, x2, y2), AngleSegment(x1, y1, px, py));
}

TQVLSPoint TDraw2D::VectorPerpendicular(float x1, float y1, float x2, float y2) {
    return {-(y2 - y1), x2 - x1};
}

TQVLPto64 TDraw2D::VectorPerpendicular(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2) {
    return {-(y2 - y1), x2 - x1};
}

namespace {

// Quarter turns of an offset, +x towards +y.
template <class T>
std::pair<T, T> Quarter(T dx, T dy, TQVLAngle angle) {
    switch (angle) {
        case TQVLAngle::ag0:
            return {dx, dy};
        case TQVLAngle::ag90:
            return {-dy, dx};
        case TQVLAngle::ag180:
            return {-dx, -dy};
        case TQVLAngle::ag270:
            return {dy, -dx};
    }
    return {dx, dy};
}

}  // namespace

TRectF TDraw2D::Rotate(const TRectF& rect, float cx, float cy, TQVLAngle angle) {
    const auto [x1, y1] = Quarter(rect.Left - cx, rect.Top - cy, angle);
    const auto [x2, y2] = Quarter(rect.Right - cx, rect.Bottom - cy, angle);
    return {cx + std::min(x1, x2), cy + std::min(y1, y2), cx + std::max(x1, x2), cy + std::max(y1, y2)};
}

TQVLPto64 TDraw2D::RotatePoint(std::int64_t x, std::int64_t y, std::int64_t cx, std::int64_t cy,
                               TQVLAngle angle) {
    const auto [dx, dy] = Quarter(x - cx, y - cy, angle);
    return {cx + dx, cy + dy};
}

TQVLPto64 TDraw2D::RotatePoint(std::int64_t x, std::int64_t y, std::int64_t cx, std::int64_t cy,
                               double angle) {
    const TPoint2D p = RotatePoint(TPoint2D(D(x), D(y)), TPoint2D(D(cx), D(cy)), angle);
    return {Round(p.X), Round(p.Y)};
}

TPoint2D TDraw2D::RotatePoint(const TPoint2D& p, const TPoint2D& center, double angle) {
    const double c = std::cos(angle), s = std::sin(angle);
    const double dx = p.X - center.X, dy = p.Y - center.Y;
    return {center.X + dx * c - dy * s, center.Y + dx * s + dy * c};
}

void TDraw2D::OrderPoints(std::span<TQVLPto64> points) {
    if (points.size() < 3) return;
    if (points[0].X > points[1].X) std::swap(points[0], points[1]);
    if (points[0].X > points[2].X) std::swap(points[0], points[2]);
    if (points[1].X > points[2].X) std::swap(points[1], points[2]);
}

std::int64_t TDraw2D::Int64Sqrt(std::int64_t value) {
    if (value <= 0) return 0;
    // The double estimate is within a few units; exact 128-bit squares settle it.
    auto r = static_cast<std::int64_t>(std::sqrt(static_cast<double>(value)));
    while (r > 0 && Mul(r, r) > value) --r;
    while (Mul(Wide(r) + 1, Wide(r) + 1) <= value) ++r;
    return r;
}

// [SECTION] Rectangles -------------------------------------------------------------------------------------

TRectF TDraw2D::CenteredRect(const TRectF& rect, float width, float height) {
    const float left = rect.Left + (rect.Width() - width) / 2.0f;
    const float top = rect.Top + (rect.Height() - height) / 2.0f;
    return {left, top, left + width, top + height};
}

TQVLRect TDraw2D::CenteredRect(const TQVLRect& rect, std::int64_t width, std::int64_t height) {
    const auto floorHalf = [](std::int64_t v) { return v >= 0 ? v / 2 : -((-v + 1) / 2); };
    const std::int64_t left = rect.Left + floorHalf(rect.GetWidth() - width);
    const std::int64_t top = rect.Top + floorHalf(rect.GetHeight() - height);
    return {left, top, left + width, top + height};
}

std::vector<TQVLPto64> TDraw2D::CalculateSlotPolygon(std::int64_t x1, std::int64_t y1, std::int64_t x2,
                                                     std::int64_t y2, std::int64_t width, int arcSegments) {
    std::vector<TQVLPto64> out;
    if (width <= 0) return out;
    const int n = std::max(arcSegments, 2);
    const double r = D(width) / 2.0;
    const auto arcPoint = [&](std::int64_t cx, std::int64_t cy, double a) {
        out.emplace_back(Round(D(cx) + r * std::cos(a)), Round(D(cy) + r * std::sin(a)));
    };
    const double step = std::numbers::pi / n;
    if (x1 == x2 && y1 == y2) {
        for (int k = 0; k < 2 * n; ++k) arcPoint(x1, y1, k * step);
        return out;
    }
    const double theta = std::atan2(D(y2) - D(y1), D(x2) - D(x1));
    for (int k = 0; k <= n; ++k) arcPoint(x2, y2, theta - std::numbers::pi / 2.0 + k * step);
    for (int k = 0; k <= n; ++k) arcPoint(x1, y1, theta + std::numbers::pi / 2.0 + k * step);
    return out;
}

}  // namespace Orvex
