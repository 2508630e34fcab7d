// Extend and join on arcs. An arc grows along its own circle, from the end nearer the pick to the nearest
// boundary beyond it; a join moves the picked ends of an arc and a line, or of two arcs, onto the crossing
// of their circles and lines that lies nearest to both. Each change is one undo group.
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

#include "orvex/document/document.h"
#include "orvex/document/editor_tools.h"
#include "orvex/document/trim_extend.h"
#include "orvex/items/line_items.h"
#include "orvex/render/draw2d.h"

namespace Orvex {

namespace {
constexpr double kPi = 3.14159265358979323846;
constexpr double kEpsDeg = 1e-6;

// Screen degrees (counter-clockwise as seen, y pointing down) of the direction from c to (x, y).
double ScreenDeg(const TQVLPto64& c, double x, double y) {
    const double a = std::atan2(-(y - static_cast<double>(c.Y)), x - static_cast<double>(c.X)) * 180.0 / kPi;
    return a < 0 ? a + 360.0 : a;
}

double NormDeg(double a) {
    a = std::fmod(a, 360.0);
    return a < 0 ? a + 360.0 : a;
}

TPoint2D ArcPoint(const TORXBaseArc& arc, double deg) {
    const double a = deg * kPi / 180.0;
    const auto r = static_cast<double>(arc.Radius());
    return {static_cast<double>(arc.Center().X) + r * std::cos(a),
            static_cast<double>(arc.Center().Y) - r * std::sin(a)};
}

double Dist(const TPoint2D& a, const TPoint2D& b) {
    return std::hypot(a.X - b.X, a.Y - b.Y);
}

// The arc's end nearer to the pick: true for its end, false for its start.
bool ArcEndNearer(const TORXBaseArc& arc, const TQVLPto64& pick) {
    const TPoint2D p{static_cast<double>(pick.X), static_cast<double>(pick.Y)};
    const TPoint2D start = ArcPoint(arc, arc.StartAngle());
    const TPoint2D end = ArcPoint(arc, arc.StartAngle() + arc.SignedSweep());
    return Dist(p, end) <= Dist(p, start);
}

// Moves the arc's start or end onto the circle's point q; the arc keeps its direction.
void SetArcEnd(TORXBaseArc& arc, bool atEnd, const TPoint2D& q) {
    const auto deg = static_cast<float>(ScreenDeg(arc.Center(), q.X, q.Y));
    if (atEnd)
        arc.SetEndAngle(deg);
    else
        arc.SetStartAngle(deg);
}

// One of the two items of a join: an arc and which end of it, or a path and which end of it.
struct TJoinEnd {
    TORXBaseItem* Item = nullptr;
    TORXBaseArc* Arc = nullptr;
    std::vector<TQVLPto64> Path;
    bool AtEnd = true;
    TPoint2D Point;  // where that end is now
};

TJoinEnd JoinEndOf(TORXBaseItem* item, const TQVLPto64& pick) {
    TJoinEnd e;
    e.Item = item;
    e.Arc = dynamic_cast<TORXBaseArc*>(item);
    if (e.Arc != nullptr) {
        e.AtEnd = ArcEndNearer(*e.Arc, pick);
        e.Point =
            ArcPoint(*e.Arc, e.AtEnd ? e.Arc->StartAngle() + e.Arc->SignedSweep() : e.Arc->StartAngle());
        return e;
    }
    e.Path = ItemPath(*item);
    if (e.Path.size() < 2) return e;
    e.AtEnd = TDraw2D::Distance(pick.X, pick.Y, e.Path.back().X, e.Path.back().Y) <=
              TDraw2D::Distance(pick.X, pick.Y, e.Path.front().X, e.Path.front().Y);
    const TQVLPto64& q = e.AtEnd ? e.Path.back() : e.Path.front();
    e.Point = {static_cast<double>(q.X), static_cast<double>(q.Y)};
    return e;
}

// The end segment of a path end as a boundary line: the crossing may lie beyond it.
void EndSegment(const TJoinEnd& e, TQVLPto64& a, TQVLPto64& b) {
    a = e.AtEnd ? e.Path[e.Path.size() - 2] : e.Path[1];
    b = e.AtEnd ? e.Path.back() : e.Path.front();
}
}  // namespace

bool TORXEditor::ExtendArc(TORXBaseItem* item, const TQVLPto64& p) {
    auto* arc = dynamic_cast<TORXBaseArc*>(item);
    if (arc == nullptr || arc->Radius() <= 0) return false;
    const TQVLPto64 c = arc->Center();
    const double start = arc->StartAngle();
    const double sweep = arc->SignedSweep();
    const double length = std::fabs(sweep);
    if (length >= 360.0) return false;  // a closed circle has no end to grow
    const double dir = sweep < 0 ? -1.0 : 1.0;
    const bool atEnd = ArcEndNearer(*arc, p);
    // How far beyond the growing end, in degrees along the circle, each crossing lies.
    double best = std::numeric_limits<double>::max();
    for (const TTrimEdge& e : Boundaries(item))
        for (const TPoint2D& q : CircleCrossings(c, arc->Radius(), e)) {
            const double u = NormDeg((ScreenDeg(c, q.X, q.Y) - start) * dir);
            if (u <= length + kEpsDeg || u >= 360.0 - kEpsDeg) continue;  // on the arc itself
            const double beyond = atEnd ? u - length : 360.0 - u;
            if (beyond < best) best = beyond;
        }
    if (best == std::numeric_limits<double>::max()) return false;
    fDoc.BeginUpdate(true);
    if (atEnd)
        arc->SetEndAngle(static_cast<float>(NormDeg(start + dir * (length + best))));
    else
        arc->SetStartAngle(static_cast<float>(NormDeg(start - dir * best)));
    fDoc.ChangeState(TOrvexState::lsCalc, arc);
    fDoc.EndUpdate();
    return true;
}

bool TORXEditor::JoinArc(TORXBaseItem* first, const TQVLPto64& firstPick, TORXBaseItem* second,
                         const TQVLPto64& secondPick) {
    TJoinEnd a = JoinEndOf(first, firstPick);
    TJoinEnd b = JoinEndOf(second, secondPick);
    if (a.Arc == nullptr) std::swap(a, b);  // the first one is an arc from here on
    if (a.Arc == nullptr || (b.Arc == nullptr && b.Path.size() < 2)) return false;
    const TQVLPto64 ca = a.Arc->Center();
    std::vector<TPoint2D> meets;
    TPoint2D q1;
    TPoint2D q2;
    int n = 0;
    if (b.Arc != nullptr) {
        const TQVLPto64 cb = b.Arc->Center();
        n = TDraw2D::CircleCircleIntersections({static_cast<double>(ca.X), static_cast<double>(ca.Y)},
                                               static_cast<double>(a.Arc->Radius()),
                                               {static_cast<double>(cb.X), static_cast<double>(cb.Y)},
                                               static_cast<double>(b.Arc->Radius()), q1, q2);
    } else {
        TQVLPto64 s1;
        TQVLPto64 s2;
        EndSegment(b, s1, s2);
        n = TDraw2D::LineCrossCircle(s1.X, s1.Y, s2.X, s2.Y, ca.X, ca.Y, a.Arc->Radius(), q1, q2);
    }
    if (n >= 1) meets.push_back(q1);
    if (n >= 2) meets.push_back(q2);
    if (meets.empty()) return false;
    // The crossing the two picked ends have to travel least to.
    TPoint2D meet = meets.front();
    double best = std::numeric_limits<double>::max();
    for (const TPoint2D& q : meets) {
        const double d = Dist(q, a.Point) + Dist(q, b.Point);
        if (d < best) best = d, meet = q;
    }
    fDoc.BeginUpdate(true);
    SetArcEnd(*a.Arc, a.AtEnd, meet);
    fDoc.ChangeState(TOrvexState::lsCalc, a.Arc);
    if (b.Arc != nullptr) {
        SetArcEnd(*b.Arc, b.AtEnd, meet);
        fDoc.ChangeState(TOrvexState::lsCalc, b.Arc);
    } else {
        (b.AtEnd ? b.Path.back() : b.Path.front()) = {MathRound(meet.X), MathRound(meet.Y)};
        SetPointsStep(b.Item, ItemWithPath(*b.Item, b.Path));
    }
    fDoc.EndUpdate();
    return true;
}

}  // namespace Orvex
