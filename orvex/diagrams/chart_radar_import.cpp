// Mermaid radar charts: `axis a["Label"], b, c`, `curve id["Label"]{1, 2, 3}` or `{a: 1, b: 2, c: 3}`
// (braces may span lines), and the options `max`, `min`, `ticks`, `graticule circle|polygon` and
// `showLegend true|false`.
#include <algorithm>
#include <memory>

#include "orvex/core/regex.h"
#include "orvex/core/text.h"
#include "orvex/diagrams/chart_import.h"
#include "orvex/diagrams/chart_radar.h"
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
constexpr auto kWarning = TQVLDiagramDiagnosticSeverity::dsWarning;
constexpr auto kError = TQVLDiagramDiagnosticSeverity::dsError;
constexpr int kMostTicks = 32;  // more rings than this only blacken the chart

// `id` or `id["Label"]`: the name and the label (the name when there is none).
bool ReadNamed(std::string_view text, std::string& name, std::string& label) {
    static const TRegex kNamed(R"re(^([\w-]+)\s*(?:\[\s*(.*?)\s*\])?$)re");
    TRegexMatch m;
    if (!kNamed.MatchAt(Trim(text), 0, m)) return false;
    name = std::string(m.Group(1));
    label = m.Matched(2) ? QVLPlainCaption(m.Group(2)) : name;
    return true;
}

// The values between a curve's braces, in the axes' order; false with aProblem set when they cannot be.
bool ReadEntries(std::string_view text, const std::vector<TQVLRadarChart::TAxis>& axes,
                 std::vector<double>& values, std::string& problem) {
    const auto items = QVLSplitChartList(text);
    const bool named = !items.empty() && items.front().find(':') != std::string_view::npos;
    std::vector<std::pair<std::string, double>> byName;
    for (const std::string_view item : items) {
        const std::size_t colon = item.find(':');
        double v = 0;
        if ((colon != std::string_view::npos) != named ||
            !QVLChartNumber(Trim(named ? item.substr(colon + 1) : item), v)) {
            problem = "A curve lists numbers, either all plain `{1, 2, 3}` or all named `{a: 1, b: 2}`.";
            return false;
        }
        if (named)
            byName.emplace_back(std::string(Trim(item.substr(0, colon))), v);
        else
            values.push_back(v);
    }
    if (!named) return true;
    for (const auto& axis : axes) {
        const auto found =
            std::find_if(byName.begin(), byName.end(), [&](const auto& e) { return e.first == axis.Name; });
        if (found == byName.end()) {
            problem = "The curve has no value for the axis \"" + axis.Name + "\".";
            return false;
        }
        values.push_back(found->second);
    }
    return true;
}

}  // namespace

double TQVLRadarChart::Top() const {
    if (Max) return *Max;
    std::optional<double> top;
    for (const auto& c : Curves)
        for (const double v : c.Values) top = std::max(top.value_or(v), v);
    return top && *top > Min ? *top : Min + 1;
}

void TQVLRadarChart::WriteJson(TJSON& aOut) const {
    TJSON axes = TJSON::array();
    for (const auto& a : Axes) axes.push_back(TJSON{{"name", a.Name}, {"label", a.Label}});
    aOut["axes"] = std::move(axes);
    TJSON curves = TJSON::array();
    for (const auto& c : Curves)
        curves.push_back(TJSON{{"name", c.Name}, {"label", c.Label}, {"values", c.Values}});
    aOut["curves"] = std::move(curves);
    aOut["min"] = Min;
    aOut["max"] = Max ? TJSON(*Max) : TJSON(nullptr);
    aOut["ticks"] = Ticks;
    aOut["graticule"] = PolygonGraticule ? "polygon" : "circle";
    aOut["showLegend"] = ShowLegend;
}

