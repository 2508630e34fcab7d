#include "orvex/items/svg_style.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace Orvex {

std::string SvgNumber(double value) {
    if (!std::isfinite(value)) return "0";
    const double rounded = RoundTo3Decimals(value);
    std::string text = fmt::format("{:.3f}", rounded);
    while (text.back() == '0') text.pop_back();
    if (text.back() == '.') text.pop_back();
    if (text == "-0") text = "0";
    return text;
}

std::string SvgLength(std::int64_t base, TQVLUnits unit) {
    return SvgNumber(static_cast<double>(base) / static_cast<double>(UnitFactor(unit)));
}

double MillimetresInUnit(double mm, TQVLUnits unit) {
    return mm * static_cast<double>(kBasePerMM) / static_cast<double>(UnitFactor(unit));
}

std::string SvgEscape(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (char c : text) {
        switch (c) {
            case '&':
                out += "&amp;";
                break;
            case '<':
                out += "&lt;";
                break;
            case '>':
                out += "&gt;";
                break;
            case '"':
                out += "&quot;";
                break;
            case '\'':
                out += "&apos;";
                break;
            default:
                // Control characters other than tab and line ends are not allowed in XML 1.0 at all.
                if (static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r') continue;
                out += c;
        }
    }
    return out;
}

std::string SvgColor(TAlphaColor color) {
    return fmt::format("#{:02X}{:02X}{:02X}", RedOf(color), GreenOf(color), BlueOf(color));
}

std::vector<double> DashPattern(TQVLineType type) {
    switch (type) {
        case TQVLineType::iiSolid:
            return {};
        case TQVLineType::ii0505:
            return {0.5, 0.5};
        case TQVLineType::ii11:
            return {1, 1};
        case TQVLineType::ii21:
            return {2, 1};
        case TQVLineType::ii12:
            return {1, 2};
        case TQVLineType::ii22:
            return {2, 2};
        case TQVLineType::ii31:
            return {3, 1};
        case TQVLineType::ii33:
            return {3, 3};
        case TQVLineType::ii41:
            return {4, 1};
        case TQVLineType::ii42:
            return {4, 2};
        case TQVLineType::ii44:
            return {4, 4};
        case TQVLineType::ii411:
            return {4, 1, 1, 1};
    }
    return {};
}

namespace {

std::string Opacity(std::string_view attribute, TAlphaColor color) {
    if (AlphaOf(color) == 255) return {};
    return fmt::format(" {}=\"{}\"", attribute, SvgNumber(AlphaOf(color) / 255.0));
}

}  // namespace

std::string SvgStroke(TAlphaColor color, float penWidthMM, TQVLineType type, TQVLUnits unit) {
    const double widthMM = penWidthMM > 0.0f ? static_cast<double>(penWidthMM) : 0.1;
    const double width = MillimetresInUnit(widthMM, unit);
    std::string out = fmt::format(" stroke=\"{}\" stroke-width=\"{}\"", SvgColor(color), SvgNumber(width));
    out += Opacity("stroke-opacity", color);
    const auto pattern = DashPattern(type);
    if (!pattern.empty()) {
        // Dashes shorter than a millimetre vanish under a thin pen, so the unit of a pattern is at least 1
        // mm.
        const double step = std::max(width, MillimetresInUnit(1.0, unit));
        std::string dashes;
        for (double part : pattern) dashes += (dashes.empty() ? "" : " ") + SvgNumber(part * step);
        out += fmt::format(" stroke-dasharray=\"{}\"", dashes);
    }
    return out;
}

std::string SvgFill(TAlphaColor color, bool filled) {
    if (!filled || AlphaOf(color) == 0) return " fill=\"none\"";
    return fmt::format(" fill=\"{}\"{}", SvgColor(color), Opacity("fill-opacity", color));
}

namespace {

// The terminator's shape in a 10 x 10 box around the line's end (5, 5), pointing along +x: the marker's
// orientation turns it to the line's direction.
std::string MarkerShape(TQVLTermType type, TAlphaColor color) {
    const std::string ink = SvgColor(color) + "\"" + Opacity("fill-opacity", color);
    const std::string stroke = fmt::format("stroke=\"{}\" fill=\"none\"", SvgColor(color));
    switch (type) {
        case TQVLTermType::ttNone:
            return {};
        case TQVLTermType::ttCircle:
            return "<circle cx=\"5\" cy=\"5\" r=\"3\" " + stroke + "/>";
        case TQVLTermType::ttFillCircle:
            return "<circle cx=\"5\" cy=\"5\" r=\"3\" fill=\"" + ink + "/>";
        case TQVLTermType::ttArrow:
            return "<path d=\"M0,1 L5,5 L0,9\" " + stroke + "/>";
        case TQVLTermType::ttFillArrow:
            return "<path d=\"M0,1 L5,5 L0,9 Z\" fill=\"" + ink + "/>";
        case TQVLTermType::ttSquare:
            return "<rect x=\"2\" y=\"2\" width=\"6\" height=\"6\" " + stroke + "/>";
        case TQVLTermType::ttFillSquare:
            return "<rect x=\"2\" y=\"2\" width=\"6\" height=\"6\" fill=\"" + ink + "/>";
        case TQVLTermType::ttRhombus:
            return "<path d=\"M1,5 L5,1 L9,5 L5,9 Z\" " + stroke + "/>";
        case TQVLTermType::ttFillRhombus:
            return "<path d=\"M1,5 L5,1 L9,5 L5,9 Z\" fill=\"" + ink + "/>";
        case TQVLTermType::ttLeftDia:
            return "<path d=\"M2,8 L8,2\" " + stroke + "/>";
        case TQVLTermType::ttRightDia:
            return "<path d=\"M2,2 L8,8\" " + stroke + "/>";
        case TQVLTermType::ttCross:
            return "<path d=\"M2,2 L8,8 M2,8 L8,2\" " + stroke + "/>";
        case TQVLTermType::ttTriangle:
            return "<path d=\"M0,1 L5,5 L0,9 Z\" stroke=\"" + SvgColor(color) + "\" fill=\"#FFFFFF\"/>";
        case TQVLTermType::ttCrowOnlyOne:
            return "<path d=\"M3,1 L3,9 M1,1 L1,9\" " + stroke + "/>";
        case TQVLTermType::ttCrowZeroOne:
            return "<path d=\"M3,1 L3,9\" " + stroke + "/><circle cx=\"0\" cy=\"5\" r=\"1.5\" stroke=\"" +
                   SvgColor(color) + "\" fill=\"#FFFFFF\"/>";
        case TQVLTermType::ttCrowOneMany:
            return "<path d=\"M5,1 L2,5 L5,9 M1,1 L1,9\" " + stroke + "/>";
        case TQVLTermType::ttCrowZeroMany:
            return "<path d=\"M5,1 L2,5 L5,9\" " + stroke +
                   "/><circle cx=\"0\" cy=\"5\" r=\"1.5\" stroke=\"" + SvgColor(color) +
                   "\" fill=\"#FFFFFF\"/>";
    }
    return {};
}

std::string AddMarker(const std::string& id, const std::string& sizing, const std::string& shape,
                      std::vector<std::string>& defs) {
    const std::string def = fmt::format(
        "<marker id=\"{}\" viewBox=\"0 0 10 10\" refX=\"5\" refY=\"5\" {} "
        "orient=\"auto-start-reverse\">{}</marker>",
        id, sizing, shape);
    if (std::find(defs.begin(), defs.end(), def) == defs.end()) defs.push_back(def);
    return "url(#" + id + ")";
}

}  // namespace

std::string SvgTerminatorMarker(TQVLTermType type, TAlphaColor color, std::vector<std::string>& defs) {
    if (type == TQVLTermType::ttNone) return {};
    // markerUnits="strokeWidth" scales the marker with the pen.
    return AddMarker(fmt::format("term{}_{:08X}", static_cast<int>(type), color),
                     "markerWidth=\"6\" markerHeight=\"6\" markerUnits=\"strokeWidth\"",
                     MarkerShape(type, color), defs);
}

std::string SvgTerminatorMarker(TQVLTermType type, TAlphaColor color, double size,
                                std::vector<std::string>& defs) {
    if (type == TQVLTermType::ttNone || !(size > 0.0)) return {};
    // The shape reaches half the box from the line's end, so the box is twice the terminator's size.
    const std::string box = SvgNumber(2.0 * size);
    std::string tag = box;
    std::replace(tag.begin(), tag.end(), '.', 'p');
    return AddMarker(
        fmt::format("term{}_{:08X}_{}", static_cast<int>(type), color, tag),
        fmt::format("markerWidth=\"{0}\" markerHeight=\"{0}\" markerUnits=\"userSpaceOnUse\"", box),
        MarkerShape(type, color), defs);
}

std::string SvgFont(const std::string& family, double height, bool bold, bool italic, bool underline,
                    bool strikeout, TAlphaColor color) {
    std::string out = fmt::format(" font-family=\"{}\" font-size=\"{}\"",
                                  SvgEscape(family.empty() ? "Arial" : family), SvgNumber(height));
    if (bold) out += " font-weight=\"bold\"";
    if (italic) out += " font-style=\"italic\"";
    if (underline || strikeout)
        out += fmt::format(" text-decoration=\"{}\"", underline && strikeout ? "underline line-through"
                                                      : underline            ? "underline"
                                                                             : "line-through");
    out += fmt::format(" fill=\"{}\"", SvgColor(color)) + Opacity("fill-opacity", color);
    return out;
}

}  // namespace Orvex
