// Private to the UML-family, requirement and some chart readers: the line reading they share, numbered,
// trimmed statement lines without comments, and the diagnostic every statement that is not drawn gets.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "orvex/diagrams/diagram_model.h"

namespace Orvex {

struct TUmlLine {
    std::string_view Text;  // trimmed
    std::int32_t No = 0;    // 1-based, as QVLSplitDiagramLines numbers the text
};

// Mermaid: "%%" comments, directives and the front matter left out. PlantUML: "'" comments, "/' '/"
// blocks and the @start/@end markers left out.
std::vector<TUmlLine> UmlStatementLines(std::string_view aText, TQVLDiagramFormat aFormat);

// A statement the reader does not draw.
void UmlNotDrawn(TORXDiagramModel& aModel, const TUmlLine& aLine, std::string_view aWhy);

// True for the statements every Mermaid kind understands and draws nothing for (accTitle, accDescr,
// including a multi-line accDescr block, which *aInBlock tracks).
bool UmlConsumedMermaid(std::string_view aLine, bool& aInBlock);

// A name as written, without one pair of enclosing quotes or backticks.
std::string UmlUnquote(std::string_view aText);

}  // namespace Orvex
