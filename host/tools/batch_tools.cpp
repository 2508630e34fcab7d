// Tools over several items at once: add_items (a batch of add_ calls whose links name items of the same
// batch by a local key), align_items, distribute_items and duplicate_items. Each call is one undo step.
//
// [SECTION] add_items   [SECTION] Arranging   [SECTION] duplicate_items   [SECTION] Registration
#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <map>

#include "host/tools/item_build.h"
#include "host/tools/tool_args.h"
#include "host/tools/tool_registry.h"
#include "host/tools/tool_schema.h"
#include "orvex/document/document.h"
#include "orvex/io/json_utils.h"

namespace Orvex::Host {

namespace {

constexpr std::int64_t kDuplicateOffset = 10 * kBasePerMM;

// Takes back everything recorded since aStart when a batch fails half-way, so that it leaves nothing.
class TAllOrNothing {
  public:
    explicit TAllOrNothing(TORXBaseLabel& aDoc) : fDoc(aDoc), fStart(aDoc.UndoCount()) {}
    ~TAllOrNothing() {
        fDoc.JoinUndoSince(fStart);
        if (!fDone && fDoc.UndoCount() > fStart) fDoc.Undo();
    }
    TAllOrNothing(const TAllOrNothing&) = delete;
    TAllOrNothing& operator=(const TAllOrNothing&) = delete;
    void Done() { fDone = true; }

