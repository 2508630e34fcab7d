// Path geometry of the trim, extend and join tools.
//
// [SECTION] Edges   [SECTION] Crossings   [SECTION] Trim   [SECTION] Circles   [SECTION] Extend and join
#include "orvex/document/trim_extend.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "orvex/document/base_item.h"
#include "orvex/document/snapping.h"
#include "orvex/render/draw2d.h"

namespace Orvex {

// [SECTION] Edges

std::vector<TTrimEdge> ItemEdges(const TORXBaseItem& item) {
    std::vector<TTrimEdge> out;
    for (const auto& s : ItemSegments(item)) {
        TTrimEdge e;
        e.A = s.A, e.B = s.B;
        out.push_back(e);
    }
    if (item.ItemType() == TQVLItemType::itBezier) {
        // A curve cuts as the chords it is painted with.
        std::vector<TQVLPto64> points;
        for (const TQVLPto& p : item.Points()) points.push_back({p.X, p.Y});
        const std::vector<TPoint2D> flat = TDraw2D::CurvePoints(points, 32);
        for (std::size_t i = 1; i < flat.size(); ++i) {
            TTrimEdge e;
            e.A = {MathRound(flat[i - 1].X), MathRound(flat[i - 1].Y)};
            e.B = {MathRound(flat[i].X), MathRound(flat[i].Y)};
            if (e.A.X != e.B.X || e.A.Y != e.B.Y) out.push_back(e);
        }
    }
    TItemCircle c;
    if (ItemCircle(item, c)) {
        TTrimEdge e;
        e.Straight = false;
        e.Center = c.Center, e.Rx = c.Radius, e.Ry = c.RadiusY;
        e.Full = c.Full, e.Start = c.Start, e.End = c.End, e.Ccw = c.Ccw;
        out.push_back(e);
    }
    return out;
}

// The item's line as a path: its first two points for lines and arrow lines, every point of a polyline.
std::vector<TQVLPto64> ItemPath(const TORXBaseItem& item) {
    std::vector<TQVLPto64> path;
    std::size_t count = item.Points().size();
    if (item.ItemType() != TQVLItemType::itPolyLine) count = std::min<std::size_t>(count, 2);
    for (std::size_t i = 0; i < count; ++i) path.push_back({item.Points()[i].X, item.Points()[i].Y});
    return path;
}

TQVLPtoA ItemWithPath(const TORXBaseItem& item, const std::vector<TQVLPto64>& path) {
    TQVLPtoA points = item.Points();
    if (item.ItemType() == TQVLItemType::itPolyLine) points.clear();
    for (std::size_t i = 0; i < path.size(); ++i) {
        if (i < points.size() && item.ItemType() != TQVLItemType::itPolyLine)
            points[i] = TQVLPto{path[i].X, path[i].Y};
        else
            points.push_back(TQVLPto{path[i].X, path[i].Y});
    }
    return points;
}

// [SECTION] Crossings

namespace {
double Cross(double ax, double ay, double bx, double by) {
    return ax * by - ay * bx;
}

TQVLPto64 At(const TQVLPto64& a, const TQVLPto64& b, double t) {
    return {a.X + MathRound(t * static_cast<double>(b.X - a.X)),
            a.Y + MathRound(t * static_cast<double>(b.Y - a.Y))};
}

constexpr double kEps = 1e-9;
}  // namespace

std::vector<double> LineCrossings(const TQVLPto64& a, const TQVLPto64& b, const TTrimEdge& e) {
    std::vector<double> out;
    const double dx = static_cast<double>(b.X - a.X);
    const double dy = static_cast<double>(b.Y - a.Y);
    if (dx == 0 && dy == 0) return out;
    if (e.Straight) {
        const double ex = static_cast<double>(e.B.X - e.A.X);
        const double ey = static_cast<double>(e.B.Y - e.A.Y);
        const double denom = Cross(dx, dy, ex, ey);
        if (std::abs(denom) < kEps) return out;
        const double wx = static_cast<double>(e.A.X - a.X);
        const double wy = static_cast<double>(e.A.Y - a.Y);
        const double t = Cross(wx, wy, ex, ey) / denom;
        const double u = Cross(wx, wy, dx, dy) / denom;
        if (u >= -kEps && u <= 1 + kEps) out.push_back(t);
        return out;
    }
    if (e.Rx <= 0 || e.Ry <= 0) return out;
    // In the ellipse's unit frame the crossing is a quadratic in t.
    const double rx = static_cast<double>(e.Rx);
    const double ry = static_cast<double>(e.Ry);
    const double px = static_cast<double>(a.X - e.Center.X) / rx;
    const double py = static_cast<double>(a.Y - e.Center.Y) / ry;
    const double vx = dx / rx;
    const double vy = dy / ry;
    const double qa = vx * vx + vy * vy;
    const double qb = 2 * (px * vx + py * vy);
    const double qc = px * px + py * py - 1;
    const double disc = qb * qb - 4 * qa * qc;
    if (disc < 0) return out;
    const double root = std::sqrt(disc);
    for (const double t : {(-qb - root) / (2 * qa), (-qb + root) / (2 * qa)}) {
        if (!e.Full) {
            const double x = static_cast<double>(a.X) + t * dx - static_cast<double>(e.Center.X);
            const double y = static_cast<double>(a.Y) + t * dy - static_cast<double>(e.Center.Y);
            if (!TDraw2D::ArcContainsAngle(e.Start, e.End, TDraw2D::NormalizeAngle(std::atan2(y, x)), e.Ccw))
                continue;
        }
        out.push_back(t);
    }
    return out;
}

// [SECTION] Trim

namespace {
// The running parameter of the path point nearest to p.
double Project(const std::vector<TQVLPto64>& path, const TQVLPto64& p) {
    double best = std::numeric_limits<double>::max();
    double at = 0.0;
    for (std::size_t i = 1; i < path.size(); ++i) {
        const double dx = static_cast<double>(path[i].X - path[i - 1].X);
        const double dy = static_cast<double>(path[i].Y - path[i - 1].Y);
        const double len2 = dx * dx + dy * dy;
        double t = 0.0;
        if (len2 > 0)
            t = std::clamp((static_cast<double>(p.X - path[i - 1].X) * dx +
                            static_cast<double>(p.Y - path[i - 1].Y) * dy) /
                               len2,
                           0.0, 1.0);
        const double qx = static_cast<double>(path[i - 1].X) + t * dx - static_cast<double>(p.X);
        const double qy = static_cast<double>(path[i - 1].Y) + t * dy - static_cast<double>(p.Y);
        const double d = qx * qx + qy * qy;
        if (d < best) best = d, at = static_cast<double>(i - 1) + t;
    }
    return at;
}

TQVLPto64 PathAt(const std::vector<TQVLPto64>& path, double s) {
    const auto last = static_cast<double>(path.size() - 1);
    s = std::clamp(s, 0.0, last);
    auto i = static_cast<std::size_t>(std::floor(s));
    if (i >= path.size() - 1) return path.back();
    return At(path[i], path[i + 1], s - static_cast<double>(i));
}

// The part of the path between running parameters from and to.
std::vector<TQVLPto64> Piece(const std::vector<TQVLPto64>& path, double from, double to) {
    std::vector<TQVLPto64> out{PathAt(path, from)};
    for (std::size_t i = 0; i < path.size(); ++i) {
        const auto v = static_cast<double>(i);
        if (v > from + kEps && v < to - kEps) out.push_back(path[i]);
    }
    out.push_back(PathAt(path, to));
    return out;
}
}  // namespace

namespace {
// The running parameters where the edges cross the path, its own ends left out.
std::vector<double> Cuts(const std::vector<TQVLPto64>& path, const std::vector<TTrimEdge>& edges) {
    std::vector<double> cuts;
    for (std::size_t i = 1; i < path.size(); ++i)
        for (const TTrimEdge& e : edges)
            for (const double t : LineCrossings(path[i - 1], path[i], e))
                if (t > kEps && t < 1 - kEps)
                    cuts.push_back(static_cast<double>(i - 1) + t);
                else if (std::abs(t) <= kEps && i > 1)
                    cuts.push_back(static_cast<double>(i - 1));
    return cuts;
}
}  // namespace

TTrimResult TrimPath(const std::vector<TQVLPto64>& path, const std::vector<TTrimEdge>& edges,
                     const TQVLPto64& pick) {
    TTrimResult result;
    if (path.size() < 2) return result;
    const std::vector<double> cuts = Cuts(path, edges);
    const double at = Project(path, pick);
    const auto end = static_cast<double>(path.size() - 1);
    double low = -1.0;
    double high = end + 1.0;
    for (const double c : cuts) {
        if (c < at && c > low) low = c;
        if (c > at && c < high) high = c;
    }
    if (low < 0 && high > end) return result;
    result.Trimmed = true;
    if (low >= 0) result.Pieces.push_back(Piece(path, 0.0, low));
    if (high <= end) result.Pieces.push_back(Piece(path, high, end));
    return result;
}

std::vector<TQVLPto64> TrimClosedPath(const std::vector<TQVLPto64>& ring, const std::vector<TTrimEdge>& edges,
                                      const TQVLPto64& pick) {
    if (ring.size() < 3) return {};
    // Twice round the outline, so that the piece kept can run on past the first point.
    std::vector<TQVLPto64> twice = ring;
    twice.insert(twice.end(), ring.begin(), ring.end());
    twice.push_back(ring.front());
    std::vector<TQVLPto64> closed = ring;
    closed.push_back(ring.front());
    std::vector<double> cuts = Cuts(closed, edges);
    // The first point is a corner like the others: a crossing exactly there counts too.
    for (const TTrimEdge& e : edges)
        for (const double t : LineCrossings(closed[0], closed[1], e))
            if (std::abs(t) <= kEps) cuts.push_back(0.0);
    std::sort(cuts.begin(), cuts.end());
    const auto n = static_cast<double>(ring.size());
    if (cuts.empty() || cuts.back() - cuts.front() <= kEps) return {};
    const double at = Project(closed, pick);
    double low = cuts.back();  // before the pick, or round from the end
    double high = cuts.front();
    for (const double c : cuts)
        if (c < at) low = c;
    for (auto it = cuts.rbegin(); it != cuts.rend(); ++it)
        if (*it > at) high = *it;
    const double to = low > high ? low : low + n;
    return Piece(twice, high, to);
}

// [SECTION] Circles

// Crossings of the circle with one edge, found on the circle's side: exact for segments and circles, by
// bisection between sign changes for ellipses.
std::vector<TPoint2D> CircleCrossings(const TQVLPto64& center, std::int64_t radius, const TTrimEdge& e) {
    std::vector<TPoint2D> out;
    const TPoint2D c{static_cast<double>(center.X), static_cast<double>(center.Y)};
    const auto r = static_cast<double>(radius);
    if (radius <= 0) return out;
    const auto onEdgeArc = [&](const TPoint2D& q) {
        if (e.Full) return true;
        const double a = TDraw2D::NormalizeAngle(
            std::atan2(q.Y - static_cast<double>(e.Center.Y), q.X - static_cast<double>(e.Center.X)));
        return TDraw2D::ArcContainsAngle(e.Start, e.End, a, e.Ccw);
    };
    TPoint2D q1;
    TPoint2D q2;
    if (e.Straight) {
        const int n =
            TDraw2D::LineCrossCircle(e.A.X, e.A.Y, e.B.X, e.B.Y, center.X, center.Y, radius, q1, q2);
        for (int i = 0; i < n; ++i) {
            const TPoint2D& q = i == 0 ? q1 : q2;
            if (TDraw2D::PointInLine(e.A.X, e.A.Y, e.B.X, e.B.Y, MathRound(q.X), MathRound(q.Y), 1))
                out.push_back(q);
        }
        return out;
    }
    if (e.Rx <= 0 || e.Ry <= 0) return out;
    if (e.Rx == e.Ry) {
        const int n = TDraw2D::CircleCircleIntersections(
            c, r, TPoint2D{static_cast<double>(e.Center.X), static_cast<double>(e.Center.Y)},
            static_cast<double>(e.Rx), q1, q2);
        for (int i = 0; i < n && !(i == 1 && q1.X == q2.X && q1.Y == q2.Y); ++i)
            if (onEdgeArc(i == 0 ? q1 : q2)) out.push_back(i == 0 ? q1 : q2);
        return out;
    }
    const double rx = static_cast<double>(e.Rx);
    const double ry = static_cast<double>(e.Ry);
    const auto point = [&](double a) { return TPoint2D{c.X + r * std::cos(a), c.Y + r * std::sin(a)}; };
    const auto f = [&](double a) {
        const TPoint2D q = point(a);
        const double u = (q.X - static_cast<double>(e.Center.X)) / rx;
        const double v = (q.Y - static_cast<double>(e.Center.Y)) / ry;
        return u * u + v * v - 1.0;
    };
    constexpr int kSteps = 720;
    constexpr double kTau = 6.283185307179586;
    double a0 = 0.0;
    double f0 = f(a0);
    for (int i = 1; i <= kSteps; ++i) {
        const double a1 = kTau * i / kSteps;
        const double f1 = f(a1);
        if ((f0 <= 0) != (f1 <= 0)) {
            double lo = a0;
            double hi = a1;
            for (int k = 0; k < 60; ++k) {
                const double mid = (lo + hi) / 2;
                if ((f(mid) <= 0) == (f0 <= 0))
                    lo = mid;
                else
                    hi = mid;
            }
            const TPoint2D q = point((lo + hi) / 2);
            if (onEdgeArc(q)) out.push_back(q);
        }
        a0 = a1, f0 = f1;
    }
    return out;
}

// [SECTION] Extend and join

bool ExtendPath(std::vector<TQVLPto64>& path, const std::vector<TTrimEdge>& edges, const TQVLPto64& pick) {
    if (path.size() < 2) return false;
    const double dFirst = TDraw2D::Distance(pick.X, pick.Y, path.front().X, path.front().Y);
    const double dLast = TDraw2D::Distance(pick.X, pick.Y, path.back().X, path.back().Y);
    const bool atEnd = dLast <= dFirst;
    // The end segment, directed towards the end that grows.
    const TQVLPto64 a = atEnd ? path[path.size() - 2] : path[1];
    const TQVLPto64 b = atEnd ? path.back() : path.front();
    double best = std::numeric_limits<double>::max();
    for (const TTrimEdge& e : edges)
        for (const double t : LineCrossings(a, b, e))
            if (t > 1 + kEps && t < best) best = t;
    if (best == std::numeric_limits<double>::max()) return false;
    (atEnd ? path.back() : path.front()) = At(a, b, best);
    return true;
}

bool JoinPaths(std::vector<TQVLPto64>& a, const TQVLPto64& pickA, std::vector<TQVLPto64>& b,
               const TQVLPto64& pickB) {
    if (a.size() < 2 || b.size() < 2) return false;
    // Each path meets the other at the end nearer to where it was picked.
    const auto endOf = [](const std::vector<TQVLPto64>& path, const TQVLPto64& pick) {
        return TDraw2D::Distance(pick.X, pick.Y, path.back().X, path.back().Y) <=
               TDraw2D::Distance(pick.X, pick.Y, path.front().X, path.front().Y);
    };
    const bool aEnd = endOf(a, pickA);
    const bool bEnd = endOf(b, pickB);
    const TQVLPto64 a1 = aEnd ? a[a.size() - 2] : a[1];
    const TQVLPto64 a2 = aEnd ? a.back() : a.front();
    const TQVLPto64 b1 = bEnd ? b[b.size() - 2] : b[1];
    const TQVLPto64 b2 = bEnd ? b.back() : b.front();
    std::int64_t x = 0;
    std::int64_t y = 0;
    if (!TDraw2D::IntersectLines(a1.X, a1.Y, a2.X, a2.Y, b1.X, b1.Y, b2.X, b2.Y, x, y)) return false;
    (aEnd ? a.back() : a.front()) = {x, y};
    (bEnd ? b.back() : b.front()) = {x, y};
    return true;
}

}  // namespace Orvex
