// Links: properties with undo, routing between flow elements, picking, JSON and SVG.
//
// [SECTION] Undo of the course   [SECTION] Construction and properties   [SECTION] Routing
// [SECTION] Geometry and editing   [SECTION] JSON and SVG
#include "orvex/items/link_items.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "orvex/io/json.h"
#include "orvex/io/json_utils.h"
#include "orvex/items/box_helpers.h"
#include "orvex/items/flow_items.h"
#include "orvex/items/flow_shapes.h"
#include "orvex/items/svg_style.h"
#include "orvex/render/draw2d.h"

namespace Orvex {

namespace {
using U = TJSONUtils;

TPoint2D D(const TQVLPto64& p) {
    return {static_cast<double>(p.X), static_cast<double>(p.Y)};
}

TQVLPto64 P(double x, double y) {
    return {static_cast<std::int64_t>(std::llround(x)), static_cast<std::int64_t>(std::llround(y))};
}

// Outward direction of a connection point's side: 0 top, 1 right, 2 bottom, 3 left.
TPoint2D SideNormal(int side) {
    switch (side) {
        case 0:
            return {0, -1};
        case 1:
            return {1, 0};
        case 2:
            return {0, 1};
        default:
            return {-1, 0};
    }
}

bool Horizontal(int side) {
    return side == 1 || side == 3;
}

double Degrees(double radians) {
    return radians * 180.0 / std::numbers::pi;
}

double Radians(double degrees) {
    return degrees * std::numbers::pi / 180.0;
}

constexpr int kCornerPoints = 7;          // per rounded corner; two corners make the 14 points of the type
constexpr double kCornerRadius = 2500.0;  // base units

}  // namespace

// [SECTION] Undo of the course

// The link type and the link points together: changing the type drops points that undo must bring back.
class TORXLinkCmd final : public TORXCmd {
  public:
    TORXLinkCmd(TORXBaseLink* link, std::int32_t kind, std::uint16_t property)
        : TORXCmd(kind, link, property) {}
    static void AddCommand(TORXBaseLink* link, std::int32_t kind, std::uint16_t property) {
        if (!CanRecord(kind, link, property)) return;
        Push(std::make_unique<TORXLinkCmd>(link, kind, property));
    }
    void RestoreState() override {
        if (auto* link = dynamic_cast<TORXBaseLink*>(fItem))
            link->RestoreLinkState(fType, fPoints, fProperty);
    }

  protected:
    void StoreState() override {
        if (const auto* link = dynamic_cast<const TORXBaseLink*>(fItem)) {
            fType = link->LinkType();
            fPoints = link->LinkPoints();
        }
    }