  private:
    TORXBaseLabel& fDoc;
    std::size_t fStart;
    bool fDone = false;
};

// [SECTION] add_items

std::string ErrorText(const TJSON& aResult) {
    const std::string text = aResult["content"][0].value("text", std::string());
    return text.starts_with("Error: ") ? text.substr(7) : text;
}

TJSON AddItems(const TToolCreators& aCreators, TORXBaseLabel& aDoc, const TJSON& aArgs) {
    const TJSON& entries = aArgs["items"];
    std::map<std::string, std::int32_t, std::less<>> keys;
    TJSON created = TJSON::array();
    TAllOrNothing batch(aDoc);
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const TJSON& entry = entries[i];
        const std::string kind = entry["kind"].get<std::string>();
        const auto at = [&](const std::string& aMessage) {
            return EToolArgument(fmt::format("items[{}] ({}): {}", i, kind, aMessage));
        };
        // A shape kind is add_shape's, which takes the kind with the rest of its arguments.
        const bool shape = std::ranges::find(ShapeKindNames(), kind) != ShapeKindNames().end();
        const auto creator = aCreators.find(shape ? "shape" : kind);
        if (creator == aCreators.end() || kind == "shape") throw at("no such kind");
        TJSON args = entry;
        for (const char* own : {"kind", "key", "from_key", "to_key"})
            if (!shape || std::string_view(own) != "kind") args.erase(own);
        for (const auto& [keyArg, idArg] : {std::pair{"from_key", "from_id"}, {"to_key", "to_id"}}) {
            if (!entry.contains(keyArg)) continue;
            const auto& local = entry[keyArg].get_ref<const std::string&>();
            const auto found = keys.find(local);
            if (found == keys.end())
                throw at(fmt::format("{} \"{}\" names no earlier item of this batch", keyArg, local));
            args[idArg] = found->second;
        }
        TJSON result;
        try {
            ValidateArguments(creator->second.Schema, args);
            result = creator->second.Body(aDoc, args);
        } catch (const EToolArgument& e) {
            throw at(e.what());
        }
        if (result.value("isError", false)) throw at(ErrorText(result));
        TJSON summary = result["structuredContent"];
        if (entry.contains("key")) {
            const auto& local = entry["key"].get_ref<const std::string&>();
            if (!keys.emplace(local, summary["id"].get<std::int32_t>()).second)
                throw at(fmt::format("the key \"{}\" is used twice", local));
            summary["key"] = local;
        }
        created.push_back(std::move(summary));
    }
    batch.Done();
    GrowPageToContent(aDoc);
    TJSON ids = TJSON::object();
    for (const auto& [key, id] : keys) ids[key] = id;
    return StructuredResult({{"items", std::move(created)}, {"ids", std::move(ids)}});
}

// [SECTION] Arranging

// The items the "ids" argument names, in its order; links refused, since they follow their elements.
std::vector<TORXBaseItem*> ItemsByIds(TORXBaseLabel& aDoc, const TJSON& aArgs, bool aAllowLinks = false) {
    std::vector<TORXBaseItem*> items;
    for (const auto& value : aArgs["ids"]) {
        const auto id = value.get<std::int64_t>();
        TORXBaseItem* item =
            id > 0 && id <= INT32_MAX ? ItemByInID(aDoc, static_cast<std::int32_t>(id)) : nullptr;
        if (item == nullptr) throw EToolArgument(fmt::format("ids: no item has the id {}", id));
        if (!aAllowLinks && item->ItemType() == TQVLItemType::itLink)
            throw EToolArgument(fmt::format("ids: {} is a link, which follows the elements it joins", id));
        if (std::find(items.begin(), items.end(), item) != items.end())
            throw EToolArgument(fmt::format("ids: {} is named twice", id));
        items.push_back(item);
    }
    return items;
}

void Select(TORXBaseLabel& aDoc, const std::vector<TORXBaseItem*>& aItems) {
    aDoc.ClearSelection(false);
    for (TORXBaseItem* item : aItems) aDoc.SelectItem(item, false);
}

TJSON Summaries(const TORXBaseLabel& aDoc, const std::vector<TORXBaseItem*>& aItems) {
    TJSON list = TJSON::array();
    for (const TORXBaseItem* item : aItems) list.push_back(ItemSummary(aDoc, *item));
    return StructuredResult({{"items", std::move(list)}});
}

const std::vector<std::string_view>& AlignNames() {
    // In the order of TQVLObjectAlign: center lines the centres up vertically, middle horizontally.
    static const std::vector<std::string_view> names{"left", "right", "top", "bottom", "center", "middle"};
    return names;
}

TJSON AlignItems(TORXBaseLabel& aDoc, const TJSON& aArgs) {
    const auto items = ItemsByIds(aDoc, aArgs);
    TAllOrNothing step(aDoc);
    Select(aDoc, items);
    aDoc.AlignObjects(
        static_cast<TQVLObjectAlign>(EnumIndex(AlignNames(), aArgs["align"].get<std::string>())));
    aDoc.ClearSelection(false);
    step.Done();
    return Summaries(aDoc, items);
}

TJSON DistributeItems(TORXBaseLabel& aDoc, const TJSON& aArgs) {
    const auto items = ItemsByIds(aDoc, aArgs);
    const bool horizontal = aArgs["direction"].get<std::string>() == "horizontal";
    std::int64_t gap = 0;
    if (aArgs.contains("gap")) {
        gap = Length(aDoc, aArgs, "gap");
    } else {
        // Equal gaps between the outermost two, which stay where they are.
        if (items.size() < 3) throw EToolArgument("give \"gap\", or at least three items to space evenly");
        std::int64_t first = INT64_MAX;
        std::int64_t last = INT64_MIN;
        std::int64_t extent = 0;
        for (const TORXBaseItem* item : items) {
            const TQVLRect& b = item->BoundsRect();
            first = std::min(first, horizontal ? b.Left : b.Top);
            last = std::max(last, horizontal ? b.Right : b.Bottom);
            extent += horizontal ? b.GetWidth() : b.GetHeight();
        }
        gap = (last - first - extent) / static_cast<std::int64_t>(items.size() - 1);
    }
    TAllOrNothing step(aDoc);
    Select(aDoc, items);
    if (horizontal)
        aDoc.SpaceHorizontal(gap);
    else
        aDoc.SpaceVertical(gap);
    aDoc.ClearSelection(false);
    step.Done();
    return Summaries(aDoc, items);
}

// [SECTION] duplicate_items

// Copies through the drawing-file form; a link is copied when both its elements are, and then joins the
// copies. The copies get new names and ids and stand offset from the originals.
TJSON DuplicateItems(TORXBaseLabel& aDoc, const TJSON& aArgs) {
    const auto items = ItemsByIds(aDoc, aArgs, true);
    const std::int64_t dx = aArgs.contains("dx") ? Length(aDoc, aArgs, "dx") : kDuplicateOffset;
    const std::int64_t dy = aArgs.contains("dy") ? Length(aDoc, aArgs, "dy") : kDuplicateOffset;
    std::map<std::int32_t, std::int32_t> copies;
    std::vector<TORXBaseItem*> made;
    TAllOrNothing step(aDoc);
    const auto copy = [&](const TORXBaseItem& aItem) {
        TJSON keys = aItem.WriteJson();
        for (const char* own : {"Type", "TypeName", "InID", "ID"}) keys.erase(own);
        TORXBaseItem* item = CreateItemFromKeys(aDoc, aItem.ItemType(), keys);
        copies[aItem.InID()] = item->InID();
        made.push_back(item);
        return item;
    };
    for (const TORXBaseItem* item : items)
        if (item->ItemType() != TQVLItemType::itLink) copy(*item);
    std::vector<TORXBaseItem*> moved = made;
    for (const TORXBaseItem* item : items) {
        if (item->ItemType() != TQVLItemType::itLink) continue;
        const TJSON json = item->WriteJson();
        const auto from = copies.find(static_cast<std::int32_t>(TJSONUtils::GetInt(json, "FromID")));
        const auto to = copies.find(static_cast<std::int32_t>(TJSONUtils::GetInt(json, "ToID")));
        if (from == copies.end() || to == copies.end())
            throw EToolArgument(
                fmt::format("ids: the link {} can only be copied with both elements it joins", item->InID()));
        TORXBaseItem* link = copy(*item);
        ChangeItemKeys(*link, {{"FromID", from->second}, {"ToID", to->second}});
        moved.push_back(link);
    }
    OffsetItems(aDoc, moved, dx, dy);
    step.Done();
    GrowPageToContent(aDoc);
    TJSON map = TJSON::object();
    for (const auto& [from, to] : copies) map[std::to_string(from)] = to;
    TJSON list = TJSON::array();
    for (const TORXBaseItem* item : made) list.push_back(ItemSummary(aDoc, *item));
    return StructuredResult({{"items", std::move(list)}, {"copies", std::move(map)}});
}

// [SECTION] group_items, ungroup_items

// A group is a container of the document, as an imported subgraph is: a titled frame behind its members
// that takes them along when it moves or is deleted.
TJSON GroupItems(TORXBaseLabel& aDoc, const TJSON& aArgs) {
    const auto items = ItemsByIds(aDoc, aArgs, true);
    std::vector<std::int32_t> ids;
    for (const TORXBaseItem* item : items) ids.push_back(item->InID());
    TORXBaseItem* frame = aDoc.GroupItems(ids, aArgs.value("title", std::string()));
    if (frame == nullptr) throw EToolArgument("ids: none of them names an item that can be grouped");
    GrowPageToContent(aDoc);
    TJSON members = TJSON::array();
    for (const std::int32_t id : aDoc.MembersOf(frame->InID())) members.push_back(id);
    TJSON summary = ItemSummary(aDoc, *frame);
    summary["members"] = std::move(members);
    return StructuredResult(std::move(summary));
}

TJSON UngroupItems(TORXBaseLabel& aDoc, const TJSON& aArgs) {
    const auto id = static_cast<std::int32_t>(aArgs["id"].get<std::int64_t>());
    const std::vector<std::int32_t> members = aDoc.MembersOf(id);
    if (!aDoc.UngroupItems(id)) throw EToolArgument(fmt::format("id: {} is not a group", id));
    return StructuredResult({{"members", members}});
}

// Item ids, which the descriptions name as "ids".
TJSON IdsProp(std::int64_t aMinItems) {
    return {{"type", "array"}, {"items", {{"type", "integer"}}}, {"minItems", aMinItems}};
}

}  // namespace

