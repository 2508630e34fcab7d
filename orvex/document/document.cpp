// The document's lifecycle and content: construction, Clear, items and selection, layers, dimension
// styles, counters, symbols, editor mode and units.
#include "orvex/document/document.h"

#include <algorithm>
#include <stdexcept>
#include <unordered_map>

#include "orvex/core/text.h"
#include "orvex/document/editor_tools.h"
#include "orvex/document/flow_link_index.h"
#include "orvex/document/intersect_thread.h"
#include "orvex/document/item_id_index.h"
#include "orvex/document/pick_index.h"
#include "orvex/document/undo_commands.h"
#include "orvex/io/json.h"
#include "orvex/messages/messages.h"

namespace Orvex {

// [SECTION] Lifecycle

TORXBaseLabel::TORXBaseLabel() : fEditor(std::make_unique<TORXEditor>(*this)) {
    fLayers.push_back(std::make_unique<TORXLayer>(this, TORXMsg::GetPropValue("Default")));
    AddDimStyle(TORXMsg::GetPropValue("Default"));
}

TORXBaseLabel::~TORXBaseLabel() {
    TerminarThread();
    // Commands hold raw item pointers; drop them before the items.
    fUndoStack.clear();
    fRedoStack.clear();
}

void TORXBaseLabel::New() {
    Clear(TQVLClears{TQVLClear::cleAll}, true);
    fMeasure.Reset();
}

void TORXBaseLabel::Clear(TQVLClears what, bool notify) {
    const bool all = what.Contains(TQVLClear::cleAll);
    const auto has = [&](TQVLClear c) { return all || what.Contains(c); };
    if (has(TQVLClear::cleItems)) {
        TerminarThread();
        ClearUndoRedo();
        ClearItems();
        std::scoped_lock lock(fIntersectLock);
        fIntersections.clear();
    }
    if (has(TQVLClear::cleSelection)) {
        fSelection.clear();
        fSelection2.clear();
        fSelPoints.clear();
    }
    if (has(TQVLClear::clePreview)) fPreviewItems.clear();
    if (has(TQVLClear::cleUndoRedo)) ClearUndoRedo();
    if (has(TQVLClear::cleCounters)) fCounters.clear();
    if (has(TQVLClear::cleSymbols)) fSymbols.clear();
    if (has(TQVLClear::cleAskList)) fData.fListAsk.clear();
    if (has(TQVLClear::cleValList)) fData.fValList.clear();
    if (all) {  // as new: one default layer and one default style
        fLayers.clear();
        fLayers.push_back(std::make_unique<TORXLayer>(this, TORXMsg::GetPropValue("Default")));
    } else if (what.Contains(TQVLClear::cleLayers)) {
        fLayers.resize(fLayers.empty() || what.Contains(TQVLClear::cleBaseLayer) ? 0 : 1);
        // Items must stay on a layer of this document: the ones left move to the base layer.
        for (auto& item : fItems) item->fLayer = GetLayer(1);
    }
    if (all || what.Contains(TQVLClear::cleLayers)) {
        fActiveLayer = 0;
        fBackImageLayer = -1;
        fBackLayer = false;
    }
    if (all) {
        ResetDimStyles();
    } else if (what.Contains(TQVLClear::cleDimStyles)) {
        fDimStyles.resize(fDimStyles.empty() || what.Contains(TQVLClear::cleBaseStyle) ? 0 : 1);
        fActiveDimStyle = 0;
    }
    if (notify) ChangeState(TOrvexState::lsUpdate);
}

void TORXBaseLabel::ClearItems() {
    fSelection.clear();
    fSelection2.clear();
    fSelPoints.clear();
    fPendingCalc.clear();
    fPendingCalcSet.clear();
    fPreviewItems.clear();
    fItems.clear();
    InvalidatePickIndex();
    if (fIdIndex) fIdIndex->Invalidate();
    if (fFlowLinks) fFlowLinks->Invalidate();
}

void TORXBaseLabel::Loaded() {
    if (!fLanguageFile.empty()) TORXMsg::LoadResources(fLanguageFile);
    fActionInfo = TQVLActionInfo{};
    fActionInfo.Action = fAction;
    fActionInfo.State = fEdState;
    fActionInfo.Text = ActionText(fAction, fEdState);
    FireInfoEvent(true);
    fData.CheckJson();
}

void TORXBaseLabel::ComposeImage(const TQVLRect& area, std::int32_t zoom) {
    (void)area, (void)zoom;
    throw std::logic_error("Map composition is not implemented by this Orvex class");
}

// [SECTION] Items and selection

TORXBaseItem* TORXBaseLabel::GetItem(std::int32_t index) const {
    if (index < 0 || index >= GetItemsCount()) return nullptr;
    return fItems[static_cast<std::size_t>(index)].get();
}

std::int32_t TORXBaseLabel::ItemIndex(const TORXBaseItem* item) const {
    for (std::size_t i = 0; i < fItems.size(); ++i)
        if (fItems[i].get() == item) return static_cast<std::int32_t>(i);
    return -1;
}

TORXBaseItem* TORXBaseLabel::GetPreviewItem(std::int32_t index) const {
    if (index < 0 || index >= GetPreviewCount()) return nullptr;
    return fPreviewItems[static_cast<std::size_t>(index)].get();
}

TORXBaseItem* TORXBaseLabel::CreateItem(TQVLItemType type) {
    return AddItem(MakeItem(type));
}

TORXBaseItem* TORXBaseLabel::AddItem(std::unique_ptr<TORXBaseItem> item) {
    if (!item) return nullptr;
    if (item->QVLab() != this) throw std::invalid_argument("the item was built on another document");
    TORXBaseItem* added = item.get();
    // Preview copies mirror an item of the drawing; taking them back is not an edit.
    if (added->FromPreview()) {
        fPreviewItems.push_back(std::move(item));
        return added;
    }
    fItems.push_back(std::move(item));
    AddState(TOrvexState::lsModified);
    if (!fPickIndexDirty && fPickIndex && !fPickIndex->Appended(added)) fPickIndexDirty = true;
    if (fIdIndex) fIdIndex->Appended(added);
    if (fFlowLinks && fFlowLinks->Valid()) fFlowLinks->Added(added);
    TORXCreateCmd::AddCommand(added);
    return added;
}

TORXBaseItem* TORXBaseLabel::FlowByInID(std::int32_t id) const {
    if (!fFlowLinks) fFlowLinks = std::make_unique<TFlowLinkIndex>();
    if (!fFlowLinks->Valid()) fFlowLinks->Build(fItems);
    return fFlowLinks->Flow(id, fItems);
}

const std::vector<TORXBaseItem*>& TORXBaseLabel::LinksOf(std::int32_t id) const {
    if (!fFlowLinks) fFlowLinks = std::make_unique<TFlowLinkIndex>();
    if (!fFlowLinks->Valid()) fFlowLinks->Build(fItems);
    return fFlowLinks->Links(id);
}

void TORXBaseLabel::LinkEndsChanged(TORXBaseItem* link) {
    if (fFlowLinks && fFlowLinks->Valid() && !link->FromPreview()) fFlowLinks->EndsChanged(link);
}

std::size_t TORXBaseLabel::FlowLinkIndexBuilds() const {
    return fFlowLinks ? fFlowLinks->Builds() : 0;
}

void TORXBaseLabel::RemoveFromLists(const TORXBaseItem* item) {
    const auto drop = [item](std::vector<TORXBaseItem*>& list) { std::erase(list, item); };
    drop(fSelection);
    drop(fSelection2);
    if (fPendingCalcSet.erase(item) != 0) drop(fPendingCalc);
}

void TORXBaseLabel::DeleteItem(TORXBaseItem* item, bool record) {
    if (ItemIndex(item) < 0) return;
    // Undo and redo replay the deletions one by one as they were recorded; a container's cascade is made
    // only by the deletion that the user asked for.
    if (item->IsContainerFrame() && !fUndoing && !fRedoing)
        DeleteContainer(item, record);
    else
        DeleteOne(item, record);
}

void TORXBaseLabel::DeleteOne(TORXBaseItem* item, bool record) {
    const std::int32_t index = ItemIndex(item);
    if (index < 0) return;
    if (record) TORXDeleteCmd::AddCommand(item);
    RemoveFromLists(item);
    // Before the item goes, so that no pick can reach it through the index.
    if (!fPickIndexDirty && fPickIndex && !fPickIndex->Removed(item)) fPickIndexDirty = true;
    if (fIdIndex) fIdIndex->Removed(item);
    if (fFlowLinks && fFlowLinks->Valid()) fFlowLinks->Removed(item);
    fItems.erase(fItems.begin() + index);
    // ChangeState(lsUpdate) without the item, less the rebuild of the pick index that it would ask for.
    AddState(TOrvexState::lsModified);
    if (!fNotifyNow)
        AddState(TOrvexState::lsUpdate);
    else
        ChangeValue(TQVChange::chPaint);
}

void TORXBaseLabel::DeleteSelection() {
    if (fSelection.empty()) return;
    const TUndoGroup group(*this);
    const std::vector<TORXBaseItem*> selected = OutermostOf(fSelection);
    for (TORXBaseItem* item : selected) DeleteItem(item, true);
    fSelPoints.clear();
    ChangeState(TOrvexState::lsUpdate);
}

void TORXBaseLabel::CopySelection() {
    // A container takes its members along; paint order keeps each frame behind what it holds.
    std::vector<TORXBaseItem*> copied = WithMembers(fSelection);
    if (copied.size() != fSelection.size()) {
        std::unordered_map<const TORXBaseItem*, std::size_t> order;
        for (std::size_t i = 0; i < fItems.size(); ++i) order.emplace(fItems[i].get(), i);
        std::stable_sort(
            copied.begin(), copied.end(),
            [&order](const TORXBaseItem* a, const TORXBaseItem* b) { return order[a] < order[b]; });
    }
    TJSON items = TJSON::array();
    for (const TORXBaseItem* item : copied) items.push_back(item->WriteJson());
    fClipboard = items.dump();
}

TORXBaseItem* TORXBaseLabel::SearchItem(std::int32_t index, bool select) {
    TORXBaseItem* item = GetItem(index);
    if (item != nullptr && select) {
        ClearSelection(false);
        SelectItem(item, true);
    }
    return item;
}

TORXBaseItem* TORXBaseLabel::SearchItem(const std::string& name, bool select) {
    return ElementByID(name, select);
}

TORXBaseItem* TORXBaseLabel::ElementByID(const std::string& name, bool select) {
    const auto it = std::find_if(fItems.begin(), fItems.end(),
                                 [&](const auto& item) { return SameTextIgnoringCase(item->ID(), name); });
    if (it == fItems.end()) return nullptr;
    TORXBaseItem* item = it->get();
    if (!select) return item;
    ClearSelection(false);
    item->SetState(TQVLItemState::isSelected);
    fSelection.push_back(item);
    if (OnSelectItem) OnSelectItem(item);
    FillSelPoints();
    ChangeValue(TQVChange::chSelect);
    return item;
}

bool TORXBaseLabel::RepeatID(const std::string& name, const TORXBaseItem* except) const {
    return std::any_of(fItems.begin(), fItems.end(), [&](const auto& item) {
        return item.get() != except && SameTextIgnoringCase(item->ID(), name);
    });
}

std::int32_t TORXBaseLabel::NextID() {
    return fNextID++;
}

void TORXBaseLabel::RaiseNextID(std::int32_t id) {
    if (fNextID <= id) fNextID = id + 1;
}

void TORXBaseLabel::SelectItem(TORXBaseItem* item, bool notify) {
    if (item == nullptr || ItemIndex(item) < 0) return;
    if (std::find(fSelection.begin(), fSelection.end(), item) == fSelection.end()) fSelection.push_back(item);
    item->SetState(TQVLItemState::isSelected);
    FillSelPoints();
    if (notify) ChangeValue(TQVChange::chSelect);
}

void TORXBaseLabel::ClearSelection(bool notify) {
    for (TORXBaseItem* item : fSelection) item->SetState(TQVLItemState::isNormal);
    fSelection.clear();
    fSelPoints.clear();
    if (notify) ChangeValue(TQVChange::chClearSelect);
}

void TORXBaseLabel::FillSelPoints() {
    // Tools that pick whole items show no handles.
    if (fAction == TQVLEdAction::eaTrim || fAction == TQVLEdAction::eaJoin ||
        fAction == TQVLEdAction::eaExtend || fAction == TQVLEdAction::eaEquidist)
        return;
    fEditor->FillHandles(fSelPoints);
}

TQVLRect TORXBaseLabel::ItemsBounds() const {
    if (fItems.empty()) return {};
    TQVLRect r = fItems.front()->BoundsRect();
    for (const auto& item : fItems) {
        const TQVLRect& b = item->BoundsRect();
        r.Left = std::min(r.Left, b.Left), r.Top = std::min(r.Top, b.Top);
        r.Right = std::max(r.Right, b.Right), r.Bottom = std::max(r.Bottom, b.Bottom);
    }
    return r;
}

TORXBaseItem* TORXBaseLabel::ItemAt(std::int64_t x, std::int64_t y, std::int32_t tolerance,
                                    const std::function<bool(const TORXBaseItem&)>& accept) const {
    if (fPickIndexDirty || !fPickIndex) {
        if (!fPickIndex) fPickIndex = std::make_unique<TPickIndex>();
        fPickIndex->Build(fItems);
        fPickIndexDirty = false;
    }
    return fPickIndex->Pick(x, y, tolerance, accept);
}

void TORXBaseLabel::InvalidatePickIndex(const TORXBaseItem* item) {
    if (fPickIndexDirty || !fPickIndex || fPickIndex->Changed(item)) return;
    // Preview copies are never picked; anything else the index cannot follow means a build.
    const bool preview = std::any_of(fPreviewItems.begin(), fPreviewItems.end(),
                                     [item](const auto& owned) { return owned.get() == item; });
    if (!preview) fPickIndexDirty = true;
}

std::size_t TORXBaseLabel::PickIndexBuilds() const {
    return fPickIndex ? fPickIndex->Builds() : 0;
}

void TORXBaseLabel::InvalidatePickIndex() {
    fPickIndexDirty = true;
    // What moves items in the paint order says so here; only items that share an id care.
    if (fIdIndex) fIdIndex->Reordered();
}

TORXBaseItem* TORXBaseLabel::FindItemByInID(TQVLItemType type, std::int32_t id) const {
    if (!fIdIndex) fIdIndex = std::make_unique<TItemIdIndex>();
    return fIdIndex->Find(type, id, fItems);
}

void TORXBaseLabel::ItemIdChanged() {
    if (fIdIndex) fIdIndex->Invalidate();
    if (fFlowLinks) fFlowLinks->Invalidate();
}

// [SECTION] Layers

TORXLayer* TORXBaseLabel::AddLayer() {
    fLayers.push_back(std::make_unique<TORXLayer>(this, TORXMsg::GetInfoValue("NewLayer")));
    ChangeState(TOrvexState::lsModified);
    return fLayers.back().get();
}

bool TORXBaseLabel::DeleteLayer(std::int32_t index) {
    TORXLayer* layer = GetLayer(index);
    if (layer == nullptr || GetLayersCount() < 2) return false;
    BeginUpdate(true);
    std::vector<TORXBaseItem*> doomed;
    for (const auto& item : fItems)
        if (item->Layer() == layer) doomed.push_back(item.get());
    for (TORXBaseItem* item : doomed) DeleteItem(item, true);
    // Undo commands name layers by index; after this the indexes above shift, so history cannot cross it.
    ClearUndoRedo();
    fLayers.erase(fLayers.begin() + (index - 1));
    if (fActiveLayer >= GetLayersCount()) fActiveLayer = static_cast<std::int16_t>(GetLayersCount() - 1);
    CheckBackLayer();
    ChangeState(TOrvexState::lsUpdate);
    EndUpdate();
    return true;
}

bool TORXBaseLabel::ExchangeLayers(std::int32_t a, std::int32_t b) {
    if (GetLayer(a) == nullptr || GetLayer(b) == nullptr || a == b) return false;
    std::swap(fLayers[static_cast<std::size_t>(a - 1)], fLayers[static_cast<std::size_t>(b - 1)]);
    ClearUndoRedo();  // layer commands hold indexes
    if (fLayerZOrder) SortItemsZLayer();
    CheckBackLayer();
    ChangeState(TOrvexState::lsUpdate);
    return true;
}

TORXLayer* TORXBaseLabel::GetLayer(std::int32_t index) const {
    if (index < 1 || index > GetLayersCount()) return nullptr;
    return fLayers[static_cast<std::size_t>(index - 1)].get();
}

void TORXBaseLabel::GetLayersNames(std::vector<std::string>& names) const {
    names.clear();
    for (const auto& layer : fLayers) names.push_back(layer->fName);
}

std::int32_t TORXBaseLabel::LayerIdx(const TORXLayer* layer) const {
    for (std::size_t i = 0; i < fLayers.size(); ++i)
        if (fLayers[i].get() == layer) return static_cast<std::int32_t>(i);
    return -1;
}

bool TORXBaseLabel::SetActiveLayer(std::int32_t index) {
    if (index < 1 || index > GetLayersCount() || index - 1 == fActiveLayer) return false;
    fActiveLayer = static_cast<std::int16_t>(index - 1);
    return true;
}

void TORXBaseLabel::CheckBackLayer() {
    fBackImageLayer = -1;
    for (std::int32_t i = GetLayersCount(); i >= 1; --i) {
        const TQVLayerOpts& o = GetLayer(i)->fOptions;
        if (o.Contains(TQVLayerOp::lopVisible) &&
            (o.Contains(TQVLayerOp::lopImage) || o.Contains(TQVLayerOp::lopMap))) {
            fBackImageLayer = i;
            fBackLayer = true;
            return;
        }
    }
}

void TORXBaseLabel::SetLayerZOrder(bool byLayer) {
    fLayerZOrder = byLayer;
    if (byLayer) SortItemsZLayer();
}

// [SECTION] Dimension styles, counters, symbols

TORXDimStyle* TORXBaseLabel::AddDimStyle(const std::string& name) {
    fDimStyles.push_back(std::make_unique<TORXDimStyle>(fNextDimStyleID++, name));
    return fDimStyles.back().get();
}

TORXDimStyle* TORXBaseLabel::GetDimStyle(std::int32_t index) const {
    if (index < 1 || index > GetDimStylesCount()) return nullptr;
    return fDimStyles[static_cast<std::size_t>(index - 1)].get();
}

TORXDimStyle* TORXBaseLabel::GetDimStyleById(std::int32_t id) const {
    for (const auto& style : fDimStyles)
        if (style->fID == id) return style.get();
    return nullptr;
}

void TORXBaseLabel::GetDimStylesNames(std::vector<std::string>& names) const {
    names.clear();
    for (const auto& style : fDimStyles) names.push_back(style->fName);
}

bool TORXBaseLabel::SetActiveDimStyle(std::int32_t index) {
    if (index < 1 || index > GetDimStylesCount() || index - 1 == fActiveDimStyle) return false;
    fActiveDimStyle = static_cast<std::int16_t>(index - 1);
    return true;
}

bool TORXBaseLabel::SetActiveDimStyle(const std::string& name) {
    for (std::int32_t i = 1; i <= GetDimStylesCount(); ++i)
        if (SameTextIgnoringCase(GetDimStyle(i)->fName, name)) return SetActiveDimStyle(i);
    return false;
}

bool TORXBaseLabel::DeleteActiveDimStyle() {
    if (GetDimStylesCount() < 2) return false;
    fDimStyles.erase(fDimStyles.begin() + fActiveDimStyle);
    if (fActiveDimStyle >= GetDimStylesCount())
        fActiveDimStyle = static_cast<std::int16_t>(GetDimStylesCount() - 1);
    ChangeState(TOrvexState::lsUpdate);
    return true;
}

void TORXBaseLabel::ResetDimStyles() {
    fDimStyles.clear();
    fActiveDimStyle = 0;
    AddDimStyle(TORXMsg::GetPropValue("Default"));
}

std::int32_t TORXBaseLabel::DimIdx(const TORXDimStyle* style) const {
    for (std::size_t i = 0; i < fDimStyles.size(); ++i)
        if (fDimStyles[i].get() == style) return static_cast<std::int32_t>(i);
    return -1;
}

TORXCounter* TORXBaseLabel::AddCounter() {
    fCounters.push_back(std::make_unique<TORXCounter>());
    return fCounters.back().get();
}

TORXCounter* TORXBaseLabel::GetCounter(std::int32_t index) const {
    if (index < 1 || index > GetCountersCount()) return nullptr;
    return fCounters[static_cast<std::size_t>(index - 1)].get();
}

TORXBaseLibSymbol* TORXBaseLabel::AddSymbol() {
    fSymbols.push_back(std::make_unique<TORXBaseLibSymbol>());
    return fSymbols.back().get();
}

TORXBaseLibSymbol* TORXBaseLabel::GetSymbol(std::int32_t index) const {
    if (index < 1 || index > GetSymbolsCount()) return nullptr;
    return fSymbols[static_cast<std::size_t>(index - 1)].get();
}

// [SECTION] Mode and units

void TORXBaseLabel::SetEditorMode(TQVLEditorMode mode) {
    if (mode == fEditorMode) return;
    fEditorMode = mode;
    ChangeState(TOrvexState::lsUpdateMeasure);
}

void TORXBaseLabel::SetUnits(TQVLUnits units) {
    if (units == fMeasure.fUnits) return;
    fMeasure.fUnits = units;
    // A dimension shows its measure in the document's unit: its text, and the box the text takes, are
    // recomputed now, so that the painted text and the SVG (which measures afresh) agree.
    for (const auto& item : fItems)
        if (item->ItemType() == TQVLItemType::itDim) {
            item->UpdateBounds();
            InvalidatePickIndex(item.get());
        }
    ChangeState(TOrvexState::lsUpdateMeasure);
}

void TORXBaseLabel::SetAngle(TQVLAngle angle) {
    if (angle == fAngle) return;
    fAngle = angle;
    ChangeState(TOrvexState::lsUpdate);
}

}  // namespace Orvex
