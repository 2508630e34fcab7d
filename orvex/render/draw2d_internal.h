// Private to the draw2d_*.cpp files: exact 128-bit products, rounding to base units, and the candidate
// search of the extend tools.
#pragma once

#include <cmath>
#include <cstdint>
#include <numbers>

#include "orvex/core/numeric.h"
#include "orvex/core/point.h"
#include "orvex/render/draw2d.h"

namespace Orvex::Draw2DDetail {

__extension__ typedef __int128 TInt128;  // products of two 64-bit values must not overflow

inline constexpr double kTwoPi = 2.0 * std::numbers::pi;

inline TInt128 Wide(std::int64_t v) {
    return static_cast<TInt128>(v);
}
inline double ToDouble(TInt128 v) {
    return static_cast<double>(v);
}
inline double D(std::int64_t v) {
    return static_cast<double>(v);
}
inline std::int64_t Round(double v) {
    return Qvl::Utils::MathRound(v);
}

inline TInt128 Abs128(TInt128 v) {
    return v < 0 ? -v : v;
}

// Products and cross products wrap instead of trapping for coordinates spanning more than 2^62 base units,
// far beyond any drawing; within that range they are exact.
__extension__ typedef unsigned __int128 TUInt128;
inline TInt128 Mul(TInt128 a, TInt128 b) {
    return static_cast<TInt128>(static_cast<TUInt128>(a) * static_cast<TUInt128>(b));
}
inline TInt128 Cross(TInt128 ax, TInt128 ay, TInt128 bx, TInt128 by) {
    return static_cast<TInt128>(static_cast<TUInt128>(Mul(ax, by)) - static_cast<TUInt128>(Mul(ay, bx)));
}
inline TInt128 Dot(TInt128 ax, TInt128 ay, TInt128 bx, TInt128 by) {
    return static_cast<TInt128>(static_cast<TUInt128>(Mul(ax, bx)) + static_cast<TUInt128>(Mul(ay, by)));
}
inline long double LD(TInt128 v) {
    return static_cast<long double>(v);
}

// a^2 + b^2 compared with c^2 (c >= 0): -1, 0 or +1. Exact while the magnitudes stay below 2^62, which
// covers any difference of two base-unit coordinates times another; beyond that, long double.
inline int CompareSumSquares(TInt128 a, TInt128 b, TInt128 c) {
    constexpr TInt128 kLimit = static_cast<TInt128>(1) << 62;
    a = Abs128(a), b = Abs128(b), c = Abs128(c);
    if (a < kLimit && b < kLimit && c < kLimit) {
        const TInt128 lhs = Dot(a, b, a, b);
        const TInt128 rhs = Mul(c, c);
        return lhs < rhs ? -1 : (lhs > rhs ? 1 : 0);
    }
    const long double la = static_cast<long double>(a), lb = static_cast<long double>(b);
    const long double lc = static_cast<long double>(c);
    const long double lhs = la * la + lb * lb, rhs = lc * lc;
    return lhs < rhs ? -1 : (lhs > rhs ? 1 : 0);
}

// Point at parameter t of the line from (x1, y1) to (x2, y2).
inline Qvl::Types::TPoint2D At(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2, double t) {
    return {D(x1) + t * (D(x2) - D(x1)), D(y1) + t * (D(y2) - D(y1))};
}

// Collects line parameters of boundary crossings and moves the segment end nearest to one that lies
// beyond the segment. Ties go to the second end.
class TExtendPick {
  public:
    void Add(double t) {
        double beyond;
        if (t > 1.0)
            beyond = t - 1.0;
        else if (t < 0.0)
            beyond = -t;
        else
            return;
        if (!fFound || beyond < fBeyond || (beyond == fBeyond && t > 1.0)) {
            fFound = true, fBeyond = beyond, fT = t;
        }
    }
    bool Apply(std::int64_t& x1, std::int64_t& y1, std::int64_t& x2, std::int64_t& y2) const {
        if (!fFound) return false;
        const Qvl::Types::TPoint2D p = At(x1, y1, x2, y2, fT);
        if (fT > 1.0)
            x2 = Round(p.X), y2 = Round(p.Y);
        else
            x1 = Round(p.X), y1 = Round(p.Y);
        return true;
    }

  private:
    bool fFound = false;
    double fBeyond = 0.0;
    double fT = 0.0;
};

// Is the angle on the arc (start, end, ccw)? Angles of any size; normalised before the bound test.
inline bool OnArc(double startAngle, double endAngle, bool ccw, double a) {
    return TDraw2D::ArcContainsAngle(TDraw2D::NormalizeAngle(startAngle), TDraw2D::NormalizeAngle(endAngle),
                                     TDraw2D::NormalizeAngle(a), ccw);
}

// Parameters along the line p + t d where it crosses the circle of radius r about c, ascending: 0, 1
// (tangent; the decision is exact for coordinates below 2^31) or 2.
int LineCircleParams(TInt128 px, TInt128 py, TInt128 dx, TInt128 dy, TInt128 cx, TInt128 cy, TInt128 r,
                     double& t1, double& t2);

// Parameter on the line p1 p2 where it meets the segment p3 p4 (ends included). False when parallel.
bool LineSegmentParam(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2, std::int64_t x3,
                      std::int64_t y3, std::int64_t x4, std::int64_t y4, double& t);

}  // namespace Orvex::Draw2DDetail
