#include "orvex/document/pick_index.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "orvex/document/base_item.h"

namespace Orvex {

namespace {
// An item over more cells than this is asked at every click rather than listed in each of them, so that a
// few frames around everything cannot blow the grid up.
constexpr std::int64_t kMaxCellsPerItem = 64;
// A query wider than this many cells walks the extents in order instead of merging cell lists.
constexpr std::int64_t kMaxQueryCells = 256;
// The extent of an item that cannot bound its hits: far enough out for any drawing, near enough that
// widening it by a reach cannot overflow.
constexpr TQVLRect kWholePlane{-(std::int64_t{1} << 60), -(std::int64_t{1} << 60), std::int64_t{1} << 60,
                               std::int64_t{1} << 60};

// Items followed one by one since the build, as a share of the items; past it a build is cheaper than
// asking them all at every click.
constexpr std::size_t kMinFollowed = 64;
constexpr std::size_t kMaxFollowed = 1'024;

bool Reaches(const TQVLRect& e, std::int64_t x, std::int64_t y, std::int64_t reach) {
    return e.Left - reach <= x && x <= e.Right + reach && e.Top - reach <= y && y <= e.Bottom + reach;
}

TQVLRect ExtentOf(const TORXBaseItem& item) {
    TQVLRect extent;
    const bool bounded = item.PickExtent(extent);
    extent.NormalizeRect();
    return bounded ? extent : kWholePlane;
}
}  // namespace

std::int64_t TPickIndex::CellCol(std::int64_t x) const {
    const double c = std::floor(static_cast<double>(x - fArea.Left) / fCellW);
    return static_cast<std::int64_t>(std::clamp(c, 0.0, static_cast<double>(fCols - 1)));
}

std::int64_t TPickIndex::CellRow(std::int64_t y) const {
    const double r = std::floor(static_cast<double>(y - fArea.Top) / fCellH);
    return static_cast<std::int64_t>(std::clamp(r, 0.0, static_cast<double>(fRows - 1)));
}

void TPickIndex::Build(const std::vector<std::unique_ptr<TORXBaseItem>>& items) {
    ++fBuilds;
    fItems.clear();
    fChanged.clear();
    fStale.clear();
    fDead = 0;
    fEverywhere.clear();
    fCellStart.clear();
    fCellItems.clear();
    fItems.reserve(items.size());
    std::vector<bool> gridded;
    gridded.reserve(items.size());
    bool any = false;
    for (const auto& owned : items) {
        TEntry entry{{}, owned.get()};
        const bool bounded = owned->PickExtent(entry.Extent);
        entry.Extent.NormalizeRect();
        if (!bounded) entry.Extent = kWholePlane;
        if (bounded) {
            if (!any) fArea = entry.Extent;
            fArea.Left = std::min(fArea.Left, entry.Extent.Left);
            fArea.Top = std::min(fArea.Top, entry.Extent.Top);
            fArea.Right = std::max(fArea.Right, entry.Extent.Right);
            fArea.Bottom = std::max(fArea.Bottom, entry.Extent.Bottom);
            any = true;
        }
        gridded.push_back(bounded);
        owned->fPickSlot = static_cast<std::int32_t>(fItems.size());
        fItems.push_back(entry);
    }
    fCols = fRows = 0;
    if (!any) {
        for (std::size_t i = 0; i < fItems.size(); ++i) fEverywhere.push_back(static_cast<std::int32_t>(i));
        return;
    }
    // About one cell per item, shaped like the drawing.
    const double w = std::max(1.0, static_cast<double>(fArea.GetWidth()));
    const double h = std::max(1.0, static_cast<double>(fArea.GetHeight()));
    const double cells = std::clamp(static_cast<double>(fItems.size()), 1.0, 1048576.0);
    fCols = std::clamp<std::int64_t>(std::llround(std::sqrt(cells * w / h)), 1, 1 << 20);
    fRows = std::clamp<std::int64_t>(std::llround(cells / static_cast<double>(fCols)), 1, 1 << 20);
    fCellW = std::max(1.0, w / static_cast<double>(fCols));
    fCellH = std::max(1.0, h / static_cast<double>(fRows));

    // Two passes over the items, counting then filling, keep each cell's list compact and ascending.
    const auto span = [&](const TQVLRect& e, std::int64_t& c0, std::int64_t& c1, std::int64_t& r0,
                          std::int64_t& r1) {
        c0 = CellCol(e.Left), c1 = CellCol(e.Right), r0 = CellRow(e.Top), r1 = CellRow(e.Bottom);
        return (c1 - c0 + 1) * (r1 - r0 + 1);
    };
    fCellStart.assign(static_cast<std::size_t>(fCols * fRows + 1), 0);
    for (std::size_t i = 0; i < fItems.size(); ++i) {
        std::int64_t c0 = 0, c1 = 0, r0 = 0, r1 = 0;
        if (!gridded[i] || span(fItems[i].Extent, c0, c1, r0, r1) > kMaxCellsPerItem) {
            gridded[i] = false;
            fEverywhere.push_back(static_cast<std::int32_t>(i));
            continue;
        }
        for (std::int64_t r = r0; r <= r1; ++r)
            for (std::int64_t c = c0; c <= c1; ++c) ++fCellStart[static_cast<std::size_t>(r * fCols + c + 1)];
    }
    for (std::size_t c = 1; c < fCellStart.size(); ++c) fCellStart[c] += fCellStart[c - 1];
    fCellItems.resize(static_cast<std::size_t>(fCellStart.back()));
    std::vector<std::int32_t> next(fCellStart.begin(), fCellStart.end() - 1);
    for (std::size_t i = 0; i < fItems.size(); ++i) {
        if (!gridded[i]) continue;
        std::int64_t c0 = 0, c1 = 0, r0 = 0, r1 = 0;
        span(fItems[i].Extent, c0, c1, r0, r1);
        for (std::int64_t r = r0; r <= r1; ++r)
            for (std::int64_t c = c0; c <= c1; ++c)
                fCellItems[static_cast<std::size_t>(next[static_cast<std::size_t>(r * fCols + c)]++)] =
                    static_cast<std::int32_t>(i);
    }
}

std::int32_t TPickIndex::SlotOf(const TORXBaseItem* item) const {
    // Only compared, never followed: the slot may be left over from an earlier build or another document.
    const std::int32_t slot = item->fPickSlot;
    if (slot < 0 || static_cast<std::size_t>(slot) >= fItems.size()) return -1;
    return fItems[static_cast<std::size_t>(slot)].Item == item ? slot : -1;
}

bool TPickIndex::WithinBound() const {
    const std::size_t bound = std::clamp(fItems.size() / 100, kMinFollowed, kMaxFollowed);
    return fChanged.size() + fDead <= bound;
}

bool TPickIndex::Changed(const TORXBaseItem* item) {
    const std::int32_t slot = SlotOf(item);
    if (slot < 0) return false;
    TEntry& entry = fItems[static_cast<std::size_t>(slot)];
    if (entry.State == TState::esStale) return true;
    if (entry.State == TState::esGridded) fChanged.push_back(slot);
    entry.State = TState::esStale;
    fStale.push_back(slot);
    return WithinBound();
}

bool TPickIndex::Appended(TORXBaseItem* item) {
    if (fItems.size() >= static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max())) return false;
    const auto slot = static_cast<std::int32_t>(fItems.size());
    item->fPickSlot = slot;
    fItems.push_back({{}, item, TState::esStale});
    fChanged.push_back(slot);
    fStale.push_back(slot);
    return WithinBound();
}

