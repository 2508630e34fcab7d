#include "host/tools/item_view.h"

#include <cctype>

#include "host/tools/tool_args.h"
#include "orvex/core/units.h"
#include "orvex/document/document.h"
#include "orvex/io/json_utils.h"
#include "orvex/items/link_items.h"

namespace Orvex::Host {

namespace {

bool IsColorObject(const TJSON& aValue) {
    return aValue.is_object() && aValue.contains("R") && aValue.contains("G") && aValue.contains("B");
}

std::string ColorText(const TJSON& aValue) {
    return ToolColorText(TJSONUtils::GetAlphaColor(aValue));
}

// Millimetres, as the file keeps pens and font heights, in the drawing's unit.
double FromMM(const TORXBaseLabel& aDoc, const TJSON& aValue) {
    const double mm = aValue.is_number() ? aValue.get<double>() : 0.0;
    return ToUnit(aDoc, static_cast<std::int64_t>(std::llround(mm * static_cast<double>(kBasePerMM))));
}

std::string EnumName(const std::vector<std::string_view>& aNames, const TJSON& aValue) {
    const auto index = aValue.is_number_integer() ? aValue.get<std::int64_t>() : -1;
    if (index < 0 || index >= static_cast<std::int64_t>(aNames.size())) return std::to_string(index);
    return std::string(aNames[static_cast<std::size_t>(index)]);
}

const std::vector<std::string_view>& SideNames() {
    static const std::vector<std::string_view> names{"top", "right", "bottom", "left"};
    return names;
}

TJSON Generic(const TJSON& aValue) {
    if (IsColorObject(aValue)) return ColorText(aValue);
    if (aValue.is_object()) {
        TJSON out = TJSON::object();
        for (const auto& [key, value] : aValue.items()) out[SnakeName(key)] = Generic(value);
        return out;
    }
    if (aValue.is_array()) {
        TJSON out = TJSON::array();
        for (const auto& value : aValue) out.push_back(Generic(value));
        return out;
    }
    return aValue;
}

void AddFont(const TORXBaseLabel& aDoc, const TJSON& aFont, TJSON& aOut) {
    if (aFont.contains("Name")) aOut["font"] = aFont["Name"];
    if (aFont.contains("FontHeight")) aOut["font_height"] = FromMM(aDoc, aFont["FontHeight"]);
    for (const auto& [key, name] : {std::pair{"Bold", "bold"},
                                    {"Italic", "italic"},
                                    {"Underline", "underline"},
                                    {"Strikeout", "strikeout"}})
        if (aFont.contains(key)) aOut[name] = aFont[key];
    if (aFont.contains("FontColor")) aOut["text_color"] = ColorText(aFont["FontColor"]);
}

}  // namespace

std::string SnakeName(std::string_view aKey) {
    std::string out;
    for (std::size_t i = 0; i < aKey.size(); ++i) {
        const char c = aKey[i];
        const bool upper = std::isupper(static_cast<unsigned char>(c)) != 0;
        if (upper && i > 0) {
            const char before = aKey[i - 1];
            const bool nextLower =
                i + 1 < aKey.size() && std::islower(static_cast<unsigned char>(aKey[i + 1]));
            if (std::islower(static_cast<unsigned char>(before)) ||
                std::isdigit(static_cast<unsigned char>(before)) ||
                (std::isupper(static_cast<unsigned char>(before)) && nextLower))
                out += '_';
        }
        out += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    return out;
}

std::string ItemText(const TJSON& aFileForm) {
    for (const char* key : {"Text", "RichText"}) {
        const auto it = aFileForm.find(key);
        if (it != aFileForm.end() && it->is_string() && !it->get_ref<const std::string&>().empty())
            return it->get<std::string>();
    }
    return {};
}

TJSON ItemProperties(const TORXBaseLabel& aDoc, const TORXBaseItem& aItem) {
    const TJSON file = aItem.WriteJson();
    TJSON out = TJSON::object();
    for (const auto& [key, value] : file.items()) {
        if (key == "Type" || key == "TypeName" || key == "InID" || key == "ID" || key == "Layer") continue;
        if (key == "Angle") {
            out["rotation"] = value.is_number_integer() ? value.get<std::int64_t>() * 90 : 0;
        } else if (key == "Color") {
            out["color"] = ColorText(value);
        } else if (key == "BackColor") {
            out["fill_color"] = ColorText(value);
        } else if (key == "PenWidth") {
            out["pen_width"] = FromMM(aDoc, value);
        } else if (key == "Options" && value.is_object()) {
            out["visible"] = value.value("Visible", true);
            out["printable"] = value.value("Print", true);
            out["selectable"] = value.value("Selectable", true);
            out["exportable"] = value.value("Export", true);
        } else if (key == "Points" && value.is_array()) {
            TJSON points = TJSON::array();
            for (const auto& p : value)
                points.push_back({{"x", p.value("X", 0.0)}, {"y", p.value("Y", 0.0)}});
            out["points"] = std::move(points);
        } else if (key == "LinkPoints" && value.is_array()) {
            TJSON points = TJSON::array();
            for (const auto& p : value)
                points.push_back({{"x", ToUnit(aDoc, p.value("BaseX", std::int64_t{0}))},
                                  {"y", ToUnit(aDoc, p.value("BaseY", std::int64_t{0}))}});
            out["bend_points"] = std::move(points);
        } else if (key == "FlowType") {
            out["shape"] = EnumName(FlowTypeNames(), value);
        } else if (key == "LineType") {
            out["line_type"] = EnumName(LineTypeNames(), value);
        } else if (key == "LinkType") {
            out["link_type"] = EnumName(LinkTypeNames(), value);
        } else if (key == "FromType" || key == "ToType") {
            out[key == "FromType" ? "start" : "end"] = EnumName(TerminatorNames(), value);
        } else if (key == "FromColor" || key == "ToColor") {
            out[key == "FromColor" ? "start_color" : "end_color"] = ColorText(value);
        } else if (key == "FromID" || key == "ToID") {
            out[key == "FromID" ? "from_id" : "to_id"] = value;
        } else if (key == "FromIndex" || key == "ToIndex") {
            out[key == "FromIndex" ? "from_side" : "to_side"] =
                value.is_number_integer() && value.get<std::int64_t>() < 0
                    ? TJSON("auto")
                    : TJSON(EnumName(SideNames(), value));
        } else if (key == "Font" && value.is_object()) {
            AddFont(aDoc, value, out);
        } else if (key == "Font" && value.is_string()) {
            out["font"] = value;
        } else if (key == "FontHeight") {
            out["font_height"] = FromMM(aDoc, value);
        } else if (key == "FontColor") {
            out["text_color"] = ColorText(value);
        } else if (key == "Text" || key == "RichText") {
            out["text"] = value;
        } else if (key == "TextPos" && value.is_array()) {
            continue;  // where the layout put each line: derived, and of no use to a caller
        } else {
            out[SnakeName(key)] = Generic(value);
        }
    }
    if (const auto* link = dynamic_cast<const TORXBaseLink*>(&aItem);
        link != nullptr && !link->Label().empty()) {
        const TQVLPto64 at = link->LabelPoint();
        out["label_at"] = {{"x", ToUnit(aDoc, at.X)}, {"y", ToUnit(aDoc, at.Y)}};
    }
    return out;
}

}  // namespace Orvex::Host
