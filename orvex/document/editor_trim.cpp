// The editing tools that work on existing items: trim and extend (first the boundaries, then the items
// to cut or lengthen), join (two items meet at a corner) and parallel copies at a picked distance. Each
// change is one undo group.
#include <algorithm>
#include <cmath>

#include "orvex/document/document.h"
#include "orvex/document/editor_tools.h"
#include "orvex/document/point_items.h"
#include "orvex/document/snapping.h"
#include "orvex/document/trim_extend.h"
#include "orvex/io/json.h"
#include "orvex/io/json_utils.h"
#include "orvex/render/draw2d.h"

namespace Orvex {

namespace {
using S = TQVLEdState;

bool IsPathKind(const TORXBaseItem* item) {
    const TQVLItemType t = item->ItemType();
    return t == TQVLItemType::itLine || t == TQVLItemType::itArrowLine || t == TQVLItemType::itPolyLine;
}

}  // namespace

void TORXEditor::ClearRefs() {
    for (TORXBaseItem* item : fRefs)
        if (fDoc.ItemIndex(item) >= 0) item->SetState(TQVLItemState::isNormal);
    fRefs.clear();
}

std::vector<TTrimEdge> TORXEditor::Boundaries(const TORXBaseItem* except) const {
    std::vector<TTrimEdge> edges;
    const auto add = [&](const TORXBaseItem* item) {
        if (item == except || !item->Options().Contains(TQVLayerOp::lopVisible)) return;
        const auto more = ItemEdges(*item);
        edges.insert(edges.end(), more.begin(), more.end());
    };
    if (fRefs.empty())  // no boundary chosen: every other item is one
        for (std::int32_t i = 0; i < fDoc.GetItemsCount(); ++i) add(fDoc.GetItem(i));
    else
        for (const TORXBaseItem* item : fRefs) add(item);
    return edges;
}

bool TORXEditor::EditPick(const TQVLPto64& p, TQVLShiftState shift) {
    (void)shift;
    TORXBaseItem* item = ItemAt(p);
    const TQVLEdState state = fDoc.fEdState;
    const TQVLEdAction action = fDoc.fAction;
    if (state == S::edPickRef || state == S::edPickNextRef) {
        if (item == nullptr) return false;
        if (action == TQVLEdAction::eaEquidist) {
            if (!IsPathKind(item) && item->ItemType() != TQVLItemType::itPolygon &&
                item->ItemType() != TQVLItemType::itCircle && !ItemArcCircleEditable(item))
                return false;
            fFirst = item;
            SetState(S::edPickSide);
            return true;
        }
        if (std::find(fRefs.begin(), fRefs.end(), item) == fRefs.end()) {
            fRefs.push_back(item);
            item->SetState(TQVLItemState::isRef);
        }
        SetState(S::edPickNextRef);
        return true;
    }
    if (state == S::edTrim || state == S::edExtend) {
        if (item == nullptr) return false;
        const bool done = state == S::edTrim ? TrimItem(item, p) : ExtendItem(item, p);
        if (done) fDoc.CheckIntersetions();
        return done;
    }
    if (action == TQVLEdAction::eaJoin) {
        if (item == nullptr || (!IsPathKind(item) && !ItemArcCircleEditable(item))) return false;
        if (fFirst == nullptr || fDoc.ItemIndex(fFirst) < 0) {
            fFirst = item;
            fFirstPick = p;
            SetState(S::edPickSecond);
            return true;
        }
        if (item == fFirst) return false;
        if (ItemArcCircleEditable(fFirst) || ItemArcCircleEditable(item)) {
            const bool joined = JoinArc(fFirst, fFirstPick, item, p);
            if (joined) fDoc.CheckIntersetions();
            fFirst = nullptr;
            SetState(S::edPickFirst);
            return joined;
        }
        std::vector<TQVLPto64> a = ItemPath(*fFirst);
        std::vector<TQVLPto64> b = ItemPath(*item);
        const bool joined = JoinPaths(a, fFirstPick, b, p);
        if (joined) {
            fDoc.BeginUpdate(true);
            SetPointsStep(fFirst, ItemWithPath(*fFirst, a));
            SetPointsStep(item, ItemWithPath(*item, b));
            fDoc.EndUpdate();
            fDoc.CheckIntersetions();
        }
        fFirst = nullptr;
        SetState(S::edPickFirst);
        return joined;
    }
    if (action == TQVLEdAction::eaEquidist && state == S::edPickSide && fFirst != nullptr) {
        const bool made = Parallel(fFirst, p);
        fFirst = nullptr;
        SetState(S::edPickRef);
        return made;
    }
    return false;
}

bool TORXEditor::TrimItem(TORXBaseItem* item, const TQVLPto64& p) {
    if (TrimArc(item, p)) return true;
    if (item->ItemType() == TQVLItemType::itPolygon) return TrimPolygon(item, p);
    if (!IsPathKind(item)) return false;
    const TTrimResult cut = TrimPath(ItemPath(*item), Boundaries(item), p);
    if (!cut.Trimmed) return false;
    fDoc.BeginUpdate(true);
    // The first piece stays in the item; a second one becomes a copy of it.
    if (cut.Pieces.size() == 2) {
        TORXBaseItem* copy = AddFromJson(item->WriteJson());
        if (copy != nullptr) SetPointsStep(copy, ItemWithPath(*copy, cut.Pieces[1]));
    }
    SetPointsStep(item, ItemWithPath(*item, cut.Pieces[0]));
    fDoc.EndUpdate();
    return true;
}

bool TORXEditor::ExtendItem(TORXBaseItem* item, const TQVLPto64& p) {
    if (ItemArcCircleEditable(item)) return ExtendArc(item, p);
    if (!IsPathKind(item)) return false;
    std::vector<TQVLPto64> path = ItemPath(*item);
    if (!ExtendPath(path, Boundaries(item), p)) return false;
    fDoc.BeginUpdate(true);
    SetPointsStep(item, ItemWithPath(*item, path));
    fDoc.EndUpdate();
    return true;
}

bool TORXEditor::TrimPolygon(TORXBaseItem* item, const TQVLPto64& p) {
    std::vector<TQVLPto64> ring;
    for (const TQVLPto& q : item->Points()) ring.push_back({q.X, q.Y});
    const std::vector<TQVLPto64> rest = TrimClosedPath(ring, Boundaries(item), p);
    if (rest.size() < 2) return false;
    // An outline with a gap is no polygon any more: a polyline of the same style takes its place.
    TJSON obj = item->WriteJson();
    obj["Type"] = (TJSONUtils::GetInt(obj, "Type") & ~0xFF) | static_cast<int>(TQVLItemType::itPolyLine);
    const std::int32_t index = fDoc.ItemIndex(item);
    fDoc.BeginUpdate(true);
    TORXBaseItem* line = AddFromJson(obj);
    if (line != nullptr) {
        SetPointsStep(line, ItemWithPath(*line, rest));
        MoveItemTo(line, index);
        if (item->State() == TQVLItemState::isSelected) std::erase(fDoc.fSelection, item);
        fDoc.DeleteItem(item, true);
    }
    fDoc.EndUpdate();
    return line != nullptr;
}

bool TORXEditor::Parallel(TORXBaseItem* item, const TQVLPto64& p) {
    TQVLPtoA points;
    if (item->ItemType() == TQVLItemType::itCircle) {
        TItemCircle c;
        if (!ItemCircle(*item, c)) return false;
        const std::int64_t r = MathRound(TDraw2D::Distance(c.Center.X, c.Center.Y, p.X, p.Y));
        if (r <= 0) return false;
        points = {TQVLPto{c.Center.X - r, c.Center.Y - r}, TQVLPto{c.Center.X + r, c.Center.Y + r}};
    } else if (ParallelArc(item, p, points)) {
    } else {
        std::vector<TQVLPto64> path = ItemPath(*item);
        if (item->ItemType() == TQVLItemType::itPolygon) {
            path.clear();
            for (const TQVLPto& q : item->Points()) path.push_back({q.X, q.Y});
        }
        if (path.size() < 2) return false;
        // The distance and side come from the segment nearest to the pick.
        std::size_t nearest = 1;
        double best = -1;
        for (std::size_t i = 1; i < path.size(); ++i) {
            const auto d = static_cast<double>(
                TDraw2D::DistancePointToLine(p.X, p.Y, path[i - 1].X, path[i - 1].Y, path[i].X, path[i].Y));
            if (best < 0 || d < best) best = d, nearest = i;
        }
        const int side = TDraw2D::PointSide(path[nearest - 1].X, path[nearest - 1].Y, path[nearest].X,
                                            path[nearest].Y, p.X, p.Y);
        if (side == 0 || best <= 0) return false;
        std::vector<TQVLPto64> out;
        const bool closed = item->ItemType() == TQVLItemType::itPolygon;
        if (!TDraw2D::PoligonParalel(path, side * static_cast<std::int64_t>(best), closed, out)) return false;
        points = ItemWithPath(*item, out);
        if (item->ItemType() == TQVLItemType::itPolygon) {
            points.clear();
            for (const auto& q : out) points.push_back(TQVLPto{q.X, q.Y});
        }
    }
    fDoc.BeginUpdate(true);
    TORXBaseItem* copy = AddFromJson(item->WriteJson());
    if (copy != nullptr) SetPointsStep(copy, points);
    fDoc.EndUpdate();
    return copy != nullptr;
}

}  // namespace Orvex