bool TPickIndex::Removed(const TORXBaseItem* item) {
    const std::int32_t slot = SlotOf(item);
    if (slot < 0) return false;
    TEntry& entry = fItems[static_cast<std::size_t>(slot)];
    if (entry.State != TState::esGridded) std::erase(fChanged, slot);  // fStale skips the dead
    entry.State = TState::esDead;
    entry.Item = nullptr;  // the cells and the everywhere list may still name the entry
    ++fDead;
    return WithinBound();
}

TORXBaseItem* TPickIndex::Pick(std::int64_t x, std::int64_t y, std::int32_t tolerance,
                               const TAccept& accept) {
    for (const std::int32_t slot : fStale) {
        TEntry& entry = fItems[static_cast<std::size_t>(slot)];
        if (entry.State != TState::esStale) continue;
        entry.Extent = ExtentOf(*entry.Item);
        entry.State = TState::esChanged;
    }
    fStale.clear();
    // Twice the tolerance: a label turned at an angle reaches its tolerance along both of its own axes.
    const std::int64_t reach = 2 * static_cast<std::int64_t>(std::max(tolerance, 0)) + 1;
    const auto hits = [&](std::int32_t i) {
        const TEntry& e = fItems[static_cast<std::size_t>(i)];
        if (e.State == TState::esDead) return false;
        return Reaches(e.Extent, x, y, reach) && (!accept || accept(*e.Item)) &&
               e.Item->Pick(x, y, tolerance, false);
    };
    std::vector<std::int32_t> candidates;
    if (fCols > 0 && Reaches(fArea, x, y, reach)) {
        const std::int64_t c0 = CellCol(x - reach), c1 = CellCol(x + reach);
        const std::int64_t r0 = CellRow(y - reach), r1 = CellRow(y + reach);
        if ((c1 - c0 + 1) * (r1 - r0 + 1) > kMaxQueryCells) {
            for (auto i = static_cast<std::int32_t>(fItems.size()) - 1; i >= 0; --i)
                if (hits(i)) return fItems[static_cast<std::size_t>(i)].Item;
            return nullptr;
        }
        for (std::int64_t r = r0; r <= r1; ++r)
            for (std::int64_t c = c0; c <= c1; ++c) {
                const auto cell = static_cast<std::size_t>(r * fCols + c);
                candidates.insert(candidates.end(), fCellItems.begin() + fCellStart[cell],
                                  fCellItems.begin() + fCellStart[cell + 1]);
            }
    }
    candidates.insert(candidates.end(), fEverywhere.begin(), fEverywhere.end());
    // Changed and appended items wherever they are now; cells listing them from before test the new extent.
    for (const std::int32_t i : fChanged)
        if (Reaches(fItems[static_cast<std::size_t>(i)].Extent, x, y, reach)) candidates.push_back(i);
    // From the top of the paint order down; an item listed in several cells is asked once.
    std::sort(candidates.begin(), candidates.end(), std::greater<>());
    candidates.erase(std::unique(candidates.begin(), candidates.end()), candidates.end());
    for (const std::int32_t i : candidates)
        if (hits(i)) return fItems[static_cast<std::size_t>(i)].Item;
    return nullptr;
}

}  // namespace Orvex
