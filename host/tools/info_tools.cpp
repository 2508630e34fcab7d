// Tools that read the drawing (get_drawing_info, list_items, get_item, list_layers) and setup_drawing.
#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "host/tools/item_view.h"
#include "host/tools/tool_args.h"
#include "host/tools/tool_registry.h"
#include "host/tools/tool_schema.h"
#include "orvex/core/paper.h"
#include "orvex/core/text.h"
#include "orvex/document/document.h"
#include "orvex/formats/drawing_file.h"
#include "orvex/io/json_utils.h"

namespace Orvex::Host {

namespace {

constexpr std::int64_t kDefaultPageItems = 50;
constexpr std::int64_t kMaxPageItems = 500;
constexpr std::size_t kTextPreviewChars = 80;

const std::vector<std::string_view>& ModeNames() {
    static const std::vector<std::string_view> names{"labelling", "flowchart", "drawing"};
    return names;
}

const std::vector<std::string_view>& UnitNames() {
    static const std::vector<std::string_view> names{"mm", "inch", "cm", "dm", "m", "ft", "yd"};
    return names;
}

// The named paper the page matches, either way round, else "User": a stored paper name may no longer
// describe a page whose size was set on its own.
std::string PaperName(const TORXMeasure& aMeasure) {
    float w = 0;
    float h = 0;
    if (GetPaperSize(aMeasure.fPaperName, w, h) >= 0) {
        const std::int64_t bw = SetBaseValue(w);
        const std::int64_t bh = SetBaseValue(h);
        if ((bw == aMeasure.fLabelWidth && bh == aMeasure.fLabelHeight) ||
            (bw == aMeasure.fLabelHeight && bh == aMeasure.fLabelWidth))
            return aMeasure.fPaperName;
    }
    return "User";
}

TJSON DrawingInfo(const TORXBaseLabel& aDoc) {
    const TORXMeasure& m = aDoc.Measure();
    TJSON info = {{"units", UnitName(aDoc.Units())},
                  {"editor_mode", EditorModeName(aDoc.EditorMode())},
                  {"items_count", aDoc.GetItemsCount()},
                  {"layers_count", aDoc.GetLayersCount()},
                  {"selection_count", aDoc.Selection().size()},
                  {"paper",
                   {{"name", PaperName(m)},
                    {"width", ToUnit(aDoc, m.fLabelWidth)},
                    {"height", ToUnit(aDoc, m.fLabelHeight)}}},
                  {"draw_scale", m.fDrawScale},
                  {"active_layer", aDoc.LayerIdx(aDoc.GetActiveLayer()) + 1},
                  {"can_undo", !aDoc.IsUndoEmpty()},
                  {"can_redo", !aDoc.IsRedoEmpty()}};
    const TQVLRect bounds = aDoc.ItemsBounds();
    if (aDoc.GetItemsCount() > 0)
        info["items_bounds"] = {{"x", ToUnit(aDoc, bounds.Left)},
                                {"y", ToUnit(aDoc, bounds.Top)},
                                {"width", ToUnit(aDoc, bounds.Right - bounds.Left)},
                                {"height", ToUnit(aDoc, bounds.Bottom - bounds.Top)}};
    return info;
}

// The item's text when its kind has one, shortened so that a list stays small, and a link's ends.
void AddListDetails(const TORXBaseItem& aItem, const TJSON& aFileForm, TJSON& aSummary) {
    if (aItem.ItemType() == TQVLItemType::itLink) {
        aSummary["from_id"] = aFileForm.value("FromID", 0);
        aSummary["to_id"] = aFileForm.value("ToID", 0);
    }
    std::string text = ItemText(aFileForm);
    if (text.empty()) return;
    if (text.size() > kTextPreviewChars) {
        std::size_t cut = kTextPreviewChars;
        while (cut > 0 && (static_cast<unsigned char>(text[cut]) & 0xC0) == 0x80) --cut;  // whole characters
        text = text.substr(0, cut) + "...";
    }
    aSummary["text"] = std::move(text);
}

TJSON ListItems(TORXBaseLabel& aDoc, const TJSON& aArgs) {
    const std::int64_t offset = aArgs.value("offset", std::int64_t{0});
    const std::int64_t limit = aArgs.value("limit", kDefaultPageItems);
    const TORXLayer* layer = aArgs.contains("layer") ? ResolveLayer(aDoc, aArgs, "layer") : nullptr;
    const std::int32_t kind =
        aArgs.contains("kind") ? EnumIndex(KindNames(), aArgs["kind"].get<std::string>()) : -1;
    const std::string search = ToLowerAscii(aArgs.value("text", std::string()));
    TJSON items = TJSON::array();
    std::int64_t matched = 0;
    for (std::int32_t i = 0; i < aDoc.GetItemsCount(); ++i) {
        const TORXBaseItem& item = *aDoc.GetItem(i);
        if (layer != nullptr && item.Layer() != layer) continue;
        if (kind >= 0 && static_cast<std::int32_t>(item.ItemType()) != kind) continue;
        const bool listed = matched >= offset && matched < offset + limit;
        if (search.empty() && !listed) {
            ++matched;
            continue;
        }
        const TJSON file = item.WriteJson();
        // Case is ignored for ASCII letters; the name counts as well as the text.
        if (!search.empty() && ToLowerAscii(ItemText(file)).find(search) == std::string::npos &&
            ToLowerAscii(item.ID()).find(search) == std::string::npos)
            continue;
        if (listed) {
            TJSON summary = ItemSummary(aDoc, item);
            AddListDetails(item, file, summary);
            items.push_back(std::move(summary));
        }
        ++matched;
    }
    TJSON result = {{"items", std::move(items)}, {"total", matched}, {"offset", offset}};
    result["next_offset"] = offset + limit < matched ? TJSON(offset + limit) : TJSON(nullptr);
    return StructuredResult(std::move(result));
}

TJSON GetItem(TORXBaseLabel& aDoc, const TJSON& aArgs) {
    TJSON selector = aArgs;
    selector.erase("raw");
    const TORXBaseItem& item = *ResolveItem(aDoc, selector);
    TJSON result = ItemSummary(aDoc, item);
    result["properties"] = aArgs.value("raw", false) ? item.WriteJson() : ItemProperties(aDoc, item);
    return StructuredResult(std::move(result));
}

TJSON ListLayers(TORXBaseLabel& aDoc, const TJSON&) {
    std::vector<std::int64_t> counts(static_cast<std::size_t>(aDoc.GetLayersCount()), 0);
    for (std::int32_t i = 0; i < aDoc.GetItemsCount(); ++i) {
        const std::int32_t at = aDoc.LayerIdx(aDoc.GetItem(i)->Layer());
        if (at >= 0) ++counts[static_cast<std::size_t>(at)];
    }
    const TORXLayer* active = aDoc.GetActiveLayer();
    TJSON layers = TJSON::array();
    for (std::int32_t i = 1; i <= aDoc.GetLayersCount(); ++i) {
        const TORXLayer& layer = *aDoc.GetLayer(i);
        layers.push_back({{"index", i},
                          {"name", layer.fName},
                          {"items_count", counts[static_cast<std::size_t>(i - 1)]},
                          {"visible", layer.fOptions.Contains(TQVLayerOp::lopVisible)},
                          {"printable", layer.fOptions.Contains(TQVLayerOp::lopPrint)},
                          {"selectable", layer.fOptions.Contains(TQVLayerOp::lopSelectable)},
                          {"exportable", layer.fOptions.Contains(TQVLayerOp::lopExport)},
                          {"color", ToolColorText(layer.fColor)},
                          {"active", &layer == active}});
    }
    return StructuredResult({{"layers", std::move(layers)}});
}

TJSON SetupDrawing(TORXBaseLabel& aDoc, const TJSON& aArgs) {
    const auto mode =
        aArgs.contains("mode")
            ? static_cast<TQVLEditorMode>(EnumIndex(ModeNames(), aArgs["mode"].get<std::string>()))
            : aDoc.EditorMode();
    const auto units = aArgs.contains("units")
                           ? static_cast<TQVLUnits>(EnumIndex(UnitNames(), aArgs["units"].get<std::string>()))
                           : aDoc.Units();
    const bool drawing = mode == TQVLEditorMode::emDrawing;
    const bool longUnits = units != TQVLUnits::unMM && units != TQVLUnits::unINCH && units != TQVLUnits::unCM;
    if (longUnits && !drawing)
        throw EToolArgument(
            fmt::format("units \"{}\" are only available in drawing mode; use mm, inch or cm, or set "
                        "mode \"drawing\"",
                        UnitName(units)));
    if (aArgs.contains("draw_scale") && !drawing)
        throw EToolArgument("draw_scale applies to drawing mode only; set mode \"drawing\" as well");
    if (aArgs.contains("paper") && (aArgs.contains("width") || aArgs.contains("height")))
        throw EToolArgument("give either \"paper\" or \"width\" and \"height\", not both");
    if (aArgs.contains("landscape") && !aArgs.contains("paper"))
        throw EToolArgument("\"landscape\" applies to a named \"paper\" only");

    // Page sizes are given in the units this call leaves the drawing in.
    const auto sizeIn = [&](std::string_view aKey) {
        const double value = aArgs[std::string(aKey)].get<double>();
        const double limit = kMaxBaseCoordinate / static_cast<double>(UnitFactor(units));
        const std::int64_t base = TJSONUtils::UnitToBase(value, units);
        if (!(value > 0) || value > limit || base <= 0)
            throw EToolArgument(fmt::format("argument \"{}\" must be greater than 0 and at most {:g} {}",
                                            aKey, limit, UnitName(units)));
        return base;
    };
    std::int64_t width = aDoc.Measure().fLabelWidth;
    std::int64_t height = aDoc.Measure().fLabelHeight;
    std::string paperName = aDoc.Measure().fPaperName;
    std::int32_t paperCode = aDoc.Measure().fPaperSize;
    if (aArgs.contains("paper")) {
        float w = 0;
        float h = 0;
        const auto& name = aArgs["paper"].get_ref<const std::string&>();
        const std::int32_t code = GetPaperSize(name, w, h);
        if (code < 0 || w <= 0 || h <= 0) {
            std::string known;
            for (const auto& paper : PaperSizes())
                if (paper.Width > 0) known += (known.empty() ? "" : ", ") + std::string(paper.Name);
            throw EToolArgument(fmt::format("unknown paper \"{}\"; known papers: {}", name, known));
        }
        width = SetBaseValue(w);
        height = SetBaseValue(h);
        if (aArgs.value("landscape", false) != (width > height)) std::swap(width, height);
        paperCode = code;
        for (const auto& paper : PaperSizes())
            if (SameTextIgnoringCase(paper.Name, name)) paperName = std::string(paper.Name);
    }
    if (aArgs.contains("width") || aArgs.contains("height")) {
        if (aArgs.contains("width")) width = sizeIn("width");
        if (aArgs.contains("height")) height = sizeIn("height");
        paperName = "User";
        paperCode = PaperSizes()[static_cast<std::size_t>(UserPaperIndex())].Code;
    }

    aDoc.SetEditorMode(mode);
    aDoc.SetUnits(units);
    TORXMeasure& m = aDoc.Measure();
    if (aArgs.contains("draw_scale")) m.fDrawScale = aArgs["draw_scale"].get<std::int64_t>();
    if (width != m.fLabelWidth || height != m.fLabelHeight || paperName != m.fPaperName) {
        m.fLabelWidth = width;
        m.fLabelHeight = height;
        m.fPaperName = paperName;
        m.fPaperSize = paperCode;
    }
    aDoc.ChangeState(TOrvexState::lsUpdateMeasure);
    return StructuredResult(DrawingInfo(aDoc));
}

}  // namespace

void RegisterInfoTools(TToolRegistry& aRegistry) {
    aRegistry.Add(
        "get_drawing_info",
        "Units, editor mode, item and layer counts, page, draw_scale (1:N), active layer, undo and "
        "redo state, the items' bounds.",
        ObjectSchema({}),
        [](TORXBaseLabel& aDoc, const TJSON&) { return StructuredResult(DrawingInfo(aDoc)); }, nullptr);
    aRegistry.Add("list_items",
                  "Items in paint order, paged (offset 0, limit 50): index, name, id, kind, layer, bounds, "
                  "text; links add from_id, to_id. Filter by layer, kind, text (in text or name, any case). "
                  "next_offset is null at the end.",
                  ObjectSchema({{"offset", IntegerProp("", 0, INT32_MAX)},
                                {"limit", IntegerProp("", 1, kMaxPageItems)},
                                {"layer", IntegerProp("", 1, INT32_MAX)},
                                {"kind", EnumProp("", KindNames())},
                                {"text", StringProp("")}}),
                  ListItems, nullptr);
    aRegistry.Add("get_item",
                  "One item (exactly one of index from 0, name in any case, or id), properties named as add_ "
                  "and modify_item take them; raw: the file form.",
                  WithOneOf(WithProperties(ItemSelector(), {{"raw", BoolProp("")}}), {"index", "name", "id"}),
                  GetItem, nullptr);
    aRegistry.Add("list_layers",
                  "The layers: index (from 1), name, item count, flags, colour, and which is active (gets "
                  "new items).",
                  ObjectSchema({}), ListLayers, nullptr);
    aRegistry.Add("setup_drawing",
                  "Set the mode, units of all coordinates (dm, m, ft, yd: drawing mode only), draw_scale N "
                  "(1:N, drawing mode) and page: named paper (A4, Letter...; landscape turns it) or width "
                  "and height. Items keep their size.",
                  ObjectSchema({{"mode", EnumProp("", ModeNames())},
                                {"units", EnumProp("", UnitNames())},
                                {"draw_scale", IntegerProp("", 1, 1000000)},
                                {"paper", StringProp("")},
                                {"landscape", BoolProp("")},
                                {"width", NumberProp("")},
                                {"height", NumberProp("")}}),
                  SetupDrawing, ObjectResultSchema());
}

}  // namespace Orvex::Host
