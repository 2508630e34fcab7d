#include "orvex/diagrams/chart_import.h"

#include <array>

#include "orvex/core/regex.h"
#include "orvex/core/text.h"
#include "orvex/diagrams/diagram_import.h"

namespace Orvex {
namespace {

// Tried in order; the first that takes the text wins.
constexpr auto kReaders = std::to_array<TQVLChartReader>({
    &QVLReadPieChart,
    &QVLReadMermaidGantt,
    &QVLReadPlantUMLGantt,
    &QVLReadGitGraph,
    &QVLReadTimeline,
    &QVLReadJourney,
    &QVLReadKanban,
    &QVLReadXYChart,
    &QVLReadQuadrantChart,
    &QVLReadPacketChart,
    &QVLReadSankeyChart,
    &QVLReadRadarChart,
    &QVLReadTreemapChart,
    &QVLReadVennChart,
    &QVLReadDataTreeChart,
    &QVLReadTimingChart,
    &QVLReadNetworkChart,
    &QVLReadSaltChart,
});

// The diagram kinds that no reader draws as what they are yet: Mermaid header words and PlantUML start
// words. Their texts go to the core model, which shows them as boxes and links.
constexpr std::array<std::string_view, 1> kUndrawnMermaid{"zenuml"};
constexpr std::array<std::string_view, 9> kUndrawnPlantUML{"wire",  "chronology", "files", "ditaa", "ebnf",
                                                           "regex", "math",       "latex", "board"};

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
        for (const std::string_view h : kUndrawnMermaid)
            if (header == h) type = header;
    } else if (aFormat == TQVLDiagramFormat::dgPlantUML) {
        const std::string start = PlantUMLStartWord(aText);
        for (const std::string_view s : kUndrawnPlantUML)
            if (start == s) type = start;
    }
    if (type.empty()) return;
    aModel.AddDiagnostic(
        TQVLDiagramDiagnosticSeverity::dsWarning, 0, "CHART_NOT_DRAWN",
        "A " + type + " diagram is not drawn as what it is yet; it is shown as boxes and links.", "");
}

}  // namespace Orvex
