// Mermaid XY charts: `xychart-beta [horizontal]`, `x-axis "title" [a, b]` or `x-axis title min --> max`,
// `y-axis "title" [min --> max]`, and `bar`/`line` series with an optional name and a list of values.
#include <algorithm>
#include <memory>

#include "orvex/core/regex.h"
#include "orvex/core/text.h"
#include "orvex/diagrams/chart_import.h"
#include "orvex/diagrams/chart_text.h"
#include "orvex/diagrams/chart_xy.h"
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

TJSON AxisJson(const TQVLXYChart::TAxis& axis) {
    if (!axis.Numeric) return TJSON{{"title", axis.Title}, {"categories", axis.Categories}};
    TJSON out{{"title", axis.Title}};
    out["min"] = axis.Min ? TJSON(*axis.Min) : TJSON(nullptr);
    out["max"] = axis.Max ? TJSON(*axis.Max) : TJSON(nullptr);
    return out;
}

bool ReadOrientation(std::string_view word, bool& horizontal) {
    const std::string lower = ToLowerAscii(word);
    if (lower != "horizontal" && lower != "vertical") return false;
    horizontal = lower == "horizontal";
    return true;
}

// An axis statement after its keyword: a title, then categories in brackets or a range "min --> max".
bool ReadAxis(std::string_view rest, bool allowCategories, TQVLXYChart::TAxis& axis) {
    static const TRegex kRange(
        R"(^(.*?)\s*([+-]?(?:\d+(?:\.\d+)?|\.\d+))\s*-->\s*([+-]?(?:\d+(?:\.\d+)?|\.\d+))$)");
    static const TRegex kCategories(R"(^(.*?)\s*\[(.*)\]$)");
    TRegexMatch m;
    if (kRange.MatchAt(rest, 0, m)) {
        double low = 0;
        double high = 0;
        if (!QVLChartNumber(m.Group(2), low) || !QVLChartNumber(m.Group(3), high)) return false;
        axis = {QVLPlainCaption(m.Group(1)), {}, true, low, high};
        return true;
    }
    if (kCategories.MatchAt(rest, 0, m)) {
        if (!allowCategories) return false;
        axis = {QVLPlainCaption(m.Group(1)), {}, false, {}, {}};
        for (const std::string_view c : QVLSplitChartList(m.Group(2)))
            axis.Categories.push_back(QVLPlainCaption(c));
        return true;
    }
    if (rest.find('[') != std::string_view::npos || rest.find("-->") != std::string_view::npos) return false;
    axis.Title = QVLPlainCaption(rest);
    return !axis.Title.empty();
}

// The data decides what the text leaves open: a numeric category axis 1..n, and the value range.
void FillOpenAxes(TQVLXYChart& chart, bool xSet, bool ySet) {
    if (!xSet && !chart.Series.empty() && !chart.Series.front().Values.empty()) {
        chart.XAxis.Numeric = true;
        chart.XAxis.Min = std::min(1.0, static_cast<double>(chart.Series.front().Values.size()));
        chart.XAxis.Max = static_cast<double>(chart.Series.front().Values.size());
    }
    if (ySet) return;
    chart.YAxis.Numeric = true;
    for (const auto& series : chart.Series)
        for (const double v : series.Values) {
            chart.YAxis.Min = std::min(chart.YAxis.Min.value_or(v), v);
            chart.YAxis.Max = std::max(chart.YAxis.Max.value_or(v), v);
        }
}

}  // namespace

void TQVLXYChart::WriteJson(TJSON& aOut) const {
    aOut["horizontal"] = Horizontal;
    aOut["xAxis"] = AxisJson(XAxis);
    aOut["yAxis"] = AxisJson(YAxis);
    TJSON series = TJSON::array();
    for (const TSeries& s : Series) {
        TJSON one{{"type", s.Line ? "line" : "bar"}, {"values", s.Values}, {"title", s.Title}};
        if (!s.Labels.empty()) one["labels"] = s.Labels;
        series.push_back(std::move(one));
    }
    aOut["series"] = std::move(series);
}

