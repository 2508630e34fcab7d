#include "orvex/diagrams/chart_config.h"

#include <vector>

#include "orvex/core/regex.h"
#include "orvex/core/text.h"
#include "orvex/diagrams/diagram_text.h"
#include "orvex/diagrams/import_text.h"

namespace Orvex {
namespace {

using Qvl::Types::TRegex;
using Qvl::Types::TRegexMatch;
using Qvl::Utils::Trim;

// The text where settings may stand: the front matter and every directive, in order.
std::string SettingsText(std::string_view text) {
    const auto lines = QVLSplitDiagramLines(text);
    std::string out;
    const std::size_t frontEnd = QVLFrontMatterEnd(lines);
    for (std::size_t i = 0; i < frontEnd; ++i) (out += lines[i]) += '\n';
    bool inDirective = false;
    for (std::size_t i = frontEnd; i < lines.size(); ++i) {
        const std::string_view line = Trim(lines[i]);
        if (inDirective || line.starts_with("%%{")) {
            (out += line) += '\n';
            inDirective = line.find("}%%") == std::string_view::npos;
        }
    }
    return out;
}

}  // namespace

std::optional<std::string> QVLChartConfigValue(std::string_view aText, std::string_view aKey) {
    const std::string settings = SettingsText(aText);
    if (settings.find(aKey) == std::string::npos) return std::nullopt;
    // Key quoted or bare, then a quoted value or a bare one ending at a comma, brace or line end.
    const TRegex pattern(R"re((?<![\w$])['"]?)re" + std::string(aKey) +
                         R"re(['"]?\s*:\s*(?:"([^"]*)"|'([^']*)'|([^,}\s][^,}\n]*)))re");
    std::optional<std::string> value;
    for (const TRegexMatch& m : pattern.MatchAll(settings)) {
        if (m.Matched(1))
            value = std::string(m.Group(1));
        else if (m.Matched(2))
            value = std::string(m.Group(2));
        else
            value = std::string(Trim(m.Group(3)));
    }
    return value;
}

bool QVLChartConfigFlag(std::string_view aText, std::string_view aKey, bool aDefault) {
    const auto value = QVLChartConfigValue(aText, aKey);
    if (!value) return aDefault;
    const std::string lower = Qvl::Utils::ToLowerAscii(*value);
    if (lower == "true") return true;
    if (lower == "false") return false;
    return aDefault;
}

}  // namespace Orvex
