// The diagram loader of the reference host: parses Mermaid or PlantUML text, lays the model out and
// creates flow elements, links, lines and texts on the document.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/layout/layout_types.h"
#include "orvex/diagrams/diagram_load.h"
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

// The same load, reporting what it created into aPlacement (cleared first).
using TDiagramPlacement = TQVLDiagramPlacement;
bool LoadDiagramWithLayout(TORXBaseLabel& aDocument, std::string_view aText, TQVLDiagramFormat aFormat,
                           TDiagramPlacement& aPlacement);

// The load with everything it did: the format the text was read as (detected for dgAuto), the parser's
// diagnostics (on failure too) and the placement with the created items and their bounds. One parse
// serves the load and its explanation. A failure leaves the document as it was.
TQVLDiagramLoadResult PlaceDiagramText(TORXBaseLabel& aDocument, std::string_view aText,
                                       TQVLDiagramFormat aFormat);
// The same for a file, read as the document's LoadFromDiagram reads it; dgAuto takes the extension's
// format, and detection when the extension names none.
TQVLDiagramLoadResult PlaceDiagramFile(TORXBaseLabel& aDocument, const std::string& aFileName,
                                       TQVLDiagramFormat aFormat);

// Caption extents (lines broken at line feeds) under QVLTextMetrics() as it is when measuring, in
// millimetres: the loading document's metrics while LoadDiagramWithLayout runs.
TTextMeasure FontMeasure(const TQVLFont& aFont);

}  // namespace Orvex
