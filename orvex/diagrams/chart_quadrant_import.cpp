// Mermaid quadrant charts: `x-axis Low --> High`, `y-axis ...`, `quadrant-1` to `quadrant-4`, points
// `Name[:::class]: [x, y] [radius: 10, color: #f00, stroke-color: #000, stroke-width: 2px]`, and
// `classDef name <styles>`.
#include <memory>

#include "orvex/core/regex.h"
#include "orvex/core/text.h"
#include "orvex/diagrams/chart_import.h"
#include "orvex/diagrams/chart_quadrant.h"
#include "orvex/diagrams/chart_text.h"
#include "orvex/diagrams/import_text.h"
#include "orvex/io/json.h"

namespace Orvex {
namespace {

using Qvl::Types::TRegex;
using Qvl::Types::TRegexFlag;
using Qvl::Types::TRegexMatch;
using Qvl::Utils::ToLowerAscii;
using Qvl::Utils::Trim;
using TPointStyle = TQVLQuadrantChart::TPointStyle;
constexpr auto kWarning = TQVLDiagramDiagnosticSeverity::dsWarning;
constexpr auto kError = TQVLDiagramDiagnosticSeverity::dsError;

// A pixel count: "10" or "10px".
bool ReadPixels(std::string_view text, double& value) {
    if (text.ends_with("px")) text.remove_suffix(2);
    return QVLChartNumber(Trim(text), value) && value >= 0;
}

// "radius: 10, color: #ff0000, ..." onto aStyle; false with aBad naming the first declaration it cannot
// read (an unknown property, or a value of the wrong kind).
bool ReadPointStyle(std::string_view text, TPointStyle& style, std::string& bad) {
    for (const std::string_view item : QVLSplitChartList(text)) {
        const std::size_t colon = item.find(':');
        const std::string key =
            colon == std::string_view::npos ? "" : ToLowerAscii(Trim(item.substr(0, colon)));
        const std::string_view value = colon == std::string_view::npos ? "" : Trim(item.substr(colon + 1));
        double number = 0;
        TAlphaColor color = 0;
        bool ok = true;
        if (key == "radius" && (ok = ReadPixels(value, number)))
            style.Radius = number;
        else if (key == "stroke-width" && (ok = ReadPixels(value, number)))
            style.StrokeWidth = number;
        else if (key == "color" && (ok = QVLReadColor(value, color)))
            style.Color = color;
        else if (key == "stroke-color" && (ok = QVLReadColor(value, color)))
            style.StrokeColor = color;
        else if (key != "radius" && key != "stroke-width" && key != "color" && key != "stroke-color")
            ok = false;
        if (!ok) {
            bad = std::string(item);
            return false;
        }
    }
    return true;
}

TJSON StyleJson(const std::string& className, const TPointStyle& style) {
    TJSON out = TJSON::object();
    if (!className.empty()) out["class"] = className;
    if (style.Radius) out["radius"] = *style.Radius;
    if (style.Color) out["color"] = QVLChartColorText(*style.Color);
    if (style.StrokeColor) out["strokeColor"] = QVLChartColorText(*style.StrokeColor);
    if (style.StrokeWidth) out["strokeWidth"] = *style.StrokeWidth;
    return out;
}

// A coordinate of a point: a number from 0 to 1.
bool ReadCoordinate(std::string_view text, double& value) {
    return QVLChartNumber(Trim(text), value) && value >= 0 && value <= 1;
}

}  // namespace

TQVLQuadrantChart::TPointStyle TQVLQuadrantChart::StyleOf(const TPoint& aPoint) const {
    TPointStyle style;
    if (const auto found = Classes.find(aPoint.Class); found != Classes.end()) style = found->second;
    if (aPoint.Style.Radius) style.Radius = aPoint.Style.Radius;
    if (aPoint.Style.Color) style.Color = aPoint.Style.Color;
    if (aPoint.Style.StrokeColor) style.StrokeColor = aPoint.Style.StrokeColor;
    if (aPoint.Style.StrokeWidth) style.StrokeWidth = aPoint.Style.StrokeWidth;
    return style;
}

void TQVLQuadrantChart::WriteJson(TJSON& aOut) const {
    aOut["xAxis"] = XAxis;
    aOut["yAxis"] = YAxis;
    aOut["quadrants"] = Quadrants;
    TJSON points = TJSON::array();
    for (const TPoint& p : Points) {
        TJSON point{{"text", p.Text}, {"x", p.X}, {"y", p.Y}};
        const TPointStyle style = StyleOf(p);
        if (!p.Class.empty() || !style.IsEmpty()) point["style"] = StyleJson(p.Class, style);
        points.push_back(std::move(point));
    }
    aOut["points"] = std::move(points);
}

bool QVLReadQuadrantChart(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel) {
    TQVLChartText text;
    if (!QVLReadChartText(aText, aFormat, {"quadrantchart"}, aModel, text)) return false;
    static const TRegex kAxis(R"(^([xy])-axis\b\s*(.*?)(?:\s*--+>\s*(.*))?$)", {TRegexFlag::rfCaseless});
    static const TRegex kQuadrant(R"(^quadrant-([1-4])\b\s*(.*)$)", {TRegexFlag::rfCaseless});
    static const TRegex kClassDef(R"(^classDef\s+([\w-]+)\s*(.*)$)");
    static const TRegex kPoint(R"(^(.+?)(?::::\s*([\w-]+))?\s*:\s*\[([^\]]*)\]\s*(.*)$)");
    auto chart = std::make_shared<TQVLQuadrantChart>();

    QVLChartBareHeader(aModel, text, "QUADRANT_HEADER");
    for (const TQVLChartLine& line : text.Lines) {
        TRegexMatch m;
        std::string bad;
        if (kAxis.MatchAt(line.Text, 0, m)) {
            auto& axis = ToLowerAscii(m.Group(1)) == "x" ? chart->XAxis : chart->YAxis;
            axis = {QVLPlainCaption(m.Group(2)), m.Matched(3) ? QVLPlainCaption(m.Group(3)) : std::string()};
        } else if (kQuadrant.MatchAt(line.Text, 0, m)) {
            chart->Quadrants[static_cast<std::size_t>(m.Group(1)[0] - '1')] = QVLPlainCaption(m.Group(2));
        } else if (kClassDef.MatchAt(line.Text, 0, m)) {
            TPointStyle style;
            if (!ReadPointStyle(m.Group(2), style, bad))
                QVLChartNote(
                    aModel, line, kWarning, "QUADRANT_STYLE",
                    "\"" + bad + "\" is not a point style: radius, color, stroke-color or stroke-width.");
            chart->Classes[std::string(m.Group(1))] = style;
        } else if (kPoint.MatchAt(line.Text, 0, m)) {
            TQVLQuadrantChart::TPoint point{QVLPlainCaption(m.Group(1)), 0, 0, std::string(m.Group(2)), {}};
            const auto coordinates = QVLSplitChartList(m.Group(3));
            if (coordinates.size() != 2 || !ReadCoordinate(coordinates[0], point.X) ||
                !ReadCoordinate(coordinates[1], point.Y)) {
                QVLChartNote(aModel, line, kError, "QUADRANT_POINT",
                             "A point's coordinates are two numbers from 0 to 1: `Name: [0.3, 0.6]`.");
                continue;
            }
            if (!ReadPointStyle(m.Group(4), point.Style, bad))
                QVLChartNote(
                    aModel, line, kWarning, "QUADRANT_STYLE",
                    "\"" + bad + "\" is not a point style: radius, color, stroke-color or stroke-width.");
            chart->Points.push_back(std::move(point));
        } else {
            QVLChartNote(aModel, line, kWarning, "QUADRANT_UNRECOGNIZED_LINE",
                         "A quadrant chart line is an axis, a quadrant title, a classDef or `Name: [x, y]`.");
        }
    }
    for (const auto& point : chart->Points)
        if (!point.Class.empty() && !chart->Classes.contains(point.Class))
            aModel.AddDiagnostic(kWarning, 0, "QUADRANT_CLASS",
                                 "The point \"" + point.Text + "\" names the class \"" + point.Class +
                                     "\", which no classDef defines.",
                                 "");
    aModel.SetChart(std::move(chart));
    return true;
}

}  // namespace Orvex
