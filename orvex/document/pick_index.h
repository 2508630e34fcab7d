// TPickIndex: a uniform grid over the items' pick extents, so that a click asks only the few items near
// it instead of every item of a large drawing. It only prunes: the items' own hit tests still decide, in
// paint order from the top, so a pick through the index finds exactly the item a full walk would.
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
    TORXBaseItem* Pick(std::int64_t x, std::int64_t y, std::int32_t tolerance, const TAccept& accept) const;
    std::size_t Size() const { return fItems.size(); }

  private:
    struct TEntry {
        TQVLRect Extent;  // no hit lies farther out than this, widened by the query's reach
        TORXBaseItem* Item = nullptr;
    };
    std::int64_t CellCol(std::int64_t x) const;
    std::int64_t CellRow(std::int64_t y) const;

    std::vector<TEntry> fItems;
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
