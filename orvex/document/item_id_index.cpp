// The id index: a hash map from kind and internal id to the first item that holds them.
#include "orvex/document/item_id_index.h"

#include "orvex/document/base_item.h"

namespace Orvex {

std::uint64_t TItemIdIndex::Key(TQVLItemType type, std::int32_t id) {
    return (static_cast<std::uint64_t>(type) << 32) | static_cast<std::uint32_t>(id);
}

void TItemIdIndex::Build(const std::vector<std::unique_ptr<TORXBaseItem>>& items) {
    fFirst.clear();
    fFirst.reserve(items.size());
    fRepeats = false;
    for (const auto& item : items)
        if (!fFirst.try_emplace(Key(item->ItemType(), item->InID()), item.get()).second) fRepeats = true;
    fValid = true;
    ++fBuilds;
}

TORXBaseItem* TItemIdIndex::Find(TQVLItemType type, std::int32_t id,
                                 const std::vector<std::unique_ptr<TORXBaseItem>>& items) {
    if (!fValid) Build(items);
    auto it = fFirst.find(Key(type, id));
    if (it == fFirst.end()) return nullptr;
    return it->second;
}

void TItemIdIndex::Appended(TORXBaseItem* item) {
    if (!fValid) return;
    // Behind every item held, so an earlier holder of the same id stays the one found.
    if (!fFirst.try_emplace(Key(item->ItemType(), item->InID()), item).second) fRepeats = true;
}

void TItemIdIndex::Removed(const TORXBaseItem* item) {
    if (!fValid) return;
    const auto it = fFirst.find(Key(item->ItemType(), item->InID()));
    if (it == fFirst.end() || it->second != item) return;
    // Another holder of the id may now come first; only a walk can tell which.
    if (fRepeats)
        fValid = false;
    else
        fFirst.erase(it);
}

void TItemIdIndex::Reordered() {
    if (fRepeats) fValid = false;
}

}  // namespace Orvex
