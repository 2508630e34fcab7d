// The relation syntax of PlantUML's class, component and use-case diagrams, shared by kind detection and
// the structure routine.
#pragma once

#include <string>
#include <string_view>

#include "orvex/diagrams/diagram_model.h"

namespace Orvex {

struct TPumlRelation {
    std::string From;  // names as written, quotes and brackets removed
    std::string To;
    std::string Label;
    bool Dotted = false;
    TQVLDiagEdgeArrow TailMark = TQVLDiagEdgeArrow::eaNone;  // the mark at From
    TQVLDiagEdgeArrow HeadMark = TQVLDiagEdgeArrow::eaNone;  // the mark at To
};

// Accepts "A --> B", "A <|-- B", "A \"1\" *-- \"many\" B : has", "[Web] ..> [Db]", "(Use) -up-> (Other)".
// Heads: "|>", ">", "^" an arrow; "*" a filled rhombus; "o" a rhombus; "x" a cross; "+" a circle; "#",
// "{", "}" and none no mark. A "." in the link makes it dotted.
bool ParsePumlRelation(std::string_view aLine, TPumlRelation& aRelation);

// A name as written in a relation or declaration, without quotes, brackets or parentheses.
std::string PumlName(std::string_view aName);

}  // namespace Orvex
