// What the editor needs to know of particular item kinds: how a tool's picked points become an item,
// which links join which elements, and the circles of arcs and sectors.
#include <algorithm>
#include <cmath>

#include "orvex/document/document.h"
#include "orvex/document/editor_tools.h"
#include "orvex/document/point_items.h"
#include "orvex/document/snapping.h"
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
    if (p.size() >= 2 && p.front().X == p.back().X && p.front().Y == p.back().Y &&
        action != A::eaPolygon && action != A::eaPolyline && action != A::eaBezier && action != A::eaPoint)
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
                    for (std::size_t i = 0; i < p.size() && i < static_cast<std::size_t>(item->NumPoints()); ++i)
                        item->SetPoint(static_cast<std::int32_t>(i + 1), Q(p[i]));
            }
            break;
    }
    fDoc.ChangeState(TOrvexState::lsCalc, item);
    return item;
}

bool TORXEditor::ConfigureKind(TORXBaseItem* item, TQVLEdAction action) {
    (void)item, (void)action;
    return false;
}

bool TORXEditor::LinkEndAt(const TQVLPto64& p, bool start) {
    (void)p, (void)start;
    return fDoc.fAction != A::eaLink && fDoc.fAction != A::eaPolyLink;
}

bool TORXEditor::TrimArc(TORXBaseItem* item, const TQVLPto64& p) {
    (void)item, (void)p;
    return false;
}

bool TORXEditor::ParallelArc(TORXBaseItem* item, const TQVLPto64& p, TQVLPtoA& points) {
    (void)item, (void)p, (void)points;
    return false;
}

bool TORXEditor::ItemArcCircleEditable(const TORXBaseItem* item) const {
    (void)item;
    return false;
}

std::vector<TORXBaseItem*> LinksOf(const TORXBaseLabel& document, const std::vector<TORXBaseItem*>& items) {
    (void)document, (void)items;
    return {};
}

bool ItemArcCircle(const TORXBaseItem& item, TItemCircle& circle) {
    (void)item, (void)circle;
    return false;
}

}  // namespace Orvex
