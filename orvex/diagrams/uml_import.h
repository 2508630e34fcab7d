// The full importer's readers for the UML-like families: class and object diagrams, entity-relation
// diagrams, state diagrams. Each returns true when it took the text; the model is then complete,
// diagnostics included. Statements that are understood but have no drawing (accTitle, accDescr, click,
// hide, skinparam keys that are not mapped) are consumed; anything else not drawn gets a diagnostic.
#pragma once

#include <string_view>

#include "orvex/diagrams/diagram_model.h"

namespace Orvex {

// Mermaid classDiagram; PlantUML class and object diagrams.
bool QVLImportClassDiagram(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel);
// Mermaid erDiagram.
bool QVLImportErDiagram(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel);
// Mermaid stateDiagram and PlantUML state diagrams.
bool QVLImportStateDiagram(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel);

// Tries the readers above in turn: true when one of them took the text.
bool QVLImportUml(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel);

}  // namespace Orvex
