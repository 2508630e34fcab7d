// The add_ tools: one per item kind. Each reads and checks all its arguments, then creates the item in one
// undoable step and answers with its name, internal id and index.
//
// [SECTION] Shared argument groups   [SECTION] Flowcharts   [SECTION] Lines   [SECTION] Shapes
// [SECTION] Arcs, arrows, dimensions and texts   [SECTION] Registration
#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "host/tools/item_build.h"
#include "host/tools/tool_args.h"
#include "host/tools/tool_registry.h"
#include "host/tools/tool_schema.h"
#include "orvex/core/text.h"
#include "orvex/document/document.h"
#include "orvex/io/json_utils.h"

namespace Orvex::Host {

namespace {

// [SECTION] Shared argument groups

TJSON BoxProps() {
    return ObjectSchema({{"x", NumberProp("")},
                         {"y", NumberProp("")},
                         {"width", NumberProp("")},
                         {"height", NumberProp("")}});
}

TJSON FillProps() {
    return ObjectSchema({{"fill_color", ColorProp("Default: unfilled.")}});
}

TJSON Merge(std::initializer_list<TJSON> aSchemas, std::initializer_list<std::string_view> aRequired = {}) {
    TJSON schema = ObjectSchema({});
    for (const auto& part : aSchemas)
        for (const auto& [name, property] : part["properties"].items()) schema["properties"][name] = property;
    return WithProperties(std::move(schema), {}, aRequired);
}

TJSON TerminatorProps() {
    return ObjectSchema({{"start", EnumProp("Default none.", TerminatorNames())},
                         {"end", EnumProp("Default none.", TerminatorNames())}});
}

void TerminatorKeys(const TJSON& aArgs, TJSON& aKeys, std::string_view aEndDefault = {}) {
    if (aArgs.contains("start"))
        aKeys["FromType"] = EnumIndex(TerminatorNames(), aArgs["start"].get<std::string>());
    if (aArgs.contains("end"))
        aKeys["ToType"] = EnumIndex(TerminatorNames(), aArgs["end"].get<std::string>());
    else if (!aEndDefault.empty())
        aKeys["ToType"] = EnumIndex(TerminatorNames(), aEndDefault);
    // Terminators take the line's colour, as people expect of an arrow.
    if (aKeys.contains("Color")) aKeys["FromColor"] = aKeys["ToColor"] = aKeys["Color"];
}

void FillKeys(const TJSON& aArgs, TJSON& aKeys) {
    if (!aArgs.contains("fill_color")) return;
    aKeys["BackColor"] =
        TJSONUtils::SetAlphaColor(ParseToolColor(aArgs["fill_color"].get<std::string>(), "fill_color"));
    aKeys["Filled"] = true;
}

// The two corners of a box item from x, y, width and height.
std::vector<TQVLPto64> BoxCorners(const TORXBaseLabel& aDoc, const TJSON& aArgs,
                                  std::int64_t aDefaultWidth = 0, std::int64_t aDefaultHeight = 0) {
    const std::int64_t x = Length(aDoc, aArgs, "x");
    const std::int64_t y = Length(aDoc, aArgs, "y");
    const std::int64_t w =
        aArgs.contains("width") || aDefaultWidth == 0 ? Size(aDoc, aArgs, "width") : aDefaultWidth;
    const std::int64_t h =
        aArgs.contains("height") || aDefaultHeight == 0 ? Size(aDoc, aArgs, "height") : aDefaultHeight;
    return {{x, y}, {x + w, y + h}};
}

std::vector<TQVLPto64> CircleCorners(const TORXBaseLabel& aDoc, const TJSON& aArgs, std::string_view aRx,
                                     std::string_view aRy) {
    const std::int64_t cx = Length(aDoc, aArgs, "cx");
    const std::int64_t cy = Length(aDoc, aArgs, "cy");
    const std::int64_t rx = Size(aDoc, aArgs, aRx);
    const std::int64_t ry = Size(aDoc, aArgs, aRy);
    return {{cx - rx, cy - ry}, {cx + rx, cy + ry}};
}

TJSON Create(TORXBaseLabel& aDoc, TQVLItemType aType, TJSON aKeys, const std::vector<TQVLPto64>& aPoints) {
    aKeys["Points"] = PointsKeys(aDoc, aPoints);
    const TORXBaseItem* item = CreateItemFromKeys(aDoc, aType, aKeys);
    return AddedResult(aDoc, *item);
}

// [SECTION] Flowcharts

std::int64_t MM(double aMM) {
    return static_cast<std::int64_t>(std::llround(aMM * static_cast<double>(kBasePerMM)));
}

TJSON FontKeys(const TORXBaseLabel& aDoc, const TJSON& aArgs) {
    TJSON font = TJSON::object();
    if (aArgs.contains("font")) font["Name"] = aArgs["font"];
    if (aArgs.contains("bold")) font["Bold"] = aArgs["bold"];
    if (aArgs.contains("italic")) font["Italic"] = aArgs["italic"];
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
    return font;
}

TJSON FontProps() {
    return ObjectSchema({{"font", StringProp("Default Arial.")},
                         {"font_height", NumberProp("Default 3.5 mm.")},
                         {"bold", BoolProp("")},
                         {"italic", BoolProp("")},
                         {"text_color", ColorProp("Default black.")}});
}

TJSON AddFlow(TORXBaseLabel& aDoc, const TJSON& aArgs) {
    TJSON keys = CommonItemKeys(aDoc, aArgs);
    const auto corners = BoxCorners(aDoc, aArgs, MM(40), MM(20));
    keys["FlowType"] = EnumIndex(FlowTypeNames(), aArgs.value("shape", std::string("process")));
    if (aArgs.contains("text")) keys["Text"] = aArgs["text"];
    FillKeys(aArgs, keys);
    if (TJSON font = FontKeys(aDoc, aArgs); !font.empty()) keys["Font"] = std::move(font);
    return Create(aDoc, TQVLItemType::itFlow, std::move(keys), corners);
}

// Link position codes of an element: the middles of its sides.
const std::vector<std::string_view>& SideNames() {
    static const std::vector<std::string_view> names{"top", "right", "bottom", "left"};
    return names;
}

const std::vector<std::string_view>& TextPosNames() {
    static const std::vector<std::string_view> names{"above",      "below",      "middle",
                                                     "middle_gap", "horizontal", "vertical"};
    return names;
}

const std::vector<std::string_view>& AlignNames() {
    static const std::vector<std::string_view> names{"left", "center", "right", "justify"};
    return names;
}

// A link end: a flow element named by internal id or by name.
const TORXBaseItem& LinkEnd(TORXBaseLabel& aDoc, const TJSON& aArgs, std::string_view aEnd) {
    const std::string idKey = fmt::format("{}_id", aEnd);
    const std::string nameKey = fmt::format("{}_name", aEnd);
    if (aArgs.contains(idKey) == aArgs.contains(nameKey))
        throw EToolArgument(fmt::format("give exactly one of \"{}\" or \"{}\"", idKey, nameKey));
    const TORXBaseItem* item = nullptr;
    if (aArgs.contains(idKey)) {
        const auto id = aArgs[idKey].get<std::int64_t>();
        item = id > 0 && id <= INT32_MAX ? ItemByInID(aDoc, static_cast<std::int32_t>(id)) : nullptr;
        if (item == nullptr)
            throw EToolArgument(fmt::format("argument \"{}\": no item has the id {}", idKey, id));
    } else {
        const auto& name = aArgs[nameKey].get_ref<const std::string&>();
        for (std::int32_t i = 0; i < aDoc.GetItemsCount() && item == nullptr; ++i)
            if (SameTextIgnoringCase(aDoc.GetItem(i)->ID(), name)) item = aDoc.GetItem(i);
        if (item == nullptr)
            throw EToolArgument(fmt::format("argument \"{}\": no item is named \"{}\"", nameKey, name));
    }
    if (item->ItemType() != TQVLItemType::itFlow)
        throw EToolArgument(
            fmt::format("the {} item {} is a {}, not a flow element; links join flow elements", aEnd,
                        item->ID(), KindNames()[static_cast<std::size_t>(item->ItemType())]));
    return *item;
}

TJSON AddLink(TORXBaseLabel& aDoc, const TJSON& aArgs) {
    const TORXBaseItem& from = LinkEnd(aDoc, aArgs, "from");
    const TORXBaseItem& to = LinkEnd(aDoc, aArgs, "to");
    if (&from == &to)
        throw EToolArgument(fmt::format("a link joins two different elements; both ends are {}", from.ID()));
    TJSON keys = CommonItemKeys(aDoc, aArgs);
    keys["LinkType"] = EnumIndex(LinkTypeNames(), aArgs.value("link_type", std::string("direct")));
    keys["FromID"] = from.InID();
    keys["FromIndex"] =
        aArgs.contains("from_side") ? EnumIndex(SideNames(), aArgs["from_side"].get<std::string>()) : -1;
    keys["ToID"] = to.InID();
    keys["ToIndex"] =
        aArgs.contains("to_side") ? EnumIndex(SideNames(), aArgs["to_side"].get<std::string>()) : -1;
    TerminatorKeys(aArgs, keys, "fill_arrow");
    if (aArgs.contains("label")) keys["Label"] = aArgs["label"];
    const TORXBaseItem* item = CreateItemFromKeys(aDoc, TQVLItemType::itLink, keys);
    return AddedResult(aDoc, *item);
}

// [SECTION] Lines

TJSON AddLine(TORXBaseLabel& aDoc, const TJSON& aArgs) {
    TJSON keys = CommonItemKeys(aDoc, aArgs);
    return Create(aDoc, TQVLItemType::itLine, std::move(keys),
                  {{Length(aDoc, aArgs, "x1"), Length(aDoc, aArgs, "y1")},
                   {Length(aDoc, aArgs, "x2"), Length(aDoc, aArgs, "y2")}});
}

TJSON AddPointList(TORXBaseLabel& aDoc, const TJSON& aArgs, TQVLItemType aType) {
    TJSON keys = CommonItemKeys(aDoc, aArgs);
    const auto points = PointsArg(aDoc, aArgs, "points");
    if (aType == TQVLItemType::itBezier && (points.size() - 1) % 3 != 0)
        throw EToolArgument(
            fmt::format("a Bézier curve takes 1 + 3n points (start, then two control points and an "
                        "end point per segment); got {}",
                        points.size()));
    if (aType == TQVLItemType::itPolygon) FillKeys(aArgs, keys);
    if (aType != TQVLItemType::itPolygon) TerminatorKeys(aArgs, keys);
    return AddedResult(aDoc, *CreatePointListItem(aDoc, aType, keys, points));
}

// [SECTION] Shapes

TJSON AddRectangle(TORXBaseLabel& aDoc, const TJSON& aArgs) {
    TJSON keys = CommonItemKeys(aDoc, aArgs);
    const auto corners = BoxCorners(aDoc, aArgs);
    FillKeys(aArgs, keys);
    if (aArgs.contains("corner_radius")) {
        const std::int64_t radius = Length(aDoc, aArgs, "corner_radius");
        if (radius < 0) throw EToolArgument("argument \"corner_radius\" must not be negative");
        // A radius beyond half the height is cut to it by the rectangle itself.
        keys["Radio"] = TJSONUtils::BaseToUnit(radius, aDoc.Units());
    }
    return Create(aDoc, TQVLItemType::itRectangle, std::move(keys), corners);
}

TJSON AddCircleLike(TORXBaseLabel& aDoc, const TJSON& aArgs, TQVLItemType aType) {
    TJSON keys = CommonItemKeys(aDoc, aArgs);
    const auto corners = aType == TQVLItemType::itEllipse ? CircleCorners(aDoc, aArgs, "rx", "ry")
                                                          : CircleCorners(aDoc, aArgs, "radius", "radius");
    FillKeys(aArgs, keys);
    if (aType == TQVLItemType::itSector) {
        keys["StartAngle"] = aArgs.value("start_angle", 0.0);
        keys["SweepAngle"] = aArgs["sweep_angle"];
    }
    return Create(aDoc, aType, std::move(keys), corners);
}

TJSON CircleProps(bool aEllipse) {
    if (aEllipse)
        return ObjectSchema(
            {{"cx", NumberProp("")}, {"cy", NumberProp("")}, {"rx", NumberProp("")}, {"ry", NumberProp("")}},
            {"cx", "cy", "rx", "ry"});
    return ObjectSchema({{"cx", NumberProp("")}, {"cy", NumberProp("")}, {"radius", NumberProp("")}},
                        {"cx", "cy", "radius"});
}

// [SECTION] Arcs, arrows, dimensions and texts

TJSON AddArc(TORXBaseLabel& aDoc, const TJSON& aArgs) {
    TJSON keys = CommonItemKeys(aDoc, aArgs);
    const auto corners = CircleCorners(aDoc, aArgs, "radius", "radius");
    keys["StartAngle"] = aArgs["start_angle"];
    keys["EndAngle"] = aArgs["end_angle"];
    keys["ClockWise"] = aArgs.value("clockwise", false);
    TerminatorKeys(aArgs, keys);
    return Create(aDoc, TQVLItemType::itArc, std::move(keys), corners);
}

// Text, paragraph and arrow-line labels keep their font as flat keys.
void FlatFontKeys(const TORXBaseLabel& aDoc, const TJSON& aArgs, TJSON& aKeys) {
    const TJSON font = FontKeys(aDoc, aArgs);
    for (const auto& [key, value] : font.items()) aKeys[key == "Name" ? "Font" : key] = value;
}

TJSON AddArrowLine(TORXBaseLabel& aDoc, const TJSON& aArgs) {
    TJSON keys = CommonItemKeys(aDoc, aArgs);
    const std::vector<TQVLPto64> points{{Length(aDoc, aArgs, "x1"), Length(aDoc, aArgs, "y1")},
                                        {Length(aDoc, aArgs, "x2"), Length(aDoc, aArgs, "y2")}};
    TerminatorKeys(aArgs, keys, "fill_arrow");
    if (aArgs.contains("text")) keys["Text"] = aArgs["text"];
    if (aArgs.contains("show_length")) keys["TextMeasure"] = aArgs["show_length"];
    if (aArgs.contains("text_position"))
        keys["TextPos"] = EnumIndex(TextPosNames(), aArgs["text_position"].get<std::string>());
    FlatFontKeys(aDoc, aArgs, keys);
    return Create(aDoc, TQVLItemType::itArrowLine, std::move(keys), points);
}

// The defining points of a dimension: the dimension line's ends first, then the measured points.
TJSON AddDimension(TORXBaseLabel& aDoc, const TJSON& aArgs) {
    TJSON keys = CommonItemKeys(aDoc, aArgs);
    const std::string type = aArgs.value("dim_type", std::string("aligned"));
    const TQVLPto64 a{Length(aDoc, aArgs, "x1"), Length(aDoc, aArgs, "y1")};
    const TQVLPto64 b{Length(aDoc, aArgs, "x2"), Length(aDoc, aArgs, "y2")};
    if (a.X == b.X && a.Y == b.Y) throw EToolArgument("the two measured points are the same point");
    const std::int64_t offset = aArgs.contains("offset") ? Length(aDoc, aArgs, "offset") : MM(10);
    std::vector<TQVLPto64> points;
    if (type == "horizontal") {
        const std::int64_t y = std::min(a.Y, b.Y) - offset;
        points = {{a.X, y}, {b.X, y}, a, b};
    } else if (type == "vertical") {
        const std::int64_t x = std::max(a.X, b.X) + offset;
        points = {{x, a.Y}, {x, b.Y}, a, b};
    } else if (type == "aligned") {
        // The dimension line runs parallel to the measured points, offset to their left as seen from a to b.
        const double dx = static_cast<double>(b.X - a.X);
        const double dy = static_cast<double>(b.Y - a.Y);
        const double length = std::hypot(dx, dy);
        const auto ox = static_cast<std::int64_t>(std::llround(dy / length * static_cast<double>(offset)));
        const auto oy = static_cast<std::int64_t>(std::llround(-dx / length * static_cast<double>(offset)));
        points = {{a.X + ox, a.Y + oy}, {b.X + ox, b.Y + oy}, a, b};
    } else {
        points = {a, b};  // radius: centre and a point on the circle; diameter: its two ends
    }
    const std::vector<std::string_view> types{"horizontal", "vertical", "aligned", "radius", "", "diameter"};
    keys["DimType"] = EnumIndex(types, type);
    if (aArgs.contains("text")) {
        keys["Text"] = aArgs["text"];
        keys["TextMeasure"] = false;
    } else {
        keys["TextMeasure"] = true;
    }
    return Create(aDoc, TQVLItemType::itDim, std::move(keys), points);
}

TJSON AddText(TORXBaseLabel& aDoc, const TJSON& aArgs, TQVLItemType aType) {
    TJSON keys = CommonItemKeys(aDoc, aArgs);
    const std::int64_t x = Length(aDoc, aArgs, "x");
    const std::int64_t y = Length(aDoc, aArgs, "y");
    std::vector<TQVLPto64> points;
    if (aType == TQVLItemType::itText) {
        // The text sizes its own box from the content; until it does, a box one line high.
        points = {{x, y}, {x + MM(1), y + MM(1)}};
    } else {
        points = BoxCorners(aDoc, aArgs);
    }
    if (aArgs.contains("fill_color")) {
        keys["BackColor"] =
            TJSONUtils::SetAlphaColor(ParseToolColor(aArgs["fill_color"].get<std::string>(), "fill_color"));
        if (aType != TQVLItemType::itPara) keys["Filled"] = true;
    }
    if (aArgs.contains("align"))
        keys["HorzAlign"] = EnumIndex(AlignNames(), aArgs["align"].get<std::string>());
    if (aType == TQVLItemType::itRichText) {
        keys["RichText"] = aArgs["text"];
        if (TJSON font = FontKeys(aDoc, aArgs); !font.empty()) keys["Font"] = std::move(font);
    } else {
        keys["Text"] = aArgs["text"];
        FlatFontKeys(aDoc, aArgs, keys);
    }
    return Create(aDoc, aType, std::move(keys), points);
}

// [SECTION] Registration

// Every add_ tool answers with the new item's summary; the output schema says so, once per tool.
std::string AddedText(std::string_view aWhat) {
    return fmt::format("{} Returns the new item's name, id, index and bounds.", aWhat);
}

}  // namespace

void RegisterItemTools(TToolRegistry& aRegistry) {
    // Every add_ tool answers with the new item's summary.
    const auto add = [&aRegistry](std::string aName, std::string aDescription, TJSON aSchema,
                                  TToolBody aBody) {
        aRegistry.Add(std::move(aName), std::move(aDescription), std::move(aSchema), std::move(aBody),
                      ItemSummarySchema());
    };
    add("add_flow",
        AddedText(
            "Add a flowchart element (a box of the given shape with centred text) on the active layer. Read "
            "its id from the result before linking it with add_link. Default size 40 x 20 mm."),
        Merge(
            {ObjectSchema({{"text", StringProp("Text inside the element; \\n breaks lines.")},
                           {"shape", EnumProp("Shape. Default process (a rectangle); decision is a diamond, "
                                              "terminator a rounded end, data a parallelogram.",
                                              FlowTypeNames())}}),
             BoxProps(), FillProps(), FontProps(), CommonItemProps()},
            {"x", "y"}),
        AddFlow);
    add("add_link",
        AddedText(
            "Connect two flowchart elements with a link (by default a straight connector with an arrow at "
            "the "
            "end). Name each end by id (from add_flow) or by name. The link follows the elements when they "
            "move."),
        WithOneOf(
            WithOneOf(
                Merge({ObjectSchema(
                           {{"from_id", IntegerProp("Source element id.", 1, INT32_MAX)},
                            {"from_name", StringProp("Source element name.")},
                            {"to_id", IntegerProp("Target element id.", 1, INT32_MAX)},
                            {"to_name", StringProp("Target element name.")},
                            {"from_side", EnumProp("Side of the source the link leaves from. Default: chosen "
                                                   "from the elements' positions.",
                                                   SideNames())},
                            {"to_side",
                             EnumProp("Side of the target the link enters. Default: chosen.", SideNames())},
                            {"link_type", EnumProp("Default direct.", LinkTypeNames())},
                            {"start", EnumProp("Default none.", TerminatorNames())},
                            {"end", EnumProp("Default fill_arrow.", TerminatorNames())},
                            {"label", StringProp("Caption halfway along the link.")}}),
                       CommonItemProps()}),
                {"from_id", "from_name"}),
            {"to_id", "to_name"}),
        AddLink);
    add("add_line", AddedText("Add a straight line from (x1, y1) to (x2, y2)."),
        Merge({ObjectSchema({{"x1", NumberProp("")},
                             {"y1", NumberProp("")},
                             {"x2", NumberProp("")},
                             {"y2", NumberProp("")}}),
               CommonItemProps()},
              {"x1", "y1", "x2", "y2"}),
        AddLine);
    add("add_polyline", AddedText("Add an open line through two or more points, with optional terminators."),
        Merge({ObjectSchema({{"points", PointsProp("The points in order.", 2)}}), TerminatorProps(),
               CommonItemProps()},
              {"points"}),
        [](TORXBaseLabel& aDoc, const TJSON& aArgs) {
            return AddPointList(aDoc, aArgs, TQVLItemType::itPolyLine);
        });
    add("add_rectangle", AddedText("Add a rectangle, optionally filled and with rounded corners."),
        Merge({BoxProps(),
               ObjectSchema(
                   {{"corner_radius", NumberProp("Corner radius; at most half the height. Default 0.")}}),
               FillProps(), CommonItemProps()},
              {"x", "y", "width", "height"}),
        AddRectangle);
    add("add_polygon", AddedText("Add a closed polygon through three or more points, optionally filled."),
        Merge({ObjectSchema({{"points", PointsProp("The corners in order.", 3)}}), FillProps(),
               CommonItemProps()},
              {"points"}),
        [](TORXBaseLabel& aDoc, const TJSON& aArgs) {
            return AddPointList(aDoc, aArgs, TQVLItemType::itPolygon);
        });
    add("add_bezier",
        AddedText("Add a cubic Bézier curve: a start point, then for each segment two control points and an "
                  "end point (4, 7, 10... points)."),
        Merge({ObjectSchema({{"points", PointsProp("Start, then control, control, end per segment.", 4)}}),
               TerminatorProps(), CommonItemProps()},
              {"points"}),
        [](TORXBaseLabel& aDoc, const TJSON& aArgs) {
            return AddPointList(aDoc, aArgs, TQVLItemType::itBezier);
        });
    add("add_circle", AddedText("Add a circle by centre and radius, optionally filled."),
        Merge({CircleProps(false), FillProps(), CommonItemProps()}, {"cx", "cy", "radius"}),
        [](TORXBaseLabel& aDoc, const TJSON& aArgs) {
            return AddCircleLike(aDoc, aArgs, TQVLItemType::itCircle);
        });
    add("add_ellipse", AddedText("Add an ellipse by centre and the two radii, optionally filled."),
        Merge({CircleProps(true), FillProps(), CommonItemProps()}, {"cx", "cy", "rx", "ry"}),
        [](TORXBaseLabel& aDoc, const TJSON& aArgs) {
            return AddCircleLike(aDoc, aArgs, TQVLItemType::itEllipse);
        });
    add("add_sector",
        AddedText("Add a circular sector (a pie slice): centre, radius, start angle and sweep in degrees, "
                  "counter-clockwise from the positive x axis; a sweep of 360 is a full circle."),
        Merge({CircleProps(false),
               ObjectSchema({{"start_angle", NumberProp("Start angle in degrees. Default 0.", -359, 360)},
                             {"sweep_angle", NumberProp("Angular extent in degrees.", 0.001, 360)}}),
               FillProps(), CommonItemProps()},
              {"cx", "cy", "radius", "sweep_angle"}),
        [](TORXBaseLabel& aDoc, const TJSON& aArgs) {
            return AddCircleLike(aDoc, aArgs, TQVLItemType::itSector);
        });
    add("add_arc",
        AddedText("Add a circular arc: centre, radius, and the start and end angles in degrees "
                  "counter-clockwise from the positive x axis (clockwise true turns the other way)."),
        Merge({CircleProps(false),
               ObjectSchema({{"start_angle", NumberProp("Start angle in degrees.", -360, 360)},
                             {"end_angle",
                              NumberProp("End angle in degrees; equal to start: a full circle.", -360, 360)},
                             {"clockwise", BoolProp("Sweep clockwise from start to end. Default false.")}}),
               TerminatorProps(), CommonItemProps()},
              {"cx", "cy", "radius", "start_angle", "end_angle"}),
        AddArc);
    add("add_arrow_line",
        AddedText("Add an arrow from (x1, y1) to (x2, y2) (a filled arrow head at the end unless told "
                  "otherwise), with an optional label along it."),
        Merge({ObjectSchema(
                   {{"x1", NumberProp("")},
                    {"y1", NumberProp("")},
                    {"x2", NumberProp("End x (the arrow head).")},
                    {"y2", NumberProp("")},
                    {"text", StringProp("Label text.")},
                    {"show_length", BoolProp("The label shows the measured length instead.")},
                    {"text_position", EnumProp("Where the label stands. Default above.", TextPosNames())},
                    {"start", EnumProp("Default none.", TerminatorNames())},
                    {"end", EnumProp("Default fill_arrow.", TerminatorNames())}}),
               FontProps(), CommonItemProps()},
              {"x1", "y1", "x2", "y2"}),
        AddArrowLine);
    add("add_dimension",
        AddedText("Add a dimension measuring from (x1, y1) to (x2, y2): horizontal, vertical or aligned "
                  "(the dimension line drawn offset from the points), radius (x1, y1 the centre, x2, y2 "
                  "on the circle) or diameter (the two ends). The text shows the measure in the drawing's "
                  "units unless text is given."),
        Merge({ObjectSchema(
                   {{"x1", NumberProp("")},
                    {"y1", NumberProp("")},
                    {"x2", NumberProp("")},
                    {"y2", NumberProp("")},
                    {"dim_type", EnumProp("Kind of dimension. Default aligned.",
                                          {"horizontal", "vertical", "aligned", "radius", "diameter"})},
                    {"offset", NumberProp("Distance of the dimension line from the points (linear "
                                          "kinds; negative: the other side). Default 10 mm.")},
                    {"text", StringProp("Fixed text instead of the measure.")}}),
               CommonItemProps(false)},
              {"x1", "y1", "x2", "y2"}),
        AddDimension);
    add("add_text",
        AddedText("Add a single text with its top-left corner at (x, y); its box follows the text."),
        Merge({ObjectSchema({{"x", NumberProp("")},
                             {"y", NumberProp("")},
                             {"text", StringProp("The text; \\n breaks lines.")},
                             {"align", EnumProp("Default left.", AlignNames())}}),
               FillProps(), FontProps(), CommonItemProps(false)},
              {"x", "y", "text"}),
        [](TORXBaseLabel& aDoc, const TJSON& aArgs) { return AddText(aDoc, aArgs, TQVLItemType::itText); });
    add("add_paragraph", AddedText("Add a paragraph: text broken into lines to fit the box's width."),
        Merge({BoxProps(),
               ObjectSchema(
                   {{"text", StringProp("The text.")}, {"align", EnumProp("Default left.", AlignNames())}}),
               FillProps(), FontProps(), CommonItemProps(false)},
              {"x", "y", "width", "height", "text"}),
        [](TORXBaseLabel& aDoc, const TJSON& aArgs) { return AddText(aDoc, aArgs, TQVLItemType::itPara); });
    add("add_rich_text",
        AddedText("Add a box of rich text. Markup: <B>bold</B>, <I>, <U>, <S>, <FN:Arial>font</FN>, "
                  "<FS:12>size in points</FS>, <FC:FF0000>colour</FC>, <BC:FFFF00>background</BC>, "
                  "<C>centred</C>, <R>, <L>, and <BR> for a line break (newlines do not break)."),
        Merge({BoxProps(),
               ObjectSchema({{"text", StringProp("The marked-up text.")},
                             {"align", EnumProp("Default left.", AlignNames())}}),
               FillProps(), FontProps(), CommonItemProps(false)},
              {"x", "y", "width", "height", "text"}),
        [](TORXBaseLabel& aDoc, const TJSON& aArgs) {
            return AddText(aDoc, aArgs, TQVLItemType::itRichText);
        });
}

}  // namespace Orvex::Host
