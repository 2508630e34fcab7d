// Change batching and notification: the state word, BeginUpdate / EndUpdate, BeginRead / EndRead, the
// pending recalculations, observers, the info event and the current tool.
#include <algorithm>

#include "orvex/document/document.h"
#include "orvex/document/editor_tools.h"

namespace Orvex {

// [SECTION] State word

void TORXBaseLabel::AddState(TOrvexState state) {
    const auto bit = static_cast<unsigned>(state);
    if (bit <= 15) fState = static_cast<std::uint16_t>(fState | (1U << bit));
}

void TORXBaseLabel::RemoveState(TOrvexState state) {
    const auto bit = static_cast<unsigned>(state);
    if (bit <= 15) fState = static_cast<std::uint16_t>(fState & ~(1U << bit));
}

bool TORXBaseLabel::HasState(TOrvexState state) const {
    const auto bit = static_cast<unsigned>(state);
    return bit <= 15 && (fState & (1U << bit)) != 0;
}

void TORXBaseLabel::ChangeState(TOrvexState state, TORXBaseItem* item) {
    // Every edit passes here, so the pick index learns of it here: of the one item when it is named.
    if (item != nullptr)
        InvalidatePickIndex(item);
    else
        InvalidatePickIndex();
    switch (state) {
        case TOrvexState::lsModified:
            AddState(TOrvexState::lsModified);
            break;
        case TOrvexState::lsUpdate:
            AddState(TOrvexState::lsModified);
            if (!fNotifyNow)
                AddState(TOrvexState::lsUpdate);
            else
                ChangeValue(TQVChange::chPaint);
            break;
        case TOrvexState::lsUpdateMeasure:
            AddState(TOrvexState::lsModified);
            if (!fNotifyNow)
                AddState(TOrvexState::lsUpdateMeasure);
            else
                ChangeValue(TQVChange::chMeasure);
            break;
        case TOrvexState::lsCalc:
            AddState(TOrvexState::lsModified);
            AddState(TOrvexState::lsUpdate);
            if (item == nullptr) break;
            if (!fNotifyNow) {
                if (fPendingCalcSet.insert(item).second) {
                    fPendingCalc.push_back(item);
                    AddState(TOrvexState::lsCalc);
                }
            } else {
                item->CalcValues(2);
                ChangeValue(TQVChange::chPaint);
            }
            break;
        case TOrvexState::lsCalcNoUpdate:
            AddState(TOrvexState::lsModified);
            if (item != nullptr) item->CalcValues(2);
            break;
        default:
            break;
    }
}

void TORXBaseLabel::CalcPending() {
    // A recalculation may queue more items; take the list first so the walk stays valid.
    std::vector<TORXBaseItem*> pending;
    pending.swap(fPendingCalc);
    fPendingCalcSet.clear();
    for (TORXBaseItem* item : pending) {
        InvalidatePickIndex(item);
        item->CalcValues(2);
    }
}

// [SECTION] Batches and reads

void TORXBaseLabel::BeginUpdate(bool paint) {
    fNotifyNow = false;
    AddState(TOrvexState::lsUpdating);
    if (!paint) AddState(TOrvexState::lsNoPaint);
    fGroupMark = false;
}

void TORXBaseLabel::EndUpdate() {
    ++fGroupCounter;
    fGroupMark = true;
    CalcPending();
    fNotifyNow = true;
    FillSelPoints();
    RemoveState(TOrvexState::lsUpdating);
    Flush();
}

void TORXBaseLabel::Flush() {
    fNotifyNow = true;
    if (HasState(TOrvexState::lsUpdateMeasure))
        ChangeValue(TQVChange::chMeasure);
    else if (HasState(TOrvexState::lsUpdate) && !HasState(TOrvexState::lsNoPaint))
        ChangeValue(TQVChange::chPaint);
    fNotifyNow = false;
    RemoveState(TOrvexState::lsNoPaint);
    RemoveState(TOrvexState::lsUpdate);
    RemoveState(TOrvexState::lsUpdateMeasure);
    RemoveState(TOrvexState::lsCalc);
}

void TORXBaseLabel::BeginRead(bool paste) {
    InvalidatePickIndex();  // a read or a paste changes items in bulk
    if (!paste) {
        fNextID = 1;
        ResetRefLines();
        Clear(TQVLClears{TQVLClear::cleAll}, true);
    }
    fUndoRecordingSaved = fOptions.Contains(TOrvexOption::loUndoRedo);
    if (paste) AddState(TOrvexState::lsPaste);
    AddState(TOrvexState::lsUpdating);
    AddState(TOrvexState::lsReading);
    AddState(TOrvexState::lsUpdateMeasure);
    if (fUndoRecordingSaved) fOptions.Exclude(TOrvexOption::loUndoRedo);
    BeginUpdate(true);
}

void TORXBaseLabel::EndRead(bool notifyUnits) {
    fGroupMark = true;
    if (!HasState(TOrvexState::lsPaste)) ++fNextID;
    RemoveState(TOrvexState::lsPaste);
    RemoveState(TOrvexState::lsUpdating);
    RemoveState(TOrvexState::lsReading);
    InvalidatePickIndex();
    AssignSymbolAndFlowLinks();
    CalcPending();
    SortItemsZLayer();
    CheckBackLayer();
    CheckIntersetions();
    if (fData.HasData()) fData.CheckJson();
    if (fUndoRecordingSaved) fOptions.Include(TOrvexOption::loUndoRedo);
    if (notifyUnits) ChangeValue(TQVChange::chUnits);
    Flush();
}

// [SECTION] Observers and the info event

void TORXBaseLabel::Attach(IQVObserver* observer) {
    if (observer != nullptr && std::find(fObservers.begin(), fObservers.end(), observer) == fObservers.end())
        fObservers.push_back(observer);
}

void TORXBaseLabel::Detach(IQVObserver* observer) {
    std::erase(fObservers, observer);
}

void TORXBaseLabel::ChangeValue(TQVChange change) {
    const TQVChange* outer = fTelling;
    fTelling = &change;
    // An observer may detach itself while being told: walk a copy.
    const std::vector<IQVObserver*> observers = fObservers;
    for (IQVObserver* observer : observers) observer->Update(*this, change);
    fTelling = outer;
}

bool TORXBaseLabel::GetChangedValue(TQVChange change) const {
    return fTelling != nullptr && *fTelling == change;
}

void TORXBaseLabel::FireInfoEvent(bool onlyWhenFlagged) {
    if (onlyWhenFlagged && !fInfoFlag) return;
    if (OnInfo) OnInfo(fActionInfo);
}

// [SECTION] Tools

void TORXBaseLabel::SetAction(TQVLEdAction action) {
    if (action == fAction) return;
    fLastAction = fAction;
    fAction = action;
    fEdState = TQVLEdState::edPickPoint;
    fEditor->ActionChanged();
}

void TORXBaseLabel::ResetAction() {
    SetAction(TQVLEdAction::eaSelection);
}

void TORXBaseLabel::FlowAction(TQVLFlowType type) {
    fFlowType = type;
    SetAction(TQVLEdAction::eaFlow);
}

void TORXBaseLabel::LinkAction(TQVLinkType type) {
    fLinkType = type;
    SetAction(TQVLEdAction::eaLink);
}

}  // namespace Orvex
