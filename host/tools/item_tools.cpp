// The add_ tools: add_flow, add_link and add_shape, which makes every other drawn kind. Each reads and
// checks all its arguments, then creates the item in one undoable step and answers with its name,
// internal id and index.
//
// [SECTION] Shared argument groups   [SECTION] Flowcharts   [SECTION] Lines   [SECTION] Shapes
// [SECTION] Arcs, arrows, dimensions and texts   [SECTION] add_shape
#include <fmt/format.h>

#include <algorithm>
#include <array>
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
    return ObjectSchema({{"fill_color", ColorProp("")}});
}

TJSON Merge(std::initializer_list<TJSON> aSchemas, std::initializer_list<std::string_view> aRequired = {}) {
    TJSON schema = ObjectSchema({});
    for (const auto& part : aSchemas)
        for (const auto& [name, property] : part["properties"].items()) schema["properties"][name] = property;
    return WithProperties(std::move(schema), {}, aRequired);
}

TJSON TerminatorProps() {
    return ObjectSchema(
        {{"start", EnumProp("", TerminatorNames())}, {"end", EnumProp("", TerminatorNames())}});
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
    return ObjectSchema({{"font", StringProp("")},
                         {"font_height", NumberProp("")},
                         {"bold", BoolProp("")},
                         {"italic", BoolProp("")},
                         {"text_color", ColorProp("")}});
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

// [SECTION] add_shape

// What each kind of add_shape takes beyond layer, color, pen_width and name. The schema is one flat set
// shared by all kinds; this table holds each kind to its own part of it. Usage is the kind's line of the
// description: what it needs, then [what else it takes], written by hand to say the defaults once.
struct TShapeKind {
    std::string_view Kind;
    std::vector<std::string_view> Required;
    std::vector<std::string_view> Optional;
    std::string_view Usage;
    TToolBody Body;
};

TToolBody PointList(TQVLItemType aType) {
    return [aType](TORXBaseLabel& aDoc, const TJSON& aArgs) { return AddPointList(aDoc, aArgs, aType); };
}

TToolBody CircleLike(TQVLItemType aType) {
    return [aType](TORXBaseLabel& aDoc, const TJSON& aArgs) { return AddCircleLike(aDoc, aArgs, aType); };
}

TToolBody TextLike(TQVLItemType aType) {
    return [aType](TORXBaseLabel& aDoc, const TJSON& aArgs) { return AddText(aDoc, aArgs, aType); };
}

const std::vector<TShapeKind>& ShapeKinds() {
    using enum TQVLItemType;
    static const std::vector<std::string_view> fontKeys{"font", "font_height", "bold", "italic",
                                                        "text_color"};
    const auto withFont = [](std::vector<std::string_view> aKeys) {
        aKeys.insert(aKeys.end(), fontKeys.begin(), fontKeys.end());
        return aKeys;
    };
    static const std::vector<TShapeKind> kinds{
        {"line", {"x1", "y1", "x2", "y2"}, {"line_type"}, "x1 y1 x2 y2", AddLine},
        {"polyline",
         {"points"},
         {"start", "end", "line_type"},
         "points (2+) [start end]",
         PointList(itPolyLine)},
        {"rectangle",
         {"x", "y", "width", "height"},
         {"corner_radius", "fill_color", "line_type"},
         "x y width height [corner_radius fill_color]",
         AddRectangle},
        {"polygon",
         {"points"},
         {"fill_color", "line_type"},
         "points (3+, closed) [fill_color]",
         PointList(itPolygon)},
        {"bezier",
         {"points"},
         {"start", "end", "line_type"},
         "points (start, then two controls and an end per segment) [start end]",
         PointList(itBezier)},
        {"circle",
         {"cx", "cy", "radius"},
         {"fill_color", "line_type"},
         "cx cy radius [fill_color]",
         CircleLike(itCircle)},
        {"ellipse",
         {"cx", "cy", "rx", "ry"},
         {"fill_color", "line_type"},
         "cx cy rx ry [fill_color]",
         CircleLike(itEllipse)},
        {"sector",
         {"cx", "cy", "radius", "sweep_angle"},
         {"start_angle", "fill_color", "line_type"},
         "cx cy radius sweep_angle (360: full) [start_angle (0) fill_color]",
         CircleLike(itSector)},
        {"arc",
         {"cx", "cy", "radius", "start_angle", "end_angle"},
         {"clockwise", "start", "end", "line_type"},
         "cx cy radius start_angle end_angle (equal: full) [clockwise start end]",
         AddArc},
        {"arrow_line",
         {"x1", "y1", "x2", "y2"},
         withFont({"text", "show_length", "text_position", "start", "end", "line_type"}),
         "x1 y1 x2 y2 (head) [end (fill_arrow) start text (label) text_position (above) show_length font*]",
         AddArrowLine},
        {"dimension",
         {"x1", "y1", "x2", "y2"},
         {"dim_type", "offset", "text"},
         "x1 y1 x2 y2 [dim_type (aligned; radius: x1 y1 the centre) offset (of the line, 10 mm; negative: "
         "other side) text (replaces the measure)]",
         AddDimension},
        {"text",
         {"x", "y", "text"},
         withFont({"align", "fill_color"}),
         "x y (top-left) text [align (left) fill_color font*]",
         TextLike(itText)},
        {"paragraph",
         {"x", "y", "width", "height", "text"},
         withFont({"align", "fill_color"}),
         "x y width height text (wrapped) [align fill_color font*]",
         TextLike(itPara)},
        {"rich_text",
         {"x", "y", "width", "height", "text"},
         withFont({"align", "fill_color"}),
         "x y width height text [align fill_color font*]: markup <B> <I> <U> <S> <FN:Arial> <FS:12> (points) "
         "<FC:FF0000> <BC:FFFF00> <C> <R> <L>, <BR> breaks (\\n does not)",
         TextLike(itRichText)},
    };
    return kinds;
}

std::string Listed(const std::vector<std::string>& aKeys) {
    std::string text;
    for (std::size_t i = 0; i < aKeys.size(); ++i) {
        if (i > 0) text += i + 1 == aKeys.size() ? " and " : ", ";
        text += '"' + aKeys[i] + '"';
    }
    return text;
}

// Every property a kind does not take is refused, as a tool of its own would refuse it: a radius given
// to a rectangle is a mistake to report, not a value to drop.
TJSON AddShape(TORXBaseLabel& aDoc, const TJSON& aArgs) {
    const std::string kindName = aArgs["kind"].get<std::string>();
    const auto& kinds = ShapeKinds();
    const auto kind =
        std::find_if(kinds.begin(), kinds.end(), [&](const auto& k) { return k.Kind == kindName; });
    std::vector<std::string> missing;
    for (const auto key : kind->Required)
        if (!aArgs.contains(key)) missing.emplace_back(key);
    if (!missing.empty())
        throw EToolArgument(fmt::format("kind \"{}\" needs {}; missing {}", kindName,
                                        Listed({kind->Required.begin(), kind->Required.end()}),
                                        Listed(missing)));
    static constexpr std::array<std::string_view, 5> kCommon{"kind", "layer", "color", "pen_width", "name"};
    for (const auto& [key, value] : aArgs.items()) {
        const auto in = [&key](const auto& aKeys) {
            return std::find(aKeys.begin(), aKeys.end(), key) != aKeys.end();
        };
        if (!in(kCommon) && !in(kind->Required) && !in(kind->Optional))
            throw EToolArgument(fmt::format("kind \"{}\" does not take \"{}\"", kindName, key));
    }
    if (kindName == "sector" && aArgs.contains("start_angle") && aArgs["start_angle"].get<double>() < -359)
        throw EToolArgument("argument \"start_angle\" must be at least -359 for a sector");
    const auto minimum = kindName == "polygon" ? 3U : kindName == "bezier" ? 4U : 2U;
    if (aArgs.contains("points") && aArgs["points"].size() < minimum)
        throw EToolArgument(
            fmt::format("argument \"points\": a {} needs at least {} points", kindName, minimum));
    return kind->Body(aDoc, aArgs);
}

std::vector<std::string_view> ShapeKindList() {
    std::vector<std::string_view> names;
    for (const auto& kind : ShapeKinds()) names.push_back(kind.Kind);
    return names;
}

std::string ShapeDescription() {
    std::string text =
        "Add a shape or text; kind chooses it. Per kind: what it needs [what else it takes]; others are "
        "refused. All take layer (default active), color (outline, black), pen_width (0.1 mm), name "
        "(unique; default kind and id); all but dimension and texts line_type (solid). font* = font (Arial) "
        "font_height (3.5 mm) bold italic text_color (black). No fill or terminators unless given. Angles: "
        "degrees anticlockwise from +x.";
    for (const auto& kind : ShapeKinds()) text += fmt::format("\n{}: {}", kind.Kind, kind.Usage);
    return text;
}

TJSON ShapeSchema() {
    return Merge({ObjectSchema({{"kind", EnumProp("", ShapeKindList())},
                                {"x", NumberProp("")},
                                {"y", NumberProp("")},
                                {"width", NumberProp("")},
                                {"height", NumberProp("")},
                                {"x1", NumberProp("")},
                                {"y1", NumberProp("")},
                                {"x2", NumberProp("")},
                                {"y2", NumberProp("")},
                                {"cx", NumberProp("")},
                                {"cy", NumberProp("")},
                                {"radius", NumberProp("")},
                                {"rx", NumberProp("")},
                                {"ry", NumberProp("")},
                                {"points", PointsProp("", 2)},
                                {"start_angle", NumberProp("", -360, 360)},
                                {"end_angle", NumberProp("", -360, 360)},
                                {"sweep_angle", NumberProp("", 0.001, 360)},
                                {"clockwise", BoolProp("")},
                                {"corner_radius", NumberProp("")},
                                {"dim_type",
                                 EnumProp("", {"horizontal", "vertical", "aligned", "radius", "diameter"})},
                                {"offset", NumberProp("")},
                                {"text", StringProp("")},
                                {"show_length", BoolProp("")},
                                {"text_position", EnumProp("", TextPosNames())},
                                {"align", EnumProp("", AlignNames())},
                                {"fill_color", ColorProp("")}}),
                  TerminatorProps(), FontProps(), CommonItemProps()},
                 {"kind"});
}

}  // namespace

