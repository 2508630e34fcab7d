// modify_item and delete_item: change or remove one item, named by index, name or internal id, as one
// undoable step.
#include <fmt/format.h>

#include <algorithm>

#include "host/tools/item_build.h"
#include "host/tools/tool_args.h"
#include "host/tools/tool_registry.h"
#include "host/tools/tool_schema.h"
#include "orvex/document/document.h"
#include "orvex/document/headless.h"
#include "orvex/io/json_utils.h"

namespace Orvex::Host {

namespace {

bool HasText(TQVLItemType aType) {
    switch (aType) {
        case TQVLItemType::itFlow:
        case TQVLItemType::itText:
        case TQVLItemType::itPara:
        case TQVLItemType::itRichText:
        case TQVLItemType::itArrowLine:
        case TQVLItemType::itDim:
            return true;
        default:
            return false;
    }
}

bool HasTerminators(TQVLItemType aType) {
    return aType == TQVLItemType::itPolyLine || aType == TQVLItemType::itArc ||
           aType == TQVLItemType::itArrowLine || aType == TQVLItemType::itBezier ||
           aType == TQVLItemType::itLink;
}

std::string KindOf(const TORXBaseItem& aItem) {
    return std::string(KindNames()[static_cast<std::size_t>(aItem.ItemType())]);
}

void Refuse(const TORXBaseItem& aItem, std::string_view aKey, std::string_view aApplies) {
    throw EToolArgument(
        fmt::format("argument \"{}\" applies to {}; {} is a {}", aKey, aApplies, aItem.ID(), KindOf(aItem)));
}

// The item's points after a move (x, y or dx, dy), a resize (width, height) or a replacement (points).
std::vector<TQVLPto64> NewPoints(const TORXBaseLabel& aDoc, const TORXBaseItem& aItem, const TJSON& aArgs) {
    std::vector<TQVLPto64> points;
    for (const auto& p : aItem.Points()) points.push_back({p.X, p.Y});
    const TQVLItemType type = aItem.ItemType();
    if (aArgs.contains("points")) {
        points = PointsArg(aDoc, aArgs, "points");
        const std::size_t minimum = type == TQVLItemType::itPolygon  ? 3
                                    : type == TQVLItemType::itBezier ? 4
                                                                     : 2;
        if (IsPointListKind(type) ? points.size() < minimum : points.size() != aItem.Points().size())
            throw EToolArgument(IsPointListKind(type)
                                    ? fmt::format("a {} needs at least {} points, got {}", KindOf(aItem),
                                                  minimum, points.size())
                                    : fmt::format("{} has {} points; give exactly that many, got {}",
                                                  aItem.ID(), aItem.Points().size(), points.size()));
    }
    const bool moveTo = aArgs.contains("x") || aArgs.contains("y");
    const bool moveBy = aArgs.contains("dx") || aArgs.contains("dy");
    if (moveTo && moveBy)
        throw EToolArgument("give either x and y (move to) or dx and dy (move by), not both");
    if ((moveTo || moveBy) && aArgs.contains("points"))
        throw EToolArgument("give either points or a move, not both");
    std::int64_t dx = aArgs.contains("dx") ? Length(aDoc, aArgs, "dx") : 0;
    std::int64_t dy = aArgs.contains("dy") ? Length(aDoc, aArgs, "dy") : 0;
    const TQVLRect& bounds = aItem.BoundsRect();
    if (aArgs.contains("x")) dx = Length(aDoc, aArgs, "x") - bounds.Left;
    if (aArgs.contains("y")) dy = Length(aDoc, aArgs, "y") - bounds.Top;
    for (auto& p : points) p.X += dx, p.Y += dy;
    if (aArgs.contains("width") || aArgs.contains("height")) {
        if (!IsBoxKind(type) || points.size() < 2)
            Refuse(aItem, "width", "box items (flow, rectangle, text...)");
        const std::int64_t left = std::min(points[0].X, points[1].X);
        const std::int64_t top = std::min(points[0].Y, points[1].Y);
        const std::int64_t w =
            aArgs.contains("width") ? Size(aDoc, aArgs, "width") : std::abs(points[1].X - points[0].X);
        const std::int64_t h =
            aArgs.contains("height") ? Size(aDoc, aArgs, "height") : std::abs(points[1].Y - points[0].Y);
        points[0] = {left, top};
        points[1] = {left + w, top + h};
    }
    for (const auto& p : points)
        if (std::abs(static_cast<double>(p.X)) > kMaxBaseCoordinate ||
            std::abs(static_cast<double>(p.Y)) > kMaxBaseCoordinate)
            throw EToolArgument("the change moves the item out of the drawing's range");
    return points;
}

TJSON ModifyItem(TORXBaseLabel& aDoc, const TJSON& aArgs) {
    TORXBaseItem& item = *ResolveItem(aDoc, aArgs);
    const TQVLItemType type = item.ItemType();
    TJSON common = aArgs;
    common.erase("name");
    if (aArgs.contains("new_name")) common["name"] = aArgs["new_name"];
    TJSON keys = CommonItemKeys(aDoc, common, &item);
    const TJSON current = item.WriteJson();
    if (aArgs.contains("line_type") && !current.contains("LineType"))
        Refuse(item, "line_type", "lines, shapes and flow elements");
    if (aArgs.contains("text")) {
        if (!HasText(type)) Refuse(item, "text", "flow elements, texts, arrow lines and dimensions");
        keys[type == TQVLItemType::itRichText ? "RichText" : "Text"] = aArgs["text"];
    }
    if (aArgs.contains("fill_color") || aArgs.contains("filled")) {
        if (!current.contains("Filled"))
            Refuse(item, aArgs.contains("filled") ? "filled" : "fill_color",
                   "closed shapes and flow elements");
        if (aArgs.contains("fill_color"))
            keys["BackColor"] = TJSONUtils::SetAlphaColor(
                ParseToolColor(aArgs["fill_color"].get<std::string>(), "fill_color"));
        keys["Filled"] = aArgs.value("filled", true);
    }
    if (aArgs.contains("shape")) {
        if (type != TQVLItemType::itFlow) Refuse(item, "shape", "flow elements");
        keys["FlowType"] = EnumIndex(FlowTypeNames(), aArgs["shape"].get<std::string>());
    }
    if (aArgs.contains("link_type")) {
        if (type != TQVLItemType::itLink) Refuse(item, "link_type", "links");
        keys["LinkType"] = EnumIndex(LinkTypeNames(), aArgs["link_type"].get<std::string>());
    }
    for (const auto* end : {"start", "end"})
        if (aArgs.contains(end)) {
            if (!HasTerminators(type)) Refuse(item, end, "open lines, Bézier curves and links");
            keys[std::string_view(end) == "start" ? "FromType" : "ToType"] =
                EnumIndex(TerminatorNames(), aArgs[end].get<std::string>());
        }
    const bool geometry = aArgs.contains("x") || aArgs.contains("y") || aArgs.contains("dx") ||
                          aArgs.contains("dy") || aArgs.contains("width") || aArgs.contains("height") ||
                          aArgs.contains("points");
    if (geometry && type == TQVLItemType::itLink)
        throw EToolArgument(
            fmt::format("{} is a link, which follows the elements it joins; move those instead", item.ID()));
    if (geometry) keys["Points"] = PointsKeys(aDoc, NewPoints(aDoc, item, aArgs));
    if (keys.empty()) throw EToolArgument("nothing to change: give at least one property");
    ChangeItemKeys(item, keys);
    return StructuredResult(ItemSummary(aDoc, item));
}

TJSON DeleteItem(TORXBaseLabel& aDoc, const TJSON& aArgs) {
    TORXBaseItem* item = ResolveItem(aDoc, aArgs);
    // A container goes with its members; a link without its element would dangle: all of them go in the
    // same undo step, the links and members before the frames that hold them.
    std::vector<TORXBaseItem*> doomed = aDoc.WithMembers({item});
    for (std::size_t i = 0, n = doomed.size(); i < n; ++i) {
        if (doomed[i]->ItemType() != TQVLItemType::itFlow) continue;
        for (TORXBaseItem* link : LinksOf(aDoc, doomed[i]->InID()))
            if (std::find(doomed.begin(), doomed.end(), link) == doomed.end()) doomed.push_back(link);
    }

    TJSON names = TJSON::array();
    {
        const TORXBaseLabel::TUndoGroup group(aDoc);
        aDoc.ClearSelection(false);
        for (const TORXBaseItem* victim : doomed) names.push_back(victim->ID());
        for (auto it = doomed.rbegin(); it != doomed.rend(); ++it) aDoc.DeleteItem(*it, true);
    }
    return StructuredResult({{"deleted", std::move(names)}, {"items_count", aDoc.GetItemsCount()}});
}

TJSON Selector() {
    return ObjectSchema({{"index", IntegerProp("Zero-based item index.", 0, INT32_MAX)},
                         {"name", StringProp("Item name (case ignored).")},
                         {"id", IntegerProp("Internal id, as the add_ tools return it.", 1, INT32_MAX)}});
}

}  // namespace

void RegisterItemEditTools(TToolRegistry& aRegistry) {
    aRegistry.Add(
        "modify_item",
        "Change one item, named by exactly one of index, name or id. Only the given properties change; the "
        "change "
        "undoes as one step. Move with x, y (new top-left of its bounds) or dx, dy; resize box items with "
        "width and "
        "height; replace the points of lines and polygons with points. Lengths are in the drawing's units. "
        "Returns "
        "the item's name, id, index and bounds.",
        WithProperties(Selector(),
                       {{"new_name", StringProp("New unique name.")},
                        {"layer", IntegerProp("Move to this one-based layer.", 1, INT16_MAX)},
                        {"color", ColorProp("Line (outline) colour.")},
                        {"pen_width", NumberProp("Line width in the drawing's units.")},
                        {"line_type", EnumProp("Dash pattern.", LineTypeNames())},
                        {"fill_color", ColorProp("Fill colour (turns the fill on).")},
                        {"filled", BoolProp("Turn the fill on or off.")},
                        {"text", StringProp("New text (flow elements, texts, arrow lines, dimensions).")},
                        {"shape", EnumProp("New shape of a flow element.", FlowTypeNames())},
                        {"link_type", EnumProp("New course of a link.", LinkTypeNames())},
                        {"start", EnumProp("Terminator at the first point.", TerminatorNames())},
                        {"end", EnumProp("Terminator at the last point.", TerminatorNames())},
                        {"x", NumberProp("New left edge of the bounds.")},
                        {"y", NumberProp("New top edge of the bounds.")},
                        {"dx", NumberProp("Move right by this much (negative: left).")},
                        {"dy", NumberProp("Move down by this much (negative: up).")},
                        {"width", NumberProp("New width of a box item.")},
                        {"height", NumberProp("New height of a box item.")},
                        {"points", PointsProp("All points anew.", 2)}}),
        ModifyItem);
    aRegistry.Add(
        "delete_item",
        "Delete one item, named by exactly one of index, name or id. Deleting a flow element also deletes "
        "the links attached to it. Undo brings everything back. Returns the deleted names.",
        Selector(), DeleteItem);
}

}  // namespace Orvex::Host
