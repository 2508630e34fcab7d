// Private to the git graph, timeline, journey and kanban readers: the header line and the statement lines
// after it, as they take them.
#pragma once

#include <string_view>
#include <vector>

#include "orvex/diagrams/uml_import_lines.h"

namespace Orvex {

struct TQVLChartLines {
    TUmlLine Header;             // the line holding the chart's type word
    std::vector<TUmlLine> Body;  // the statements after it, without comments, directives, accTitle/accDescr
};

// The lines of a Mermaid text whose header stands on aHeaderLine (as QVLMermaidHeaderWord gives it).
TQVLChartLines QVLChartLines(std::string_view aText, std::size_t aHeaderLine);

}  // namespace Orvex
