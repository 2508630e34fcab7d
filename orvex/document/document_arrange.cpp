// Paint order and the arrangement of the selection. Each operation is one batch, so one undo step and one
// notification.
#include <algorithm>

#include "orvex/document/document.h"
#include "orvex/document/editor_tools.h"
#include "orvex/document/point_items.h"

namespace Orvex {

// [SECTION] Paint order

void TORXBaseLabel::SendToBack() {
    if (fSelection.empty() || fItems.size() < 2) return;
    const std::int32_t at = ItemIndex(fSelection.front());
    if (at <= 0) return;
    BeginUpdate(true);
    fEditor->MoveItemTo(fSelection.front(), 0);  // recorded, so that undo puts it back
    EndUpdate();
}

void TORXBaseLabel::BringToFront() {
    if (fSelection.empty() || fItems.size() < 2) return;
    const std::int32_t at = ItemIndex(fSelection.front());
    if (at < 0 || at == GetItemsCount() - 1) return;
    BeginUpdate(true);
    fEditor->MoveItemTo(fSelection.front(), GetItemsCount() - 1);
    EndUpdate();
}

// Always sorts: a read ends with it, so a file listing an item of layer 2 before one of layer 1 still paints
// layer 1 first. The layer-order flag only decides whether later layer changes sort again by themselves.
void TORXBaseLabel::SortItemsZLayer() {
    std::stable_sort(fItems.begin(), fItems.end(), [this](const auto& a, const auto& b) {
        return LayerIdx(a->Layer()) < LayerIdx(b->Layer());
    });
    InvalidatePickIndex();
}

// [SECTION] Arrangement

void TORXBaseLabel::FollowLinks() {
    for (TORXBaseItem* link : Orvex::LinksOf(*this, WithMembers(fSelection)))
        ChangeState(TOrvexState::lsCalc, link);
}

namespace {
// Scales the item's points along one axis so that its bounds get the given extent, keeping the left or
// top edge; box items simply move their second corner.
void SetExtent(TORXBaseItem* item, std::int64_t extent, bool horizontal) {
    const TQVLRect& b = item->BoundsRect();
    const std::int64_t now = horizontal ? b.GetWidth() : b.GetHeight();
    const std::int64_t origin = horizontal ? b.Left : b.Top;
    TQVLPtoA points = item->Points();
    if (dynamic_cast<TORX2DItem*>(item) != nullptr && points.size() == 2) {
        if (horizontal)
            points[1].X = std::min(points[0].X, points[1].X) + extent,
            points[0].X = std::min(points[0].X, points[1].X);
        else
            points[1].Y = std::min(points[0].Y, points[1].Y) + extent,
            points[0].Y = std::min(points[0].Y, points[1].Y);
    } else if (now > 0) {
        for (auto& p : points) {
            std::int64_t& v = horizontal ? p.X : p.Y;
            v = origin + MathRound(static_cast<double>(v - origin) * static_cast<double>(extent) /
                                   static_cast<double>(now));
        }
    }
    SetPointsStep(item, points);
}
}  // namespace

void TORXBaseLabel::AlignObjects(TQVLObjectAlign align) {
    const std::vector<TORXBaseItem*> items = OutermostOf(fSelection);
    if (items.size() < 2) return;
    const TQVLRect ref = items.front()->BoundsRect();
    BeginUpdate(true);
    for (std::size_t i = 1; i < items.size(); ++i) {
        const TQVLRect b = items[i]->BoundsRect();
        std::int64_t dx = 0;
        std::int64_t dy = 0;
        switch (align) {
            case TQVLObjectAlign::oaLeft:
                dx = ref.Left - b.Left;
                break;
            case TQVLObjectAlign::oaRight:
                dx = ref.Right - b.Right;
                break;
            case TQVLObjectAlign::oaTop:
                dy = ref.Top - b.Top;
                break;
            case TQVLObjectAlign::oaBottom:
                dy = ref.Bottom - b.Bottom;
                break;
            case TQVLObjectAlign::oaCenterH:
                dx = (ref.Left + ref.Right) / 2 - (b.Left + b.Right) / 2;
                break;
            case TQVLObjectAlign::oaCenterV:
                dy = (ref.Top + ref.Bottom) / 2 - (b.Top + b.Bottom) / 2;
                break;
        }
        MoveItemBy(items[i], dx, dy);
    }
    FollowLinks();
    EndUpdate();
}

void TORXBaseLabel::SameWidth() {
    if (fSelection.size() < 2) return;
    const std::int64_t width = fSelection.front()->BoundsRect().GetWidth();
    BeginUpdate(true);
    for (std::size_t i = 1; i < fSelection.size(); ++i) SetExtent(fSelection[i], width, true);
    FollowLinks();
    EndUpdate();
}

void TORXBaseLabel::SameHeight() {
    if (fSelection.size() < 2) return;
    const std::int64_t height = fSelection.front()->BoundsRect().GetHeight();
    BeginUpdate(true);
    for (std::size_t i = 1; i < fSelection.size(); ++i) SetExtent(fSelection[i], height, false);
    FollowLinks();
    EndUpdate();
}

void TORXBaseLabel::CenterHorizontal() {
    if (fSelection.empty()) return;
    BeginUpdate(true);
    for (TORXBaseItem* item : OutermostOf(fSelection)) {
        const TQVLRect b = item->BoundsRect();
        MoveItemBy(item, (fMeasure.fLabelWidth - b.GetWidth()) / 2 - b.Left, 0);
    }
    FollowLinks();
    EndUpdate();
}

void TORXBaseLabel::CenterVertical() {
    if (fSelection.empty()) return;
    BeginUpdate(true);
    for (TORXBaseItem* item : OutermostOf(fSelection)) {
        const TQVLRect b = item->BoundsRect();
        MoveItemBy(item, 0, (fMeasure.fLabelHeight - b.GetHeight()) / 2 - b.Top);
    }
    FollowLinks();
    EndUpdate();
}

void TORXBaseLabel::SpaceHorizontal(std::int64_t gap) {
    std::vector<TORXBaseItem*> order = OutermostOf(fSelection);
    if (order.size() < 2) return;
    std::stable_sort(order.begin(), order.end(), [](const auto* a, const auto* b) {
        return a->BoundsRect().Left < b->BoundsRect().Left;
    });
    BeginUpdate(true);
    std::int64_t next = order.front()->BoundsRect().Right + gap;
    for (std::size_t i = 1; i < order.size(); ++i) {
        MoveItemBy(order[i], next - order[i]->BoundsRect().Left, 0);
        next = order[i]->BoundsRect().Right + gap;
    }
    FollowLinks();
    EndUpdate();
}

void TORXBaseLabel::SpaceVertical(std::int64_t gap) {
    std::vector<TORXBaseItem*> order = OutermostOf(fSelection);
    if (order.size() < 2) return;
    std::stable_sort(order.begin(), order.end(),
                     [](const auto* a, const auto* b) { return a->BoundsRect().Top < b->BoundsRect().Top; });
    BeginUpdate(true);
    std::int64_t next = order.front()->BoundsRect().Bottom + gap;
    for (std::size_t i = 1; i < order.size(); ++i) {
        MoveItemBy(order[i], 0, next - order[i]->BoundsRect().Top);
        next = order[i]->BoundsRect().Bottom + gap;
    }
    FollowLinks();
    EndUpdate();
}

void TORXBaseLabel::RotateLeft() {
    if (fSelection.empty()) return;
    BeginUpdate(true);
    for (TORXBaseItem* item : fSelection) {
        BreakPointsMerge(item);
        item->RotateLeft();
    }
    FollowLinks();
    EndUpdate();
}

void TORXBaseLabel::RotateRight() {
    if (fSelection.empty()) return;
    BeginUpdate(true);
    for (TORXBaseItem* item : fSelection) {
        BreakPointsMerge(item);
        item->RotateRight();
    }
    FollowLinks();
    EndUpdate();
}

void TORXBaseLabel::MoveSelection(float dx, float dy) {
    if (fSelection.empty()) return;
    BeginUpdate(true);
    const TQVLUnits units = Units();
    for (TORXBaseItem* item : OutermostOf(fSelection))
        MoveItemBy(item, SetValue(dx, units), SetValue(dy, units));
    FollowLinks();
    EndUpdate();
}

void TORXBaseLabel::MoveSize(std::int64_t dx, std::int64_t dy, std::int64_t dWidth, std::int64_t dHeight) {
    if (fSelection.empty()) return;
    BeginUpdate(true);
    const std::vector<TORXBaseItem*> outermost = OutermostOf(fSelection);
    for (TORXBaseItem* item : fSelection) {
        if (std::find(outermost.begin(), outermost.end(), item) != outermost.end()) MoveItemBy(item, dx, dy);
        if (dWidth != 0 || dHeight != 0) {
            BreakPointsMerge(item);
            item->BaseMove(0, 0, dWidth, dHeight, TQVLMoveOpt::moResize, false);
        }
    }
    FollowLinks();
    EndUpdate();
}

}  // namespace Orvex
