// What every Mermaid chart reader does before reading its own statements: find the header, take the
// title, and drop what carries no chart data (blank lines, comments, accessibility texts), so that each
// reader only sees its own statements and can name every line it does not understand.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "orvex/diagrams/diagram_model.h"

namespace Orvex {

// One statement line: trimmed, a trailing %% comment removed, with its indentation (leading blanks; a
// tab counts as one) and its 1-based line number.
struct TQVLChartLine {
    std::string_view Text;
    std::size_t Indent = 0;
    std::int32_t No = 0;
};

struct TQVLChartText {
    std::string_view HeaderRest;  // what follows the header word on its line, trimmed
    std::int32_t HeaderNo = 0;
    std::vector<TQVLChartLine> Lines;  // the statements after the header line
};

// False, leaving aModel untouched, unless aText is Mermaid and its header word is one of aHeaders (lower
// case). Otherwise fills aOut and sets aModel's title from the front matter or a `title` line.
bool QVLReadChartText(std::string_view aText, TQVLDiagramFormat aFormat,
                      std::initializer_list<std::string_view> aHeaders, TORXDiagramModel& aModel,
                      TQVLChartText& aOut);

// For headers that take nothing after them: the warning aCode when something follows the header word.
void QVLChartBareHeader(TORXDiagramModel& aModel, const TQVLChartText& aText, std::string_view aCode);

// aText as a whole, blanks around it aside, is a finite number ("12", "-3.5", ".5", "+2").
bool QVLChartNumber(std::string_view aText, double& aValue);

// A diagnostic about one statement line, quoting it.
void QVLChartNote(TORXDiagramModel& aModel, const TQVLChartLine& aLine,
                  TQVLDiagramDiagnosticSeverity aSeverity, std::string_view aCode, std::string_view aMessage);

// The items of a comma-separated list, trimmed; commas inside double quotes do not split.
std::vector<std::string_view> QVLSplitChartList(std::string_view aText);

// A chart colour as "#RRGGBB" (or "#RRGGBBAA" when not opaque), the way the parse model writes colours.
std::string QVLChartColorText(TAlphaColor aColor);

}  // namespace Orvex
