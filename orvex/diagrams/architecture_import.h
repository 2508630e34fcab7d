// Mermaid architecture diagrams for the full importer: groups as containers, services and junctions in
// them, edges with their arrows and the sides they join.
#pragma once

#include <string_view>

#include "orvex/diagrams/diagram_model.h"

namespace Orvex {

// The whole text (front matter and header included) into an empty model.
void QVLReadArchitecture(std::string_view aText, TORXDiagramModel& aModel);

}  // namespace Orvex
