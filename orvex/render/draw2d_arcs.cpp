// Circles through two and three points, arcs and angle arithmetic of TDraw2D.
#include <algorithm>
#include <cmath>

#include "orvex/render/draw2d.h"
#include "orvex/render/draw2d_internal.h"

namespace Orvex {

using namespace Draw2DDetail;  // NOLINT(google-build-using-namespace)

namespace {

// Centre offset from the first point of the circle through three points, given the other two relative to
// it. The collinearity test is exact; only the final division rounds.
bool CircumCentre(TInt128 bx, TInt128 by, TInt128 cx, TInt128 cy, long double& ux, long double& uy,
                  int& orientation) {
    const TInt128 det = Cross(bx, by, cx, cy);
    if (det == 0) return false;
    orientation = det > 0 ? 1 : -1;
    const long double bb = LD(Dot(bx, by, bx, by)), cc = LD(Dot(cx, cy, cx, cy));
    const long double d = 2.0L * LD(det);
    ux = (LD(cy) * bb - LD(by) * cc) / d;
    uy = (LD(bx) * cc - LD(cx) * bb) / d;
    return true;
}

bool Circle3(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2, std::int64_t x3,
             std::int64_t y3, long double& cx, long double& cy, long double& r, int& orientation) {
    long double ux = 0.0L, uy = 0.0L;
    if (!CircumCentre(Wide(x2) - x1, Wide(y2) - y1, Wide(x3) - x1, Wide(y3) - y1, ux, uy, orientation))
        return false;
    cx = static_cast<long double>(x1) + ux;
    cy = static_cast<long double>(y1) + uy;
    r = std::hypot(ux, uy);
    return true;
}

}  // namespace

bool TDraw2D::CircleTwoPoints(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2,
                              std::int64_t& cx, std::int64_t& cy, std::int64_t& radius) {
    TPoint2D c;
    double r = 0.0;
    if (!CircleTwoPoints(x1, y1, x2, y2, c, r)) return false;
    cx = Round(c.X), cy = Round(c.Y), radius = Round(r);
    return true;
}

bool TDraw2D::CircleTwoPoints(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2,
                              TPoint2D& center, double& radius) {
    if (x1 == x2 && y1 == y2) return false;
    center = {(D(x1) + D(x2)) / 2.0, (D(y1) + D(y2)) / 2.0};
    radius = Distance(x1, y1, x2, y2) / 2.0;
    return true;
}

bool TDraw2D::CircleThreePoints(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2,
                                std::int64_t x3, std::int64_t y3, std::int64_t& cx, std::int64_t& cy,
                                std::int64_t& radius) {
    TPoint2D c;
    double r = 0.0;
    if (!CircleThreePoints(x1, y1, x2, y2, x3, y3, c, r)) return false;
    cx = Round(c.X), cy = Round(c.Y), radius = Round(r);
    return true;
}

bool TDraw2D::CircleThreePoints(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2,
                                std::int64_t x3, std::int64_t y3, TPoint2D& center, double& radius) {
    long double cx = 0.0L, cy = 0.0L, r = 0.0L;
    int orientation = 0;
    if (!Circle3(x1, y1, x2, y2, x3, y3, cx, cy, r, orientation)) return false;
    center = {static_cast<double>(cx), static_cast<double>(cy)};
    radius = static_cast<double>(r);
    return true;
}

bool TDraw2D::ArcThreePoints(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2,
                             std::int64_t x3, std::int64_t y3, std::int64_t& cx, std::int64_t& cy,
                             std::int64_t& radius, double& startAngle, double& endAngle, bool& ccw) {
    long double lcx = 0.0L, lcy = 0.0L, r = 0.0L;
    int orientation = 0;
    if (!Circle3(x1, y1, x2, y2, x3, y3, lcx, lcy, r, orientation)) return false;
    cx = Round(static_cast<double>(lcx)), cy = Round(static_cast<double>(lcy));
    radius = Round(static_cast<double>(r));
    // Angles from the exact centre, not the rounded one, so that the ends keep their true directions.
    startAngle = NormalizeAngle(static_cast<double>(std::atan2(y1 - lcy, x1 - lcx)));
    endAngle = NormalizeAngle(static_cast<double>(std::atan2(y3 - lcy, x3 - lcx)));
    ccw = orientation > 0;
    return true;
}

bool TDraw2D::ArcThreePoints(const TPoint2D& p1, const TPoint2D& p2, const TPoint2D& p3, TPoint2D& center,
                             double& radius, double& startAngle, double& endAngle, bool& ccw) {
    const double bx = p2.X - p1.X, by = p2.Y - p1.Y, qx = p3.X - p1.X, qy = p3.Y - p1.Y;
    const double det = bx * qy - by * qx;
    // Relative test: nearly collinear points would put the centre out at numerical infinity.
    if (!(std::abs(det) > 1e-12 * std::hypot(bx, by) * std::hypot(qx, qy))) return false;
    const double bb = bx * bx + by * by, qq = qx * qx + qy * qy;
    const double ux = (qy * bb - by * qq) / (2.0 * det), uy = (bx * qq - qx * bb) / (2.0 * det);
    center = {p1.X + ux, p1.Y + uy};
    radius = std::hypot(ux, uy);
    startAngle = NormalizeAngle(std::atan2(p1.Y - center.Y, p1.X - center.X));
    endAngle = NormalizeAngle(std::atan2(p3.Y - center.Y, p3.X - center.X));
    ccw = det > 0.0;
    return true;
}

double TDraw2D::ArcSweep(double a0, double a1, bool ccw) {
    if (ccw) return (a0 > a1 ? a1 + kTwoPi : a1) - a0;
    return a0 - (a1 > a0 ? a1 - kTwoPi : a1);
}

bool TDraw2D::ArcContainsAngle(double a0, double a1, double a, bool ccw) {
    if (a0 > a1) {
        std::swap(a0, a1);
        ccw = !ccw;
    }
    if (ccw) return a0 <= a && a <= a1;
    return a <= a0 || a >= a1;
}

bool TDraw2D::ArcParam(std::int64_t cx, std::int64_t cy, std::int64_t x1, std::int64_t y1, std::int64_t x2,
                       std::int64_t y2, bool ccw, double& radius, double& startAngle, double& endAngle,
                       double& sweep) {
    if (x1 == cx && y1 == cy) return false;
    radius = Distance(cx, cy, x1, y1);
    startAngle = AngleSegment(cx, cy, x1, y1);
    endAngle = AngleSegment(cx, cy, x2, y2);
    sweep = ArcSweep(startAngle, endAngle, ccw);
    return true;
}

std::vector<TPoint2D> TDraw2D::ArcSegment(double cx, double cy, double radius, double startAngle,
                                          double endAngle, bool ccw, int segments) {
    const int n = std::max(segments, 1);
    const double sweep = ArcSweep(NormalizeAngle(startAngle), NormalizeAngle(endAngle), ccw);
    const double step = (ccw ? sweep : -sweep) / n;
    std::vector<TPoint2D> out;
    out.reserve(static_cast<std::size_t>(n) + 1);
    for (int k = 0; k <= n; ++k) {
        const double a = startAngle + k * step;
        out.emplace_back(cx + radius * std::cos(a), cy + radius * std::sin(a));
    }
    return out;
}

double TDraw2D::AngleSegment(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2) {
    if (x1 == x2 && y1 == y2) return 0.0;
    return NormalizeAngle(std::atan2(ToDouble(Wide(y2) - y1), ToDouble(Wide(x2) - x1)));
}

bool TDraw2D::IsAngleWithinArc(double a, double start, double sweep) {
    if (std::abs(sweep) >= kTwoPi) return true;
    if (sweep >= 0.0) return NormalizeAngle(a - start) <= sweep;
    return NormalizeAngle(start - a) <= -sweep;
}

double TDraw2D::AngleDiff(double a, double b) {
    const double d = NormalizeAngle(b - a);
    return d > std::numbers::pi ? d - kTwoPi : d;
}

double TDraw2D::SweepCCW(double a0, double a1) {
    return NormalizeAngle(a1 - a0);
}

double TDraw2D::NormalizeAngle(double a) {
    double r = std::fmod(a, kTwoPi);
    if (r < 0.0) r += kTwoPi;
    // A tiny negative remainder rounds up to exactly 2 pi, which belongs to 0.
    return r >= kTwoPi ? 0.0 : r;
}

std::vector<TPoint2D> TDraw2D::CurvePoints(std::span<const TQVLPto64> points, int segments) {
    std::vector<TPoint2D> out;
    if (points.empty()) return out;
    const int n = std::max(segments, 1);
    const auto P = [&](std::size_t i) { return TPoint2D(D(points[i].X), D(points[i].Y)); };
    out.push_back(P(0));
    std::size_t i = 0;
    for (; i + 3 < points.size(); i += 3) {
        const TPoint2D p0 = P(i), p1 = P(i + 1), p2 = P(i + 2), p3 = P(i + 3);
        for (int k = 1; k <= n; ++k) {
            if (k == n) {  // the end point exactly, so that chained cubics join without a gap
                out.push_back(p3);
                break;
            }
            const double t = static_cast<double>(k) / n, s = 1.0 - t;
            const double b0 = s * s * s, b1 = 3.0 * s * s * t, b2 = 3.0 * s * t * t, b3 = t * t * t;
            out.emplace_back(b0 * p0.X + b1 * p1.X + b2 * p2.X + b3 * p3.X,
                             b0 * p0.Y + b1 * p1.Y + b2 * p2.Y + b3 * p3.Y);
        }
    }
    for (++i; i < points.size(); ++i) out.push_back(P(i));
    return out;
}

}  // namespace Orvex
