// TItemIdIndex: the document's items by kind and internal id, so that a link finds the flow element it
// is bound to without a walk over the whole drawing. It answers exactly as that walk would: the first
// item in paint order of the kind with the id. Internal ids are unique in a drawing the program made;
// a file may still repeat one, and then the index falls back to rebuilding whenever the order changes.
#pragma once

#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

#include "orvex/document/item_types.h"

namespace Orvex {

class TORXBaseItem;

class TItemIdIndex {
  public:
    // items in paint order; the index keeps the pointers, not the items. Built on the first Find after
    // Invalidate.
    TORXBaseItem* Find(TQVLItemType type, std::int32_t id,
                       const std::vector<std::unique_ptr<TORXBaseItem>>& items);
    void Appended(TORXBaseItem* item);       // the item was added at the end of the paint order
    void Removed(const TORXBaseItem* item);  // the item leaves the drawing; call before it is destroyed
    void Reordered();                        // the paint order changed
    void Invalidate() { fValid = false; }    // ids changed, or items went in bulk
    std::size_t Builds() const { return fBuilds; }

  private:
    static std::uint64_t Key(TQVLItemType type, std::int32_t id);
    void Build(const std::vector<std::unique_ptr<TORXBaseItem>>& items);

    std::unordered_map<std::uint64_t, TORXBaseItem*> fFirst;
    bool fValid = false;
    bool fRepeats = false;  // some kind and id pair is held by more than one item
    std::size_t fBuilds = 0;
};

}  // namespace Orvex
