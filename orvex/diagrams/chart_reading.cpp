#include "orvex/diagrams/chart_reading.h"

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

}  // namespace Orvex