bool QVLReadRadarChart(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel) {
    TQVLChartText text;
    if (!QVLReadChartText(aText, aFormat, {"radar-beta", "radar"}, aModel, text)) return false;
    static const TRegex kStatement(R"(^(axis|curve|max|min|ticks|graticule|showlegend)\b\s*(.*)$)",
                                   {TRegexFlag::rfCaseless});
    static const TRegex kCurve(R"(^(.*?)\s*\{(.*)\}$)");
    auto chart = std::make_shared<TQVLRadarChart>();
    QVLChartBareHeader(aModel, text, "RADAR_HEADER");

    for (std::size_t i = 0; i < text.Lines.size(); ++i) {
        const TQVLChartLine& line = text.Lines[i];
        TRegexMatch m;
        if (!kStatement.MatchAt(line.Text, 0, m)) {
            QVLChartNote(
                aModel, line, kWarning, "RADAR_UNRECOGNIZED_LINE",
                "A radar chart line is `axis`, `curve`, `max`, `min`, `ticks`, `graticule` or `showLegend`.");
            continue;
        }
        const std::string keyword = ToLowerAscii(m.Group(1));
        std::string rest(Trim(m.Group(2)));
        if (keyword == "axis") {
            for (const std::string_view item : QVLSplitChartList(rest)) {
                if (item.empty()) continue;  // a trailing comma, as in "axis a, b,"
                TQVLRadarChart::TAxis axis;
                if (ReadNamed(item, axis.Name, axis.Label))
                    chart->Axes.push_back(std::move(axis));
                else
                    QVLChartNote(aModel, line, kWarning, "RADAR_AXIS",
                                 "An axis is `name` or `name[\"Label\"]`.");
            }
            continue;
        }
        if (keyword == "curve") {
            // A curve's braces may hold several lines.
            while (rest.find('}') == std::string::npos && i + 1 < text.Lines.size() &&
                   rest.find('{') != std::string::npos)
                rest += " " + std::string(text.Lines[++i].Text);
            TQVLRadarChart::TCurve curve;
            std::string problem = "A curve is `name[\"Label\"]{1, 2, 3}`.";
            if (!kCurve.MatchAt(rest, 0, m) || !ReadNamed(m.Group(1), curve.Name, curve.Label) ||
                !ReadEntries(m.Group(2), chart->Axes, curve.Values, problem)) {
                QVLChartNote(aModel, line, kError, "RADAR_CURVE", problem);
                continue;
            }
            if (curve.Values.size() != chart->Axes.size())
                QVLChartNote(aModel, line, kWarning, "RADAR_CURVE",
                             "The curve has " + std::to_string(curve.Values.size()) + " values for " +
                                 std::to_string(chart->Axes.size()) + " axes.");
            chart->Curves.push_back(std::move(curve));
            continue;
        }
        double number = 0;
        const std::string value = ToLowerAscii(rest);
        if ((keyword == "max" || keyword == "min") && QVLChartNumber(rest, number)) {
            if (keyword == "max")
                chart->Max = number;
            else
                chart->Min = number;
        } else if (keyword == "ticks" && QVLChartNumber(rest, number) && number >= 1 &&
                   number == static_cast<int>(number)) {
            chart->Ticks = std::min(static_cast<int>(number), kMostTicks);
        } else if (keyword == "graticule" && (value == "circle" || value == "polygon")) {
            chart->PolygonGraticule = value == "polygon";
        } else if (keyword == "showlegend" && (value == "true" || value == "false" || value.empty())) {
            chart->ShowLegend = value != "false";
        } else {
            QVLChartNote(
                aModel, line, kWarning, "RADAR_OPTION",
                "`max` and `min` take a number, `ticks` a whole number, `graticule` circle or polygon, "
                "`showLegend` true or false.");
        }
    }
    if (chart->Max && *chart->Max <= chart->Min)
        aModel.AddDiagnostic(kError, 0, "RADAR_RANGE", "The radar's max must be above its min.", "");
    aModel.SetChart(std::move(chart));
    return true;
}

}  // namespace Orvex
