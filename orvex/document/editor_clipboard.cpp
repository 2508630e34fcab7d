// Pasting: the clipboard holds the copied items' JSON forms. Pasted items get new ids and names, links
// among them are re-bound to the new ids (a link to an element that was not copied stays on it), and they
// land a little away from the originals so both stay visible. One undo group. Also the paint-order command,
// which moves items within the list the same way.
#include <map>

#include "orvex/document/document.h"
#include "orvex/document/editor_tools.h"
#include "orvex/document/undo_commands.h"
#include "orvex/io/json.h"
#include "orvex/io/json_utils.h"

namespace Orvex {

TORXBaseItem* TORXEditor::AddFromJson(const TJSON& obj) {
    if (!obj.is_object()) return nullptr;
    const auto type = static_cast<TQVLItemType>(TJSONUtils::GetInt(obj, "Type") & 0xFF);
    TORXBaseItem* item = fDoc.CreateItem(type);  // draws a new id and records the creation
    if (item == nullptr) return nullptr;
    const std::int32_t id = item->InID();
    {
        const TNoRecord off(fDoc);
        item->ReadJson(kDrawingVersion, obj);
    }
    item->SetInID(id);
    item->SetName();
    fDoc.ChangeState(TOrvexState::lsCalc, item);
    return item;
}

void TORXZOrderCmd::AddCommand(TORXBaseItem* item) {
    if (!CanRecord(kCmdZOrder, item, kPropNone)) return;
    Push(std::make_unique<TORXZOrderCmd>(item));
}

void TORXZOrderCmd::StoreState() {
    fIndex = fDocument->ItemIndex(fItem);
}

void TORXZOrderCmd::RestoreState() {
    fDocument->Editor().MoveItemTo(fItem, fIndex);
}

void TORXEditor::MoveItemTo(TORXBaseItem* item, std::int32_t index) {
    const std::int32_t at = fDoc.ItemIndex(item);
    if (at < 0 || index < 0 || index >= fDoc.GetItemsCount() || at == index) return;
    TORXZOrderCmd::AddCommand(item);
    auto owned = std::move(fDoc.fItems[static_cast<std::size_t>(at)]);
    fDoc.fItems.erase(fDoc.fItems.begin() + at);
    fDoc.fItems.insert(fDoc.fItems.begin() + index, std::move(owned));
    fDoc.ChangeState(TOrvexState::lsUpdate);
}

void TORXEditor::Paste() {
    const TJSON items = TJSON::parse(fDoc.fClipboard, nullptr, false);
    if (!items.is_array() || items.empty()) return;
    if (fPastedFrom != fDoc.fClipboard) fPasteCount = 0, fPastedFrom = fDoc.fClipboard;
    ++fPasteCount;
    const std::int64_t offset = fPasteOffset * fPasteCount;
    fDoc.BeginUpdate(true);
    // New ids first, so that links can be pointed at the pasted elements before they are read.
    std::vector<TORXBaseItem*> pasted;
    std::map<std::int64_t, std::int32_t> ids;
    for (const TJSON& obj : items) {
        TORXBaseItem* item = AddFromJson(obj);
        pasted.push_back(item);
        if (item != nullptr) ids[TJSONUtils::GetInt(obj, "InID")] = item->InID();
    }
    for (std::size_t i = 0; i < pasted.size(); ++i) {
        TORXBaseItem* item = pasted[i];
        if (item == nullptr) continue;
        TJSON obj = items[i];
        bool relinked = false;
        for (const char* key : {"FromID", "ToID"}) {
            if (!obj.contains(key)) continue;
            const auto it = ids.find(TJSONUtils::GetInt(obj, key));
            if (it != ids.end()) obj[key] = it->second, relinked = true;
        }
        if (relinked) {
            const TNoRecord off(fDoc);
            const std::int32_t id = item->InID();
            item->ReadJson(kDrawingVersion, obj);
            item->SetInID(id);
            item->SetName();
        }
        // A pasted member stays in its container only when the container was pasted with it.
        if (obj.contains("ContainerID")) {
            const auto it = ids.find(TJSONUtils::GetInt(obj, "ContainerID"));
            const TNoRecord off(fDoc);  // part of the creation
            item->SetContainerID(it != ids.end() ? it->second : 0);
        }
    }
    fDoc.AssignSymbolAndFlowLinks();
    fDoc.ClearSelection(false);
    for (TORXBaseItem* item : pasted) {
        if (item == nullptr) continue;
        TQVLPtoA points = item->Points();
        for (auto& p : points) p.BaseMove(offset, offset);
        {
            const TNoRecord off(fDoc);  // part of the creation
            item->SetPointsProp(points, kPropPoints);
        }
        fDoc.ChangeState(TOrvexState::lsCalc, item);
        fDoc.SelectItem(item, false);
    }
    fDoc.EndUpdate();
    fDoc.ChangeValue(TQVChange::chSelect);
    fDoc.CheckIntersetions();
}

}  // namespace Orvex
