// TPickIndex: a uniform grid over the items' pick extents, so that a click asks only the few items near
// it instead of every item of a large drawing. It only prunes: the items' own hit tests still decide, in
// paint order from the top, so a pick through the index finds exactly the item a full walk would.
// Between builds it follows small edits: an item whose extent changed, or one added on top, is asked with
// its current extent at every click, ranked where it paints, until so many gather that a build is cheaper.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "orvex/core/types.h"

namespace Orvex {

class TORXBaseItem;

class TPickIndex {
  public:
    using TAccept = std::function<bool(const TORXBaseItem&)>;

    // items in paint order (the last painted lies on top); the index keeps the pointers, not the items.
    void Build(const std::vector<std::unique_ptr<TORXBaseItem>>& items);
    // The topmost item that accept passes (every item without it) and whose Pick takes (x, y).
    // Not const: the extents of the items changed since the last pick are taken first.
    TORXBaseItem* Pick(std::int64_t x, std::int64_t y, std::int32_t tolerance, const TAccept& accept);
    // The following return false when the index cannot follow the edit (an item it does not hold, or too
    // many edits since the build): the caller must then Build again before the next Pick.
    bool Changed(const TORXBaseItem* item);  // the item's extent may have changed; its paint rank did not
    bool Appended(TORXBaseItem* item);       // the item now paints above every item the index holds
    bool Removed(const TORXBaseItem* item);  // the item leaves the drawing; call before it is destroyed
    std::size_t Size() const { return fItems.size(); }
    std::size_t Builds() const { return fBuilds; }
    std::size_t Followed() const { return fChanged.size(); }  // items asked with their current extent

  private:
    // esChanged entries hold their item's current extent, esStale ones will at the next pick.
    enum class TState : std::uint8_t { esGridded, esChanged, esStale, esDead };
    struct TEntry {
        TQVLRect Extent;  // no hit lies farther out than this, widened by the query's reach
        TORXBaseItem* Item = nullptr;
        TState State = TState::esGridded;
    };
    std::int32_t SlotOf(const TORXBaseItem* item) const;  // -1 unless the index holds the item
    bool WithinBound() const;
    std::int64_t CellCol(std::int64_t x) const;
    std::int64_t CellRow(std::int64_t y) const;

    std::vector<TEntry> fItems;  // in paint order; an entry's index is its rank
    // Entries of changed or appended items, whose stored extent and cells no longer count.
    std::vector<std::int32_t> fChanged;
    std::vector<std::int32_t> fStale;  // the entries among them whose extent is to be taken again
    std::size_t fDead = 0;
    std::size_t fBuilds = 0;
    // Items on every click: those that cannot bound their hits, and those that span many cells.
    std::vector<std::int32_t> fEverywhere;
    // The grid, one list of item indexes per cell, row by row, each list ascending (paint order):
    // fCellStart[c] .. fCellStart[c + 1] index fCellItems.
    std::vector<std::int32_t> fCellStart;
    std::vector<std::int32_t> fCellItems;
    TQVLRect fArea;  // the union of the gridded extents
    std::int64_t fCols = 0;
    std::int64_t fRows = 0;
    double fCellW = 1.0;
    double fCellH = 1.0;
};

}  // namespace Orvex
