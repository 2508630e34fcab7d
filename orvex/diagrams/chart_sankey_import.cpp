// Mermaid sankey diagrams: CSV lines `source,target,value`, where a field in double quotes may hold
// commas and a doubled quote stands for one.
#include <algorithm>
#include <functional>
#include <map>
#include <memory>

#include "orvex/core/text.h"
#include "orvex/diagrams/chart_import.h"
#include "orvex/diagrams/chart_sankey.h"
#include "orvex/diagrams/chart_text.h"
#include "orvex/io/json.h"

namespace Orvex {
namespace {

using Qvl::Utils::Trim;
constexpr auto kWarning = TQVLDiagramDiagnosticSeverity::dsWarning;
constexpr auto kError = TQVLDiagramDiagnosticSeverity::dsError;

// The fields of one CSV record; false when a quoted field is not closed or stray text follows it.
bool SplitCsv(std::string_view line, std::vector<std::string>& fields) {
    fields.clear();
    std::size_t i = 0;
    while (true) {
        std::string field;
        while (i < line.size() && line[i] == ' ') ++i;
        if (i < line.size() && line[i] == '"') {
            ++i;
            while (true) {
                if (i >= line.size()) return false;
                if (line[i] == '"') {
                    if (i + 1 < line.size() && line[i + 1] == '"') {
                        field += '"';
                        i += 2;
                        continue;
                    }
                    ++i;
                    break;
                }
                field += line[i++];
            }
            while (i < line.size() && line[i] == ' ') ++i;
            if (i < line.size() && line[i] != ',') return false;
        } else {
            const std::size_t comma = std::min(line.find(',', i), line.size());
            field = std::string(Trim(line.substr(i, comma - i)));
            i = comma;
        }
        fields.push_back(std::move(field));
        if (i >= line.size()) return true;
        ++i;  // the comma
    }
}

// True when target already reaches source through the links so far: one more link would close a loop,
// and a loop has no left-to-right order to draw.
bool Reaches(const std::multimap<std::string, std::string>& next, const std::string& from,
             const std::string& to) {
    std::vector<std::string> stack{from};
    std::vector<std::string> seen;
    while (!stack.empty()) {
        const std::string at = stack.back();
        stack.pop_back();
        if (at == to) return true;
        if (std::find(seen.begin(), seen.end(), at) != seen.end()) continue;
        seen.push_back(at);
        const auto [first, last] = next.equal_range(at);
        for (auto it = first; it != last; ++it) stack.push_back(it->second);
    }
    return false;
}

}  // namespace

std::vector<std::string> TQVLSankeyChart::Nodes() const {
    std::vector<std::string> nodes;
    for (const TLink& l : Links)
        for (const std::string* name : {&l.Source, &l.Target})
            if (std::find(nodes.begin(), nodes.end(), *name) == nodes.end()) nodes.push_back(*name);
    return nodes;
}

void TQVLSankeyChart::WriteJson(TJSON& aOut) const {
    TJSON links = TJSON::array();
    for (const TLink& l : Links)
        links.push_back(TJSON{{"source", l.Source}, {"target", l.Target}, {"value", l.Value}});
    aOut["links"] = std::move(links);
}

bool QVLReadSankeyChart(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel) {
    TQVLChartText text;
    if (!QVLReadChartText(aText, aFormat, {"sankey-beta", "sankey"}, aModel, text)) return false;
    auto chart = std::make_shared<TQVLSankeyChart>();
    QVLChartBareHeader(aModel, text, "SANKEY_HEADER");
    std::multimap<std::string, std::string> next;
    std::vector<std::string> fields;
    for (const TQVLChartLine& line : text.Lines) {
        double value = 0;
        if (!SplitCsv(line.Text, fields) || fields.size() != 3 || fields[0].empty() || fields[1].empty()) {
            QVLChartNote(
                aModel, line, kWarning, "SANKEY_UNRECOGNIZED_LINE",
                "A sankey line is `source,target,value`; put a name holding a comma in double quotes.");
            continue;
        }
        if (!QVLChartNumber(Trim(fields[2]), value) || value < 0) {
            QVLChartNote(aModel, line, kError, "SANKEY_VALUE", "A flow's value is a number of zero or more.");
            continue;
        }
        if (Reaches(next, fields[1], fields[0])) {
            QVLChartNote(aModel, line, kError, "SANKEY_CYCLE",
                         "The flow closes a loop back to \"" + fields[0] +
                             "\", and a loop has no left-to-right order.");
            continue;
        }
        next.emplace(fields[0], fields[1]);
        chart->Links.push_back({fields[0], fields[1], value});
    }
    aModel.SetChart(std::move(chart));
    return true;
}

}  // namespace Orvex
