// The document's side of undo and redo: the two stacks, group ids, and walking a whole group back or forth.
#include <algorithm>
#include <unordered_set>

#include "orvex/document/document.h"
#include "orvex/document/undo_commands.h"
#include "orvex/io/json.h"
#include "orvex/io/json_utils.h"

namespace Orvex {

namespace {
bool MovesBounds(std::int32_t kind) {
    return kind == kCmdColor || kind == kCmdPos || kind == kCmdBasePos || kind == kCmdElePos;
}
}  // namespace

std::int32_t TORXBaseLabel::UnReID() {
    if (fUndoing || fRedoing) return fCurrentGroup;
    const std::int32_t id = fGroupCounter;
    if (fGroupMark) ++fGroupCounter;
    return id;
}

const TORXCmd* TORXBaseLabel::TopCommand() const {
    const auto& stack = fUndoing ? fRedoStack : fUndoStack;
    return stack.empty() ? nullptr : stack.back().get();
}

void TORXBaseLabel::PushCommand(std::unique_ptr<TORXCmd> cmd) {
    if (fUndoing) {
        fRedoStack.push_back(std::move(cmd));
        return;
    }
    if (!fRedoing) fRedoStack.clear();  // a new edit: what was undone can no longer be replayed
    fUndoStack.push_back(std::move(cmd));
}

void TORXBaseLabel::RebindCommands(TORXBaseItem* item, bool undoStack) {
    for (auto& cmd : undoStack ? fUndoStack : fRedoStack)
        if (cmd->ItemID() == item->InID()) cmd->Rebind(item);
}

TORXBaseItem* TORXBaseLabel::RecreateItem(const TJSON& obj, std::int32_t index) {
    if (!obj.is_object()) return nullptr;
    const auto type = static_cast<TQVLItemType>(TJSONUtils::GetInt(obj, "Type") & 0xFF);
    // The id comes from the stored form, so none is drawn; the creation is still recorded.
    const bool reading = HasState(TOrvexState::lsReading);
    AddState(TOrvexState::lsReading);
    TORXBaseItem* item = CreateItem(type);
    if (!reading) RemoveState(TOrvexState::lsReading);
    if (item == nullptr) return nullptr;
    const TORXCmd* created = TopCommand();
    const bool recording = fOptions.Contains(TOrvexOption::loUndoRedo);
    fOptions.Exclude(TOrvexOption::loUndoRedo);
    // Exactly the stored state: no recalculation, which could normalise what the later commands expect.
    item->ReadJson(kDrawingVersion, obj);
    if (recording) fOptions.Include(TOrvexOption::loUndoRedo);
    // The creation command was recorded before the id was read.
    if (created != nullptr && created->Item() == item) const_cast<TORXCmd*>(created)->Rebind(item);
    const std::int32_t at = ItemIndex(item);
    if (index >= 0 && index < at) {
        auto owned = std::move(fItems[static_cast<std::size_t>(at)]);
        fItems.erase(fItems.begin() + at);
        fItems.insert(fItems.begin() + index, std::move(owned));
    }
    InvalidatePickIndex();
    ChangeState(TOrvexState::lsUpdate);
    return item;
}

void TORXBaseLabel::CalcRestoredLinks() {
    // A link's course is derived from its elements alone, so it catches up with their restored places at
    // once; other pending recalculations wait for the next flush as after any edit.
    std::vector<TORXBaseItem*> links;
    for (TORXBaseItem* item : fPendingCalc)
        if (item->ItemType() == TQVLItemType::itLink) links.push_back(item);
    for (const TORXBaseItem* link : links) fPendingCalcSet.erase(link);
    std::erase_if(fPendingCalc,
                  [](const TORXBaseItem* item) { return item->ItemType() == TQVLItemType::itLink; });
    for (TORXBaseItem* link : links) link->CalcValues(2);
}

void TORXBaseLabel::ClearUndoRedo() {
    fUndoStack.clear();
    fRedoStack.clear();
    if (OnUndoRedo) OnUndoRedo(*this, true, true);
}

void TORXBaseLabel::Undo() {
    if (fUndoStack.empty()) return;
    InvalidatePickIndex();
    bool bounds = false;
    do {
        std::unique_ptr<TORXCmd> cmd = std::move(fUndoStack.back());
        fUndoStack.pop_back();
        fCurrentGroup = cmd->Group();
        cmd->Undo();
        if (MovesBounds(cmd->Kind()) && ItemIndex(cmd->Item()) >= 0) {
            cmd->Item()->UpdateBounds();
            bounds = true;
        }
    } while (!fUndoStack.empty() && fUndoStack.back()->Group() == fCurrentGroup);
    CalcRestoredLinks();
    if (bounds) FillSelPoints();
    fUndoNotify = true;
    ChangeValue(TQVChange::chPaint);
    fUndoNotify = false;
    if (OnUndoRedo) OnUndoRedo(*this, IsUndoEmpty(), IsRedoEmpty());
}

bool TORXBaseLabel::UndoStep(std::int32_t aGroup) {
    // A step's commands lie together on the stack: steps are recorded one after another.
    const auto last = std::find_if(fUndoStack.rbegin(), fUndoStack.rend(),
                                   [&](const auto& cmd) { return cmd->Group() == aGroup; });
    if (last == fUndoStack.rend()) return false;
    const auto end = last.base();
    auto begin = end - 1;
    while (begin != fUndoStack.begin() && (*(begin - 1))->Group() == aGroup) --begin;
    // Restoring an item that a later step changed again would throw that change away unseen.
    std::unordered_set<std::int32_t> items;
    for (auto it = begin; it != end; ++it) items.insert((*it)->ItemID());
    for (auto it = end; it != fUndoStack.end(); ++it)
        if (items.contains((*it)->ItemID())) return false;
    // The later steps touch other items, so the step can be taken back as if it were the latest. It stays
    // on the stack while it is undone: an item it re-creates re-binds the step's other commands there.
    std::rotate(begin, end, fUndoStack.end());
    Undo();
    return true;
}

std::vector<std::int32_t> TORXBaseLabel::UndoGroups(std::int32_t aSince) const {
    // Steps recorded later lie higher, so the walk from the top stops at the first older one.
    auto first = fUndoStack.end();
    while (first != fUndoStack.begin() && (*(first - 1))->Group() >= aSince) --first;
    std::vector<std::int32_t> groups;
    for (auto it = first; it != fUndoStack.end(); ++it)
        if (groups.empty() || groups.back() != (*it)->Group()) groups.push_back((*it)->Group());
    return groups;
}

void TORXBaseLabel::Redo() {
    if (fRedoStack.empty()) return;
    InvalidatePickIndex();
    bool bounds = false;
    do {
        std::unique_ptr<TORXCmd> cmd = std::move(fRedoStack.back());
        fRedoStack.pop_back();
        fCurrentGroup = cmd->Group();
        cmd->Redo();
        if (MovesBounds(cmd->Kind()) && ItemIndex(cmd->Item()) >= 0) {
            cmd->Item()->UpdateBounds();
            bounds = true;
        }
    } while (!fRedoStack.empty() && fRedoStack.back()->Group() == fCurrentGroup);
    CalcRestoredLinks();
    if (bounds) FillSelPoints();
    fUndoNotify = true;
    ChangeValue(TQVChange::chPaint);
    fUndoNotify = false;
    if (OnUndoRedo) OnUndoRedo(*this, IsUndoEmpty(), IsRedoEmpty());
}

void TORXBaseLabel::JoinUndoSince(std::size_t count) {
    if (count >= fUndoStack.size()) return;
    const std::int32_t group = fUndoStack[count]->Group();
    for (std::size_t i = count + 1; i < fUndoStack.size(); ++i) fUndoStack[i]->SetGroup(group);
}

TORXBaseLabel::TUndoGroup::TUndoGroup(TORXBaseLabel& document)
    : fDocument(document), fOpened(document.fGroupMark) {
    fDocument.fGroupMark = false;
}

TORXBaseLabel::TUndoGroup::~TUndoGroup() {
    if (!fOpened) return;
    ++fDocument.fGroupCounter;
    fDocument.fGroupMark = true;
}

}  // namespace Orvex
