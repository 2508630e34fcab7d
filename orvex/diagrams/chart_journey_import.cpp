// Mermaid user journeys: `journey`, `title T`, `section S`, then `Task: score: actor, actor` lines.
#include <algorithm>
#include <memory>

#include "orvex/core/regex.h"
#include "orvex/core/text.h"
#include "orvex/diagrams/chart_import.h"
#include "orvex/diagrams/chart_journey.h"
#include "orvex/diagrams/chart_reading.h"
#include "orvex/diagrams/chart_text.h"
#include "orvex/diagrams/diagram_import.h"
#include "orvex/diagrams/import_text.h"
#include "orvex/io/json.h"

namespace Orvex {
namespace {

using Qvl::Types::TRegex;
using Qvl::Types::TRegexFlag;
using Qvl::Types::TRegexMatch;
using Qvl::Utils::Trim;
using TSeverity = TQVLDiagramDiagnosticSeverity;

}  // namespace

void TQVLJourney::WriteJson(TJSON& aOut) const {
    TJSON sections = TJSON::array();
    for (const TSection& s : Sections) {
        TJSON tasks = TJSON::array();
        for (const TTask& t : s.Tasks)
            tasks.push_back(TJSON{{"text", t.Text}, {"score", t.Score}, {"actors", t.Actors}});
        sections.push_back(TJSON{{"name", s.Name}, {"tasks", std::move(tasks)}});
    }
    aOut["sections"] = std::move(sections);
}

std::vector<std::string> TQVLJourney::Actors() const {
    std::vector<std::string> actors;
    for (const TSection& s : Sections)
        for (const TTask& t : s.Tasks)
            for (const std::string& a : t.Actors)
                if (std::find(actors.begin(), actors.end(), a) == actors.end()) actors.push_back(a);
    return actors;
}

bool QVLReadJourney(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel) {
    if (aFormat != TQVLDiagramFormat::dgMermaid) return false;
    std::size_t headerLine = 0;
    if (QVLMermaidHeaderWord(aText, &headerLine) != "journey") return false;

    static const TRegex kTitle(R"(^title(?:\s+(.*))?$)");
    static const TRegex kSection(R"(^section\s+(.*)$)");
    // The task's name, its score, and after a second colon the actors separated by commas.
    static const TRegex kTask(R"(^([^:]+):([^:]*)(?::(.*))?$)");
    auto journey = std::make_shared<TQVLJourney>();
    aModel.fTitle = QVLFrontMatterValue(aText, "title");

    const TQVLChartLines lines = QVLChartLines(aText, headerLine);
    if (Qvl::Utils::ToLowerAscii(lines.Header.Text) != "journey")
        aModel.AddDiagnostic(TSeverity::dsWarning, lines.Header.No, "JOURNEY_HEADER",
                             "Nothing may follow \"journey\" on its line.", std::string(lines.Header.Text));
    for (const TUmlLine& line : lines.Body) {
        const std::string source(line.Text);
        TRegexMatch m;
        if (kTitle.MatchAt(line.Text, 0, m)) {
            aModel.fTitle = std::string(Trim(m.Group(1)));
        } else if (kSection.MatchAt(line.Text, 0, m)) {
            journey->Sections.push_back({std::string(Trim(m.Group(1))), {}});
        } else if (kTask.MatchAt(line.Text, 0, m)) {
            TQVLJourney::TTask task;
            task.Text = std::string(Trim(m.Group(1)));
            if (!QVLChartNumber(m.Group(2), task.Score)) {
                aModel.AddDiagnostic(TSeverity::dsError, line.No, "JOURNEY_SCORE",
                                     "A task's score is a number after its colon (1 to 5 as a rule).",
                                     source);
                task.Score = 0;
            }
            if (m.Matched(3)) {
                std::string_view rest = m.Group(3);
                while (!rest.empty()) {
                    const std::size_t comma = rest.find(',');
                    const std::string_view actor = Trim(rest.substr(0, comma));
                    if (!actor.empty()) task.Actors.emplace_back(actor);
                    rest = comma == std::string_view::npos ? std::string_view{} : rest.substr(comma + 1);
                }
            }
            if (journey->Sections.empty()) journey->Sections.push_back({});
            journey->Sections.back().Tasks.push_back(std::move(task));
        } else {
            aModel.AddDiagnostic(TSeverity::dsWarning, line.No, "JOURNEY_UNRECOGNIZED_LINE",
                                 "A journey line is `Task: score: actor, actor`, `section S` or `title T`.",
                                 source);
        }
    }
    aModel.SetChart(std::move(journey));
    return true;
}

}  // namespace Orvex
