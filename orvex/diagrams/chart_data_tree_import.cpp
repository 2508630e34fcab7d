// PlantUML @startjson and @startyaml diagrams: the document between the markers, "#highlight" lines naming
// rows by their path, and <style> blocks (named as not drawn).
#include <charconv>
#include <memory>

#include "orvex/core/regex.h"
#include "orvex/core/text.h"
#include "orvex/diagrams/chart_data_tree.h"
#include "orvex/diagrams/chart_import.h"
#include "orvex/diagrams/diagram_text.h"
#include "orvex/diagrams/yaml_tree.h"
#include "orvex/io/json_text.h"

namespace Orvex {
namespace {

using Qvl::Types::TRegex;
using Qvl::Types::TRegexFlag;
using Qvl::Types::TRegexMatch;
using Qvl::Utils::Trim;

constexpr auto kError = TQVLDiagramDiagnosticSeverity::dsError;
constexpr auto kWarning = TQVLDiagramDiagnosticSeverity::dsWarning;

// The path of a "#highlight" line: its quoted (or plain) keys separated by "/", a trailing stereotype left
// out.
std::vector<std::string> HighlightPath(std::string_view rest) {
    static const TRegex kStereotype(R"(<<[^>]*>>\s*$)");
    TRegexMatch m;
    if (kStereotype.Match(rest, m)) rest = rest.substr(0, m.Start(0));
    std::vector<std::string> path;
    std::size_t start = 0;
    while (start <= rest.size()) {
        std::size_t end = rest.find('/', start);
        if (end == std::string_view::npos) end = rest.size();
        std::string_view key = Trim(rest.substr(start, end - start));
        if (key.size() >= 2 && key.front() == '"' && key.back() == '"') key = key.substr(1, key.size() - 2);
        if (!key.empty()) path.emplace_back(key);
        start = end + 1;
    }
    return path;
}

bool PathExists(const TJSON& root, const std::vector<std::string>& path) {
    const TJSON* at = &root;
    for (const std::string& key : path) {
        if (at->is_object() && at->contains(key)) {
            at = &(*at)[key];
        } else if (at->is_array()) {
            std::size_t index = 0;
            const auto [end, error] = std::from_chars(key.data(), key.data() + key.size(), index);
            if (error != std::errc{} || end != key.data() + key.size() || index >= at->size()) return false;
            at = &(*at)[index];
        } else {
            return false;
        }
    }
    return !path.empty();
}

std::string JoinPath(const std::vector<std::string>& path) {
    std::string out;
    for (const std::string& key : path) out += (out.empty() ? "" : " / ") + key;
    return out;
}

// The 1-based line of a byte offset in text.
std::int32_t LineOfByte(std::string_view text, std::size_t byte) {
    std::int32_t line = 1;
    for (std::size_t i = 0; i < byte && i < text.size(); ++i)
        if (text[i] == '\n') ++line;
    return line;
}

// Parses the JSON body; a syntax error names the line it was found on.
void ReadJsonBody(const std::string& body, std::int32_t firstLine, TQVLDataTreeChart& chart,
                  TORXDiagramModel& model, const std::vector<std::string_view>& lines) {
    TJSONTextResult parsed = ParseJsonText(body);
    if (parsed) {
        chart.Root = std::move(parsed.Value);
        return;
    }
    std::int32_t line = firstLine;
    std::string message = "The JSON is " + parsed.Message + ".";
    if (parsed.Error == TJSONTextError::jeSyntax) {
        try {
            [[maybe_unused]] const TJSON again = TJSON::parse(body);
        } catch (const TJSON::parse_error& e) {
            // The parser reports the byte after the one it stopped at.
            line = firstLine + LineOfByte(body, e.byte == 0 ? 0 : e.byte - 1) - 1;
            message = "The JSON is not valid: " + std::string(e.what());
        }
    }
    const auto index = static_cast<std::size_t>(line - 1);
    model.AddDiagnostic(kError, line, "DATA_SYNTAX", message, index < lines.size() ? Trim(lines[index]) : "");
}

}  // namespace

void TQVLDataTreeChart::WriteJson(TJSON& aOut) const {
    aOut["root"] = Root;
    TJSON highlights = TJSON::array();
    for (const auto& path : Highlights) highlights.push_back(path);
    aOut["highlights"] = std::move(highlights);
}

bool QVLReadDataTreeChart(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel) {
    if (aFormat != TQVLDiagramFormat::dgPlantUML) return false;
    static const TRegex kStart(R"(^\s*@start(json|yaml)\b)", {TRegexFlag::rfCaseless});
    static const TRegex kEnd(R"(^\s*@end\w*)", {TRegexFlag::rfCaseless});
    static const TRegex kHighlight(R"(^#highlight\b(.*)$)", {TRegexFlag::rfCaseless});
    const auto lines = QVLSplitDiagramLines(aText);
    std::size_t start = 0;
    TRegexMatch m;
    while (start < lines.size() && !kStart.Match(lines[start], m)) ++start;
    if (start == lines.size()) return false;

    auto chart = std::make_shared<TQVLDataTreeChart>();
    chart->Yaml = Qvl::Utils::ToLowerAscii(m.Group(1)) == "yaml";
    // The body keeps one line per text line, so parse errors point at the diagram's own lines.
    std::string body;
    bool inStyle = false;
    bool said = false;
    for (std::size_t i = start + 1; i < lines.size() && !kEnd.Match(lines[i]); ++i) {
        const std::string_view line = Trim(lines[i]);
        const auto lineNo = static_cast<std::int32_t>(i + 1);
        if (inStyle || Qvl::Utils::SameTextIgnoringCase(line, "<style>")) {
            if (!inStyle)
                aModel.AddDiagnostic(kWarning, lineNo, "UNSUPPORTED_STATEMENT",
                                     "Not drawn: a style block; the tables keep their default look.", line);
            inStyle = !Qvl::Utils::SameTextIgnoringCase(line, "</style>");
            body += '\n';
            continue;
        }
        if (kHighlight.MatchAt(line, 0, m)) {
            std::vector<std::string> path = HighlightPath(m.Group(1));
            if (path.empty())
                aModel.AddDiagnostic(kWarning, lineNo, "DATA_HIGHLIGHT",
                                     "A highlight names the keys of a row: #highlight \"key\" / \"sub key\".",
                                     line);
            else
                chart->Highlights.push_back(std::move(path));
            body += '\n';
            continue;
        }
        said = said || !line.empty();
        body += lines[i];
        body += '\n';
    }
    const auto firstLine = static_cast<std::int32_t>(start + 2);
    if (!said) {
        aModel.AddDiagnostic(kError, static_cast<std::int32_t>(start + 1), "DATA_EMPTY",
                             "The diagram holds no document.", Trim(lines[start]));
    } else if (chart->Yaml) {
        TYamlResult parsed = QVLParseYaml(body, firstLine);
        if (parsed) {
            chart->Root = std::move(parsed.Value);
        } else {
            const auto index = static_cast<std::size_t>(parsed.ErrorLine - 1);
            aModel.AddDiagnostic(kError, parsed.ErrorLine, "DATA_SYNTAX",
                                 "The YAML is not valid: " + parsed.Error + ".",
                                 index < lines.size() ? Trim(lines[index]) : "");
        }
    } else {
        ReadJsonBody(body, firstLine, *chart, aModel, lines);
    }
    for (const auto& path : chart->Highlights)
        if (!chart->Root.is_null() && !PathExists(chart->Root, path))
            aModel.AddDiagnostic(kWarning, 0, "DATA_HIGHLIGHT",
                                 "No row has the highlighted path \"" + JoinPath(path) + "\".", "");
    aModel.SetChart(std::move(chart));
    return true;
}

}  // namespace Orvex
