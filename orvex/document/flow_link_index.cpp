#include "orvex/document/flow_link_index.h"

#include <algorithm>

#include "orvex/document/base_item.h"

namespace Orvex {

void TFlowLinkIndex::Build(const TItems& aItems) {
    Invalidate();
    for (const auto& item : aItems) Added(item.get());
    fValid = true;
    ++fBuilds;
}

void TFlowLinkIndex::Invalidate() {
    fFlows.clear();
    fLinks.clear();
    fBoundEnds.clear();
    fDuplicateFlows = false;
    fValid = false;
}

void TFlowLinkIndex::Added(TORXBaseItem* aItem) {
    if (aItem->ItemType() == TQVLItemType::itFlow) {
        // The element listed first keeps the id, as a walk in list order would find it.
        if (!fFlows.emplace(aItem->InID(), aItem).second) fDuplicateFlows = true;
    } else if (aItem->ItemType() == TQVLItemType::itLink) {
        Bind(aItem);
    }
}

void TFlowLinkIndex::Removed(TORXBaseItem* aItem) {
    if (aItem->ItemType() == TQVLItemType::itFlow) {
        // Another element with the same id would take its place: that needs a walk.
        if (fDuplicateFlows) {
            Invalidate();
            return;
        }
        const auto it = fFlows.find(aItem->InID());
        if (it != fFlows.end() && it->second == aItem) fFlows.erase(it);
    } else if (aItem->ItemType() == TQVLItemType::itLink) {
        Unbind(aItem);
    }
}

void TFlowLinkIndex::EndsChanged(TORXBaseItem* aLink) {
    Unbind(aLink);
    Bind(aLink);
}

void TFlowLinkIndex::Bind(TORXBaseItem* aLink) {
    const auto ends = aLink->LinkEndIDs();
    fBoundEnds[aLink] = ends;
    fLinks[ends[0]].push_back(aLink);
    if (ends[1] != ends[0]) fLinks[ends[1]].push_back(aLink);
}

void TFlowLinkIndex::Unbind(TORXBaseItem* aLink) {
    const auto bound = fBoundEnds.find(aLink);
    if (bound == fBoundEnds.end()) return;
    for (const std::int32_t id : bound->second) {
        const auto it = fLinks.find(id);
        if (it == fLinks.end()) continue;
        std::erase(it->second, aLink);
        if (it->second.empty()) fLinks.erase(it);
    }
    fBoundEnds.erase(bound);
}

TORXBaseItem* TFlowLinkIndex::Flow(std::int32_t aInID, const TItems& aItems) const {
    if (fDuplicateFlows) {
        for (const auto& item : aItems)
            if (item->ItemType() == TQVLItemType::itFlow && item->InID() == aInID) return item.get();
        return nullptr;
    }
    const auto it = fFlows.find(aInID);
    return it != fFlows.end() ? it->second : nullptr;
}

const std::vector<TORXBaseItem*>& TFlowLinkIndex::Links(std::int32_t aInID) const {
    static const std::vector<TORXBaseItem*> kNone;
    const auto it = fLinks.find(aInID);
    return it != fLinks.end() ? it->second : kNone;
}

}  // namespace Orvex
