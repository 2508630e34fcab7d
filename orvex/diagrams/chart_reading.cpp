#include "orvex/diagrams/chart_reading.h"

#include <charconv>
#include <cmath>

#include "orvex/core/text.h"

namespace Orvex {

TQVLChartLines QVLChartLines(std::string_view aText, std::size_t aHeaderLine) {
    TQVLChartLines lines;
    bool inAccBlock = false;
    for (const TUmlLine& line : UmlStatementLines(aText, TQVLDiagramFormat::dgMermaid)) {
        const auto no = static_cast<std::size_t>(line.No);
        if (no < aHeaderLine) continue;
        if (no == aHeaderLine)
            lines.Header = line;
        else if (!UmlConsumedMermaid(line.Text, inAccBlock))
            lines.Body.push_back(line);
    }
    return lines;
}

bool QVLReadChartNumber(std::string_view aText, double& aValue) {
    std::string_view text = Qvl::Utils::Trim(aText);
    if (!text.empty() && text.front() == '+') text.remove_prefix(1);
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), aValue);
    return !text.empty() && error == std::errc{} && end == text.data() + text.size() && std::isfinite(aValue);
}

}  // namespace Orvex
