// Mermaid pie charts: `pie [showData] [title T]`, then `"label" : value` lines, with optional `title`,
// `showData`, accessibility lines and comments.
#include <memory>

#include "orvex/core/regex.h"
#include "orvex/core/text.h"
#include "orvex/diagrams/chart_import.h"
#include "orvex/diagrams/chart_pie.h"
#include "orvex/diagrams/chart_text.h"
#include "orvex/diagrams/diagram_import.h"
#include "orvex/diagrams/diagram_text.h"
#include "orvex/diagrams/import_text.h"
#include "orvex/io/json.h"

namespace Orvex {
namespace {

using Qvl::Types::TRegex;
using Qvl::Types::TRegexFlag;
using Qvl::Types::TRegexMatch;
using Qvl::Utils::Trim;

}  // namespace

void TQVLPieChart::WriteJson(TJSON& aOut) const {
    aOut["showData"] = ShowData;
    TJSON slices = TJSON::array();
    for (const TSlice& s : Slices) slices.push_back(TJSON{{"label", s.Label}, {"value", s.Value}});
    aOut["slices"] = std::move(slices);
}

bool QVLReadPieChart(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel) {
    if (aFormat != TQVLDiagramFormat::dgMermaid) return false;
    std::size_t headerLine = 0;
    if (QVLMermaidHeaderWord(aText, &headerLine) != "pie") return false;

    static const TRegex kHeader(R"(^pie(\s+showData)?(?:\s+title\s+(.*))?$)", {TRegexFlag::rfCaseless});
    static const TRegex kSlice(R"re(^"([^"]*)"\s*:\s*(\S+)$)re");
    static const TRegex kTitle(R"(^title\s+(.*)$)", {TRegexFlag::rfCaseless});
    auto chart = std::make_shared<TQVLPieChart>();
    aModel.fTitle = QVLFrontMatterValue(aText, "title");

    const auto lines = QVLSplitDiagramLines(aText);
    bool inAccBlock = false;
    for (std::size_t i = headerLine - 1; i < lines.size(); ++i) {
        const std::string_view line = Trim(lines[i]);
        const auto lineNo = static_cast<std::int32_t>(i + 1);
        TRegexMatch m;
        if (inAccBlock) {
            inAccBlock = line.find('}') == std::string_view::npos;
            continue;
        }
        if (line.empty() || line.starts_with("%%")) continue;
        if (i + 1 == headerLine) {
            if (!kHeader.MatchAt(line, 0, m)) {
                aModel.AddDiagnostic(TQVLDiagramDiagnosticSeverity::dsWarning, lineNo, "PIE_HEADER",
                                     "Only \"showData\" and \"title\" may follow \"pie\".",
                                     std::string(line));
                continue;
            }
            chart->ShowData = m.Matched(1);
            if (m.Matched(2)) aModel.fTitle = std::string(Trim(m.Group(2)));
            continue;
        }
        if (kSlice.MatchAt(line, 0, m)) {
            double value = 0;
            if (!QVLChartNumber(m.Group(2), value) || value < 0) {
                aModel.AddDiagnostic(TQVLDiagramDiagnosticSeverity::dsError, lineNo, "PIE_VALUE",
                                     "A slice needs a number of zero or more after its colon.",
                                     std::string(line));
                continue;
            }
            chart->Slices.push_back({QVLPlainCaption(m.Group(1)), value});
        } else if (kTitle.MatchAt(line, 0, m)) {
            aModel.fTitle = std::string(Trim(m.Group(1)));
        } else if (Qvl::Utils::ToLowerAscii(line) == "showdata") {
            chart->ShowData = true;
        } else if (line.starts_with("accTitle") || line.starts_with("accDescr")) {
            inAccBlock = line.find('{') != std::string_view::npos && line.find('}') == std::string_view::npos;
        } else {
            aModel.AddDiagnostic(TQVLDiagramDiagnosticSeverity::dsWarning, lineNo, "PIE_UNRECOGNIZED_LINE",
                                 "A pie chart line is `\"label\" : value`.", std::string(line));
        }
    }
    aModel.SetChart(std::move(chart));
    return true;
}

}  // namespace Orvex
