#include "orvex/diagrams/chart_import.h"

#include <array>

#include "orvex/core/regex.h"
#include "orvex/core/text.h"
#include "orvex/diagrams/diagram_import.h"

namespace Orvex {
namespace {

// Tried in order; the first that takes the text wins.
constexpr std::array<TQVLChartReader, 5> kReaders{
    &QVLReadPieChart, &QVLReadDataTreeChart, &QVLReadTimingChart, &QVLReadNetworkChart, &QVLReadSaltChart,
};

// The Mermaid header words of chart types.
constexpr std::array<std::string_view, 19> kMermaidChartHeaders{
    "gantt",    "pie",        "quadrantchart", "xychart-beta", "xychart",   "gitgraph",
    "timeline", "journey",    "kanban",        "packet-beta",  "packet",    "sankey-beta",
    "sankey",   "radar-beta", "treemap-beta",  "treemap",      "venn-beta", "requirementdiagram",
    "zenuml"};

// The PlantUML start words of chart-like kinds.
constexpr std::array<std::string_view, 10> kPlantUMLChartStarts{
    "gantt", "wire", "chronology", "files", "ditaa", "ebnf", "regex", "math", "latex", "board"};

std::string PlantUMLStartWord(std::string_view text) {
    static const Qvl::Types::TRegex kStart(
        R"(^\s*@start(\w+))", {Qvl::Types::TRegexFlag::rfCaseless, Qvl::Types::TRegexFlag::rfMultiline});
    Qvl::Types::TRegexMatch match;
    if (!kStart.Match(text, match)) return {};
    return Qvl::Utils::ToLowerAscii(match.Group(1));
}

}  // namespace

bool QVLImportChart(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel) {
    for (const TQVLChartReader read : kReaders)
        if (read(aText, aFormat, aModel)) {
            aModel.fKind = TQVLDiagramKind::dkChart;
            return true;
        }
    return false;
}

void QVLNoteUndrawnChart(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel) {
    std::string type;
    if (aFormat == TQVLDiagramFormat::dgMermaid) {
        const std::string header = QVLMermaidHeaderWord(aText);
        for (const std::string_view h : kMermaidChartHeaders)
            if (header == h) type = header;
    } else if (aFormat == TQVLDiagramFormat::dgPlantUML) {
        const std::string start = PlantUMLStartWord(aText);
        for (const std::string_view s : kPlantUMLChartStarts)
            if (start == s) type = start;
    }
    if (type.empty()) return;
    aModel.AddDiagnostic(TQVLDiagramDiagnosticSeverity::dsWarning, 0, "CHART_NOT_DRAWN",
                         "A " + type + " chart is not drawn as a chart yet; it is shown as boxes and links.",
                         "");
}

}  // namespace Orvex
