// What the editor needs to know of particular item kinds: how a tool's picked points become an item,
// which links join which elements, and the circles of arcs and sectors.
#include <algorithm>
#include <cmath>
#include <unordered_set>

#include "orvex/document/document.h"
#include "orvex/document/editor_tools.h"
#include "orvex/document/point_items.h"
#include "orvex/document/snapping.h"
#include "orvex/document/trim_extend.h"
#include "orvex/io/json.h"
#include "orvex/items/flow_items.h"
#include "orvex/items/line_items.h"
#include "orvex/items/link_items.h"
#include "orvex/items/rich_text_item.h"
#include "orvex/items/shape_items.h"
#include "orvex/items/text_items.h"
#include "orvex/render/draw2d.h"

namespace Orvex {

namespace {
using A = TQVLEdAction;

TQVLPto Q(const TQVLPto64& p) {
    return TQVLPto{p.X, p.Y};
}

// The box of a circle, ellipse or any box item: top-left and bottom-right corners.
void SetBox(TORXBaseItem* item, std::int64_t l, std::int64_t t, std::int64_t r, std::int64_t b) {
    item->SetBase(1, std::min(l, r), std::min(t, b));
    item->SetBase(2, std::max(l, r), std::max(t, b));
}
}  // namespace

TORXBaseItem* TORXEditor::CreateFromTool() {
    const std::vector<TQVLPto64>& p = fPicked;
    const A action = fDoc.fAction;
    // Circles first: three points on a line or a zero radius make none, and then no item is created.
    std::int64_t cx = 0;
    std::int64_t cy = 0;
    std::int64_t radius = 0;
    if (action == A::eaCircle2P && !TDraw2D::CircleTwoPoints(p[0].X, p[0].Y, p[1].X, p[1].Y, cx, cy, radius))
        return nullptr;
    if (action == A::eaCirclePR) {
        cx = p[0].X, cy = p[0].Y;
        radius = MathRound(TDraw2D::Distance(p[0].X, p[0].Y, p[1].X, p[1].Y));
    }
    if (action == A::eaCircle3P &&
        !TDraw2D::CircleThreePoints(p[0].X, p[0].Y, p[1].X, p[1].Y, p[2].X, p[2].Y, cx, cy, radius))
        return nullptr;
    if ((action == A::eaCircle2P || action == A::eaCirclePR || action == A::eaCircle3P) && radius <= 0)
        return nullptr;
    if (p.size() >= 2 && p.front().X == p.back().X && p.front().Y == p.back().Y && action != A::eaPolygon &&
        action != A::eaPolyline && action != A::eaBezier && action != A::eaPoint)
        return nullptr;  // a zero-size item is a slip of the hand

    TORXBaseItem* item = CreateKind(action);
    if (item == nullptr) return nullptr;
    const TNoRecord off(fDoc);  // the creation is the undo step; what it starts with is part of it
    if (TORXLayer* layer = fDoc.GetActiveLayer()) item->SetLayer(layer);
    switch (action) {
        case A::eaCirclePR:
        case A::eaCircle2P:
        case A::eaCircle3P:
            SetBox(item, cx - radius, cy - radius, cx + radius, cy + radius);
            break;
        case A::eaPolyline:
        case A::eaPolygon:
        case A::eaBezier: {
            TQVLPtoA points;
            for (const auto& q : p) points.push_back(Q(q));
            item->SetPointsProp(points, kPropPoints);
            break;
        }
        default:
            if (!ConfigureKind(item, action)) {
                if (dynamic_cast<TORX2DItem*>(item) != nullptr && p.size() >= 2)
                    SetBox(item, p[0].X, p[0].Y, p[1].X, p[1].Y);
                else
                    for (std::size_t i = 0; i < p.size() && i < static_cast<std::size_t>(item->NumPoints());
                         ++i)
                        item->SetPoint(static_cast<std::int32_t>(i + 1), Q(p[i]));
            }
            break;
    }
    fDoc.ChangeState(TOrvexState::lsCalc, item);
    return item;
}

namespace {
constexpr double kPi = 3.14159265358979323846;

// Screen degrees (counter-clockwise as seen, y pointing down) of the direction from c to p.
double ScreenDeg(const TQVLPto64& c, const TQVLPto64& p) {
    const double a =
        std::atan2(-static_cast<double>(p.Y - c.Y), static_cast<double>(p.X - c.X)) * 180.0 / kPi;
    return a < 0 ? a + 360.0 : a;
}

double NormDeg(double a) {
    a = std::fmod(a, 360.0);
    return a < 0 ? a + 360.0 : a;
}

// The arc through three points: centre, radius, start angle and signed sweep in screen degrees.
bool ArcThrough(const TQVLPto64& a, const TQVLPto64& b, const TQVLPto64& c, TQVLPto64& centre,
                std::int64_t& radius, double& start, double& sweep) {
    double s0 = 0;
    double s1 = 0;
    bool ccw = false;
    if (!TDraw2D::ArcThreePoints(a.X, a.Y, b.X, b.Y, c.X, c.Y, centre.X, centre.Y, radius, s0, s1, ccw))
        return false;
    // Increasing stored angles turn clockwise on a y-down screen.
    const double turn = TDraw2D::ArcSweep(s0, s1, ccw) * 180.0 / kPi;
    start = ScreenDeg(centre, a);
    sweep = ccw ? -turn : turn;
    return radius > 0;
}

TORXBaseItem* ItemByInID(const TORXBaseLabel& doc, std::int32_t id) {
    for (std::int32_t i = 0; i < doc.GetItemsCount(); ++i)
        if (doc.GetItem(i)->InID() == id) return doc.GetItem(i);
    return nullptr;
}

TORXBaseFlow* FlowAt(TORXBaseLabel& doc, const TQVLPto64& p, std::int64_t tol) {
    for (std::int32_t i = doc.GetItemsCount() - 1; i >= 0; --i)
        if (auto* flow = dynamic_cast<TORXBaseFlow*>(doc.GetItem(i)))
            if (flow->Pick(p.X, p.Y, static_cast<std::int32_t>(tol), false)) return flow;
    return nullptr;
}
}  // namespace

bool TORXEditor::ConfigureKind(TORXBaseItem* item, TQVLEdAction action) {
    const std::vector<TQVLPto64>& p = fPicked;
    switch (action) {
        case A::eaArc: {
            auto* arc = dynamic_cast<TORXBaseArc*>(item);
            TQVLPto64 c;
            std::int64_t r = 0;
            double start = 0;
            double sweep = 0;
            if (arc == nullptr || !ArcThrough(p[0], p[1], p[2], c, r, start, sweep)) return false;
            arc->SetCircle(c.X, c.Y, r);
            arc->SetClockWise(sweep < 0);
            arc->SetStartAngle(static_cast<float>(start));
            arc->SetEndAngle(static_cast<float>(NormDeg(start + sweep)));
            return true;
        }
        case A::eaSectorPR:
        case A::eaSector2P:
        case A::eaSector3P: {
            auto* sector = dynamic_cast<TORXBaseSector*>(item);
            if (sector == nullptr) return false;
            TQVLPto64 c;
            std::int64_t r = 0;
            double start = 0;
            double sweep = 0;
            if (action == A::eaSectorPR) {
                c = p[0];
                r = MathRound(TDraw2D::Distance(p[0].X, p[0].Y, p[1].X, p[1].Y));
                start = ScreenDeg(c, p[1]);
                sweep = NormDeg(ScreenDeg(c, p[2]) - start);
                if (sweep == 0) sweep = 360;
            } else if (action == A::eaSector2P) {  // a half disc on the diameter from the first point
                c = {(p[0].X + p[1].X) / 2, (p[0].Y + p[1].Y) / 2};
                r = MathRound(TDraw2D::Distance(c.X, c.Y, p[0].X, p[0].Y));
                start = ScreenDeg(c, p[0]);
                sweep = 180;
            } else if (!ArcThrough(p[0], p[1], p[2], c, r, start, sweep)) {
                return false;
            }
            if (r <= 0) return false;
            sector->SetBase(1, c.X - r, c.Y - r);
            sector->SetBase(2, c.X + r, c.Y + r);
            sector->SetAngleStart(static_cast<float>(start));
            sector->SetAngleGap(static_cast<float>(sweep));
            return true;
        }
        case A::eaDim: {
            auto* dim = dynamic_cast<TORXBaseDim*>(item);
            if (dim == nullptr) return false;
            // Mostly horizontal features get a horizontal dimension, placed where the third point says.
            const bool horizontal = std::llabs(p[1].X - p[0].X) >= std::llabs(p[1].Y - p[0].Y);
            std::int64_t offset = 0;
            if (horizontal) {
                const std::int64_t lo = std::min(p[0].Y, p[1].Y);
                offset = p[2].Y < lo ? p[2].Y - lo : p[2].Y - std::max(p[0].Y, p[1].Y);
            } else {
                const std::int64_t lo = std::min(p[0].X, p[1].X);
                offset = p[2].X < lo ? p[2].X - lo : p[2].X - std::max(p[0].X, p[1].X);
            }
            dim->SetLinear(horizontal ? TQVDimType::dmtHorz : TQVDimType::dmtVert, p[0], p[1], offset);
            return true;
        }
        case A::eaDimAng: {
            auto* dim = dynamic_cast<TORXBaseDim*>(item);
            if (dim == nullptr) return false;
            dim->SetAngular(p[0], p[1], p[2], p[3]);
            return true;
        }
        case A::eaDimRad1:
        case A::eaDimRad2:
        case A::eaDimDia1:
        case A::eaDimDia2: {
            auto* dim = dynamic_cast<TORXBaseDim*>(item);
            if (dim == nullptr) return false;
            const TQVDimType type = action == A::eaDimRad1   ? TQVDimType::dmtRadial1
                                    : action == A::eaDimRad2 ? TQVDimType::dmtRadial2
                                    : action == A::eaDimDia1 ? TQVDimType::dmtDiameter1
                                                             : TQVDimType::dmtDiameter2;
            dim->SetRadial(type, p[0], p[1]);
            return true;
        }
        case A::eaText:
        case A::eaParagraph:
        case A::eaRichText: {
            SetBox(item, p[0].X, p[0].Y, p[1].X, p[1].Y);
            // A new text shows the tool's name so that it can be seen and picked before it is edited.
            const std::string text = ActionText(action, TQVLEdState::edEnd);
            if (auto* t = dynamic_cast<TORXTextItem*>(item)) t->SetText(text);
            if (auto* rich = dynamic_cast<TORXBaseRichText*>(item)) rich->SetText(text);
            return true;
        }
        case A::eaFlow: {
            SetBox(item, p[0].X, p[0].Y, p[1].X, p[1].Y);
            if (auto* flow = dynamic_cast<TORXBaseFlow*>(item)) flow->SetFlowType(fDoc.ActionFlowType());
            return true;
        }
        case A::eaLink:
        case A::eaPolyLink: {
            auto* link = dynamic_cast<TORXBaseLink*>(item);
            if (link == nullptr) return false;
            link->SetLinkType(action == A::eaPolyLink ? TQVLinkType::ltPolyline : fDoc.ActionLinkType());
            for (std::size_t i = 1; i + 1 < p.size(); ++i)
                link->InsertPoint(p[i].X, p[i].Y, static_cast<std::int32_t>(i));
            const auto* from = dynamic_cast<const TORXBaseFlow*>(ItemByInID(fDoc, fLinkFrom.ID));
            const auto* to = dynamic_cast<const TORXBaseFlow*>(ItemByInID(fDoc, fLinkTo.ID));
            link->Bind(from, fLinkFrom.Index, to, fLinkTo.Index);
            return true;
        }
        default:
            return false;
    }
}

bool TORXEditor::LinkEndAt(const TQVLPto64& p, bool start) {
    if (fDoc.fAction != A::eaLink && fDoc.fAction != A::eaPolyLink) return true;
    TORXBaseFlow* flow = FlowAt(fDoc, p, Tolerance());
    TQVLink link;
    if (flow == nullptr) {  // the pointer may be just outside the element, on a connection point
        for (std::int32_t i = fDoc.GetItemsCount() - 1; i >= 0 && flow == nullptr; --i)
            if (auto* f = dynamic_cast<TORXBaseFlow*>(fDoc.GetItem(i));
                f != nullptr && f->CheckLink(p.X, p.Y, link))
                flow = f;
        if (flow == nullptr) return false;
    } else if (!flow->CheckLink(p.X, p.Y, link)) {
        link = TQVLink{flow->InID(), -1};  // inside the element: the link picks the sides
    }
    if (start) {
        fLinkFrom = link;
        return true;
    }
    if (link.ID == fLinkFrom.ID) return false;
    fLinkTo = link;
    return true;
}

// [SECTION] Arcs

bool ItemArcCircle(const TORXBaseItem& item, TItemCircle& circle) {
    // Screen degrees counter-clockwise become stored radians: the sign of the angle flips.
    const auto stored = [](double deg) { return TDraw2D::NormalizeAngle(-deg * kPi / 180.0); };
    if (const auto* arc = dynamic_cast<const TORXBaseArc*>(&item)) {
        circle = TItemCircle{};
        circle.Center = arc->Center();
        circle.Radius = circle.RadiusY = arc->Radius();
        circle.Full = arc->SweepAngle() >= 360.0f;
        circle.Start = stored(arc->StartAngle());
        circle.End = stored(arc->StartAngle() + arc->SignedSweep());
        circle.Ccw = arc->ClockWise();
        return circle.Radius > 0;
    }
    if (const auto* sector = dynamic_cast<const TORXBaseSector*>(&item)) {
        circle = TItemCircle{};
        circle.Center = {sector->BaseCenterX(), sector->BaseCenterY()};
        circle.Radius = circle.RadiusY = sector->GetBaseRadio();
        circle.Full = std::fabs(sector->SweepAngle()) >= 360.0f;
        circle.Start = stored(sector->EffectiveStart());
        circle.End = stored(sector->EffectiveStart() + sector->SweepAngle());
        circle.Ccw = sector->SweepAngle() < 0;
        return circle.Radius > 0;
    }
    return false;
}

bool TORXEditor::ItemArcCircleEditable(const TORXBaseItem* item) const {
    return dynamic_cast<const TORXBaseArc*>(item) != nullptr;
}

bool TORXEditor::TrimArc(TORXBaseItem* item, const TQVLPto64& pick) {
    auto* arc = dynamic_cast<TORXBaseArc*>(item);
    if (arc == nullptr) return false;
    const TQVLPto64 c = arc->Center();
    const std::int64_t r = arc->Radius();
    const double start = arc->StartAngle();
    const double sweep = arc->SignedSweep();
    const double length = std::fabs(sweep);
    const double dir = sweep < 0 ? -1.0 : 1.0;
    // Position along the arc, in degrees from its start in its own direction.
    const auto along = [&](double x, double y) {
        const double deg = ScreenDeg(c, {MathRound(x), MathRound(y)});
        return NormDeg((deg - start) * dir);
    };
    std::vector<double> cuts;
    const auto add = [&](const TPoint2D& q) {
        const double u = along(q.X, q.Y);
        if (u > 1e-6 && u < length - 1e-6) cuts.push_back(u);
    };
    for (const TTrimEdge& e : Boundaries(item))
        for (const TPoint2D& q : CircleCrossings(c, r, e)) add(q);
    const double at = along(static_cast<double>(pick.X), static_cast<double>(pick.Y));
    double low = -1;
    double high = length + 1;
    for (const double u : cuts) {
        if (u < at && u > low) low = u;
        if (u > at && u < high) high = u;
    }
    if (low < 0 && high > length) return false;
    fDoc.BeginUpdate(true);
    // The part from the start to the first cut stays in the item; the part after the second is a copy.
    if (low >= 0 && high <= length) {
        if (auto* copy = dynamic_cast<TORXBaseArc*>(AddFromJson(arc->WriteJson()))) {
            copy->SetStartAngle(static_cast<float>(NormDeg(start + dir * high)));
            copy->SetEndAngle(static_cast<float>(NormDeg(start + sweep)));
        }
    }
    if (low >= 0) {
        arc->SetEndAngle(static_cast<float>(NormDeg(start + dir * low)));
    } else {
        arc->SetStartAngle(static_cast<float>(NormDeg(start + dir * high)));
    }
    fDoc.ChangeState(TOrvexState::lsCalc, arc);
    fDoc.EndUpdate();
    return true;
}

bool TORXEditor::ParallelArc(TORXBaseItem* item, const TQVLPto64& p, TQVLPtoA& points) {
    const auto* arc = dynamic_cast<const TORXBaseArc*>(item);
    if (arc == nullptr) return false;
    const TQVLPto64 c = arc->Center();
    const std::int64_t r = MathRound(TDraw2D::Distance(c.X, c.Y, p.X, p.Y));
    if (r <= 0) return false;
    points = {TQVLPto{c.X - r, c.Y - r}, TQVLPto{c.X + r, c.Y + r}};
    return true;
}

std::vector<TORXBaseItem*> LinksOf(const TORXBaseLabel& document, const std::vector<TORXBaseItem*>& items) {
    // Through the document's index: a walk over every item for each drag made dragging in a large
    // flowchart cost as much as the whole drawing.
    std::vector<TORXBaseItem*> links;
    std::unordered_set<const TORXBaseItem*> seen;
    for (const TORXBaseItem* item : items)
        for (TORXBaseItem* link : document.LinksOf(item->InID()))
            if (link != item && seen.insert(link).second) links.push_back(link);
    return links;
}

}  // namespace Orvex
