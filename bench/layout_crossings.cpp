// Crossings by orientation tests, with a bounding-box check first.
#include "bench/layout_crossings.h"

#include <algorithm>
#include <vector>

namespace OrvexBench {
namespace {

using Orvex::TLayoutPoint;

struct TSegment {
    TLayoutPoint A;
    TLayoutPoint B;
    std::size_t Route = 0;
    double MinX = 0, MaxX = 0, MinY = 0, MaxY = 0;
};

// The sign of the turn a -> b -> c, with a tolerance so that touching and collinear count as neither.
int Turn(TLayoutPoint a, TLayoutPoint b, TLayoutPoint c) {
    constexpr double kTouch = 1e-6;
    const double cross = (b.X - a.X) * (c.Y - a.Y) - (b.Y - a.Y) * (c.X - a.X);
    return cross > kTouch ? 1 : cross < -kTouch ? -1 : 0;
}

bool Cross(const TSegment& s, const TSegment& t) {
    const int d1 = Turn(s.A, s.B, t.A);
    const int d2 = Turn(s.A, s.B, t.B);
    const int d3 = Turn(t.A, t.B, s.A);
    const int d4 = Turn(t.A, t.B, s.B);
    return d1 * d2 < 0 && d3 * d4 < 0;
}

}  // namespace

std::size_t CountCrossings(const Orvex::TGraphLayout& layout) {
    std::vector<TSegment> segments;
    for (std::size_t r = 0; r < layout.Routes.size(); ++r) {
        const auto& points = layout.Routes[r].Points;
        for (std::size_t i = 1; i < points.size(); ++i) {
            const TLayoutPoint a = points[i - 1];
            const TLayoutPoint b = points[i];
            segments.push_back(
                {a, b, r, std::min(a.X, b.X), std::max(a.X, b.X), std::min(a.Y, b.Y), std::max(a.Y, b.Y)});
        }
    }
    std::sort(segments.begin(), segments.end(),
              [](const TSegment& s, const TSegment& t) { return s.MinX < t.MinX; });
    std::size_t crossings = 0;
    for (std::size_t i = 0; i < segments.size(); ++i) {
        const TSegment& s = segments[i];
        for (std::size_t j = i + 1; j < segments.size() && segments[j].MinX <= s.MaxX; ++j) {
            const TSegment& t = segments[j];
            if (t.Route == s.Route || t.MinY > s.MaxY || t.MaxY < s.MinY) continue;
            if (Cross(s, t)) ++crossings;
        }
    }
    return crossings;
}

}  // namespace OrvexBench
