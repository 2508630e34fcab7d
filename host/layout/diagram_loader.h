// The diagram loader of the reference host: parses Mermaid or PlantUML text, lays the model out and
// creates flow elements, links, lines and texts on the document.
#pragma once

#include <string_view>

#include "host/layout/layout_types.h"
#include "orvex/diagrams/diagram_model.h"
#include "orvex/document/layer.h"

namespace Orvex {
class TORXBaseLabel;

// Installs LoadDiagramWithLayout as the process-wide loader; the command line and the server call it at
// start-up.
void RegisterDiagramLayout();

// The loader itself. False, with the document untouched, when the text does not parse without an error
// diagnostic or the document's item family lacks flow elements; otherwise the whole diagram is one
// undo step and the document is in flowchart mode.
bool LoadDiagramWithLayout(TORXBaseLabel& aDocument, std::string_view aText, TQVLDiagramFormat aFormat);

// Caption extents (lines broken at line feeds) under the process-wide text metrics, in millimetres.
TTextMeasure FontMeasure(const TQVLFont& aFont);

}  // namespace Orvex
