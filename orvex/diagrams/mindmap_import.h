// PlantUML mind maps and work breakdown structures read into a tree of nodes, whether the branches are
// written with repeated markers ("**") or by indentation under single markers ("  *").
#pragma once

#include <string_view>

#include "orvex/diagrams/diagram_model.h"

namespace Orvex {

// True when the text is a @startmindmap or @startwbs diagram; the model is then complete (kind
// dkMindMap, the first item of each tree an ellipse, eaNone edges from parent to child, diagnostics).
bool QVLImportMindMap(std::string_view aText, TQVLDiagramFormat aFormat, TORXDiagramModel& aModel);

}  // namespace Orvex