  private:
    TQVLinkType fType = TQVLinkType::ltDirLine;
    std::vector<TQVLPto64> fPoints;
};

namespace {
std::int32_t CommandKind(std::uint16_t property) {
    return property == LinkProp::kLinkType ? kCmdEnumValue : kCmdElePos;
}
}  // namespace

void TORXBaseLink::RestoreLinkState(TQVLinkType type, const std::vector<TQVLPto64>& points,
                                    std::uint16_t property) {
    if (type == fLinkType && points == fLinkPoints) return;
    TORXLinkCmd::AddCommand(this, CommandKind(property), property);
    fLinkType = type;
    fLinkPoints = points;
    fArcFromMiddle = true;
    fOwner->ChangeState(TOrvexState::lsCalc, this);
}

// [SECTION] Construction and properties

std::int32_t LinkTypePointCount(TQVLinkType type) {
    switch (type) {
        case TQVLinkType::ltDirLine:
        case TQVLinkType::ltCurve:
            return 0;
        case TQVLinkType::ltLeftRightTopBottom:
        case TQVLinkType::ltTopBottomLeftRight:
        case TQVLinkType::ltStepLineTwoPto:
        case TQVLinkType::ltArc:
            return 1;
        case TQVLinkType::ltPolyline:
            return -1;
        case TQVLinkType::ltRoundCorner:
            return 2 * kCornerPoints;
    }
    return 0;
}

TORXBaseLink::TORXBaseLink(TORXBaseLabel* owner, bool create)
    : TTableItem(owner, TQVLItemType::itLink, create) {
    IniLink();
}

TORXBaseLink::TORXBaseLink(TORXBaseLabel* owner, TORXLayer* layer, bool create)
    : TORXBaseLink(owner, create) {
    fLayer = layer;
}

TORXBaseLink::TORXBaseLink(TORXBaseLabel* owner, TQVLinkType type, bool create)
    : TORXBaseLink(owner, create) {
    fLinkType = type;
    fLinkPoints.assign(static_cast<std::size_t>(std::max(0, LinkTypePointCount(type))), TQVLPto64{});
}

void TORXBaseLink::IniLink() {
    fLinkType = TQVLinkType::ltDirLine;
    fFromType = TQVLTermType::ttNone;
    fToType = TQVLTermType::ttNone;
    fRadio = fCx = fCy = 0;
    fStart = fEnd = fSweep = 0.0;
    fClockWise = false;
    fFromColor = fOwner->Settings().fTermColor;
    fToColor = fOwner->Settings().fTermColor;
}

void TORXBaseLink::SetLinkType(TQVLinkType type) {
    if (type == fLinkType) return;
    TORXLinkCmd::AddCommand(this, kCmdEnumValue, LinkProp::kLinkType);
    fLinkType = type;
    const std::int32_t count = LinkTypePointCount(type);
    if (count >= 0) fLinkPoints.assign(static_cast<std::size_t>(count), TQVLPto64{});
    fSweep = 0.0;
    fArcFromMiddle = false;
    fOwner->ChangeState(TOrvexState::lsCalc, this);
}

void TORXBaseLink::Bind(const TORXBaseFlow* from, std::int16_t fromIndex, const TORXBaseFlow* to,
                        std::int16_t toIndex) {
    const TORXBaseLabel::TUndoGroup group(*fOwner);
    if (from != nullptr) SetFromID(from->InID());
    SetFromIndex(fromIndex);
    if (to != nullptr) SetToID(to->InID());
    SetToIndex(toIndex);
    CalcLinkPoints(true);  // the course is there at once for whoever reads it next
}

void TORXBaseLink::SetEnumProp(std::uint16_t p, std::int64_t v) {
    if (p != LinkProp::kLinkType) return TTableItem::SetEnumProp(p, v);
    // A new type also drops or adds link points, which its own undo command keeps.
    SetLinkType(static_cast<TQVLinkType>(TPropTable<TORXBaseLink>::Clamp(*PropTable().Find(p), v)));
}

void TORXBaseLink::PropChanged(std::uint16_t p) {
    if (p == LinkProp::kFromID || p == LinkProp::kToID) fOwner->LinkEndsChanged(this);
    if (p == LinkProp::kFromID || p == LinkProp::kFromIndex || p == LinkProp::kToID ||
        p == LinkProp::kToIndex)
        fOwner->ChangeState(TOrvexState::lsCalc, this);
}

std::array<std::int32_t, 2> TORXBaseLink::LinkEndIDs() const {
    return {FromID(), ToID()};
}

// [SECTION] Routing

namespace {
TORXBaseFlow* FindFlow(const TORXBaseLabel& doc, std::int64_t id) {
    if (id < INT32_MIN || id > INT32_MAX) return nullptr;
    return dynamic_cast<TORXBaseFlow*>(doc.FlowByInID(static_cast<std::int32_t>(id)));
}

// A corner of an orthogonal route rounded by a quarter circle of kCornerPoints points. The radius shrinks
// to half the shorter leg so that two corners never overlap.
void AppendCorner(std::vector<TQVLPto64>& out, const TQVLPto64& prev, const TQVLPto64& corner,
                  const TQVLPto64& next) {
    const double inLen = TDraw2D::Distance(prev.X, prev.Y, corner.X, corner.Y);
    const double outLen = TDraw2D::Distance(corner.X, corner.Y, next.X, next.Y);
    const double r = std::min({kCornerRadius, inLen / 2, outLen / 2});
    if (r <= 0.0) {
        out.insert(out.end(), kCornerPoints, corner);
        return;
    }
    const TPoint2D p0 = D(prev), k = D(corner), p1 = D(next);
    const TPoint2D a{(k.X - p0.X) / inLen, (k.Y - p0.Y) / inLen};
    const TPoint2D b{(p1.X - k.X) / outLen, (p1.Y - k.Y) / outLen};
    const TPoint2D centre{k.X - a.X * r + b.X * r, k.Y - a.Y * r + b.Y * r};
    for (int i = 0; i < kCornerPoints; ++i) {
        const double t = std::numbers::pi / 2 * i / (kCornerPoints - 1);
        out.push_back(P(centre.X - b.X * r * std::cos(t) + a.X * r * std::sin(t),
                        centre.Y - b.Y * r * std::cos(t) + a.Y * r * std::sin(t)));
    }
}
}  // namespace

TORXBaseFlow* TORXBaseLink::FromFlow() const {
    return FindFlow(*fOwner, fFromID);
}

TORXBaseFlow* TORXBaseLink::ToFlow() const {
    return FindFlow(*fOwner, fToID);
}

void TORXBaseLink::CalcLinkPoints(bool reset) {
    const TORXBaseFlow* from = FromFlow();
    const TORXBaseFlow* to = ToFlow();
    const TQVLPto64 c0 = from != nullptr ? from->CenterPoint() : fStartPt;
    const TQVLPto64 c1 = to != nullptr ? to->CenterPoint() : fEndPt;
    const std::int64_t dx = c1.X - c0.X;
    const std::int64_t dy = c1.Y - c0.Y;
    // Sides the user did not fix follow the type and where the target lies.
    int fromSide = 0;
    int toSide = 0;
    switch (fLinkType) {
        case TQVLinkType::ltLeftRightTopBottom:
            fromSide = dx >= 0 ? 1 : 3, toSide = dy >= 0 ? 0 : 2;
            break;
        case TQVLinkType::ltTopBottomLeftRight:
            fromSide = dy >= 0 ? 2 : 0, toSide = dx >= 0 ? 3 : 1;
            break;
        default:
            if (std::abs(dx) >= std::abs(dy))
                fromSide = dx >= 0 ? 1 : 3, toSide = dx >= 0 ? 3 : 1;
            else
                fromSide = dy >= 0 ? 2 : 0, toSide = dy >= 0 ? 0 : 2;
    }
    if (fFromIndex >= 0 && fFromIndex < TORXBaseFlow::kLinkPoints) fromSide = static_cast<int>(fFromIndex);
    if (fToIndex >= 0 && fToIndex < TORXBaseFlow::kLinkPoints) toSide = static_cast<int>(fToIndex);
    const TQVLPto64 s = from != nullptr ? from->LinkPoint(static_cast<std::int16_t>(fromSide)) : fStartPt;
    const TQVLPto64 e = to != nullptr ? to->LinkPoint(static_cast<std::int16_t>(toSide)) : fEndPt;
    fStartPt = s;
    fEndPt = e;
    fFromSide = fromSide;
    fToSide = toSide;
    if (!fPoints.empty()) fPoints[0] = TQVLPto{s.X, s.Y};

    switch (fLinkType) {
        case TQVLinkType::ltDirLine:
        case TQVLinkType::ltCurve:
            fLinkPoints.clear();
            break;
        case TQVLinkType::ltLeftRightTopBottom:
            fLinkPoints = {TQVLPto64{e.X, s.Y}};
            break;
        case TQVLinkType::ltTopBottomLeftRight:
            fLinkPoints = {TQVLPto64{s.X, e.Y}};
            break;
        case TQVLinkType::ltStepLineTwoPto: {
            // The middle point holds where the step crosses; the user may have moved it along the route.
            TQVLPto64 m{(s.X + e.X) / 2, (s.Y + e.Y) / 2};
            if (!reset && fLinkPoints.size() == 1 && !fLinkPoints[0].IsZero()) {
                if (Horizontal(fromSide))
                    m.X = fLinkPoints[0].X;
                else
                    m.Y = fLinkPoints[0].Y;
            }
            fLinkPoints = {m};
            break;
        }
        case TQVLinkType::ltArc: {
            double sweep = fSweep;
            bool ccw = !fClockWise;
            if (!reset && fArcFromMiddle && fLinkPoints.size() == 1) {
                std::int64_t cx = 0, cy = 0, radius = 0;
                double a0 = 0, a1 = 0;
                if (TDraw2D::ArcThreePoints(s.X, s.Y, fLinkPoints[0].X, fLinkPoints[0].Y, e.X, e.Y, cx, cy,
                                            radius, a0, a1, ccw))
                    sweep = TDraw2D::ArcSweep(a0, a1, ccw);
            }
            fArcFromMiddle = false;
            const double chord = TDraw2D::Distance(s.X, s.Y, e.X, e.Y);
            const TPoint2D sd = D(s), ed = D(e);
            const TPoint2D perp =
                chord > 0.0 ? TPoint2D{-(ed.Y - sd.Y) / chord, (ed.X - sd.X) / chord} : TPoint2D{};
            if (reset || sweep <= 0.0 || sweep >= 2 * std::numbers::pi) {
                // A quarter circle that bulges the way the start's side faces, so it leaves its element
                // outwards.
                const TPoint2D n0 = SideNormal(fromSide);
                sweep = std::numbers::pi / 2;
                ccw = perp.X * n0.X + perp.Y * n0.Y <= 0.0;
            }
            // Files keep the sweep in degrees to 3 decimals: routing from that value makes a read drawing
            // route exactly as it was saved.
            sweep = Radians(RoundTo3Decimals(Degrees(sweep)));
            const double side = ccw ? 1.0 : -1.0;
            fSweep = sweep;
            fClockWise = !ccw;
            if (chord <= 0.0) {
                fRadio = 0, fCx = s.X, fCy = s.Y, fStart = fEnd = 0.0;
                fLinkPoints = {s};
                break;
            }
            const double r = chord / (2 * std::sin(sweep / 2));
            const double d = r * std::cos(sweep / 2);
            const TPoint2D mid{(sd.X + ed.X) / 2.0, (sd.Y + ed.Y) / 2.0};
            const TPoint2D c{mid.X + side * perp.X * d, mid.Y + side * perp.Y * d};
            fRadio = static_cast<std::int64_t>(std::llround(r));
            fCx = static_cast<std::int64_t>(std::llround(c.X));
            fCy = static_cast<std::int64_t>(std::llround(c.Y));
            fStart = TDraw2D::NormalizeAngle(std::atan2(sd.Y - c.Y, sd.X - c.X));
            fEnd = TDraw2D::NormalizeAngle(std::atan2(ed.Y - c.Y, ed.X - c.X));
            const double middle = fStart + side * sweep / 2;
            fLinkPoints = {P(c.X + r * std::cos(middle), c.Y + r * std::sin(middle))};
            break;
        }
        case TQVLinkType::ltPolyline:
            break;
        case TQVLinkType::ltRoundCorner: {
            const TQVLPto64 m{(s.X + e.X) / 2, (s.Y + e.Y) / 2};
            const bool horizontal = Horizontal(fromSide);
            const TQVLPto64 k1 = horizontal ? TQVLPto64{m.X, s.Y} : TQVLPto64{s.X, m.Y};
            const TQVLPto64 k2 = horizontal ? TQVLPto64{m.X, e.Y} : TQVLPto64{e.X, m.Y};
            std::vector<TQVLPto64> points;
            AppendCorner(points, s, k1, k2);
            AppendCorner(points, k1, k2, e);
            fLinkPoints = std::move(points);
            break;
        }
    }
    UpdateBounds();
    fChanged = true;
}

void TORXBaseLink::CalcValues(std::int16_t value) {
    (void)value;
    CalcLinkPoints(false);
}

void QVLAssignFlowLinks(TORXBaseLabel& document) {
    for (std::int32_t i = 0; i < document.GetItemsCount(); ++i)
        if (auto* link = dynamic_cast<TORXBaseLink*>(document.GetItem(i))) link->CalcLinkPoints(false);
}

// [SECTION] Geometry and editing

TQVLPto64 TORXBaseLink::GetLinkPoint(std::int32_t i) const {
    if (i < 1 || i > GetNumLinkPoints()) return {};
    return fLinkPoints[static_cast<std::size_t>(i - 1)];
}

float TORXBaseLink::GetLinkPointMMX(std::int32_t i) const {
    return GetBaseValue(GetLinkPoint(i).X);
}

float TORXBaseLink::GetLinkPointMMY(std::int32_t i) const {
    return GetBaseValue(GetLinkPoint(i).Y);
}

void TORXBaseLink::SetLinkPoints(const std::vector<TQVLPto64>& points) {
    if (points == fLinkPoints) return;
    TORXLinkCmd::AddCommand(this, kCmdElePos, LinkProp::kLinkPoints);
    fLinkPoints = points;
    fArcFromMiddle = true;
    fOwner->ChangeState(TOrvexState::lsCalc, this);
    UpdateBounds();
}

void TORXBaseLink::SetLinkPoint(std::int32_t i, float xMM, float yMM) {
    if (i < 1 || i > GetNumLinkPoints()) return;
    std::vector<TQVLPto64> points = fLinkPoints;
    points[static_cast<std::size_t>(i - 1)] = TQVLPto64{SetBaseValue(xMM), SetBaseValue(yMM)};
    SetLinkPoints(points);
}

void TORXBaseLink::InsertPoint(std::int64_t x, std::int64_t y, std::int32_t index) {
    std::vector<TQVLPto64> points = fLinkPoints;
    const auto at = static_cast<std::size_t>(std::clamp<std::int32_t>(index - 1, 0, GetNumLinkPoints()));
    points.insert(points.begin() + static_cast<std::ptrdiff_t>(at), TQVLPto64{x, y});
    SetLinkPoints(points);
}

std::vector<TQVLPto64> TORXBaseLink::Course() const {
    std::vector<TQVLPto64> out{fStartPt};
    switch (fLinkType) {
        case TQVLinkType::ltArc:
            if (fRadio > 0) {
                for (const auto& p :
                     TDraw2D::ArcSegment(static_cast<double>(fCx), static_cast<double>(fCy),
                                         static_cast<double>(fRadio), fStart, fEnd, !fClockWise, 32))
                    out.push_back(P(p.X, p.Y));
                out.front() = fStartPt;
                out.back() = fEndPt;
                return out;
            }
            break;
        case TQVLinkType::ltCurve: {
            const double reach =
                std::max(2000.0, TDraw2D::Distance(fStartPt.X, fStartPt.Y, fEndPt.X, fEndPt.Y) / 3);
            const TPoint2D n0 = SideNormal(fFromSide);
            const TPoint2D n1 = SideNormal(fToSide);
            const std::vector<TQVLPto64> control{
                fStartPt, P(D(fStartPt).X + n0.X * reach, D(fStartPt).Y + n0.Y * reach),
                P(D(fEndPt).X + n1.X * reach, D(fEndPt).Y + n1.Y * reach), fEndPt};
            out.clear();
            for (const auto& p : TDraw2D::CurvePoints(control, 24)) out.push_back(P(p.X, p.Y));
            return out;
        }
        case TQVLinkType::ltStepLineTwoPto:
            if (fLinkPoints.size() == 1) {
                const TQVLPto64 m = fLinkPoints[0];
                if (Horizontal(fFromSide))
                    out.insert(out.end(), {TQVLPto64{m.X, fStartPt.Y}, TQVLPto64{m.X, fEndPt.Y}});
                else
                    out.insert(out.end(), {TQVLPto64{fStartPt.X, m.Y}, TQVLPto64{fEndPt.X, m.Y}});
                out.push_back(fEndPt);
                return out;
            }
            break;
        default:
            break;
    }
    if (fLinkType != TQVLinkType::ltArc) out.insert(out.end(), fLinkPoints.begin(), fLinkPoints.end());
    out.push_back(fEndPt);
    return out;
}

std::vector<TQVLPto64> TORXBaseLink::Arrow(bool atEnd) const {
    const std::vector<TQVLPto64> course = Course();
    if (course.size() < 2) return {};
    const TQVLTermType type = atEnd ? fToType : fFromType;
    const TQVLPto64 tip = atEnd ? course.back() : course.front();
    const TQVLPto64 back = atEnd ? course[course.size() - 2] : course[1];
    const std::int64_t size = SetBaseValue(fOwner->Settings().fTermSize);
    std::int64_t ax1 = 0, ay1 = 0, ax2 = 0, ay2 = 0;
    switch (type) {
        case TQVLTermType::ttNone:
            return {};
        case TQVLTermType::ttArrow:
        case TQVLTermType::ttFillArrow:
            TDraw2D::DrawArrow(back.X, back.Y, tip.X, tip.Y, size, ax1, ay1, ax2, ay2,
                               TDraw2D::kArrowDivisor);
            return {{ax1, ay1}, tip, {ax2, ay2}};
        case TQVLTermType::ttLeftDia:
            TDraw2D::DrawLeft(back.X, back.Y, tip.X, tip.Y, size / 2, ax1, ay1, ax2, ay2);
            return {{ax1, ay1}, {ax2, ay2}};
        case TQVLTermType::ttRightDia:
        case TQVLTermType::ttCross:
            TDraw2D::DrawRight(back.X, back.Y, tip.X, tip.Y, size / 2, ax1, ay1, ax2, ay2);
            if (type == TQVLTermType::ttRightDia) return {{ax1, ay1}, {ax2, ay2}};
            {
                std::int64_t bx1 = 0, by1 = 0, bx2 = 0, by2 = 0;
                TDraw2D::DrawLeft(back.X, back.Y, tip.X, tip.Y, size / 2, bx1, by1, bx2, by2);
                return {{ax1, ay1}, {ax2, ay2}, {bx1, by1}, {bx2, by2}};
            }
        default: {
            // Circles, squares and rhombi: a closed outline around the end point.
            const bool circle = type == TQVLTermType::ttCircle || type == TQVLTermType::ttFillCircle;
            const bool square = type == TQVLTermType::ttSquare || type == TQVLTermType::ttFillSquare;
            const int corners = circle ? 16 : 4;
            const double rad = static_cast<double>(size) / 2;
            std::vector<TQVLPto64> out;
            for (int i = 0; i < corners; ++i) {
                const double a = 2 * std::numbers::pi * (i + (square ? 0.5 : 0.0)) / corners;
                out.push_back(P(static_cast<double>(tip.X) + rad * std::cos(a),
                                static_cast<double>(tip.Y) + rad * std::sin(a)));
            }
            return out;
        }
    }
}

bool TORXBaseLink::Pick(std::int64_t x, std::int64_t y, std::int32_t tolerance, bool flag) const {
    (void)flag;
    return PointOnPolyline(Course(), false, x, y, std::max<std::int64_t>(tolerance, fPenWidth / 2));
}

bool TORXBaseLink::CheckPoint(std::int64_t x, std::int64_t y, std::int32_t tolerance, TQVLSnap snap,
                              TQVLRef& ref) {
    const auto near = [&](const TQVLPto64& p, std::int32_t index) {
        if (Orvex::Distance(x, y, p.X, p.Y) > tolerance) return false;
        ref = TQVLRef{this, index, p.X, p.Y};
        return true;
    };
    const std::vector<TQVLPto64> course = Course();
    switch (snap) {
        case TQVLSnap::snEndPoint:
            return near(fStartPt, 1) || near(fEndPt, 2);
        case TQVLSnap::snMidPoint:
            return near(course[course.size() / 2], 0);
        case TQVLSnap::snNearest:
            for (std::size_t i = 0; i + 1 < course.size(); ++i) {
                std::int64_t fx = 0, fy = 0;
                const auto& a = course[i];
                const auto& b = course[i + 1];
                if (!TDraw2D::LinePerpenFromPoint(a.X, a.Y, b.X, b.Y, x, y, fx, fy)) continue;
                if (TDraw2D::PointInLine(a.X, a.Y, b.X, b.Y, fx, fy, 1) && near({fx, fy}, 0)) return true;
            }
            return false;
        case TQVLSnap::snCenter:
        case TQVLSnap::snNone:
        case TQVLSnap::snIntersection:
            return false;
    }
    return false;
}

void TORXBaseLink::CheckFit(std::int64_t& minX, std::int64_t& maxX, std::int64_t& minY,
                            std::int64_t& maxY) const {
    TQVLRect r = fBoundsRect;
    r.Inflate(fPenWidth / 2, fPenWidth / 2);
    FitRect(r, minX, maxX, minY, maxY);
}

void TORXBaseLink::UpdateBounds() {
    const std::vector<TQVLPto64> course = Course();
    TQVLRect r(course.front().X, course.front().Y, course.front().X, course.front().Y);
    for (const auto& p : course) {
        r.Left = std::min(r.Left, p.X), r.Right = std::max(r.Right, p.X);
        r.Top = std::min(r.Top, p.Y), r.Bottom = std::max(r.Bottom, p.Y);
    }
    fBoundsRect = r;
}

void TORXBaseLink::Turn(bool right) {
    // Only the user's points turn: the ends belong to the elements.
    const std::int64_t cx = (fBoundsRect.Left + fBoundsRect.Right) / 2;
    const std::int64_t cy = (fBoundsRect.Top + fBoundsRect.Bottom) / 2;
    std::vector<TQVLPto64> points = fLinkPoints;
    for (auto& p : points)
        p = TDraw2D::RotatePoint(p.X, p.Y, cx, cy, right ? TQVLAngle::ag90 : TQVLAngle::ag270);
    SetLinkPoints(points);
}

void TORXBaseLink::RotateLeft() {
    Turn(false);
}

void TORXBaseLink::RotateRight() {
    Turn(true);
}

void TORXBaseLink::BaseMove(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2,
                            TQVLMoveOpt option, bool flag) {
    (void)flag;
    const std::int64_t dx = x2 - x1;
    const std::int64_t dy = y2 - y1;
    if ((dx == 0 && dy == 0) || fLinkPoints.empty()) return;
    std::vector<TQVLPto64> points = fLinkPoints;
    if (option == TQVLMoveOpt::moMove) {
        for (auto& p : points) p.Offset(dx, dy);
    } else if (option == TQVLMoveOpt::moPoint) {
        const auto nearest =
            std::min_element(points.begin(), points.end(), [&](const TQVLPto64& a, const TQVLPto64& b) {
                return Orvex::Distance(x1, y1, a.X, a.Y) < Orvex::Distance(x1, y1, b.X, b.Y);
            });
        nearest->Offset(dx, dy);
    } else {
        return;
    }
    SetLinkPoints(points);
}

// [SECTION] JSON and SVG

void TORXBaseLink::SetLabel(std::string label) {
    if (label == fLabel) return;
    fLabel = std::move(label);
    fOwner->ChangeState(TOrvexState::lsUpdate, this);
}

TQVLPto64 TORXBaseLink::LabelPoint() const {
    const std::vector<TQVLPto64> course = Course();
    if (course.empty()) return fStartPt;
    double total = 0;
    for (std::size_t i = 1; i < course.size(); ++i)
        total += TDraw2D::Distance(course[i - 1].X, course[i - 1].Y, course[i].X, course[i].Y);
    double left = total / 2;
    for (std::size_t i = 1; i < course.size(); ++i) {
        const double leg = TDraw2D::Distance(course[i - 1].X, course[i - 1].Y, course[i].X, course[i].Y);
        if (leg >= left && leg > 0) {
            const double t = left / leg;
            return P(D(course[i - 1]).X + (D(course[i]).X - D(course[i - 1]).X) * t,
                     D(course[i - 1]).Y + (D(course[i]).Y - D(course[i - 1]).Y) * t);
        }
        left -= leg;
    }
    return course.front();
}

const TPropTable<TORXBaseLink>& TORXBaseLink::PropTable() {
    using R = TPropRows<TORXBaseLink>;
    using L = TORXBaseLink;
    constexpr std::int64_t kIDMin = INT32_MIN, kIDMax = INT32_MAX, kIndexMin = INT16_MIN,
                           kIndexMax = INT16_MAX;
    // Arc angles are radians in the link and degrees in files.
    static const TPropTable<TORXBaseLink> table(std::vector<TPropRow<L>>{
        R::Enum<&L::fLinkType>(LinkProp::kLinkType, "LinkType", TQVLinkType::ltRoundCorner),
        R::Enum<&L::fLineType>(LinkProp::kLineType, "LineType", TQVLineType::ii411),
        R::Int<&L::fFromID>(LinkProp::kFromID, "FromID", kIDMin, kIDMax),
        R::Int<&L::fFromIndex>(LinkProp::kFromIndex, "FromIndex", kIndexMin, kIndexMax),
        R::Enum<&L::fFromType>(LinkProp::kFromType, "FromType", kLastTermType),
        R::Value<&L::fFromColor>(LinkProp::kFromColor, "FromColor"),
        R::Int<&L::fToID>(LinkProp::kToID, "ToID", kIDMin, kIDMax),
        R::Int<&L::fToIndex>(LinkProp::kToIndex, "ToIndex", kIndexMin, kIndexMax),
        R::Enum<&L::fToType>(LinkProp::kToType, "ToType", kLastTermType),
        R::Value<&L::fToColor>(LinkProp::kToColor, "ToColor"),
        // The arc is derived from the course; files keep it for readers that do not route.
        R::Value<&L::fRadio>(kPropNone, "Radio"),
        R::Value<&L::fCx>(kPropNone, "Cx"),
        R::Value<&L::fCy>(kPropNone, "Cy"),
        R::Custom("Start", {[](const L& l, TJsonWriter& w) {
                                w.Key("Start");
                                w.Float(U::Round(Degrees(l.fStart)));
                            },
                            [](L& l, const TJSON& obj) { l.fStart = Radians(U::GetFloat(obj, "Start")); }}),
        R::Custom("End", {[](const L& l, TJsonWriter& w) {
                              w.Key("End");
                              w.Float(U::Round(Degrees(l.fEnd)));
                          },
                          [](L& l, const TJSON& obj) { l.fEnd = Radians(U::GetFloat(obj, "End")); }}),
        R::Custom("Sweep", {[](const L& l, TJsonWriter& w) {
                                w.Key("Sweep");
                                w.Float(U::Round(Degrees(l.fSweep)));
                            },
                            [](L& l, const TJSON& obj) { l.fSweep = Radians(U::GetFloat(obj, "Sweep")); }}),
        R::Value<&L::fClockWise>(kPropNone, "ClockWise"),
        R::Custom("LinkPoints",
                  {[](const L& l, TJsonWriter& w) {
                       w.Key("LinkPoints");
                       w.BeginArray();
                       for (const auto& p : l.fLinkPoints) {
                           w.BeginObject();
                           w.Key("BaseX");
                           w.Int(p.X);
                           w.Key("BaseY");
                           w.Int(p.Y);
                           w.EndObject();
                       }
                       w.EndArray();
                   },
                   [](L& l, const TJSON& obj) {
                       l.fLinkPoints.clear();
                       for (const auto& p : U::GetArray(obj, "LinkPoints"))
                           l.fLinkPoints.push_back(TQVLPto64{U::GetInt(p, "BaseX"), U::GetInt(p, "BaseY")});
                   }}),
        // An extra key after the link's own: older readers keep the link and ignore its label.
        R::Custom("Label", {[](const L& l, TJsonWriter& w) {
                                if (l.fLabel.empty()) return;
                                w.Key("Label");
                                w.String(l.fLabel);
                            },
                            [](L& l, const TJSON& obj) { l.fLabel = U::GetString(obj, "Label"); }}),
    });
    return table;
}

void TORXBaseLink::ReadJson(std::int32_t version, const TJSON& obj) {
    const auto endsBefore = LinkEndIDs();
    TTableItem::ReadJson(version, obj);
    if (LinkEndIDs() != endsBefore) fOwner->LinkEndsChanged(this);
    fArcFromMiddle = false;
    // Until the elements are bound (after the whole drawing is read) the ends stay where they were saved.
    fStartPt = fEndPt = TQVLPto64{GetPointX(1), GetPointY(1)};
    if (!fLinkPoints.empty()) fEndPt = fLinkPoints.back();
    UpdateBounds();
    fOwner->ChangeState(TOrvexState::lsCalc, this);
}

void TORXBaseLink::WriteSVG(std::vector<std::string>& defs, std::vector<std::string>& body,
                            TQVLExportSVG mode, float factor, bool flag) const {
    (void)mode, (void)factor, (void)flag;
    const TQVLUnits unit = fOwner->Units();
    const auto pt = [unit](const TQVLPto64& p) { return SvgLength(p.X, unit) + "," + SvgLength(p.Y, unit); };
    std::string d = "M" + pt(fStartPt);
    if (fLinkType == TQVLinkType::ltArc && fRadio > 0) {
        d += fmt::format(" A{},{} 0 {} {} {}", SvgLength(fRadio, unit), SvgLength(fRadio, unit),
                         fSweep > std::numbers::pi ? 1 : 0, fClockWise ? 0 : 1, pt(fEndPt));
    } else if (fLinkType == TQVLinkType::ltCurve) {
        const double reach =
            std::max(2000.0, TDraw2D::Distance(fStartPt.X, fStartPt.Y, fEndPt.X, fEndPt.Y) / 3);
        const TPoint2D n0 = SideNormal(fFromSide);
        const TPoint2D n1 = SideNormal(fToSide);
        d += " C" + pt(P(D(fStartPt).X + n0.X * reach, D(fStartPt).Y + n0.Y * reach)) + " " +
             pt(P(D(fEndPt).X + n1.X * reach, D(fEndPt).Y + n1.Y * reach)) + " " + pt(fEndPt);
    } else {
        const std::vector<TQVLPto64> course = Course();
        for (std::size_t i = 1; i < course.size(); ++i) d += " L" + pt(course[i]);
    }
    std::string markers;
    const std::string start = SvgTerminatorMarker(fFromType, fFromColor, defs);
    const std::string end = SvgTerminatorMarker(fToType, fToColor, defs);
    if (!start.empty()) markers += " marker-start=\"" + start + "\"";
    if (!end.empty()) markers += " marker-end=\"" + end + "\"";
    body.push_back(fmt::format("<path id=\"{}\" d=\"{}\" fill=\"none\"{}{} stroke-linejoin=\"round\"/>",
                               SvgEscape(fID), d, SvgStroke(fColor, GetPenWidthMM(), fLineType, unit),
                               markers));
    if (!fLabel.empty()) {
        // The ground is sized from the font height: SVG has no text measure, and a little room is harmless.
        const TQVLPto64 at = LabelPoint();
        constexpr std::int64_t kHeight = 3500;  // the default caption height, base units
        const auto width = static_cast<std::int64_t>(fLabel.size()) * kHeight * 6 / 10 + kHeight / 2;
        body.push_back(fmt::format(
            "<rect x=\"{}\" y=\"{}\" width=\"{}\" height=\"{}\" fill=\"#FFFFFF\"/><text x=\"{}\" y=\"{}\" "
            "font-family=\"Arial\" font-size=\"{}\" text-anchor=\"middle\" "
            "dominant-baseline=\"central\">{}</text>",
            SvgLength(at.X - width / 2, unit), SvgLength(at.Y - kHeight * 6 / 10, unit),
            SvgLength(width, unit), SvgLength(kHeight * 12 / 10, unit), SvgLength(at.X, unit),
            SvgLength(at.Y, unit), SvgLength(kHeight, unit), SvgEscape(fLabel)));
    }
}

void TORXBaseLink::CheckProp(TQVLInsTypeBases& baseSet, TQVLInsTypes& set) const {
    baseSet =
        baseSet & TQVLInsTypeBases{TQVLInsTypeBase::ibID, TQVLInsTypeBase::ibLayer, TQVLInsTypeBase::ibColor,
                                   TQVLInsTypeBase::ibPenWidth, TQVLInsTypeBase::ibOptions};
    set = set & TQVLInsTypes{TQVLInsType::inLineType, TQVLInsType::inTerminators};
}

}  // namespace Orvex