bool QVLReadXYChart(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel) {
    TQVLChartText text;
    if (!QVLReadChartText(aText, aFormat, {"xychart-beta", "xychart"}, aModel, text)) return false;
    static const TRegex kAxis(R"(^([xy])-axis\b\s*(.*)$)", {TRegexFlag::rfCaseless});
    static const TRegex kPoint(R"re(^(\S+?)\s*(?:"([^"]*)")?$)re");
    static const TRegex kSeries(R"(^(bar|line)\b\s*(.*?)\s*\[(.*)\]$)", {TRegexFlag::rfCaseless});
    auto chart = std::make_shared<TQVLXYChart>();
    chart->YAxis.Numeric = true;

    if (!text.HeaderRest.empty() && !ReadOrientation(text.HeaderRest, chart->Horizontal))
        aModel.AddDiagnostic(kWarning, text.HeaderNo, "XY_HEADER",
                             "Only \"horizontal\" or \"vertical\" may follow the XY chart's header.",
                             text.HeaderRest);
    bool xSet = false;
    bool ySet = false;
    for (const TQVLChartLine& line : text.Lines) {
        TRegexMatch m;
        if (ReadOrientation(line.Text, chart->Horizontal)) continue;
        if (kAxis.MatchAt(line.Text, 0, m)) {
            const bool isX = ToLowerAscii(m.Group(1)) == "x";
            TQVLXYChart::TAxis& axis = isX ? chart->XAxis : chart->YAxis;
            TQVLXYChart::TAxis read = axis;
            if (!ReadAxis(Trim(m.Group(2)), isX, read)) {
                QVLChartNote(
                    aModel, line, kWarning, "XY_AXIS",
                    isX ? "An x-axis is `x-axis \"title\" [a, b, c]` or `x-axis \"title\" min --> max`."
                        : "A y-axis is `y-axis \"title\"` or `y-axis \"title\" min --> max`.");
                continue;
            }
            const bool bounded = read.Numeric && read.Min.has_value();
            (isX ? xSet : ySet) = (isX ? xSet : ySet) || bounded || !read.Categories.empty();
            axis = std::move(read);
            continue;
        }
        if (!kSeries.MatchAt(line.Text, 0, m)) {
            QVLChartNote(aModel, line, kWarning, "XY_UNRECOGNIZED_LINE",
                         "An XY chart line is a title, an axis, an orientation, or `bar`/`line` with values "
                         "in brackets.");
            continue;
        }
        TQVLXYChart::TSeries series{ToLowerAscii(m.Group(1)) == "line", QVLPlainCaption(m.Group(2)), {}, {}};
        bool valid = true;
        bool labelled = false;
        for (const std::string_view item : QVLSplitChartList(m.Group(3))) {
            // A value may carry a label in quotes after it: `12 "peak"`.
            TRegexMatch point;
            double v = 0;
            valid = valid && kPoint.MatchAt(item, 0, point) && QVLChartNumber(point.Group(1), v);
            series.Values.push_back(v);
            series.Labels.push_back(valid && point.Matched(2) ? std::string(point.Group(2)) : std::string());
            labelled = labelled || !series.Labels.back().empty();
        }
        if (!labelled) series.Labels.clear();
        if (!valid || series.Values.empty()) {
            QVLChartNote(aModel, line, kError, "XY_VALUE",
                         "A series lists numbers, e.g. `bar [5, 7.5, -2]`.");
            continue;
        }
        const std::size_t categories = chart->XAxis.Categories.size();
        if (!chart->XAxis.Numeric && categories > 0 && series.Values.size() > categories) {
            QVLChartNote(aModel, line, kWarning, "XY_EXTRA_VALUES",
                         "The series has more values than the x-axis has categories; the extra values are "
                         "left out.");
            series.Values.resize(categories);
            if (!series.Labels.empty()) series.Labels.resize(categories);
        }
        chart->Series.push_back(std::move(series));
    }
    FillOpenAxes(*chart, xSet, ySet);
    aModel.SetChart(std::move(chart));
    return true;
}

}  // namespace Orvex
