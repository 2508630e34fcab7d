#include "host/tools/tool_args.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "orvex/core/text.h"
#include "orvex/document/document.h"
#include "orvex/formats/drawing_file.h"
#include "orvex/io/json_utils.h"

namespace Orvex::Host {

namespace {

double UnitFactorOf(const TORXBaseLabel& aDoc) {
    return static_cast<double>(UnitFactor(aDoc.Units()));
}

}  // namespace

std::int64_t Length(const TORXBaseLabel& aDoc, const TJSON& aArgs, std::string_view aKey) {
    const double value = aArgs.at(std::string(aKey)).get<double>();
    const double limit = kMaxBaseCoordinate / UnitFactorOf(aDoc);
    if (!std::isfinite(value) || std::fabs(value) > limit)
        throw EToolArgument(fmt::format("argument \"{}\" must lie between -{:g} and {:g} {}", aKey, limit,
                                        limit, UnitName(aDoc.Units())));
    return TJSONUtils::UnitToBase(value, aDoc.Units());
}

std::int64_t Size(const TORXBaseLabel& aDoc, const TJSON& aArgs, std::string_view aKey) {
    const std::int64_t base = Length(aDoc, aArgs, aKey);
    if (base <= 0)
        throw EToolArgument(
            fmt::format("argument \"{}\" must be greater than 0 {}", aKey, UnitName(aDoc.Units())));
    return base;
}

double ToUnit(const TORXBaseLabel& aDoc, std::int64_t aBase) {
    return TJSONUtils::BaseToUnit(aBase, aDoc.Units());
}

std::string UnitName(TQVLUnits aUnit) {
    return std::string(SymUnit(aUnit, false));
}

TAlphaColor ParseToolColor(std::string_view aText, std::string_view aKey) {
    const bool hex = (aText.size() == 7 || aText.size() == 9) && aText.front() == '#' &&
                     std::all_of(aText.begin() + 1, aText.end(),
                                 [](char c) { return std::isxdigit(static_cast<unsigned char>(c)) != 0; });
    if (!hex)
        throw EToolArgument(fmt::format(
            "argument \"{}\" must be a colour \"#RRGGBB\" or \"#AARRGGBB\"; got \"{}\"", aKey, aText));
    return HexToTAlphaColor(aText);
}

std::string ToolColorText(TAlphaColor aColor) {
    if (AlphaOf(aColor) == 0xFF) return fmt::format("#{:06X}", aColor & 0xFFFFFFu);
    return fmt::format("#{:08X}", aColor);
}

TORXBaseItem* ItemByInID(const TORXBaseLabel& aDoc, std::int32_t aInID) {
    for (std::int32_t i = 0; i < aDoc.GetItemsCount(); ++i)
        if (aDoc.GetItem(i)->InID() == aInID) return aDoc.GetItem(i);
    return nullptr;
}

TORXBaseItem* ResolveItem(TORXBaseLabel& aDoc, const TJSON& aArgs) {
    const int given = static_cast<int>(aArgs.contains("index")) + static_cast<int>(aArgs.contains("name")) +
                      static_cast<int>(aArgs.contains("id"));
    if (given != 1) throw EToolArgument("name the item with exactly one of \"index\", \"name\" or \"id\"");
    if (aArgs.contains("index")) {
        const auto index = aArgs["index"].get<std::int64_t>();
        if (index < 0 || index >= aDoc.GetItemsCount())
            throw EToolArgument(aDoc.GetItemsCount() == 0
                                    ? fmt::format("no item at index {}: the drawing has no items", index)
                                    : fmt::format("no item at index {}: indexes run from 0 to {}", index,
                                                  aDoc.GetItemsCount() - 1));
        return aDoc.GetItem(static_cast<std::int32_t>(index));
    }
    if (aArgs.contains("name")) {
        const auto& name = aArgs["name"].get_ref<const std::string&>();
        for (std::int32_t i = 0; i < aDoc.GetItemsCount(); ++i)
            if (SameTextIgnoringCase(aDoc.GetItem(i)->ID(), name)) return aDoc.GetItem(i);
        throw EToolArgument(fmt::format("no item is named \"{}\"", name));
    }
    const auto id = aArgs["id"].get<std::int64_t>();
    TORXBaseItem* item =
        id > 0 && id <= INT32_MAX ? ItemByInID(aDoc, static_cast<std::int32_t>(id)) : nullptr;
    if (item == nullptr) throw EToolArgument(fmt::format("no item has the id {}", id));
    return item;
}

TORXLayer* ResolveLayer(TORXBaseLabel& aDoc, const TJSON& aArgs, std::string_view aKey) {
    const auto index = aArgs.at(std::string(aKey)).get<std::int64_t>();
    if (index < 1 || index > aDoc.GetLayersCount())
        throw EToolArgument(
            fmt::format("no layer {}: layers are numbered from 1 to {}", index, aDoc.GetLayersCount()));
    return aDoc.GetLayer(static_cast<std::int32_t>(index));
}

TJSON StructuredResult(TJSON aValue) {
    TJSON result = {{"content", TJSON::array({{{"type", "text"}, {"text", aValue.dump()}}})}};
    result["structuredContent"] = std::move(aValue);
    return result;
}

TJSON ErrorResult(std::string_view aMessage, TJSON aStructured) {
    TJSON result = {
        {"content", TJSON::array({{{"type", "text"}, {"text", fmt::format("Error: {}", aMessage)}}})},
        {"isError", true}};
    if (!aStructured.is_null()) result["structuredContent"] = std::move(aStructured);
    return result;
}

TJSON ItemSummary(const TORXBaseLabel& aDoc, const TORXBaseItem& aItem) {
    const TQVLRect& r = aItem.BoundsRect();
    TJSON summary = {{"index", aDoc.ItemIndex(&aItem)},
                     {"name", aItem.ID()},
                     {"id", aItem.InID()},
                     {"kind", KindNames()[static_cast<std::size_t>(aItem.ItemType())]},
                     {"layer", aDoc.LayerIdx(aItem.Layer()) + 1},
                     {"x", ToUnit(aDoc, r.Left)},
                     {"y", ToUnit(aDoc, r.Top)},
                     {"width", ToUnit(aDoc, r.Right - r.Left)},
                     {"height", ToUnit(aDoc, r.Bottom - r.Top)}};
    return summary;
}

const std::vector<std::string_view>& KindNames() {
    static const std::vector<std::string_view> names{
        "undefined", "point",   "line",      "arrow_line", "polyline", "arc",      "rectangle",  "polygon",
        "circle",    "ellipse", "text",      "paragraph",  "barcode",  "pdf417",   "datamatrix", "qrcode",
        "image",     "flow",    "link",      "table",      "polytext", "rank",     "nutriscore", "level",
        "symbol",    "bezier",  "dimension", "sector",     "package",  "rich_text"};
    return names;
}

const std::vector<std::string_view>& FlowTypeNames() {
    static const std::vector<std::string_view> names{
        "terminator",  "process",  "document",   "multi_document", "decision",
        "data",        "database", "predefined", "manual_input",   "manual_operation",
        "preparation", "ellipse",  "start",      "step",           "end"};
    return names;
}

const std::vector<std::string_view>& LinkTypeNames() {
    static const std::vector<std::string_view> names{
        "direct",   "left_right_top_bottom", "top_bottom_left_right", "step", "arc", "curve",
        "polyline", "round_corner"};
    return names;
}

const std::vector<std::string_view>& LineTypeNames() {
    // Dash patterns named by their on-off lengths, in pen widths.
    static const std::vector<std::string_view> names{"solid",    "dot",      "dash_1_1", "dash_2_1",
                                                     "dash_1_2", "dash_2_2", "dash_3_1", "dash_3_3",
                                                     "dash_4_1", "dash_4_2", "dash_4_4", "dash_4_1_1"};
    return names;
}

const std::vector<std::string_view>& TerminatorNames() {
    static const std::vector<std::string_view> names{
        "none",        "circle",  "fill_circle",  "arrow",         "fill_arrow",     "square",
        "fill_square", "rhombus", "fill_rhombus", "left_diagonal", "right_diagonal", "cross"};
    return names;
}

std::int32_t EnumIndex(const std::vector<std::string_view>& aNames, std::string_view aValue) {
    const auto it = std::find(aNames.begin(), aNames.end(), aValue);
    return it == aNames.end() ? -1 : static_cast<std::int32_t>(it - aNames.begin());
}

}  // namespace Orvex::Host