// [SECTION] Registration

void RegisterBatchTools(TToolRegistry& aRegistry) {
    const std::shared_ptr<TToolCreators> creators = aRegistry.Creators();
    std::vector<std::string_view> kinds;
    for (const auto& [kind, creator] : *creators)
        if (kind != "layer" && kind != "shape") kinds.push_back(kind);
    kinds.insert(kinds.end(), ShapeKindNames().begin(), ShapeKindNames().end());
    TJSON entry = {{"type", "object"},
                   {"properties",
                    {{"kind", EnumProp("", kinds)},
                     {"key", StringProp("")},
                     {"from_key", StringProp("")},
                     {"to_key", StringProp("")}}},
                   {"required", {"kind"}}};
    const TJSON entries = {{"type", "array"}, {"minItems", 1}, {"items", std::move(entry)}};
    aRegistry.Add(
        "add_items",
        "Add many items in one undo step, all or nothing. An entry holds add_flow, add_link or "
        "add_shape arguments, kind (flow, link or a shape kind) and an optional key naming it; "
        "links may use from_key, to_key. Returns items and ids (key -> id).",
        ObjectSchema({{"items", entries}}, {"items"}),
        [creators](TORXBaseLabel& aDoc, const TJSON& aArgs) { return AddItems(*creators, aDoc, aArgs); },
        ObjectResultSchema());
    aRegistry.Add(
        "align_items",
        "Align items to the first of ids: edges, center (same horizontal centre) or middle (same "
        "vertical centre).",
        ObjectSchema({{"ids", IdsProp(2)}, {"align", EnumProp("", AlignNames())}}, {"ids", "align"}),
        AlignItems, ObjectResultSchema());
    aRegistry.Add("distribute_items",
                  "Space items out horizontally or vertically: gap apart, else evenly between the outermost "
                  "two.",
                  ObjectSchema({{"ids", IdsProp(2)},
                                {"direction", EnumProp("", {"horizontal", "vertical"})},
                                {"gap", NumberProp("")}},
                               {"ids", "direction"}),
                  DistributeItems, ObjectResultSchema());
    aRegistry.Add(
        "duplicate_items",
        "Copy items, with links whose ends are both copied, offset by dx, dy (10 mm). Returns them "
        "and copies (id -> copy id).",
        ObjectSchema({{"ids", IdsProp(1)}, {"dx", NumberProp("")}, {"dy", NumberProp("")}}, {"ids"}),
        DuplicateItems, ObjectResultSchema());
    aRegistry.Add("group_items",
                  "Put items in a titled frame behind them that moves, copies and deletes with them; lists "
                  "nest it.",
                  ObjectSchema({{"ids", IdsProp(1)}, {"title", StringProp("")}}, {"ids"}), GroupItems,
                  ObjectResultSchema());
    aRegistry.Add("ungroup_items", "Remove a group's frame; its members stay.",
                  ObjectSchema({{"id", IntegerProp("", 1, INT32_MAX)}}, {"id"}), UngroupItems,
                  ObjectResultSchema());
}

}  // namespace Orvex::Host
