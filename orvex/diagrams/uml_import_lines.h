// Private to the UML-family, structure, requirement and some chart readers: the line reading they share,
// numbered, trimmed statement lines without comments, and the diagnostic every statement that is not drawn
// gets.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "orvex/diagrams/diagram_model.h"
#include "orvex/diagrams/plantuml_parser.h"

namespace Orvex {

struct TUmlLine {
    std::string_view Text;  // trimmed
    std::int32_t No = 0;    // 1-based, as QVLSplitDiagramLines numbers the text
};

// Mermaid: "%%" comments, directives and the front matter left out. PlantUML: "'" comments, "/' '/"
// blocks and the @start/@end markers left out.
std::vector<TUmlLine> UmlStatementLines(std::string_view aText, TQVLDiagramFormat aFormat);

// Whether a Mermaid text is one of the kinds named by their lower-case header words ("classdiagram",
// ...); when it is, its front matter's title becomes the model's title.
bool UmlMermaidHeaderIs(std::string_view aText, std::initializer_list<std::string_view> aHeaders,
                        TORXDiagramModel& aModel);

// A PlantUML text under a plain start marker, as the PlantUML parser reads it: the kind it detects and the
// content lines. Empty when the start marker names a kind of its own (@startmindmap, @startgantt, ...).
struct TUmlPlantUMLContent {
    TORXPlantUMLParser::TPumlKind Kind = TORXPlantUMLParser::TPumlKind::pkUnknown;
    TORXPlantUMLParser::TLines Lines;
};
std::optional<TUmlPlantUMLContent> UmlPlantUMLContent(std::string_view aText);

// A statement the reader does not draw.
void UmlNotDrawn(TORXDiagramModel& aModel, const TUmlLine& aLine, std::string_view aWhy);

// True for the statements every Mermaid kind understands and draws nothing for (accTitle, accDescr,
// including a multi-line accDescr block, which *aInBlock tracks).
bool UmlConsumedMermaid(std::string_view aLine, bool& aInBlock);

// A name as written, without one pair of enclosing quotes or backticks.
std::string UmlUnquote(std::string_view aText);

}  // namespace Orvex