const std::vector<std::string_view>& ShapeKindNames() {
    static const std::vector<std::string_view> names = ShapeKindList();
    return names;
}

void RegisterItemTools(TToolRegistry& aRegistry) {
    aRegistry.Add("add_flow",
                  "Add a flowchart element: a box of the shape (default process) with centred text (\\n "
                  "breaks lines), 40 x 20 mm unless sized; Arial 3.5 mm black, black outline 0.1 mm, no "
                  "fill. Link it by its id.",
                  Merge({ObjectSchema({{"text", StringProp("\\n breaks lines.")},
                                       {"shape", EnumProp("", FlowTypeNames())}}),
                         BoxProps(), FillProps(), FontProps(), CommonItemProps()},
                        {"x", "y"}),
                  AddFlow, ObjectResultSchema());
    aRegistry.Add("add_link",
                  "Join two flowchart elements, each end by exactly one of id or name; it follows them. "
                  "Default direct, end fill_arrow, sides facing each other. label: a caption halfway.",
                  WithOneOf(WithOneOf(Merge({ObjectSchema({{"from_id", IntegerProp("", 1, INT32_MAX)},
                                                           {"from_name", StringProp("")},
                                                           {"to_id", IntegerProp("", 1, INT32_MAX)},
                                                           {"to_name", StringProp("")},
                                                           {"from_side", EnumProp("", SideNames())},
                                                           {"to_side", EnumProp("", SideNames())},
                                                           {"link_type", EnumProp("", LinkTypeNames())},
                                                           {"label", StringProp("")}}),
                                             TerminatorProps(), CommonItemProps()}),
                                      {"from_id", "from_name"}),
                            {"to_id", "to_name"}),
                  AddLink, ObjectResultSchema());
    aRegistry.Add("add_shape", ShapeDescription(), ShapeSchema(), AddShape, ObjectResultSchema());
}

}  // namespace Orvex::Host
