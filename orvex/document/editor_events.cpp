// The editor's pointer and keyboard events: dispatch to the tool in use, selection by click and by rubber
// band, handles, dragging the selection or a handle, and the keyboard. A drag previews its result in the
// drawing itself with undo recording off; on release the items go back to where they were and the final
// change is applied once, recorded, as one undo group.
//
// [SECTION] Helpers   [SECTION] Document entry points   [SECTION] Dispatch   [SECTION] Selection
// [SECTION] Live drags   [SECTION] Keyboard
#include <algorithm>
#include <cmath>
#include <optional>

#include "orvex/document/document.h"
#include "orvex/document/editor_tools.h"
#include "orvex/document/point_items.h"
#include "orvex/document/undo_commands.h"

namespace Orvex {

// [SECTION] Helpers

void SetPointsStep(TORXBaseItem* item, const TQVLPtoA& points) {
    const TORXCmd* top = item->QVLab()->TopCommand();
    const bool follows =
        top != nullptr && top->Item() == item && top->Kind() == kCmdElePos && top->Property() == kPropPoints;
    item->SetPointsProp(points, follows ? kPropPointsStep : kPropPoints);
    item->QVLab()->ChangeState(TOrvexState::lsCalc, item);
}

void BreakPointsMerge(TORXBaseItem* item) {
    const TORXCmd* top = item->QVLab()->TopCommand();
    if (top != nullptr && top->Item() == item && top->Kind() == kCmdElePos && top->Property() == kPropPoints)
        TORXElePosCmd::AddCommand(item, kPropPointsStep);
}

TNoRecord::TNoRecord(TORXBaseLabel& document)
    : fDocument(document), fWasOn(document.Options().Contains(TOrvexOption::loUndoRedo)) {
    if (fWasOn) fDocument.SetOptions(fDocument.Options() - TOrvexOptions{TOrvexOption::loUndoRedo});
}

TNoRecord::~TNoRecord() {
    if (fWasOn) fDocument.SetOptions(fDocument.Options() | TOrvexOptions{TOrvexOption::loUndoRedo});
}

namespace {
TQVLPtoA Shifted(const TQVLPtoA& points, std::int64_t dx, std::int64_t dy) {
    TQVLPtoA out = points;
    for (auto& p : out) p.BaseMove(dx, dy);
    return out;
}

std::int64_t Dist(const TQVLPto64& a, const TQVLPto64& b) {
    return static_cast<std::int64_t>(
        std::llround(std::hypot(static_cast<double>(a.X - b.X), static_cast<double>(a.Y - b.Y))));
}
}  // namespace

// [SECTION] Document entry points

bool TORXBaseLabel::PickEditor(float x, float y, TSet<TQVLShift> shift) {
    return fEditor->Pick(x, y, shift);
}
bool TORXBaseLabel::MoveEditor(float x, float y, TSet<TQVLShift> shift) {
    return fEditor->Move(x, y, shift);
}
bool TORXBaseLabel::UpEditor(float x, float y, TSet<TQVLShift> shift) {
    return fEditor->Up(x, y, shift);
}
bool TORXBaseLabel::RightButton(float x, float y, TSet<TQVLShift> shift) {
    return fEditor->RightButton(x, y, shift);
}
bool TORXBaseLabel::KeyEditor(TQVLEdKey key, TSet<TQVLShift> shift) {
    return fEditor->Key(key, shift);
}
bool TORXBaseLabel::SearchPoint(std::int64_t& x, std::int64_t& y, TQVLSnapHit& hit) {
    return fEditor->SearchPoint(x, y, hit);
}
void TORXBaseLabel::PasteSelection() {
    fEditor->Paste();
}

// [SECTION] Dispatch

TORXEditor::TORXEditor(TORXBaseLabel& document) : fDoc(document) {}

TQVLPto64 TORXEditor::ToBase(float x, float y) const {
    // The inverse of the draw context's base-to-device conversion, after the scroll offset.
    const double inch =
        static_cast<double>(kBasePerInch) * static_cast<double>(fDraw.fDrawScale > 0 ? fDraw.fDrawScale : 1);
    const double bx = (static_cast<double>(x) - fDraw.fDX) * inch / std::max(1, fDraw.fDpix);
    const double by = (static_cast<double>(y) - fDraw.fDY) * inch / std::max(1, fDraw.fDpiy);
    return {MathRound(bx), MathRound(by)};
}

std::int64_t TORXEditor::Tolerance() const {
    const double inch =
        static_cast<double>(kBasePerInch) * static_cast<double>(fDraw.fDrawScale > 0 ? fDraw.fDrawScale : 1);
    return std::max<std::int64_t>(1, MathRound(fPickGap * inch / std::max(1, fDraw.fDpix)));
}

namespace {
bool IsSelectionTool(TQVLEdAction a) {
    return a == TQVLEdAction::eaSelection || a == TQVLEdAction::eaMove;
}
bool IsEditTool(TQVLEdAction a) {
    return a == TQVLEdAction::eaTrim || a == TQVLEdAction::eaJoin || a == TQVLEdAction::eaExtend ||
           a == TQVLEdAction::eaEquidist;
}
}  // namespace

bool TORXEditor::Pick(float x, float y, TQVLShiftState shift) {
    if (!fDoc.GetEditable() || fDoc.fAction == TQVLEdAction::eaNone) return false;
    fButton = true;
    const TQVLPto64 p = ToBase(x, y);
    if (IsSelectionTool(fDoc.fAction)) return SelectionPick(p, shift);
    if (fDoc.fAction == TQVLEdAction::eaEdText) return TextPick(p);
    if (fDoc.fAction == TQVLEdAction::eaMoveText) return MoveTextPick(p);
    if (IsEditTool(fDoc.fAction)) return EditPick(p, shift);
    return ToolPick(p, shift);
}

bool TORXEditor::Move(float x, float y, TQVLShiftState shift) {
    if (!fDoc.GetEditable()) return false;
    const TQVLPto64 p = ToBase(x, y);
    if (fDrag != TDrag::kNone) return SelectionMove(p, shift);
    if (IsSelectionTool(fDoc.fAction) || IsEditTool(fDoc.fAction)) {
        fDoc.fActionInfo.X = p.X, fDoc.fActionInfo.Y = p.Y;
        fDoc.FireInfoEvent(true);
        return false;
    }
    return ToolMove(p, shift);
}

bool TORXEditor::Up(float x, float y, TQVLShiftState shift) {
    if (!fDoc.GetEditable()) return false;
    const TQVLPto64 p = ToBase(x, y);
    bool changed = false;
    if (fDrag != TDrag::kNone)
        changed = SelectionUp(p, shift);
    else if (!IsSelectionTool(fDoc.fAction) && !IsEditTool(fDoc.fAction))
        changed = ToolUp(p, shift);
    fButton = false;
    return changed;
}

bool TORXEditor::RightButton(float x, float y, TQVLShiftState shift) {
    (void)x, (void)y, (void)shift;
    if (fText.Item != nullptr) {
        EndTextEdit(true);
        return true;
    }
    if (fDrag != TDrag::kNone) {
        Cancel();
        return true;
    }
    if (!fToolPoints.empty()) {
        if (!Finish()) Cancel();
        return true;
    }
    if (IsEditTool(fDoc.fAction) && !fRefs.empty() &&
        (fDoc.fEdState == TQVLEdState::edPickRef || fDoc.fEdState == TQVLEdState::edPickNextRef))
        return Key(TQVLEdKey::ekEnter, {});
    if (!IsSelectionTool(fDoc.fAction)) {
        fDoc.ResetAction();
        return true;
    }
    return false;
}

void TORXEditor::Cancel() {
    EndTextEdit(false);
    if (fDrag == TDrag::kMoving || fDrag == TDrag::kHandle) RestoreLive();
    fDrag = TDrag::kNone;
    fLive.clear();
    fDragged.clear();
    fToolPoints.clear();
    fGuides.clear();
    fFirst = nullptr;
    ClearRefs();
    ActionChanged();
}

void TORXEditor::ActionChanged() {
    EndTextEdit(true);  // another tool: the text edited so far is kept
    if (fDrag == TDrag::kNone && fToolPoints.empty()) {
        fRefs.clear();
        fFirst = nullptr;
    }
    SetState(FirstState());
    fDoc.FillSelPoints();
}

void TORXEditor::SetState(TQVLEdState state) {
    fDoc.fEdState = state;
    Info();
}

void TORXEditor::Info() {
    TQVLActionInfo& info = fDoc.fActionInfo;
    info.Action = fDoc.fAction;
    info.State = fDoc.fEdState;
    info.Text = ActionText(fDoc.fAction, fDoc.fEdState);
    info.Caret = fText.Item != nullptr ? static_cast<std::int64_t>(fText.Caret) : -1;
    if (fText.Item != nullptr) {
        const TQVLRect& r = fText.Item->BoundsRect();
        info.X = r.Left, info.Y = r.Top, info.Width = r.GetWidth(), info.Height = r.GetHeight();
    } else if (fToolPoints.size() >= 2) {
        const TQVLPto64& a = fToolPoints.front();
        const TQVLPto64& b = fToolPoints.back();
        info.X = a.X, info.Y = a.Y, info.Width = b.X - a.X, info.Height = b.Y - a.Y;
    } else if (fDrag == TDrag::kRubber) {
        const TQVLRect r = RubberBand();
        info.X = r.Left, info.Y = r.Top, info.Width = r.GetWidth(), info.Height = r.GetHeight();
    } else {
        info.X = fLast.X, info.Y = fLast.Y, info.Width = 0, info.Height = 0;
    }
    // The host asks for these through the document's info flag; a step change and a pointer move alike.
    fDoc.FireInfoEvent(true);
}

// [SECTION] Selection

bool TORXEditor::Selectable(const TORXBaseItem* item) const {
    const TQVLayerOpts need{TQVLayerOp::lopVisible, TQVLayerOp::lopSelectable};
    if ((item->Options() & need) != need) return false;
    const TORXLayer* layer = item->Layer();
    return layer == nullptr || (layer->fOptions & need) == need;
}

TORXBaseItem* TORXEditor::ItemAt(const TQVLPto64& p) const {
    const auto tol = static_cast<std::int32_t>(Tolerance());
    return fDoc.ItemAt(p.X, p.Y, tol, [this](const TORXBaseItem& item) { return Selectable(&item); });
}

bool TORXEditor::SelectionPick(const TQVLPto64& p, TQVLShiftState shift) {
    fGuides.clear();
    fDown = fLast = p;
    const std::int64_t tol = Tolerance();
    fDoc.FillSelPoints();
    if (!shift.Contains(TQVLShift::ssShift))
        for (const TQVLHandle& h : fHandles)
            if (Dist(h.Point, p) <= tol) {
                fHandle = h;
                fGrab = h.Point;
                fDrag = TDrag::kHandle;
                BeginLive({h.Item});
                SetState(TQVLEdState::edEditing);
                return true;
            }
    TORXBaseItem* item = ItemAt(p);
    if (item != nullptr) {
        const auto& sel = fDoc.Selection();
        const bool selected = std::find(sel.begin(), sel.end(), item) != sel.end();
        if (shift.Contains(TQVLShift::ssShift)) {
            if (selected) {
                item->SetState(TQVLItemState::isNormal);
                std::erase(fDoc.fSelection, item);
                fDoc.FillSelPoints();
                fDoc.ChangeValue(fDoc.fSelection.empty() ? TQVChange::chClearSelect : TQVChange::chSelect);
            } else {
                fDoc.SelectItem(item, true);
                if (fDoc.OnSelectItem) fDoc.OnSelectItem(item);
            }
            return true;
        }
        if (!selected) {
            fDoc.ClearSelection(false);
            fDoc.SelectItem(item, true);
            if (fDoc.OnSelectItem) fDoc.OnSelectItem(item);
        }
        // The item's nearest end point follows the pointer, so that it can snap onto other items.
        fGrab = p;
        TQVLRef ref;
        if (item->CheckPoint(p.X, p.Y, static_cast<std::int32_t>(tol), TQVLSnap::snEndPoint, ref))
            fGrab = {ref.X, ref.Y};
        fDrag = TDrag::kPending;
        return true;
    }
    if (!shift.Contains(TQVLShift::ssShift) && !fDoc.Selection().empty()) fDoc.ClearSelection(true);
    fDrag = TDrag::kRubber;
    SetState(TQVLEdState::edSelectDrag);
    return true;
}

bool TORXEditor::SelectionMove(const TQVLPto64& raw, TQVLShiftState shift) {
    fGuides.clear();
    switch (fDrag) {
        case TDrag::kNone:
            return false;
        case TDrag::kRubber:
            fLast = raw;
            Info();
            return true;
        case TDrag::kPending:
            if (Dist(raw, fDown) <= Tolerance()) return false;
            fDragged = fDoc.WithMembers(fDoc.Selection());  // a container carries its members
            BeginLive(fDragged);
            fDrag = TDrag::kMoving;
            SetState(TQVLEdState::edEditing);
            [[fallthrough]];
        case TDrag::kMoving: {
            TQVLPto64 at{raw.X + fGrab.X - fDown.X, raw.Y + fGrab.Y - fDown.Y};
            if (shift.Contains(TQVLShift::ssShift)) {  // along one axis only
                if (std::llabs(at.X - fGrab.X) >= std::llabs(at.Y - fGrab.Y))
                    at.Y = fGrab.Y;
                else
                    at.X = fGrab.X;
            }
            TQVLSnapHit hit;
            const bool snapped = SearchPoint(at.X, at.Y, hit, nullptr, &fDragged);
            std::int64_t dx = at.X - fGrab.X;
            std::int64_t dy = at.Y - fGrab.Y;
            if (!snapped || hit.Item == nullptr) AlignGuides(dx, dy);
            fLast = raw;
            ApplyMove(dx, dy, false);
            Info();
            return true;
        }
        case TDrag::kHandle: {
            TQVLPto64 at = raw;
            TQVLSnapHit hit;
            const std::vector<TORXBaseItem*> skip{fHandle.Item};
            SearchPoint(at.X, at.Y, hit, nullptr, &skip);
            fLast = raw;
            ApplyHandle(at, false);
            Info();
            return true;
        }
    }
    return false;
}

bool TORXEditor::SelectionUp(const TQVLPto64& raw, TQVLShiftState shift) {
    bool changed = false;
    switch (fDrag) {
        case TDrag::kNone:
        case TDrag::kPending:
            break;
        case TDrag::kMoving:
            ApplyMove(fDelta.X, fDelta.Y, true);
            fDoc.CheckIntersetions();
            changed = true;
            break;
        case TDrag::kHandle:
            ApplyHandle(fHandleTo, true);
            fDoc.CheckIntersetions();
            changed = true;
            break;
        case TDrag::kRubber: {
            fLast = raw;
            const TQVLRect band = RubberBand();
            const bool full = RubberBandFull();
            if (!shift.Contains(TQVLShift::ssShift)) fDoc.ClearSelection(false);
            for (std::int32_t i = 0; i < fDoc.GetItemsCount(); ++i) {
                TORXBaseItem* item = fDoc.GetItem(i);
                if (Selectable(item) && item->SearchRect(band, !full)) fDoc.SelectItem(item, false);
            }
            fDoc.ChangeValue(fDoc.Selection().empty() ? TQVChange::chClearSelect : TQVChange::chSelect);
            changed = true;
            break;
        }
    }
    fDrag = TDrag::kNone;
    EndDrag();
    return changed;
}

TQVLRect TORXEditor::RubberBand() const {
    TQVLRect r(fDown.X, fDown.Y, fLast.X, fLast.Y);
    r.NormalizeRect();
    return r;
}

bool TORXEditor::RubberBandFull() const {
    return fLast.X >= fDown.X;
}

void TORXEditor::FillHandles(std::vector<TQVLPto64>& points) {
    fHandles.clear();
    points.clear();
    for (TORXBaseItem* item : fDoc.Selection()) {
        if (dynamic_cast<const TORX2DItem*>(item) != nullptr && item->NumPoints() == 2) {
            const TQVLRect& b = item->BoundsRect();
            fHandles.push_back({item, -1, {b.Left, b.Top}});
            fHandles.push_back({item, -2, {b.Right, b.Top}});
            fHandles.push_back({item, -3, {b.Right, b.Bottom}});
            fHandles.push_back({item, -4, {b.Left, b.Bottom}});
        } else {
            for (std::int32_t i = 1; i <= item->NumPoints(); ++i)
                fHandles.push_back({item, i, {item->GetPointX(i), item->GetPointY(i)}});
        }
    }
    for (const TQVLHandle& h : fHandles) points.push_back(h.Point);
}

// [SECTION] Live drags

void TORXEditor::BeginLive(const std::vector<TORXBaseItem*>& items) {
    fLive.clear();
    for (TORXBaseItem* item : items) fLive.push_back({item, item->Points()});
    for (TORXBaseItem* link : LinksOf(fDoc, items))
        if (std::none_of(fLive.begin(), fLive.end(), [&](const TLive& l) { return l.Item == link; }))
            fLive.push_back({link, link->Points()});
}

void TORXEditor::RestoreLive() {
    const TNoRecord off(fDoc);
    fDoc.BeginUpdate(true);
    for (const TLive& l : fLive) {
        l.Item->SetPointsProp(l.Points, kPropPoints);
        fDoc.ChangeState(TOrvexState::lsCalc, l.Item);
    }
    fDoc.EndUpdate();
}

bool TORXEditor::IsDragged(const TORXBaseItem* item) const {
    return std::find(fDragged.begin(), fDragged.end(), item) != fDragged.end();
}

void TORXEditor::ApplyMove(std::int64_t dx, std::int64_t dy, bool record) {
    // Nothing is dragged past the drawing's top or left edge.
    for (const TLive& l : fLive)
        if (IsDragged(l.Item))
            for (std::size_t i = 0; i < l.Points.size(); ++i)
                if (PointLimitsDrag(l.Item, i))
                    dx = std::max(dx, -l.Points[i].X), dy = std::max(dy, -l.Points[i].Y);
    fDelta = {dx, dy};
    RestoreLive();
    std::optional<TNoRecord> off;
    if (!record) off.emplace(fDoc);
    fDoc.BeginUpdate(true);
    for (const TLive& l : fLive)
        if (IsDragged(l.Item)) SetPointsStep(l.Item, MovedPoints(l.Item, l.Points, dx, dy));
    for (TORXBaseItem* link : LinksOf(fDoc, fDragged)) fDoc.ChangeState(TOrvexState::lsCalc, link);
    fDoc.EndUpdate();
}

void TORXEditor::ApplyHandle(const TQVLPto64& to, bool record) {
    fHandleTo = to;
    RestoreLive();
    const auto live =
        std::find_if(fLive.begin(), fLive.end(), [&](const TLive& l) { return l.Item == fHandle.Item; });
    if (live == fLive.end()) return;
    TQVLPtoA points = live->Points;
    if (fHandle.Index >= 1 && fHandle.Index <= static_cast<std::int32_t>(points.size())) {
        points[static_cast<std::size_t>(fHandle.Index - 1)] = TQVLPto{to.X, to.Y};
    } else if (fHandle.Index < 0 && points.size() >= 2) {
        TQVLRect r(points[0].X, points[0].Y, points[1].X, points[1].Y);
        r.NormalizeRect();
        // The corner opposite the dragged one stays where it is.
        TQVLPto64 fixed;
        switch (fHandle.Index) {
            case -1:
                fixed = {r.Right, r.Bottom};
                break;
            case -2:
                fixed = {r.Left, r.Bottom};
                break;
            case -3:
                fixed = {r.Left, r.Top};
                break;
            default:
                fixed = {r.Right, r.Top};
                break;
        }
        TQVLPto64 moved = to;
        if (fHandle.Item->ItemType() == TQVLItemType::itCircle) {  // a circle stays round
            const std::int64_t side = std::max(std::llabs(to.X - fixed.X), std::llabs(to.Y - fixed.Y));
            moved.X = fixed.X + (to.X >= fixed.X ? side : -side);
            moved.Y = fixed.Y + (to.Y >= fixed.Y ? side : -side);
        }
        points[0] = TQVLPto{std::min(fixed.X, moved.X), std::min(fixed.Y, moved.Y)};
        points[1] = TQVLPto{std::max(fixed.X, moved.X), std::max(fixed.Y, moved.Y)};
    }
    std::optional<TNoRecord> off;
    if (!record) off.emplace(fDoc);
    fDoc.BeginUpdate(true);
    SetPointsStep(fHandle.Item, points);
    for (TORXBaseItem* link : LinksOf(fDoc, {fHandle.Item})) fDoc.ChangeState(TOrvexState::lsCalc, link);
    fDoc.EndUpdate();
}

void TORXEditor::EndDrag() {
    fLive.clear();
    fDragged.clear();
    fGuides.clear();
    SetState(FirstState());
}

// [SECTION] Keyboard

bool TORXEditor::MoveByKey(std::int64_t dx, std::int64_t dy) {
    if (fDoc.Selection().empty() || (dx == 0 && dy == 0)) return false;
    const std::vector<TORXBaseItem*> items = fDoc.WithMembers(fDoc.Selection());
    fDoc.BeginUpdate(true);
    for (TORXBaseItem* item : items) SetPointsStep(item, Shifted(item->Points(), dx, dy));
    for (TORXBaseItem* link : LinksOf(fDoc, items)) fDoc.ChangeState(TOrvexState::lsCalc, link);
    fDoc.EndUpdate();
    return true;
}

bool TORXEditor::Key(TQVLEdKey key, TQVLShiftState shift) {
    if (!fDoc.GetEditable()) return false;
    if (fText.Item != nullptr) return TextKey(key, shift);
    const bool busy = fDrag != TDrag::kNone || !fToolPoints.empty();
    switch (key) {
        case TQVLEdKey::ekEscape:
            if (busy || !fRefs.empty() || fFirst != nullptr) {
                Cancel();
                return true;
            }
            if (!fDoc.Selection().empty()) {
                fDoc.ClearSelection(true);
                return true;
            }
            if (!IsSelectionTool(fDoc.fAction)) {
                fDoc.ResetAction();
                return true;
            }
            return false;
        case TQVLEdKey::ekEnter:
            if (!fToolPoints.empty()) {
                if (!Finish()) Cancel();
                return true;
            }
            if (fDoc.fEdState == TQVLEdState::edPickRef || fDoc.fEdState == TQVLEdState::edPickNextRef) {
                if (fDoc.fAction == TQVLEdAction::eaTrim) SetState(TQVLEdState::edTrim);
                if (fDoc.fAction == TQVLEdAction::eaExtend) SetState(TQVLEdState::edExtend);
                return true;
            }
            return false;
        case TQVLEdKey::ekBackspace:
        case TQVLEdKey::ekDelete:
            if (busy || fDoc.Selection().empty()) return false;
            fDoc.DeleteSelection();
            fDoc.FillSelPoints();
            fDoc.EndUpdate();
            fDoc.ChangeValue(TQVChange::chClearSelect);
            return true;
        case TQVLEdKey::ekLeft:
        case TQVLEdKey::ekRight:
        case TQVLEdKey::ekUp:
        case TQVLEdKey::ekDown: {
            if (busy || fDoc.Selection().empty()) return false;
            TQVLRect b = fDoc.Selection().front()->BoundsRect();
            for (const TORXBaseItem* item : fDoc.Selection()) {
                const TQVLRect& r = item->BoundsRect();
                b.Left = std::min(b.Left, r.Left), b.Top = std::min(b.Top, r.Top);
            }
            // The selection's corner steps onto the next grid line in the arrow's direction.
            std::int64_t dx = 0;
            std::int64_t dy = 0;
            if (key == TQVLEdKey::ekLeft) dx = AdjustGrid(b.Left, fGridX, false) - b.Left;
            if (key == TQVLEdKey::ekRight) dx = AdjustGrid(b.Left, fGridX, true) - b.Left;
            if (key == TQVLEdKey::ekUp) dy = AdjustGrid(b.Top, fGridY, false) - b.Top;
            if (key == TQVLEdKey::ekDown) dy = AdjustGrid(b.Top, fGridY, true) - b.Top;
            return MoveByKey(dx, dy);
        }
        case TQVLEdKey::ekHome:
        case TQVLEdKey::ekEnd:
            return false;
    }
    return false;
}

}  // namespace Orvex
