#include "orvex/diagrams/diagram_import.h"

#include <array>

#include "orvex/core/regex.h"
#include "orvex/core/text.h"
#include "orvex/diagrams/chart_import.h"
#include "orvex/diagrams/diagram_parse.h"
#include "orvex/diagrams/diagram_text.h"
#include "orvex/diagrams/import_text.h"
#include "orvex/diagrams/mindmap_import.h"
#include "orvex/diagrams/sequence_import.h"
#include "orvex/diagrams/uml_import.h"

namespace Orvex {
namespace {

using Qvl::Utils::Trim;

// The words a Mermaid diagram may start with; Mermaid itself refuses a text whose first statement is
// none of them.
constexpr std::array<std::string_view, 32> kMermaidHeaders{
    "graph",           "flowchart",    "flowchart-elk",   "sequencediagram",    "classdiagram",
    "classdiagram-v2", "statediagram", "statediagram-v2", "erdiagram",          "journey",
    "gantt",           "pie",          "quadrantchart",   "requirementdiagram", "gitgraph",
    "c4context",       "c4container",  "c4component",     "c4dynamic",          "c4deployment",
    "mindmap",         "timeline",     "zenuml",          "sankey-beta",        "xychart-beta",
    "block-beta",      "packet-beta",  "kanban",          "architecture-beta",  "radar-beta",
    "treemap-beta",    "venn-beta"};

bool IsMermaidHeader(std::string_view word) {
    for (const std::string_view h : kMermaidHeaders)
        if (word == h) return true;
    // The words that lost their "-beta" on the way to a stable release, and the newer kinds.
    return word == "sankey" || word == "xychart" || word == "block" || word == "packet" ||
           word == "architecture" || word == "treemap" || word == "ishikawa-beta" ||
           word == "treeview-beta" || word == "requirement" || word == "info";
}

bool HasPlantUMLMarker(std::string_view text) {
    static const Qvl::Types::TRegex kMarker(
        R"(^\s*@start\w+)", {Qvl::Types::TRegexFlag::rfCaseless, Qvl::Types::TRegexFlag::rfMultiline});
    return kMarker.Match(text);
}

// True when every line that says something was refused by the core parser: prose, not a diagram.
bool NothingRecognized(std::string_view text, const TORXDiagramModel& core) {
    std::size_t said = 0;
    for (const std::string_view line : QVLSplitDiagramLines(text))
        if (!Trim(line).empty()) ++said;
    std::size_t refused = 0;
    for (const auto& d : core.Diagnostics())
        if (d.Code.ends_with("UNRECOGNIZED_LINE")) ++refused;
    return said > 0 && refused >= said;
}

std::unique_ptr<TORXDiagramModel> Refuse(std::string_view detail) {
    auto model = std::make_unique<TORXDiagramModel>();
    model->AddDiagnostic(TQVLDiagramDiagnosticSeverity::dsError, 0, "DIAGRAM_NOT_RECOGNIZED",
                         std::string("The text is not a diagram: ") + std::string(detail), "");
    return model;
}

// What the frame adds to a core model that no reader took: the title of the front matter.
void AddFrameExtras(std::string_view text, TQVLDiagramFormat format, TORXDiagramModel& model) {
    if (format != TQVLDiagramFormat::dgMermaid || !model.Title().empty()) return;
    model.fTitle = QVLFrontMatterValue(text, "title");
}

}  // namespace

std::string QVLMermaidHeaderWord(std::string_view aText, std::size_t* aLineNo) {
    const auto lines = QVLSplitDiagramLines(aText);
    std::size_t i = QVLFrontMatterEnd(lines);
    bool inDirective = false;
    for (; i < lines.size(); ++i) {
        const std::string_view line = Trim(lines[i]);
        if (inDirective) {
            if (line.find("}%%") != std::string_view::npos) inDirective = false;
            continue;
        }
        if (line.starts_with("%%{")) {
            inDirective = line.find("}%%") == std::string_view::npos;
            continue;
        }
        if (line.empty() || line.starts_with("%%")) continue;
        std::size_t end = 0;
        while (end < line.size() && line[end] != ' ' && line[end] != '\t' && line[end] != ';' &&
               line[end] != ':')
            ++end;
        if (aLineNo != nullptr) *aLineNo = i + 1;
        return Qvl::Utils::ToLowerAscii(line.substr(0, end));
    }
    return {};
}

std::unique_ptr<TORXDiagramModel> QVLImportDiagram(std::string_view aText, TQVLDiagramFormat aFormat,
                                                   const TQVLImportOptions& aOptions) {
    if (aFormat == TQVLDiagramFormat::dgAuto) aFormat = QVLDetectDiagramFormat(aText);
    if (aOptions.Core) return QVLParseDiagram(aText, aFormat);

    if (aFormat == TQVLDiagramFormat::dgMermaid) {
        const std::string header = QVLMermaidHeaderWord(aText);
        if (header.empty()) return Refuse("it has no statements.");
        if (!IsMermaidHeader(header))
            return Refuse(
                "a Mermaid diagram starts with its type (flowchart, sequenceDiagram, classDiagram, "
                "...), and \"" +
                header + "\" is none.");
    }

    auto model = std::make_unique<TORXDiagramModel>();
    if (QVLImportChart(aText, aFormat, *model)) return model;
    model->Clear();
    if (QVLImportMindMap(aText, aFormat, *model)) return model;
    model->Clear();
    if (QVLImportSequence(aText, aFormat, *model)) return model;
    model->Clear();
    if (QVLImportFlowchart(aText, aFormat, *model)) return model;
    model->Clear();
    if (QVLImportStructure(aText, aFormat, *model)) return model;
    model->Clear();
    if (QVLImportUml(aText, aFormat, *model)) return model;
    model->Clear();
    if (QVLImportRequirementDiagram(aText, aFormat, *model)) return model;

    model = QVLParseDiagram(aText, aFormat);
    if (aFormat == TQVLDiagramFormat::dgPlantUML && !HasPlantUMLMarker(aText) &&
        (NothingRecognized(aText, *model) || (model->Nodes().empty() && model->Participants().empty())))
        return Refuse("no line reads as PlantUML, and it has no @startuml.");
    AddFrameExtras(aText, aFormat, *model);
    QVLNoteUndrawnChart(aText, aFormat, *model);
    return model;
}

}  // namespace Orvex
