// modify_item and delete_item: change or remove one item, named by index, name or internal id, as one
// undoable step.
#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "host/layout/diagram_loader.h"
#include "host/layout/layout_types.h"
#include "host/tools/caption_fit.h"
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

// Font properties, nested under "Font" (flow elements, rich text) or flat beside the text (texts,
// paragraphs, arrow lines), as the kind keeps them.
void FontChanges(const TORXBaseLabel& aDoc, const TORXBaseItem& aItem, const TJSON& aCurrent,
                 const TJSON& aArgs, TJSON& aKeys) {
    TJSON font = TJSON::object();
    if (aArgs.contains("font")) font["Name"] = aArgs["font"];
    for (const auto& [arg, key] :
         {std::pair{"bold", "Bold"}, {"italic", "Italic"}, {"underline", "Underline"}})
        if (aArgs.contains(arg)) font[key] = aArgs[arg];
    if (aArgs.contains("font_height")) {
        const std::int64_t height = Size(aDoc, aArgs, "font_height");
        if (height > 500 * kBasePerMM)
            throw EToolArgument(fmt::format("argument \"font_height\" must be at most {:g} {}",
                                            ToUnit(aDoc, 500 * kBasePerMM), UnitName(aDoc.Units())));
        font["FontHeight"] = TJSONUtils::BaseToMM(height);
    }
    if (aArgs.contains("text_color"))
        font["FontColor"] =
            TJSONUtils::SetAlphaColor(ParseToolColor(aArgs["text_color"].get<std::string>(), "text_color"));
    if (font.empty()) return;
    const auto it = aCurrent.find("Font");
    if (it == aCurrent.end())
        Refuse(aItem, font.begin().key() == "Name" ? "font" : "font_height", "items with text");
    if (it->is_object()) {
        aKeys["Font"] = std::move(font);
        return;
    }
    for (const auto& [key, value] : font.items()) aKeys[key == "Name" ? "Font" : key] = value;
}

// A caption that no longer fits its flow element grows the element about its centre, so that links keep
// their sides and nothing is cut off. True when it grew.
bool GrowToCaption(TORXBaseLabel& aDoc, TORXBaseItem& aItem) {
    if (aItem.ItemType() != TQVLItemType::itFlow) return false;
    const TCaptionRoom room = FlowCaptionRoom(aItem);
    if (room.Fits()) return false;
    const TQVLRect b = aItem.BoundsRect();
    const std::int64_t w = std::max(room.NeededWidth, b.GetWidth());
    const std::int64_t h = std::max(room.NeededHeight, b.GetHeight());
    // About the centre, but not past the page's top or left edge when it stood inside them.
    const std::int64_t left = std::max(b.Left - (w - b.GetWidth()) / 2, std::min<std::int64_t>(b.Left, 0));
    const std::int64_t top = std::max(b.Top - (h - b.GetHeight()) / 2, std::min<std::int64_t>(b.Top, 0));
    ChangeItemKeys(aItem, {{"Points", PointsKeys(aDoc, {{left, top}, {left + w, top + h}})}});
    return true;
}

