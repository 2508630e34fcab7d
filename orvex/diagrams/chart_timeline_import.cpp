// Mermaid timelines: `timeline`, `title T`, `section S`, then `period : event : event` lines, where a line
// starting with ":" adds events to the period before it. Events are separated by a colon followed by a
// blank, so "12:30" stays within one event.
#include <memory>

#include "orvex/core/regex.h"
#include "orvex/core/text.h"
#include "orvex/diagrams/chart_import.h"
#include "orvex/diagrams/chart_reading.h"
#include "orvex/diagrams/chart_timeline.h"
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

// The pieces of "a : b : c" split at every colon followed by a blank (or ending the line), trimmed.
std::vector<std::string> SplitAtEventColons(std::string_view text) {
    std::vector<std::string> pieces;
    std::size_t start = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != ':') continue;
        if (i + 1 < text.size() && text[i + 1] != ' ' && text[i + 1] != '\t') continue;
        pieces.emplace_back(Trim(text.substr(start, i - start)));
        start = i + 1;
    }
    pieces.emplace_back(Trim(text.substr(start)));
    return pieces;
}

}  // namespace

void TQVLTimeline::WriteJson(TJSON& aOut) const {
    TJSON sections = TJSON::array();
    for (const TSection& s : Sections) {
        TJSON periods = TJSON::array();
        for (const TPeriod& p : s.Periods) periods.push_back(TJSON{{"text", p.Text}, {"events", p.Events}});
        sections.push_back(TJSON{{"name", s.Name}, {"periods", std::move(periods)}});
    }
    aOut["sections"] = std::move(sections);
}

bool QVLReadTimeline(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel) {
    if (aFormat != TQVLDiagramFormat::dgMermaid) return false;
    std::size_t headerLine = 0;
    if (QVLMermaidHeaderWord(aText, &headerLine) != "timeline") return false;

    static const TRegex kHeader(R"(^timeline(?:\s+(LR|TD))?\s*$)", {TRegexFlag::rfCaseless});
    static const TRegex kTitle(R"(^title(?:\s+(.*))?$)");
    static const TRegex kSection(R"(^section\s+(.*)$)");
    auto timeline = std::make_shared<TQVLTimeline>();
    aModel.fTitle = QVLFrontMatterValue(aText, "title");

    const TQVLChartLines lines = QVLChartLines(aText, headerLine);
    TRegexMatch m;
    if (!kHeader.MatchAt(lines.Header.Text, 0, m))
        aModel.AddDiagnostic(TSeverity::dsWarning, lines.Header.No, "TIMELINE_HEADER",
                             "Only a direction (LR or TD) may follow \"timeline\".",
                             std::string(lines.Header.Text));
    else if (Qvl::Utils::ToLowerAscii(m.Group(1)) == "td")
        aModel.AddDiagnostic(TSeverity::dsInfo, lines.Header.No, "TIMELINE_DIRECTION",
                             "Timelines are drawn left to right; TD is not drawn top to bottom.",
                             std::string(lines.Header.Text));
    for (const TUmlLine& line : lines.Body) {
        const std::string source(line.Text);
        if (kTitle.MatchAt(line.Text, 0, m)) {
            aModel.fTitle = std::string(Trim(m.Group(1)));
        } else if (kSection.MatchAt(line.Text, 0, m)) {
            timeline->Sections.push_back({std::string(Trim(m.Group(1))), {}});
        } else if (line.Text.front() == ':') {
            std::vector<std::string> events = SplitAtEventColons(line.Text.substr(1));
            TQVLTimeline::TPeriod* period = nullptr;
            if (!timeline->Sections.empty() && !timeline->Sections.back().Periods.empty())
                period = &timeline->Sections.back().Periods.back();
            if (period == nullptr) {
                aModel.AddDiagnostic(TSeverity::dsError, line.No, "TIMELINE_EVENT_WITHOUT_PERIOD",
                                     "Events on a line of their own belong to the period above, and "
                                     "there is none.",
                                     source);
                continue;
            }
            for (std::string& e : events)
                if (!e.empty()) period->Events.push_back(std::move(e));
        } else {
            std::vector<std::string> pieces = SplitAtEventColons(line.Text);
            if (pieces.front().empty()) {
                aModel.AddDiagnostic(TSeverity::dsWarning, line.No, "TIMELINE_UNRECOGNIZED_LINE",
                                     "A timeline line is `period : event : event`.", source);
                continue;
            }
            if (timeline->Sections.empty()) timeline->Sections.push_back({});
            TQVLTimeline::TPeriod period{std::move(pieces.front()), {}};
            for (std::size_t i = 1; i < pieces.size(); ++i)
                if (!pieces[i].empty()) period.Events.push_back(std::move(pieces[i]));
            timeline->Sections.back().Periods.push_back(std::move(period));
        }
    }
    if (timeline->Sections.empty()) timeline->Sections.push_back({});
    aModel.SetChart(std::move(timeline));
    return true;
}

}  // namespace Orvex
