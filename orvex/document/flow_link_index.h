// Private to the document: flow elements by internal id and the links bound to each, so that routing a
// link and finding the links of a moved element cost no walk over every item of a large flowchart.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

namespace Orvex {

class TORXBaseItem;

class TFlowLinkIndex {
  public:
    using TItems = std::vector<std::unique_ptr<TORXBaseItem>>;

    // A full build from the item list; Valid() until Invalidate. The other updates apply to a valid
    // index only (an invalid one is rebuilt on its next lookup).
    void Build(const TItems& aItems);
    bool Valid() const { return fValid; }
    void Invalidate();
    std::size_t Builds() const { return fBuilds; }

    void Added(TORXBaseItem* aItem);        // appended to the item list
    void Removed(TORXBaseItem* aItem);      // leaving the item list
    void EndsChanged(TORXBaseItem* aLink);  // a link's ends now name other ids

    // The first flow element in list order with this internal id, or null; aItems is walked only when
    // ids are not unique.
    TORXBaseItem* Flow(std::int32_t aInID, const TItems& aItems) const;
    const std::vector<TORXBaseItem*>& Links(std::int32_t aInID) const;  // bound at either end

  private:
    void Bind(TORXBaseItem* aLink);
    void Unbind(TORXBaseItem* aLink);

    std::unordered_map<std::int32_t, TORXBaseItem*> fFlows;
    std::unordered_map<std::int32_t, std::vector<TORXBaseItem*>> fLinks;
    std::unordered_map<const TORXBaseItem*, std::array<std::int32_t, 2>> fBoundEnds;
    bool fDuplicateFlows = false;
    bool fValid = false;
    std::size_t fBuilds = 0;
};

}  // namespace Orvex