void ChangeZOrder(TORXBaseLabel& aDoc, TORXBaseItem& aItem, std::string_view aOrder) {
    aDoc.ClearSelection(false);
    aDoc.SelectItem(&aItem, false);
    if (aOrder == "bring_to_front")
        aDoc.BringToFront();
    else
        aDoc.SendToBack();
    aDoc.ClearSelection(false);
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
    if (aArgs.contains("label")) {
        if (type != TQVLItemType::itLink) Refuse(item, "label", "links");
        keys["Label"] = aArgs["label"];
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
    FontChanges(aDoc, item, current, aArgs, keys);
    if (aArgs.contains("rotation")) {
        const auto degrees = aArgs["rotation"].get<std::int64_t>();
        if (degrees % 90 != 0) throw EToolArgument("argument \"rotation\" must be 0, 90, 180 or 270");
        if (!current.contains("Angle")) Refuse(item, "rotation", "items with an angle");
        keys["Angle"] = degrees / 90;
    }
    const bool reorder = aArgs.contains("z_order");
    if (keys.empty() && !reorder) throw EToolArgument("nothing to change: give at least one property");
    // The whole change, a grown box and a new place in the paint order included, undoes as one step.
    bool grown = false;
    {
        const std::size_t undoStart = aDoc.UndoCount();
        const TQVLRect before = item.BoundsRect();
        if (!keys.empty()) ChangeItemKeys(item, keys);
        // A group's members go where their frame goes, unless the frame was only resized.
        const bool moved =
            aArgs.contains("x") || aArgs.contains("y") || aArgs.contains("dx") || aArgs.contains("dy");
        if (moved && !aArgs.contains("width") && !aArgs.contains("height") && aDoc.IsContainer(item.InID())) {
            const TQVLRect after = item.BoundsRect();
            aDoc.MoveItems(aDoc.MembersOf(item.InID()), after.Left - before.Left, after.Top - before.Top);
        }
        const bool captionChanged = aArgs.contains("text") || aArgs.contains("font") ||
                                    aArgs.contains("font_height") || aArgs.contains("bold") ||
                                    aArgs.contains("shape");
        if (captionChanged && !aArgs.contains("width") && !aArgs.contains("height"))
            grown = GrowToCaption(aDoc, item);
        if (reorder) ChangeZOrder(aDoc, item, aArgs["z_order"].get<std::string>());
        aDoc.JoinUndoSince(undoStart);
    }
    TJSON summary = ItemSummary(aDoc, item);
    if (grown) summary["grown_to_fit_text"] = true;
    if (CaptionClipped(item)) summary["text_clipped"] = true;
    return StructuredResult(std::move(summary));
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

}  // namespace

void RegisterItemEditTools(TToolRegistry& aRegistry) {
    aRegistry.Add("modify_item",
                  "Change the given properties of one item (exactly one of index, name or id) in one undo "
                  "step: x, y (top-left) or dx, dy; width, height (boxes); points; text; label (a link's; "
                  "empty removes it); font; colours (fill_color fills); pen; line type; rotation (0, 90, "
                  "180, 270); z_order. A flow element grows to fit longer text (grown_to_fit_text); text "
                  "still cut off is flagged text_clipped.",
                  WithOneOf(WithProperties(ItemSelector(),
                                           {{"new_name", StringProp("")},
                                            {"layer", IntegerProp("", 1, INT32_MAX)},
                                            {"color", ColorProp("")},
                                            {"pen_width", NumberProp("")},
                                            {"line_type", EnumProp("", LineTypeNames())},
                                            {"fill_color", ColorProp("")},
                                            {"filled", BoolProp("")},
                                            {"text", StringProp("")},
                                            {"shape", EnumProp("", FlowTypeNames())},
                                            {"link_type", EnumProp("", LinkTypeNames())},
                                            {"label", StringProp("")},
                                            {"start", EnumProp("", TerminatorNames())},
                                            {"end", EnumProp("", TerminatorNames())},
                                            {"x", NumberProp("")},
                                            {"y", NumberProp("")},
                                            {"dx", NumberProp("")},
                                            {"dy", NumberProp("")},
                                            {"width", NumberProp("")},
                                            {"height", NumberProp("")},
                                            {"points", PointsProp("", 2)},
                                            {"font", StringProp("")},
                                            {"font_height", NumberProp("")},
                                            {"bold", BoolProp("")},
                                            {"italic", BoolProp("")},
                                            {"underline", BoolProp("")},
                                            {"text_color", ColorProp("")},
                                            {"rotation", IntegerProp("", 0, 270)},
                                            {"z_order", EnumProp("", {"bring_to_front", "send_to_back"})}}),
                            {"index", "name", "id"}),
                  ModifyItem, ObjectResultSchema());
    aRegistry.Add("delete_item",
                  "Delete one item (exactly one of index, name or id); a flow element's links go with it. "
                  "Undoable.",
                  WithOneOf(ItemSelector(), {"index", "name", "id"}), DeleteItem, ObjectResultSchema());
}

}  // namespace Orvex::Host
