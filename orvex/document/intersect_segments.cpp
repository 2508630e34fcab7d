#include "orvex/document/intersect_segments.h"

#include <cmath>

namespace Orvex::Detail {

std::optional<TQVLPto64> SegmentIntersection(const TSegment& s, const TSegment& t) {
    // Doubles: products of base-unit coordinates would overflow 64-bit integers on large drawings.
    const double rx = static_cast<double>(s.B.X - s.A.X);
    const double ry = static_cast<double>(s.B.Y - s.A.Y);
    const double qx = static_cast<double>(t.B.X - t.A.X);
    const double qy = static_cast<double>(t.B.Y - t.A.Y);
    const double denom = rx * qy - ry * qx;
    if (denom == 0.0) return std::nullopt;
    const double wx = static_cast<double>(t.A.X - s.A.X);
    const double wy = static_cast<double>(t.A.Y - s.A.Y);
    const double u = (wx * qy - wy * qx) / denom;
    const double v = (wx * ry - wy * rx) / denom;
    if (u < 0.0 || u > 1.0 || v < 0.0 || v > 1.0) return std::nullopt;
    return TQVLPto64{static_cast<std::int64_t>(std::llround(static_cast<double>(s.A.X) + u * rx)),
                     static_cast<std::int64_t>(std::llround(static_cast<double>(s.A.Y) + u * ry))};
}

}  // namespace Orvex::Detail
