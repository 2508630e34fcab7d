#include "orvex/document/undo_commands.h"

#include "orvex/document/document.h"
#include "orvex/io/json_text.h"

namespace Orvex {

// [SECTION] The base command

TORXCmd::TORXCmd(std::int32_t kind, TORXBaseItem* item, std::uint16_t property)
    : fDocument(item->QVLab()), fKind(kind), fProperty(property), fItemID(item->InID()), fItem(item) {}

void TORXCmd::Undo() {
    fDocument->SetUndoing(true);
    fDocument->SetRedoing(false);
    RestoreState();
    fDocument->SetUndoing(false);
}

void TORXCmd::Redo() {
    fDocument->SetRedoing(true);
    fDocument->SetUndoing(false);
    RestoreState();
    fDocument->SetRedoing(false);
}

bool TORXCmd::CheckLastProp(std::int32_t kind, const TORXBaseItem* item, std::uint16_t property) {
    const TORXBaseLabel* doc = item->QVLab();
    if (!doc->Options().Contains(TOrvexOption::loUndoRedo)) return false;
    const TORXCmd* top = doc->TopCommand();
    // The id guards against a new item that happens to reuse a deleted one's address.
    return top != nullptr && top->fItem == item && top->fItemID == item->InID() && top->fKind == kind &&
           top->fProperty == property;
}

bool TORXCmd::CanRecord(std::int32_t kind, TORXBaseItem* item, std::uint16_t property) {
    if (item->FromPreview()) return false;
    if (!item->QVLab()->Options().Contains(TOrvexOption::loUndoRedo)) return false;
    return !CheckLastProp(kind, item, property);
}

void TORXCmd::Push(std::unique_ptr<TORXCmd> cmd) {
    TORXCmd* raw = cmd.get();
    TORXBaseLabel* doc = raw->fDocument;
    raw->fGroup = doc->UnReID();
    doc->PushCommand(std::move(cmd));
    if (doc->OnUndoRedo) doc->OnUndoRedo(*doc, doc->IsUndoEmpty(), doc->IsRedoEmpty());
    raw->StoreState();
}

// [SECTION] Value commands

template <class T, std::int32_t K>
void TORXValueCmd<T, K>::AddCommand(TORXBaseItem* item, std::uint16_t property) {
    if constexpr (K == kCmdColor) item->QVLab()->AddState(TOrvexState::lsUpdate);
    if (!CanRecord(K, item, property)) return;
    Push(std::make_unique<TORXValueCmd>(item, property));
}

template <class T, std::int32_t K>
void TORXValueCmd<T, K>::StoreState() {
    if constexpr (K == kCmdColor)
        fValue = fItem->GetColorProp(fProperty);
    else if constexpr (K == kCmdBaseValue)
        fValue = fItem->GetBaseValueProp(fProperty);
    else if constexpr (K == kCmdBool)
        fValue = fItem->GetBoolProp(fProperty);
    else if constexpr (K == kCmdEnumValue)
        fValue = fItem->GetEnumProp(fProperty);
    else if constexpr (K == kCmdTxt)
        fValue = fItem->GetTextProp(fProperty);
    else
        fValue = fItem->GetFloatProp(fProperty);
}

template <class T, std::int32_t K>
void TORXValueCmd<T, K>::RestoreState() {
    if constexpr (K == kCmdColor)
        fItem->SetColorProp(fProperty, fValue);
    else if constexpr (K == kCmdBaseValue)
        fItem->SetBaseValueProp(fProperty, fValue);
    else if constexpr (K == kCmdBool)
        fItem->SetBoolProp(fProperty, fValue);
    else if constexpr (K == kCmdEnumValue)
        fItem->SetEnumProp(fProperty, fValue);
    else if constexpr (K == kCmdTxt)
        fItem->SetTextProp(fProperty, fValue);
    else
        fItem->SetFloatProp(fProperty, fValue);
}

template class TORXValueCmd<TAlphaColor, kCmdColor>;
template class TORXValueCmd<std::int64_t, kCmdBaseValue>;
template class TORXValueCmd<bool, kCmdBool>;
template class TORXValueCmd<std::int64_t, kCmdEnumValue>;
template class TORXValueCmd<std::string, kCmdTxt>;
template class TORXValueCmd<double, kCmdFloat>;

// [SECTION] Position commands

namespace {
// Runs on different points or coordinates must not merge, so the point and the coordinate form the property.
std::uint16_t PosProperty(std::int32_t index, TQVLPosType posType) {
    return static_cast<std::uint16_t>((static_cast<std::uint32_t>(index) << 3U) |
                                      static_cast<std::uint32_t>(posType));
}
}  // namespace

TORXPosCmd::TORXPosCmd(TORXBaseItem* item, std::int32_t index, TQVLPosType posType)
    : TORXCmd(kCmdPos, item, PosProperty(index, posType)), fIndex(index), fPosType(posType) {}

void TORXPosCmd::AddCommand(TORXBaseItem* item, std::int32_t index, TQVLPosType posType) {
    if (!CanRecord(kCmdPos, item, PosProperty(index, posType))) return;
    Push(std::make_unique<TORXPosCmd>(item, index, posType));
}

void TORXPosCmd::StoreState() {
    fPoint = fItem->GetPoint(fIndex);
    if (fPosType == TQVLPosType::ptRadio || fPosType == TQVLPosType::ptWidth ||
        fPosType == TQVLPosType::ptHeight)
        fPoints = fItem->Points();
}

void TORXPosCmd::RestoreState() {
    switch (fPosType) {
        case TQVLPosType::ptX:
            fItem->SetPointX(fIndex, fPoint.X);
            break;
        case TQVLPosType::ptY:
            fItem->SetPointY(fIndex, fPoint.Y);
            break;
        case TQVLPosType::ptXY:
            fItem->SetPoint(fIndex, fPoint);
            break;
        case TQVLPosType::ptRadio:
        case TQVLPosType::ptWidth:
        case TQVLPosType::ptHeight:
            fItem->SetPointsProp(fPoints, fProperty);
            break;
    }
}

TORXBasePosCmd::TORXBasePosCmd(TORXBaseItem* item, std::int32_t index, std::uint16_t property)
    : TORXCmd(kCmdBasePos, item, property), fIndex(index) {}

void TORXBasePosCmd::AddCommand(TORXBaseItem* item, std::int32_t index, std::uint16_t property) {
    if (!CanRecord(kCmdBasePos, item, property)) return;
    Push(std::make_unique<TORXBasePosCmd>(item, index, property));
}

void TORXBasePosCmd::StoreState() {
    fPoint = fItem->GetPoint(fIndex);
}

void TORXBasePosCmd::RestoreState() {
    fItem->SetPoint(fIndex, fPoint);
}

void TORXElePosCmd::AddCommand(TORXBaseItem* item, std::uint16_t property) {
    if (!CanRecord(kCmdElePos, item, property)) return;
    Push(std::make_unique<TORXElePosCmd>(item, property));
}

void TORXElePosCmd::StoreState() {
    fPoints = fItem->Points();
}

void TORXElePosCmd::RestoreState() {
    fItem->SetPointsProp(fPoints, fProperty);
}

// [SECTION] Create and delete

void TORXCreateCmd::AddCommand(TORXBaseItem* item) {
    if (!item->QVLab()->Options().Contains(TOrvexOption::loUndoRedo)) return;
    Push(std::make_unique<TORXCreateCmd>(item));
}

void TORXCreateCmd::RestoreState() {
    fDocument->DeleteItem(fItem, true);
}

TORXDeleteCmd::TORXDeleteCmd(TORXBaseItem* item) : TORXCmd(kCmdDelete, item, kPropNone) {}

void TORXDeleteCmd::AddCommand(TORXBaseItem* item) {
    if (!item->QVLab()->Options().Contains(TOrvexOption::loUndoRedo)) return;
    Push(std::make_unique<TORXDeleteCmd>(item));
}

void TORXDeleteCmd::StoreState() {
    fJsonText = fItem->WriteJson().dump();
    fIndex = fDocument->ItemIndex(fItem);
}

void TORXDeleteCmd::RestoreState() {
    const TJSON obj = ParseJsonOrDiscarded(fJsonText);
    TORXBaseItem* item = fDocument->RecreateItem(obj, fIndex);
    if (item == nullptr) return;
    // The inverse commands of this undo or redo land on the other stack; the ones still waiting on the
    // stack being walked must now point at the new object.
    fDocument->RebindCommands(item, fDocument->IsRedoing());
    fDocument->RebindCommands(item, !fDocument->IsRedoing());
}

}  // namespace Orvex
